#!/usr/bin/env bash
# The DLL does not depend on the folder it is built in, nor on the time.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1

if [[ ! -f build/windows/exportIFC.dll ]]; then
  echo "build/windows/exportIFC.dll is missing: cmake --preset windows && cmake --build --preset windows"
  echo "0 passed, 1 failed"
  exit 1
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
copy="$work/another folder, with a longer name"
mkdir "$copy"
git ls-files -co --exclude-standard -z | tar --null --ignore-failed-read -cf - -T - 2>/dev/null \
  | tar -xf - -C "$copy"
unset CMAKE_C_COMPILER_LAUNCHER CMAKE_CXX_COMPILER_LAUNCHER  # a cache would give the same objects
if ! (
  cd "$copy" && cmake --preset windows -DEXPORTIFC_TESTS=OFF -DEXPORTIFC_PROGRAM=OFF \
    && cmake --build --preset windows --target exportIFC
) >"$work/log" 2>&1; then
  tail -n 20 "$work/log"
  echo "the second build failed: nothing was compared"
  echo "0 passed, 1 failed"
  exit 1
fi
if cmp build/windows/exportIFC.dll "$copy/build/windows/exportIFC.dll"; then
  echo "1 passed, 0 failed"
else
  echo "two builds of the same sources differ"
  echo "0 passed, 1 failed"
  exit 1
fi
