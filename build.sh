#!/usr/bin/env bash
# Builds the command-line program and its page for this system, without the tests.
#
#   ./build.sh
#
# Installs what the build needs (scripts/setup.sh program) and builds what has changed. The program
# is build/linux/exportifc, the page lies beside it; the folder out/ is there for what they write.
set -euo pipefail

case "${1-}" in
  '') ;;
  -h | --help) sed -n '2,/^set/{/^set/d;s/^# \{0,1\}//p}' "$0"; exit 0 ;;
  *) echo "build.sh: no arguments, not '$1' (see ./build.sh --help)" >&2; exit 2 ;;
esac
cd "$(dirname "${BASH_SOURCE[0]}")"

scripts/setup.sh program
page/build.sh
cmake --preset linux -DEXPORTIFC_TESTS=OFF
cmake --build --preset linux --target exportifc_program exportifc_viewer_page
mkdir -p out
