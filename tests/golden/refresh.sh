#!/usr/bin/env bash
# Writes the golden files anew from the samples, with the GlobalIds masked.
#
#   tests/golden/refresh.sh [UNIT_TESTS]    default: build/linux/tests/unit/unit_tests, built first
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
binary=${1-}
if [[ -z $binary ]]; then
  cd "$root"
  [[ -f build/linux/build.ninja ]] || cmake --preset linux >/dev/null
  cmake --build --preset linux --target unit_tests
  binary=$root/build/linux/tests/unit/unit_tests
fi
EXPORTIFC_REFRESH_GOLDEN=1 "$binary" --gtest_filter='*GoldenFile*' --gtest_brief=1
ls -l "$root"/tests/golden/*.ifc
