#!/usr/bin/env bash
# Runs a GoogleTest binary (a .exe under Wine) and ends with the line "N passed, N failed".
#
#   scripts/run_gtest.sh BINARY [ARGUMENT...]
#
# A crash counts as one failed test. So does each skipped or disabled test: a test that cannot run
# shows nothing. GTEST_FILTER works as usual.
set -uo pipefail

binary=$1
shift
if [[ ! -f $binary ]]; then
  echo "no such test binary: $binary"
  echo "0 passed, 1 failed"
  exit 1
fi

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
report=$(mktemp)
trap 'rm -f "$report"' EXIT

run=("$binary") output=$report
if [[ $binary == *.exe ]]; then
  run=("$root/scripts/wine.sh" "$binary")
  output="Z:${report//\//\\}"
fi

"${run[@]}" --gtest_brief=1 --gtest_output="json:$output" "$@" </dev/null
code=$?

python3 - "$report" "$code" <<'PY'
import json, sys

report, code = sys.argv[1], int(sys.argv[2])
try:
    suites = json.load(open(report, encoding="utf-8"))["testsuites"]
except (OSError, ValueError):
    print(f"no test report; exit code {code}")
    print("0 passed, 1 failed")
    sys.exit(1)

passed = failed = 0
for suite in suites:
    for test in suite["testsuite"]:
        if test["status"] == "RUN" and test["result"] == "COMPLETED" and not test.get("failures"):
            passed += 1
        else:
            failed += 1
            print(f"not passed: {suite['name']}.{test['name']} ({test['result'].lower()})")
if code != 0 and failed == 0:
    print(f"exit code {code} although no test failed")
    failed = 1
if passed + failed == 0:
    print("no test ran")
    failed = 1
print(f"{passed} passed, {failed} failed")
sys.exit(failed != 0)
PY
