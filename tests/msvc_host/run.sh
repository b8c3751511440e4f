#!/usr/bin/env bash
# The DLL in a host of Microsoft's binary interface, and in the same host built for mingw-w64.
#
#   tests/msvc_host/run.sh [BUILD]     default build/windows
#
# host.cpp says what each case does. Ends with "N passed, N failed".
set -uo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
build=$(cd "${1:-$root/build/windows}" && pwd)
source=tests/msvc_host
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$root" || exit 1

passed=0 failed=0
check() {
  local name=$1
  shift
  if "$@"; then passed=$((passed + 1)); else failed=$((failed + 1)) && echo "not as it should be: $name"; fi
}

warnings=(-Wall -Wextra -Wpedantic -Wconversion -Werror)
compile() { "$@" >"$scratch/compiler.log" 2>&1 || { cat "$scratch/compiler.log"; false; }; }

# Without Microsoft's headers and libraries: the system's functions by name alone.
for library in kernel32 vcruntime140; do
  check "the functions of $library" compile \
    llvm-dlltool -m i386:x86-64 -d "$source/$library.def" -l "$scratch/$library.lib"
done
check "clang builds the host for Microsoft's interface" compile \
  clang++ --target=x86_64-pc-windows-msvc -std=c++20 -ffreestanding -fexceptions -fcxx-exceptions \
  -O1 "${warnings[@]}" -Iinclude -c $source/host.cpp -o "$scratch/host.obj"
check "and lld links it" compile \
  lld-link /nologo /subsystem:console /entry:mainCRTStartup /nodefaultlib \
  "/out:$scratch/msvc.exe" "$scratch/host.obj" "$scratch/kernel32.lib" "$scratch/vcruntime140.lib"

check "GCC builds it for mingw-w64" compile \
  x86_64-w64-mingw32-g++-posix -std=c++20 -O1 "${warnings[@]}" -Iinclude $source/host.cpp \
  -o "$scratch/gcc.exe" -static
# With the headers and libraries of the posix-thread variant of GCC.
runtime=/usr/lib/gcc/x86_64-w64-mingw32/$(x86_64-w64-mingw32-g++-posix -dumpversion)
check "clang builds it for mingw-w64" compile \
  clang++ --target=x86_64-w64-mingw32 -std=c++20 -O1 "${warnings[@]}" -Wno-unused-command-line-argument \
  -isystem "$runtime/include/c++" -isystem "$runtime/include/c++/x86_64-w64-mingw32" -Iinclude \
  $source/host.cpp -o "$scratch/clang.exe" -static --ld-path=/usr/bin/x86_64-w64-mingw32-ld "-L$runtime" \
  -lstdc++ -lgcc_eh -lpthread  # the last for the two before it

# run HOST CASE: in a folder of its own; the checks of the host count as ours.
run() {
  local folder=$scratch/$1-$2
  mkdir "$folder" && cd "$folder" || exit 1
  cp "$root/samples/galpao.txt" modelo.txt
  cp "$build/exportIFC.dll" "$scratch/$1.exe" .
  "$root/scripts/wine.sh" "./$1.exe" exportIFC.dll "$2" >run.log 2>error.log
  code=$?
  tr -d '\r' <run.log >said.txt
  passed=$((passed + $(grep -c '^ok: ' said.txt)))
  failed=$((failed + $(grep -c '^FAILED: ' said.txt)))
  sed -n "s/^FAILED: /not as it should be: $1, /p" said.txt
}

whole() { [[ $(head -c 13 "$1") == 'ISO-10303-21;' && $(tail -n 1 "$1" | tr -d '\r') == 'END-ISO-10303-21;' ]]; }

bars=$(sed -n 5p samples/galpao.txt | tr -dc 0-9)
for host in msvc gcc clang; do
  run $host caught
  check "$host: all cases of a caught text run" test "$code $(tail -n 1 said.txt)" = '0 end'
  check "$host: the file of the next export is whole" whole modelo.txt
  check "$host: every bar is in it" test \
    "$(grep -cE 'IFC(BEAM|COLUMN|MEMBER)\(' modelo.txt)" -ge "$bars"

  run $host callback
  check "$host: all cases of a callback that throws run" test "$code $(tail -n 1 said.txt)" = '0 end'
  check "$host: the export after them is whole" whole saida.ifc

  # Each library's own end of a process: 3.
  for uncaught in uncaught thread; do
    run $host $uncaught
    check "$host: the host ends in its own way, $uncaught" test $code = 3
    if [[ $host == msvc ]]; then
      check "$host: by its filter, called once, $uncaught" test "$(cat said.txt)" = \
        "ok: the host's filter is given the text in its own form"
    else
      check "$host: by std::terminate, $uncaught" grep -q '^terminate called after throwing' error.log
    fi
  done
done

echo "$passed passed, $failed failed"
((failed == 0))
