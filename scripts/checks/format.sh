#!/usr/bin/env bash
# Checks the layout of the C and C++ sources.   --fix rewrites them instead.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1

mapfile -t files < <(git ls-files -co --exclude-standard '*.cpp' '*.h' '*.c')
if [[ ${1-} == --fix ]]; then
  exec clang-format -i "${files[@]}"
fi

passed=0 failed=0
for file in "${files[@]}"; do
  if clang-format "$file" | cmp -s - "$file"; then
    ((++passed))
  else
    ((++failed))
    echo "layout: $file"
  fi
done
((failed)) && echo "to mend the layout: scripts/checks/format.sh --fix"
echo "$passed passed, $failed failed"
((failed == 0 && passed > 0))
