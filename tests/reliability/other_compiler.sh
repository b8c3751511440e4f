#!/usr/bin/env bash
# The DLL in a host built with another compiler than the DLL itself: clang for the mingw target.
#
#   tests/reliability/other_compiler.sh [BUILD]     default build/windows
#
# An export through the batch entry, the thrown text of a file that cannot be created, and the C
# host as far as it goes without a person. Ends with "N passed, N failed".
set -uo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
build=$(cd "${1:-$root/build/windows}" && pwd)
dll=$build/exportIFC.dll
cd "$root" || exit 1
# shellcheck source=tests/support/outcome.sh
. tests/support/outcome.sh

# The headers and libraries of the posix-thread variant, as for the DLL.
version=$(x86_64-w64-mingw32-g++-posix -dumpversion)
runtime=/usr/lib/gcc/x86_64-w64-mingw32/$version
target=(--target=x86_64-w64-mingw32 -O1 -Iinclude -I. -static -fuse-ld=/usr/bin/x86_64-w64-mingw32-ld)
headers=(-isystem "$runtime/include/c++" -isystem "$runtime/include/c++/x86_64-w64-mingw32")

holds "clang builds the C++ host" clang++ "${target[@]}" -std=c++20 "${headers[@]}" "-L$runtime" \
  examples/run_host.cpp examples/box_answerer.cpp -o "$work/run_host.exe" -luser32 -lpthread -Wno-unused-command-line-argument
holds "clang builds the C host" clang "${target[@]}" -std=c99 "-L$runtime" examples/minimal_host.c \
  -o "$work/minimal_host.exe" -Wno-unused-command-line-argument

cd "$work" || exit 1
"$root/scripts/wine.sh" ./run_host.exe "$dll" "$root/samples/galpao.txt" out.ifc >run.log 2>&1
holds "the C++ host exports" test $? = 0
holds "the file is complete" grep -q '^END-ISO-10303-21;' out.ifc
holds "every bar is there" test "$(grep -cE 'IFC(BEAM|COLUMN|MEMBER)\(' out.ifc)" -ge "$(sed -n 5p "$root/samples/galpao.txt" | tr -dc 0-9)"

mkdir closed.ifc.parttemp
"$root/scripts/wine.sh" ./run_host.exe "$dll" "$root/samples/galpao.txt" closed.ifc >run.log 2>&1
holds "the text that the DLL throws is caught" test $? = 1
holds "and recognised" grep -q 'cannot create' run.log

"$root/scripts/wine.sh" ./minimal_host.exe nothing.dll >run.log 2>&1
holds "the C host starts" test $? = 2

end
