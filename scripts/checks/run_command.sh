#!/usr/bin/env bash
# ./run.sh: what it writes and prints, and what it says to bad arguments.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1

root=$PWD
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
passed=0 failed=0

# expect NAME CODE PATTERN ARGUMENT...: ./run.sh ARGUMENT... ends with CODE and prints PATTERN.
expect() {
  local name=$1 code=$2 pattern=$3 got
  shift 3
  (cd "$work" && "$root/run.sh" "$@") >"$work/said" 2>&1
  got=$?
  if ((got == code)) && grep -qE -- "$pattern" "$work/said"; then
    ((++passed))
  else
    ((++failed))
    echo "$name: exit code $got, expected $code and the pattern '$pattern'; it said:"
    cat "$work/said"
  fi
}

# holds NAME COMMAND...: the command succeeds.
holds() {
  local name=$1
  shift
  if "$@"; then ((++passed)); else ((++failed)); echo "$name: does not hold"; fi
}

cp samples/galpao.txt "$work/galpão novo.txt"
cp "$work/galpão novo.txt" "$work/before.txt"
expect "a model with accents and blanks" 0 '^[1-9][0-9]* bars, [1-9][0-9]* elements \(IFCBEAM ' \
  "galpão novo.txt" "saída é.ifc"
holds "the model stays untouched" cmp "$work/galpão novo.txt" "$work/before.txt"
holds "the file has its trailer" grep -q '^END-ISO-10303-21;' "$work/saída é.ifc"
holds "nothing else is left" test "$(ls "$work")" = "$(printf '%s\n' before.txt 'galpão novo.txt' said 'saída é.ifc')"

expect "help" 0 'MODEL.txt' --help
expect "a missing model" 2 'no such model file: nowhere.txt' nowhere.txt
expect "a folder as model" 2 'not a readable file' /
expect "an unknown option" 2 "unknown option '--no'" --no
expect "too many arguments" 2 'at most two arguments' a b c
expect "a missing output folder" 3 'no such folder for the output: nowhere' before.txt nowhere/a.ifc
expect "a folder as output" 3 'the output is a folder' before.txt "$work"
expect "the model as output" 3 'must not be the model itself' before.txt before.txt
holds "the model was not lost" test -s "$work/before.txt"

echo "$passed passed, $failed failed"
((failed == 0))
