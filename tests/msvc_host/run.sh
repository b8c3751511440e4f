#!/usr/bin/env bash
# The DLL in a host of Microsoft's binary interface, and in the same host built for mingw-w64; the
# library for other languages in a host in C of that interface.
#
#   tests/msvc_host/run.sh [BUILD]     default build/windows
#
# host.cpp says what each case does, tests/c_library/c_host.c what is asked of the library. Ends with "N passed, N failed".
set -uo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
build=$(cd "${1:-$root/build/windows}" && pwd)
source=tests/msvc_host
cd "$root" || exit 1
# shellcheck source=tests/support/outcome.sh
. tests/support/outcome.sh

warnings=(-Wall -Wextra -Wpedantic -Wconversion -Werror)

# Without Microsoft's headers and libraries: the system's functions by name alone.
for library in kernel32 vcruntime140 msvcrt; do
  holds "the functions of $library" \
    llvm-dlltool -m i386:x86-64 -d "$source/$library.def" -l "$work/$library.lib"
done
holds "clang builds the host for Microsoft's interface" \
  clang++ --target=x86_64-pc-windows-msvc -std=c++20 -ffreestanding -fexceptions -fcxx-exceptions \
  -O1 "${warnings[@]}" -Iinclude -c $source/host.cpp -o "$work/host.obj"
holds "and lld links it" \
  lld-link /nologo /subsystem:console /entry:mainCRTStartup /nodefaultlib \
  "/out:$work/msvc.exe" "$work/host.obj" "$work/kernel32.lib" "$work/vcruntime140.lib"

holds "GCC builds it for mingw-w64" \
  x86_64-w64-mingw32-g++-posix -std=c++20 -O1 "${warnings[@]}" -Iinclude $source/host.cpp \
  -o "$work/gcc.exe" -static
# With the headers and libraries of the posix-thread variant of GCC.
runtime=/usr/lib/gcc/x86_64-w64-mingw32/$(x86_64-w64-mingw32-g++-posix -dumpversion)
holds "clang builds it for mingw-w64" \
  clang++ --target=x86_64-w64-mingw32 -std=c++20 -O1 "${warnings[@]}" -Wno-unused-command-line-argument \
  -isystem "$runtime/include/c++" -isystem "$runtime/include/c++/x86_64-w64-mingw32" -Iinclude \
  $source/host.cpp -o "$work/clang.exe" -static --ld-path=/usr/bin/x86_64-w64-mingw32-ld "-L$runtime" \
  -lstdc++ -lgcc_eh -lpthread  # the last for the two before it

# count_said HOST COMMAND...: runs it here; the checks of the host count as ours.
count_said() {
  "${@:2}" >run.log 2>error.log
  code=$?
  tr -d '\r' <run.log >said.txt
  passed=$((passed + $(grep -c '^ok: ' said.txt)))
  failed=$((failed + $(grep -c '^FAILED: ' said.txt)))
  sed -n "s/^FAILED: /not as it should be: $1, /p" said.txt
}

# run HOST CASE: in a folder of its own.
run() {
  local folder=$work/$1-$2
  mkdir "$folder" && cd "$folder" || exit 1
  cp "$root/samples/galpao.txt" modelo.txt
  cp "$build/exportIFC.dll" "$work/$1.exe" .
  count_said "$1" "$root/scripts/wine.sh" "./$1.exe" exportIFC.dll "$2"
}

whole() { [[ $(head -c 13 "$1") == 'ISO-10303-21;' && $(tail -n 1 "$1" | tr -d '\r') == 'END-ISO-10303-21;' ]]; }

bars=$(sed -n 5p samples/galpao.txt | tr -dc 0-9)
for host in msvc gcc clang; do
  run $host caught
  holds "$host: all cases of a caught text run" test "$code $(tail -n 1 said.txt)" = '0 end'
  holds "$host: the file of the next export is whole" whole modelo.txt
  holds "$host: every bar is in it" test \
    "$(grep -cE 'IFC(BEAM|COLUMN|MEMBER)\(' modelo.txt)" -ge "$bars"

  run $host callback
  holds "$host: all cases of a callback that throws run" test "$code $(tail -n 1 said.txt)" = '0 end'
  holds "$host: the export after them is whole" whole saida.ifc

  # Each library's own end of a process: 3.
  for uncaught in uncaught thread; do
    run $host $uncaught
    holds "$host: the host ends in its own way, $uncaught" test $code = 3
    if [[ $host == msvc ]]; then
      holds "$host: by its filter, called once, $uncaught" test "$(cat said.txt)" = \
        "ok: the host's filter is given the text in its own form"
    else
      holds "$host: by std::terminate, $uncaught" grep -q '^terminate called after throwing' error.log
    fi
  done
done

cd "$root" || exit 1
# Compiled without Microsoft's headers, linked with what the library's users are given.
of_microsoft=(clang --target=x86_64-pc-windows-msvc -std=c99 -ffreestanding -O1 "${warnings[@]}" "-I$source/c_runtime")
holds "clang builds the host in C for Microsoft's interface" \
  "${of_microsoft[@]}" -Iinclude -c tests/c_library/c_host.c -o "$work/c_host.obj"
holds "and what its compiler would bring" "${of_microsoft[@]}" -c "$source/c_runtime/start.c" -o "$work/start.obj"
holds "and lld links it with the library" \
  lld-link /nologo /subsystem:console /entry:mainCRTStartup /nodefaultlib "/out:$work/c_host.exe" \
  "$work/c_host.obj" "$work/start.obj" "$work/msvcrt.lib" "$build/libexportifc.dll.a"
cp "$build"/exportifc-[0-9]*.dll "$work"
cd "$work" || exit 1
count_said c_host "$root/scripts/wine.sh" ./c_host.exe
same "the host in C runs to its end" "$code $(tail -n 1 said.txt)" '0 end'

end
