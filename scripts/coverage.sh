#!/usr/bin/env bash
# Line and branch coverage: of the core by its unit and reliability tests, of library/ by its own
# tests, of cli/ by those and by tests/cli, which the sanitizers watch meanwhile.
#
#   scripts/coverage.sh [--record]   prints a line for each file, then each line that no test reaches
#
# Passes when enough lines of each group are reached (the table in scripts/coverage_report.py) and
# every other line stands, with its reason, in scripts/coverage_allowed.txt. --record keeps the
# figures in docs/figures and puts them into the documents. Ends with "N passed, N failed".
#
#   COVERAGE_BUILD   build folder, build/asan if unset
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

build=${COVERAGE_BUILD:-build/asan}
log=$(mktemp)
trap 'rm -f "$log"' EXIT

fail() { tail -n 30 "$log"; echo "0 passed, 1 failed"; exit 1; }

cmake --preset asan -B "$build" >"$log" 2>&1 || fail
cmake --build "$build" -j2 --target unit_tests reliability_tests library_tests exportifc_program >"$log" 2>&1 || fail

build=$(cd "$build" && pwd)
unit=$build/tests/unit/unit_tests
reliability=$build/tests/reliability/reliability_tests
library=$build/tests/library/library_tests
program=$build/exportifc

# counts BINARY: where its counters go. Those of many calls add up in one file.
counts() { echo "$build/$(basename "$1").counts"; }

# counted BINARY COMMAND...: runs the command, which runs the binary.
counted() { LLVM_PROFILE_FILE="$(counts "$1")/%m.profraw" "${@:2}" </dev/null 2>&1; }

run_tests() {
  local tests
  for tests in "$unit" "$reliability" "$library"; do
    counted "$tests" "$tests" --gtest_brief=1 || return
  done
}
run_program() {
  counted "$program" tests/cli/run.py "$program" --data || return
  # Of the others those that reach more and need no module.
  counted "$program" tests/cli/run.py "$program" --large 50000 interrupt "progress counts" "what they say in turn" \
    "the manual" drawings page "full device" "closed pipe" "own files" "choose the language" "programs read"
}
rm -rf "$build"/*.counts "$build"/*.lcov
run_tests >"$build/counted-tests.log" &
run_program >"$log" || { wait; fail; }
wait $! || { cp "$build/counted-tests.log" "$log"; fail; }

# measure GROUP BINARY...: what these binaries have reached.
measure() {
  local group=$1 counted=() objects=() binary
  shift
  for binary; do
    counted+=("$(counts "$binary")"/*.profraw)
    objects+=(${objects[0]:+-object} "$binary")  # the first stands without the word
  done
  llvm-profdata merge -o "$build/$group.profdata" "${counted[@]}" >"$log" 2>&1 || fail
  llvm-cov export -format=lcov -instr-profile "$build/$group.profdata" -ignore-filename-regex='^/usr/|/tests/' \
    "${objects[@]}" >"$build/$group.lcov" 2>"$log" || fail
}
measure core "$unit" "$reliability"
measure library "$library"
measure program "$library" "$program"

python3 scripts/coverage_report.py scripts/coverage_allowed.txt "$build"/{core,library,program}.lcov "$@"
