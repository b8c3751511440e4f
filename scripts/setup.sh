#!/usr/bin/env bash
# Installs the Debian packages that are missing, fetches the sources of libraries that there are no
# packages of, and nothing else.
#
#   scripts/setup.sh [GROUP...]      groups: build, program, package, test, bench (default: build)
#
# Silent when nothing is missing. Without root or password-free sudo it prints the command to
# run and exits with 1.
set -euo pipefail

# group | packages | how to see that it is there | why it is needed
#   how: "package" asks dpkg; any other word is a program to look for on PATH, so that a program
#   installed by other means is left as it is.
needed='
build | cmake                        | cmake           | configures the build
build | ninja-build                  | ninja           | runs the build
build | g++                          | g++             | the native compiler
build | g++-mingw-w64-x86-64-posix   | package         | the compiler for 64-bit Windows
build | wine64 wine                  | package         | runs the Windows programs
build | xvfb                         | Xvfb            | the screen on which they show their boxes
program | cmake                      | cmake           | configures the build
program | ninja-build                | ninja           | runs the build
program | g++                        | g++             | the native compiler
program | libcli11-dev               | package         | arguments of the command-line program
program | nlohmann-json3-dev         | package         | the JSON model
program | zlib1g-dev                 | package         | packs exchange files
program | libexpat1-dev              | package         | reads workbooks
program | dpkg-dev                   | dpkg-source     | unpacks sources of libraries, for the page
program | patch                      | patch           | as above
program | nodejs                     | node            | builds the page
program | npm                        | npm             | its packages
program | emscripten                 | emcc            | compiles the exporter of the page
package | g++-mingw-w64-x86-64-posix | package         | the compiler for 64-bit Windows
package | libz-mingw-w64-dev         | package         | packs exchange files, there
package | dpkg-dev                   | dpkg-shlibdeps  | knows what the Debian packages need
package | python3                    | package         | packs the zip and the wheels
test  | googletest                   | package         | sources of GoogleTest, built for every target
test  | clang                        | clang++         | second compiler; sanitizers and fuzzing
test  | libclang-rt-14-dev           | package         | run-time libraries of the sanitizers
test  | llvm                         | llvm-symbolizer | line numbers in the reports of the sanitizers; import libraries
test  | lld                          | lld-link        | links the test host of the MSVC binary interface
test  | clang-format                 | clang-format    | checks the layout of the sources
test  | clang-tidy                   | run-clang-tidy  | static check
test  | libclang-14-dev llvm-14-dev  | package         | keeps that to the sources of the project
test  | ccache                       | ccache          | what several stages build is compiled once
test  | cppcheck                     | cppcheck        | static check
test  | shellcheck                   | shellcheck      | static check of the scripts
test  | python3                      | python3         | test helpers, generators of the samples
test  | python3-jsonschema           | package         | checks the samples against the schema
test  | python3-pytest               | package         | tests the Python package
test  | python3-numpy                | package         | arrays, as its callers have them
test  | mypy                         | mypy            | checks its types
test  | pkgconf                      | pkg-config      | finds the installed library
test  | python3-venv                 | package         | an empty Python for the wheel
test  | mmdebstrap                   | mmdebstrap      | an empty Debian for its packages
test  | strace                       | strace          | counts the write calls of an export
test  | libcli11-dev                 | package         | arguments of the command-line program
test  | nlohmann-json3-dev           | package         | the JSON model
test  | zlib1g-dev                   | package         | packs exchange files
test  | libexpat1-dev                | package         | reads workbooks
test  | libz-mingw-w64-dev           | package         | the same, for Windows
test  | dpkg-dev                     | dpkg-source     | unpacks sources of libraries, for Windows and the page
test  | patch                        | patch           | as above
test  | nodejs                       | node            | independent IFC readers, viewer
test  | npm                          | npm             | their packages
test  | emscripten                   | emcc            | compiles the exporter of the page
test  | chromium                     | chromium        | shows the pages in their tests
test  | firefox-esr                  | firefox-esr     | shows them, too
test  | libgl1-mesa-dri              | package         | draws its pictures without a graphics card
test  | libgl1                       | package         | as above
bench | libbenchmark-dev             | package         | Google Benchmark
bench | valgrind                     | valgrind        | counts instructions
bench | libifcplusplus-dev           | package         | another writer, to compare with
bench | libboost-dev                 | package         | headers that it needs
bench | libcli11-dev                 | package         | arguments of the command-line program
bench | nlohmann-json3-dev           | package         | the JSON model
bench | zlib1g-dev                   | package         | packs exchange files
bench | libexpat1-dev                | package         | reads workbooks
bench | nodejs                       | node            | runs the other writer, web-ifc
bench | npm                          | npm             | fetches it
bench | python3                      | python3         | prints the table
bench | python3-numpy                | package         | arrays, for the Python package
'

die() { echo "setup: $*" >&2; exit 1; }

groups=" ${*:-build} "
for group in $groups; do
  case $group in build | program | package | test | bench) ;; *) die "unknown group '$group' (groups: build, program, package, test, bench)" ;; esac
done

installed() { [[ $(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null) == installed ]]; }

missing=() reasons=()
while IFS='|' read -r group packages how why; do
  [[ $groups == *" ${group// /} "* ]] || continue
  how=${how// /}
  if [[ $how != package ]]; then
    command -v "$how" >/dev/null && continue
  fi
  for package in $packages; do
    if [[ $how != package ]] || ! installed "$package"; then
      missing+=("$package")
      reasons+=("  $(printf '%-28s' "$package")${why# }")
    fi
  done
done < <(sed '/^$/d' <<<"$needed")

# Libraries that Debian does not have for Windows and for the page.
library_sources() {
  [[ $groups != *" program "* && $groups != *" test "* ]] || "$(dirname "${BASH_SOURCE[0]}")/library_sources.sh"
}

if ((${#missing[@]} == 0)); then
  library_sources
  exit 0
fi

command -v apt-get >/dev/null || die "apt-get not found; install by hand: ${missing[*]}"
as_root=()
if ((EUID != 0)); then
  if ! sudo -n true 2>/dev/null; then
    {
      echo "setup: these packages are missing and need root to install:"
      printf '%s\n' "${reasons[@]}"
      echo "Run:"
      echo "  sudo apt-get update && sudo apt-get install --no-install-recommends ${missing[*]}"
    } >&2
    exit 1
  fi
  as_root=(sudo -n)
fi

echo "setup: installing ${#missing[@]} packages:"
printf '%s\n' "${reasons[@]}"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
# The apt lock may be held by an unattended upgrade: wait for it.
apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300)
if ! { "${apt[@]}" update && "${apt[@]}" install -y --no-install-recommends "${missing[@]}"; } \
    </dev/null >"$log" 2>&1; then
  tail -n 20 "$log" >&2
  die "apt-get failed (above)"
fi
library_sources
