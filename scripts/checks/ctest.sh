#!/usr/bin/env bash
# CTest knows every stage and every test case of a build, and can run one of each kind.
#
#   scripts/checks/ctest.sh BUILD
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1
# shellcheck source=tests/support/outcome.sh
. tests/support/outcome.sh

build=$1
list=$work/list

listed() { ctest --test-dir "$build" -N -L "^$1\$" 2>&1 | sed -n 's/^Total Tests: //p'; }

for kind in unit library module reliability; do
  "$build/tests/$kind/${kind}_tests" --gtest_list_tests --gtest_output="json:$list" >"$list.out"
  same "$kind tests that CTest lists" "$(listed "$kind")" "$(sed -n '2s/[^0-9]//gp' "$list")"
done
same "cases of tests/cli that CTest lists" "$(listed cli)" \
  "$(tests/cli/run.py "$build/exportifc" --list | wc -l)"
same "stages that CTest lists" "$(listed stage)" "$(./test.sh --list | wc -l)"

for name in unit.BarAxes.AlongX library.EditDistance.CountsTheChanges module.Interactive.CancelAsksNothingAndWritesNothing \
  'cli.export into a folder'; do
  same "tests named $name that pass" \
    "$(ctest --test-dir "$build" -R "^$name\$" 2>&1 | grep -c ' Passed ')" 1
done

end
