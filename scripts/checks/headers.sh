#!/usr/bin/env bash
# Each header compiles on its own; the public ones also as C, with each compiler, for each system.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1

warnings=(-Wall -Wextra -Wpedantic -Wconversion -Werror -fsyntax-only -I. -Iinclude)
passed=0 failed=0

# compiles HEADER COMPILER LANGUAGE STANDARD
compiles() {
  local code="#include \"$1\"" compiler
  read -ra compiler <<<"$2"
  # A system that lacks the headers of the other is told so by the header itself.
  if "${compiler[@]}" -x "$3" "-std=$4" "${warnings[@]}" - <<<"$code"; then
    ((++passed))
  else
    ((++failed))
    echo "$1 does not compile with $2 as $4"
  fi
}

# Microsoft's interface, with the headers that need no library.
microsoft='--target=x86_64-pc-windows-msvc -ffreestanding'
for header in exportifc/plugin.h exportifc/library.h; do
  for compiler in gcc clang x86_64-w64-mingw32-gcc-posix "clang $microsoft"; do
    compiles "$header" "$compiler" c c99
    compiles "$header" "$compiler" c c17
  done
  for compiler in g++ clang++ x86_64-w64-mingw32-g++-posix "clang++ $microsoft"; do
    for standard in c++11 c++20; do
      compiles "$header" "$compiler" c++ "$standard"
    done
  done
done

# Where GCC builds without precompiled headers, a source file that includes its own header first shows it.
shown_by_its_source() {
  [[ $1 =~ ^(plugin|model|step|elements|profiles|platform|library|cli)/ && -f ${1%.h}.cpp ]] \
    && [[ $(grep -m 1 '^#include' "${1%.h}.cpp") == "#include \"$1\"" ]]
}
while read -r header; do
  if shown_by_its_source "$header"; then
    ((++passed))
  else
    compiles "$header" g++ c++ c++20
  fi
done < <(git ls-files -co --exclude-standard '*.h')

echo "$passed passed, $failed failed"
((failed == 0))
