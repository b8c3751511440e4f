#!/usr/bin/env bash
# Line and branch coverage: of the core by its unit and reliability tests, of library/ by its own
# tests, of cli/ by those and by tests/cli.
#
#   scripts/coverage.sh [--record]   prints a line for each file, then each line that no test reaches
#
# Passes when enough lines of each group are reached (the table in scripts/coverage_report.py) and
# every other line stands, with its reason, in scripts/coverage_allowed.txt. --record keeps the
# figures in docs/figures and puts them into the documents. Ends with "N passed, N failed".
#
#   COVERAGE_BUILD   build folder, build/coverage if unset
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

build=${COVERAGE_BUILD:-build/coverage}
log=$(mktemp)
trap 'rm -f "$log"' EXIT

fail() { tail -n 30 "$log"; echo "0 passed, 1 failed"; exit 1; }

# Objects from a compiler cache would name the sources of the folder they were made in.
unset CMAKE_C_COMPILER_LAUNCHER CMAKE_CXX_COMPILER_LAUNCHER
instrument='-fprofile-instr-generate -fcoverage-mapping'
cmake -S . -B "$build" -G Ninja -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=Debug \
  -DCMAKE_C_FLAGS="$instrument" -DCMAKE_CXX_FLAGS="$instrument" >"$log" 2>&1 || fail
cmake --build "$build" -j2 --target unit_tests reliability_tests library_tests exportifc_program >"$log" 2>&1 || fail

build=$(cd "$build" && pwd)
unit=$build/tests/unit/unit_tests
reliability=$build/tests/reliability/reliability_tests
library=$build/tests/library/library_tests
program=$build/exportifc

# counts BINARY: where its counters go. Those of many calls add up in one file.
counts() { echo "$build/$(basename "$1").counts"; }

rm -rf "$build"/*.counts "$build"/*.lcov
for tests in "$unit" "$reliability" "$library"; do
  LLVM_PROFILE_FILE="$(counts "$tests")/%m.profraw" "$tests" --gtest_brief=1 </dev/null >"$log" 2>&1 || fail
done
run_program() {
  LLVM_PROFILE_FILE="$(counts "$program")/%m.profraw" tests/cli/run.py "$program" "$@" </dev/null >"$log" 2>&1 || fail
}
run_program --data
# Of the others those that reach more and need no module.
run_program interrupt "progress counts" "what they say in turn" "the manual" drawings page "full device" \
  "closed pipe" "own files" "choose the language"

# measure GROUP ROOMS BINARY...: what these binaries have reached of the rooms.
measure() {
  local group=$1 rooms=$2 counted=() objects=() binary
  shift 2
  for binary; do
    counted+=("$(counts "$binary")"/*.profraw)
    objects+=(${objects[0]:+-object} "$binary")  # the first stands without the word
  done
  llvm-profdata merge -o "$build/$group.profdata" "${counted[@]}" >"$log" 2>&1 || fail
  # shellcheck disable=SC2086  # words: one for each room
  llvm-cov export -format=lcov -instr-profile "$build/$group.profdata" "${objects[@]}" $rooms \
    >"$build/$group.lcov" 2>"$log" || fail
}
measure core "plugin model step elements profiles" "$unit" "$reliability"
measure library library "$library"
measure program cli "$library" "$program"

python3 scripts/coverage_report.py scripts/coverage_allowed.txt "$build"/{core,library,program}.lcov "$@"
