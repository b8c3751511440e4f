#!/usr/bin/env bash
# Builds dist/viewer.html; does nothing when it is newer than all it is made from.
set -euo pipefail
cd "$(dirname "$0")"

page=dist/viewer.html
installed=node_modules/.package-lock.json

if [[ ! -e $installed || package-lock.json -nt $installed ]]; then
  npm ci --no-audit --no-fund --loglevel=error
  touch "$installed"
fi
if [[ ! -e $page || -n $(find src build.mjs tsconfig.json package-lock.json -newer "$page" -print -quit) ]]; then
  npx --no-install tsc --noEmit
  node build.mjs
fi
