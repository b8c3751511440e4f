#!/usr/bin/env bash
# Builds dist/viewer.html and dist/exportifc.html; does nothing when they are newer than all they are
# made from. Programs that are built already look for the viewer beside themselves, and people for the
# other page: both are laid there.
set -euo pipefail
cd "$(dirname "$0")"

pages=(dist/exportifc.html dist/viewer.html) # the last one is written last
sources=(src ../samples build.mjs tsconfig.json package-lock.json ../build/page/exporter.wasm)
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
exporter/build.sh
if [[ ! -e ${pages[0]} || ! -e ${pages[1]} || -n $(find "${sources[@]}" -newer "${pages[1]}" -print -quit) ]]; then
  npx --no-install tsc --noEmit
  node build.mjs
fi
for program in ../build/*/exportifc ../build/*/exportifc.exe; do
  for page in "${pages[@]}"; do
    beside=$(dirname "$program")/$(basename "$page")
    if [[ -f $program ]] && ! cmp -s "$page" "$beside"; then
      cp "$page" "$beside"
    fi
  done
done
