# The nodes of a CalculiX deck, and its elements by type, counted without the readers of tuvo.
function nodes_of(type) {
    if (type ~ /^(SPRINGA|SPRING2|DASHPOTA|GAPUNI|T3D2|B31R?|B21)$/) return 2
    if (type ~ /^(DCOUP3D|MASS|SPRING1)$/) return 1
    if (type ~ /^(B32R?|D|T3D3)$/) return 3
    match(type, /[0-9]+[A-Z]*$/)
    return substr(type, RSTART) + 0
}
{ gsub(/[ \t\r]/, ""); $0 = toupper($0) }
/^\*\*/ || /^$/ { next }
/^\*/ {
    card = $0; sub(/,.*/, "", card); type = ""; left = 0
    if (match($0, /,TYPE=[^,]*/)) type = substr($0, RSTART + 6, RLENGTH - 6)
    next
}
card == "*NODE" { split($0, field, ","); node[field[1]] = 1 }
card == "*ELEMENT" {
    count = split($0, field, ",")
    if (field[count] == "") --count
    if (left <= 0) { element[field[1]] = type; left = nodes_of(type) + 1 }
    left -= count
}
END {
    for (id in node) ++nodes
    for (id in element) ++types[element[id]]
    print "nodes", nodes + 0
    for (type in types) print type, types[type]
}
