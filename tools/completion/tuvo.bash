# Completion of tuvo for bash. Commands and options are those that the program's own --help lists, data types and unit
# systems those of the catalogue in use, so nothing has to be kept in step here.

# The names that a section of a help text lists at the start of its lines: "  -h,--help  Show ..." gives -h and --help.
_tuvo_listed() {
    local section=$1
    shift
    "$@" --help 2>/dev/null | awk -v section="$section:" '
        /^[^ ]/ { inside = $0 == section }
        inside && /^  [^ ]/ { gsub(",", "\n", $1); print $1 }'
}

# What stands in the column with a title in the table that a command writes.
_tuvo_column() {
    local title=$1
    shift
    "$@" 2>/dev/null | awk -v title="  $title  " '
        NR == 1 {
            start = index($0, title) + 2
            match(substr($0, start + length(title) - 2), /[^ ]/)
            width = length(title) - 3 + RSTART
        }
        NR > 1 { text = substr($0, start, width); sub(/ +$/, "", text); if (text != "") print text }'
}

_tuvo_candidates() {
    local program=$1 command=$2 before=$3 word=$4
    case $before in
    --type | --to-type) _tuvo_column "data type" "$program" units --type ;;
    --from | --to) _tuvo_column name "$program" units --systems ;;
    *)
        [ -n "$command" ] || _tuvo_listed Subcommands "$program"
        [[ $word != -* ]] || _tuvo_listed Options "$program" ${command:+"$command"}
        ;;
    esac
}

# Where nothing is known, bash completes file names.
_tuvo() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command='' candidate
    [ "$COMP_CWORD" -le 1 ] || command=${COMP_WORDS[1]}
    # bash makes a word of the "=" in --type=Pressure.
    [ "$word" != = ] || word=
    [ "$before" != = ] || before=${COMP_WORDS[COMP_CWORD - 2]}
    COMPREPLY=()
    local quote=''
    [[ $word != [\"\']* ]] || quote=${word:0:1} word=${word:1}
    while IFS= read -r candidate; do
        case $quote in  # bash closes the quotes itself
        \") ;;
        \') candidate=${candidate//\'/\'\\\'\'} ;;
        *) candidate=$(printf '%q' "$candidate") ;;
        esac
        [[ $candidate != "$word"* ]] || COMPREPLY+=("$candidate")
    done < <(_tuvo_candidates "${COMP_WORDS[0]}" "$command" "$before" "$word")
}

complete -o default -F _tuvo tuvo
