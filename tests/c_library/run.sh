#!/usr/bin/env bash
# The library for other languages as it is installed: found by CMake and by pkg-config, used by C
# programs of two compilers, the same file as the program's.
#
#   tests/c_library/run.sh BUILD     build/linux, or build/windows for the same under Wine
#
# c_host.c says what else is checked. Ends with "N passed, N failed".
set -uo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
build=$(cd "${1:-$root/build/linux}" && pwd)
cd "$root" || exit 1
# shellcheck source=tests/support/outcome.sh
. tests/support/outcome.sh

# shellcheck disable=SC2016  # the marks of a block
same "the document shows the example" "$(sed -n '/^```c$/,/^```$/{/^```/d;p}' docs/library.md)" \
  "$(sed 1d examples/export_model.c)"

installed=$work/"instalação ç"
holds "it is installed alone" cmake --install "$build" --component library --prefix "$installed"

# pc WORDS: what pkg-config says of the installed library, one word a line.
pc() { PKG_CONFIG_PATH=$(dirname "$pc_file") pkg-config "$@" exportifc; }
pc_file=$(find "$installed" -name exportifc.pc)
package=$(dirname "$(find "$installed" -name exportifcConfig.cmake)")
library=$(find "$installed" -name 'libexportifc.so' -o -name 'exportifc-[0-9]*.dll')
warnings=(-std=c99 -Wall -Wextra -Wpedantic -Wconversion -Werror)
configured=(-S tests/c_library -B "$work/build" -G Ninja "-Dexportifc_DIR=$package")
# shellcheck disable=SC2034  # by their names, below
if [[ -e $build/exportIFC.dll ]]; then
  runner=("$root/scripts/wine.sh") suffix=.exe clang=(clang --target=x86_64-w64-mingw32 --ld-path=/usr/bin/x86_64-w64-mingw32-ld
    "-L/usr/lib/gcc/x86_64-w64-mingw32/$(x86_64-w64-mingw32-gcc-posix -dumpversion)" -Wno-unused-command-line-argument)
  gcc=(x86_64-w64-mingw32-gcc-posix)
  configured+=(--toolchain "$root/cmake/mingw-w64.cmake")
else
  runner=() suffix='' clang=(clang) gcc=(gcc)
  export LD_LIBRARY_PATH=${library%/*}
fi

holds "CMake finds it" cmake "${configured[@]}"
holds "and builds two programs with it" cmake --build "$work/build"
same "pkg-config knows its version" "$(pc --modversion)" \
  "$(sed -nE 's/^project\(.* VERSION ([0-9.]+) .*/\1/p' CMakeLists.txt)"
# Paths with blanks come escaped.
eval "flags=($(pc --cflags --libs))"
for compiler in gcc clang; do
  declare -n command=$compiler
  # shellcheck disable=SC2154  # by pkg-config, above
  holds "$compiler builds the example" "${command[@]}" "${warnings[@]}" examples/export_model.c \
    "${flags[@]}" -o "$work/build/export_$compiler$suffix"
  holds "$compiler builds the host" "${command[@]}" "${warnings[@]}" tests/c_library/c_host.c \
    "${flags[@]}" -o "$work/build/host_$compiler$suffix"
done
[[ -z $suffix ]] || cp "$library" "$work/build"  # where Windows looks first

cp samples/galpao.json samples/familias.json "$work/build"
cd "$work/build" || exit 1
masked() { "$root/tests/support/model_files.py" "$1"; }
for model in galpao familias; do
  holds "the program exports $model" "${runner[@]}" "$build/exportifc$suffix" export -q $model.json -o wanted.ifc
  for program in export_model export_gcc export_clang; do
    holds "$program exports $model" "${runner[@]}" "./$program$suffix" $model.json $program.ifc
    holds "$program writes the program's bytes of $model" cmp <(masked $program.ifc) <(masked wanted.ifc)
  done
done
expect "the example says what is wrong" 3 'cannot read no.json: the file does not exist' \
  "${runner[@]}" "./export_model$suffix" no.json no.ifc
expect "and writes over no model" 2 'it is the model itself' \
  "${runner[@]}" "./export_model$suffix" galpao.json galpao.json
holds "which stays" cmp galpao.json "$root/samples/galpao.json"

for host in c_host host_gcc host_clang; do
  "${runner[@]}" "./$host$suffix" >said.txt 2>error.log
  code=$?
  tr -d '\r' <said.txt >lines.txt
  passed=$((passed + $(grep -c '^ok: ' lines.txt)))
  failed=$((failed + $(grep -c '^FAILED: ' lines.txt)))
  sed -n "s/^FAILED: /not as it should be: $host, /p" lines.txt
  same "$host runs to its end" "$code $(tail -n 1 lines.txt)" '0 end'
done

end
