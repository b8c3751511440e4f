#!/usr/bin/env bash
# Independent readers and the strict check. Needs node 18 or later, npm, and a built module:
#
#   MODULE        the module           (build/linux/libexportIFC.so)
#   RUN_HOST      the batch host       (build/linux/run_host)
#   MODEL_HOST    the querying host    (build/linux/tests/readers/model_host)
#   PROGRAM       the command-line program    (build/linux/exportifc)
#
# The last line counts: N passed, N failed.
set -u
cd "$(dirname "$0")" || exit 1

if ! cmp -s package-lock.json node_modules/.locked; then
  npm ci --silent --no-audit --no-fund || { echo "npm ci failed"; echo "0 passed, 1 failed"; exit 1; }
  cp package-lock.json node_modules/.locked
fi

passed=0
failed=0
for test in strict_test strict_program_test geometry_test models_test takeoff_test; do
  output=$(node "$test.mjs" 2>&1)
  status=$?
  echo "$output"
  if [[ "$(tail -n 1 <<<"$output")" =~ :\ ([0-9]+)\ passed,\ ([0-9]+)\ failed$ ]]; then
    passed=$((passed + BASH_REMATCH[1]))
    failed=$((failed + BASH_REMATCH[2]))
    # A program that counts no failure must also have ended well.
    [[ $status -eq 0 || ${BASH_REMATCH[2]} -gt 0 ]] || failed=$((failed + 1))
  else
    echo "FAIL $test did not come to its end"
    failed=$((failed + 1))
  fi
done
echo "$passed passed, $failed failed"
[[ $failed -eq 0 ]]
