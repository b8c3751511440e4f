#!/usr/bin/env bash
# ./run.sh: what it writes and prints, and what it says to bad arguments.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1
# shellcheck source=tests/support/outcome.sh
. tests/support/outcome.sh

root=$PWD
run() { (cd "$work" && "$root/run.sh" "$@"); }

cp samples/galpao.txt "$work/galpão novo.txt"
cp "$work/galpão novo.txt" "$work/before.txt"
expect "a model with accents and blanks" 0 '^[1-9][0-9]* bars, [1-9][0-9]* elements \(IFCBEAM ' run \
  "galpão novo.txt" "saída é.ifc"
holds "the model stays untouched" cmp "$work/galpão novo.txt" "$work/before.txt"
holds "the file has its trailer" grep -q '^END-ISO-10303-21;' "$work/saída é.ifc"
holds "nothing else is left" test "$(ls "$work")" = "$(printf '%s\n' before.txt 'galpão novo.txt' said 'saída é.ifc')"

expect "help" 0 'MODEL.txt' run --help
expect "a missing model" 2 'no such model file: nowhere.txt' run nowhere.txt
expect "a folder as model" 2 'not a readable file' run /
expect "an unknown option" 2 "unknown option '--no'" run --no
expect "too many arguments" 2 'at most two arguments' run a b c
expect "a missing output folder" 3 'no such folder for the output: nowhere' run before.txt nowhere/a.ifc
expect "a folder as output" 3 'the output is a folder' run before.txt "$work"
expect "the model as output" 3 'must not be the model itself' run before.txt before.txt
holds "the model was not lost" test -s "$work/before.txt"

end
