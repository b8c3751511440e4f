#!/usr/bin/env bash
# What is delivered does not depend on the folder it is built in, nor on the time: the DLL is built again in
# another folder; of the others, which take minutes, none may know its folder. Ends with "N passed, N failed".
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1
# shellcheck source=tests/support/outcome.sh
. tests/support/outcome.sh

[[ -s build/windows/exportIFC.dll ]] || {
  echo "exportIFC.dll is missing: cmake --preset windows && cmake --build --preset windows" >&2
  echo "0 passed, 1 failed"
  exit 1
}

# With their debugging symbols, whose sum the stripped files keep.
for file in build/windows/{exportIFC.dll,exportifc.exe,exportifc-[0-9]*.dll} build/linux/{exportifc,libexportifc.so} \
  build/linux/portable/{exportifc,libexportifc.so} page/dist/{viewer,exportifc}.html; do
  holds "there is $file" test -s "$file"
  same "places in $file that name the folder of the build" "$(grep -acF "$PWD" "$file")" 0
done

root=$PWD copy="$work/another folder, with a longer name"
mkdir "$copy"
git ls-files -co --exclude-standard -z | tar --null --ignore-failed-read -cf - -T - 2>/dev/null \
  | tar -xf - -C "$copy"
unset CMAKE_C_COMPILER_LAUNCHER CMAKE_CXX_COMPILER_LAUNCHER  # a cache would give the same objects
cd "$copy" || exit 1
holds "the DLL is built again" sh -c \
  'cmake --preset windows -DEXPORTIFC_TESTS=OFF -DEXPORTIFC_PROGRAM=OFF && cmake --build --preset windows --target exportIFC'
holds "it is the same" cmp "$root/build/windows/exportIFC.dll" build/windows/exportIFC.dll

end
