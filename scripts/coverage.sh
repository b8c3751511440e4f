#!/usr/bin/env bash
# Line and branch coverage of the core by the unit and reliability tests.
#
#   scripts/coverage.sh [--record]   prints a line for each file, then each line that no test reaches
#
# Passes when at least 98 % of the lines are reached and every other line stands, with its reason,
# in scripts/coverage_allowed.txt. --record keeps the figures in docs/figures and puts them into the
# documents. Ends with "N passed, N failed".
#
#   COVERAGE_BUILD   build folder, build/coverage if unset
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

build=${COVERAGE_BUILD:-build/coverage}
log=$(mktemp)
trap 'rm -f "$log"' EXIT

fail() { tail -n 30 "$log"; echo "0 passed, 1 failed"; exit 1; }

instrument='-fprofile-instr-generate -fcoverage-mapping'
cmake -S . -B "$build" -G Ninja -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=Debug \
  -DCMAKE_C_FLAGS="$instrument" -DCMAKE_CXX_FLAGS="$instrument" -DEXPORTIFC_PROGRAM=OFF >"$log" 2>&1 || fail
cmake --build "$build" -j2 --target unit_tests reliability_tests >"$log" 2>&1 || fail

binaries=("$build/tests/unit/unit_tests" "$build/tests/reliability/reliability_tests")
rm -f "$build"/*.profraw
for binary in "${binaries[@]}"; do
  LLVM_PROFILE_FILE="$build/$(basename "$binary").profraw" "$binary" --gtest_brief=1 </dev/null >"$log" 2>&1 || fail
done
llvm-profdata merge -o "$build/tests.profdata" "$build"/*.profraw >"$log" 2>&1 || fail

llvm-cov export -format=lcov -instr-profile "$build/tests.profdata" "${binaries[0]}" -object "${binaries[1]}" \
  plugin model step elements profiles >"$build/tests.lcov" 2>"$log" || fail
python3 scripts/coverage_report.py "$build/tests.lcov" scripts/coverage_allowed.txt "$@"
