#!/usr/bin/env bash
# Each shape that docs/architecture.md lists as fixed from outside is named by a comment in the files
# that its row gives, `Fixed shape: WORD.`; and each such comment names a row.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1

core=(plugin model step elements profiles platform)
passed=0 failed=0 words=$'\n'

while IFS='|' read -r _ word where _; do
  word=${word# } word=${word% }
  words+=$word$'\n'
  while read -r path; do
    if grep -rqF "Fixed shape: $word." "$path"*; then
      ((++passed))
    else
      ((++failed))
      echo "$path names no fixed shape: $word"
    fi
  done < <(grep -o "\`[^\`]*\`" <<<"$where" | tr -d "\`")
done < <(sed -n '/^## Shapes that are fixed/,/^## Adding/p' docs/architecture.md | sed -n '/^| ---/,$p' | grep '^| [^-]')

while read -r word; do
  if grep -qxF "$word" <<<"$words"; then
    ((++passed))
  else
    ((++failed))
    echo "docs/architecture.md lists no fixed shape: $word"
  fi
done < <(grep -rhoE 'Fixed shape: [^.]*\.' "${core[@]}" | sed -E 's/Fixed shape: (.*)\.$/\1/' | sort -u)

echo "$passed passed, $failed failed"
((failed == 0 && passed > 0))
