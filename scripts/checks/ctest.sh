#!/usr/bin/env bash
# CTest knows every stage and every test case of a build, and can run one of each kind.
#
#   scripts/checks/ctest.sh BUILD
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1

build=$1
list=$(mktemp)
trap 'rm -f "$list"' EXIT
passed=0 failed=0

expect() { # WHAT FOUND WANTED
  if [[ $2 == "$3" ]]; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    echo "$1: found $2, wanted $3"
  fi
}

listed() { ctest --test-dir "$build" -N -L "^$1\$" 2>&1 | sed -n 's/^Total Tests: //p'; }

for kind in unit library module reliability; do
  "$build/tests/$kind/${kind}_tests" --gtest_list_tests --gtest_output="json:$list" >"$list.out"
  expect "$kind tests that CTest lists" "$(listed "$kind")" "$(sed -n '2s/[^0-9]//gp' "$list")"
  rm -f "$list.out"
done
expect "cases of tests/cli that CTest lists" "$(listed cli)" \
  "$(tests/cli/run.py "$build/exportifc" --list | wc -l)"
expect "stages that CTest lists" "$(listed stage)" "$(./test.sh --list | wc -l)"

for name in unit.BarAxes.AlongX library.EditDistance.CountsTheChanges module.Interactive.CancelAsksNothingAndWritesNothing \
  'cli.export into a folder'; do
  expect "tests named $name that pass" \
    "$(ctest --test-dir "$build" -R "^$name\$" 2>&1 | grep -c ' Passed ')" 1
done

echo "$passed passed, $failed failed"
((failed == 0))
