#!/usr/bin/env bash
# Tests of the Python package against a built library, and of its types.
#
#   python/test.sh [BUILD]     build/linux if left out
#
# Debian's own Python, whose pytest and numpy setup.sh installs. Ends with "N passed, N failed".
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
build=$PWD/${1:-build/linux}
report=$(mktemp)
types=$(mktemp -d)
trap 'rm -rf "$report" "$types"' EXIT

export EXPORTIFC_LIBRARY=$build/libexportifc.so.1 EXPORTIFC_PROGRAM=$build/exportifc PYTHONPATH=$PWD/python PYTHONDONTWRITEBYTECODE=1
/usr/bin/python3 -m pytest -q -p no:cacheprovider --junit-xml "$report" python/tests
counts=$(/usr/bin/python3 - "$report" <<'PY'
import sys, xml.etree.ElementTree
suite = next(xml.etree.ElementTree.parse(sys.argv[1]).iter("testsuite")).attrib
bad = sum(int(suite[key]) for key in ("failures", "errors", "skipped"))
print(int(suite["tests"]) - bad, bad)
PY
) || counts='0 1'
read -r passed failed <<<"$counts"
if (cd python && /usr/bin/python3 -m mypy --strict --cache-dir "$types" exportifc); then
  passed=$((passed + 1))
else
  failed=$((failed + 1))
fi
echo "$passed passed, $failed failed"
((failed == 0))
