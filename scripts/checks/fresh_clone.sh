#!/usr/bin/env bash
# The README's native way, from a fresh clone of what is committed: its commands give a file and a
# page. And what CMake says where a package is missing.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1
# shellcheck source=tests/support/outcome.sh
. tests/support/outcome.sh

root=$PWD
git clone -q "$root" "$work/clone" && cd "$work/clone" || exit 1
export CCACHE_BASEDIR=$PWD  # a compiler cache, if there is one, knows the files here

# ---- a missing package: the message names the group that has it

mkdir "$work/bin"
for program in bash cmake ninja gcc g++ dirname env find cmp; do
  ln -s "$(command -v "$program")" "$work/bin/$program"
done

# lacks PROGRAM GROUP PRESET: on a path without it
lacks() {
  local path=$work/without-$1
  cp -a "$work/bin" "$path"
  rm -f "$path/$1"
  expect "no $1" 1 "${1//+/\\+} is not installed: run scripts/setup.sh $2" \
    env PATH="$path" cmake --preset "$3" -B "$work/build-$1"
}
lacks ninja program linux
lacks g++ program linux
lacks gcc program linux
lacks clang test clang
lacks x86_64-w64-mingw32-g++-posix build windows

expect "no CLI11" 1 'CLI/CLI.hpp is not installed: run scripts/setup.sh program' \
  cmake --preset linux -B "$work/build-cli11" -DEXPORTIFC_HEADER_PLACES="$work/bin"
expect "no zlib" 1 'zlib is not installed: run scripts/setup.sh program' \
  cmake --preset linux -B "$work/build-zlib" -DCMAKE_DISABLE_FIND_PACKAGE_ZLIB=ON
expect "no expat" 1 'expat is not installed: run scripts/setup.sh program' \
  cmake --preset linux -B "$work/build-expat" -DCMAKE_DISABLE_FIND_PACKAGE_EXPAT=ON
expect "no sources of expat" 1 'xmlparse.c is not installed: run scripts/setup.sh program' \
  cmake --preset windows -B "$work/build-sources" -DEXPORTIFC_LIBRARY_SOURCES="$work/bin"
expect "no GoogleTest" 1 'run scripts/setup.sh test' \
  cmake --preset linux -B "$work/build-gtest" -DEXPORTIFC_GOOGLETEST_DIR="$work/bin"
expect "no Node.js" 1 'node is not installed: run scripts/setup.sh program' \
  env PATH="$work/bin" page/build.sh

# ---- the README's commands as they stand

mapfile -t commands < <(awk '/^```sh$/ { block++; inside = 1; next } /^```$/ { inside = 0 }
  inside && block == 2' README.md)
((${#commands[@]} == 3)) || { echo "README.md: not three commands"; ((++failed)); }
for command in "${commands[@]}"; do
  expect "$command" 0 '' bash -c "$command"
done
held_in out/galpao.html >"$work/held.ifc"
expect "the page holds the structure" 0 '' cmp "$work/held.ifc" out/galpao.ifc
expect "nothing is left that git would see" 0 '^$' bash -c 'git status --porcelain; echo'

# ---- the page is built after the program

rm -rf page/dist build/linux/viewer.html
cmake --build build/linux --target exportifc_program exportifc_viewer_page >/dev/null
page/build.sh >/dev/null
expect "the page laid beside the program" 0 '' \
  build/linux/exportifc view out/galpao.ifc -o out/again.html
expect "the same page" 0 '' cmp out/galpao.html out/again.html

end
