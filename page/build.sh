#!/usr/bin/env bash
# Builds dist/viewer.html; does nothing when it is newer than all it is made from. Programs that are
# built already look for the page beside themselves: it is laid there.
set -euo pipefail
cd "$(dirname "$0")"

page=dist/viewer.html
for program in node npm; do
  if ! command -v "$program" >/dev/null; then
    echo "page/build.sh: $program is not installed: run scripts/setup.sh program" >&2
    exit 1
  fi
done

installed=node_modules/.package-lock.json

if [[ ! -e $installed || package-lock.json -nt $installed ]]; then
  npm ci --no-audit --no-fund --loglevel=error
  touch "$installed"
fi
if [[ ! -e $page || -n $(find src build.mjs tsconfig.json package-lock.json -newer "$page" -print -quit) ]]; then
  npx --no-install tsc --noEmit
  node build.mjs
fi
for program in ../build/*/exportifc ../build/*/exportifc.exe; do
  beside=$(dirname "$program")/viewer.html
  if [[ -f $program ]] && ! cmp -s "$page" "$beside"; then
    cp "$page" "$beside"
  fi
done
