#!/usr/bin/env bash
# Runs shellcheck on every shell script of the project.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1

passed=0 failed=0
while read -r file; do
  head -n 1 "$file" 2>/dev/null | grep -aqE '^#!.*\b(ba)?sh$' || continue
  if shellcheck -x "$file"; then ((++passed)); else ((++failed)); fi
done < <(git ls-files -co --exclude-standard)
echo "$passed passed, $failed failed"
((failed == 0 && passed > 0))
