#!/usr/bin/env bash
# Builds everything that people install, and packs it.
#
#   ./package.sh [FOLDER]    dist/ if left out
#
# Installs what the build needs (scripts/setup.sh program package). In the folder lie then: a zip for Windows, Debian
# packages, a tar.gz for other Linux systems, Python wheels, and SHA256SUMS. Packages of one commit are the
# same bytes wherever they are made.
set -euo pipefail

case ${1-} in
  -h | --help) sed -n '2,/^set/{/^set/d;s/^# \{0,1\}//p}' "$0"; exit 0 ;;
  -*) echo "package.sh: unknown option '$1' (see ./package.sh --help)" >&2; exit 2 ;;
esac
mkdir -p "${1:-$(dirname "${BASH_SOURCE[0]}")/dist}"
target=$(cd "${1:-$(dirname "${BASH_SOURCE[0]}")/dist}" && pwd)
cd "$(dirname "${BASH_SOURCE[0]}")"

scripts/setup.sh program package
page/build.sh
for preset in windows linux; do
  cmake --preset "$preset" -DEXPORTIFC_TESTS=OFF
  cmake --build --preset "$preset"
done
packaging/make.sh "$target"
ls -l "$target"
