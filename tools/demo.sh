#!/bin/sh
# A tour of tuvo for those who see it for the first time:  sh tools/demo.sh PATH-OF-TUVO FOLDER-OF-RESULTS
set -eu
PATH=$(CDPATH= cd "$(dirname "$1")" && pwd):$PATH
mkdir -p "$2"
OUT=$(CDPATH= cd "$2" && pwd)
cd "$(dirname "$0")/.."

printf '\ntuvo at work\n============\n\ntuvo is %s. Each line that begins with "$" is a command; its output follows.\n' "$1"

# Lines that begin with "$ " are run, all others are shown. A command may fail: some show what happens then. OUT stands for
# the folder of results.
while IFS= read -r line; do
    case $line in
    *OUT*) line=$(printf '%s' "$line" | sed "s|OUT|$OUT|g") ;;
    esac
    printf '%s\n' "$line"
    case $line in
    '$ '*) eval "${line#??}" </dev/null 2>&1 || true ;;
    esac
done <<'TOUR'

This machine, as the library sees it:

$ tuvo info

A model in millimeters, tons and seconds meets one in inches and pounds-force. The elastic modulus of steel:

$ tuvo convert 210000 --type "Young's Modulus" --from mm,ton,sec --to in,lbf,sec

"lbf" stands for the mass that makes the pound-force the force of inches and seconds, so densities come out right:

$ tuvo convert 7.85e-9 --type Density --from mm,ton,sec --to in,lbf,sec
$ tuvo convert 1 --type Mass --from in,lbf,sec --to m,kg,sec

Temperatures have offsets, and angles a unit of their own:

$ tuvo convert -40 20 100 --type Temperature --from m,kg,sec,centigrade --to m,kg,sec,fahrenheit
$ tuvo convert 30 90 --type "Angle in Degrees" --to-type Angle
$ tuvo convert --factor --type Temperature --from m,kg,sec,centigrade --to m,kg,sec,fahrenheit

A column of a table goes through standard input: the modulus of steel at 20, 100, 200 ... 600 C, from MPa to ksi.

$ tuvo convert --type "Young's Modulus" --from mm,n,sec --to in,kip,sec --digits 6 <data/steel-modulus.txt

Mistakes are named, and what may have been meant:

$ tuvo convert 1 two 3 --type Length --from m,kg,sec --to in,lbf,sec
$ tuvo convert 1 --type Presure --from mm,ton,sec --to in,lbf,sec

The unit systems of the catalogue; "--from" and "--to" take their names and ids too:

$ tuvo units --systems

One quantity in all of them:

$ tuvo units --type Density

The catalogue that all of this comes from, verified:

$ tuvo units --check

A selection of nodes as a user types it, read and put in its short form:

$ tuvo ids "100-105, 7, 103-110, 8 9" --compact

What a user types in place of a number, with a value for its variable; and with a mistake:

$ tuvo eval "2*(<width> + 1.5)/3" width=4
$ tuvo eval "2*(<width> + 1.5/3" width=4

The checksum that a model file would be stored with, and the usual CRC-32 of the same bytes:

$ tuvo checksum data/steel-modulus.txt
$ tuvo checksum --final data/steel-modulus.txt

What a program did not free, and what is new since the release before:

$ tuvo leaks data/leaks.txt
$ tuvo leaks data/leaks.txt --against data/leaks-before.txt

Where the time of an analysis went; bench-view makes an SVG picture of it:

$ cat data/solver.log
$ tuvo bench-view data/solver.log | head -n 4

A finite-element model: a bracket of a few thousand elements, written by a script as a deck of CalculiX. tuvo reads it, and
writes a page with a picture for the browser, a report table for spreadsheets and a binary file with a checksum:

$ python3 tools/bracket.py > "OUT/bracket.inp"
$ tuvo model "OUT/bracket.inp" --guess
$ tuvo model "OUT/bracket.inp" --from mm,ton,sec --to in,lbf,sec --set "*ED" --bench --leaks "OUT/leaks.txt"
$ tuvo model "OUT/bracket.inp" --from mm,ton,sec --html "OUT/bracket.html" --colour-sets --report "OUT/bracket.txt" --write "OUT/bracket.bin" > "OUT/bracket.log"
$ tuvo checksum "OUT/bracket.bin"

A deck that others have made, from the tests of CalculiX, packed as it is:

$ tuvo model /usr/share/doc/calculix-ccx-test/examples/test/segmenttet.inp.gz --html "OUT/segment.html" --report "OUT/segment.txt"

Open these in a browser:

  OUT/bracket.html
  OUT/segment.html

and these are their tables:

  OUT/bracket.txt
  OUT/segment.txt

What to try next:

  tuvo units --type      all quantities that can be converted
  tuvo convert --help    everything about conversion
  docs/tuvo.md           the guide
  ./dev test             all tests
TOUR
