#!/usr/bin/env bash
# Tests the page in a browser: test.sh [FOLDER]
#   FOLDER holds the built exportifc, run_host and libexportIFC.so (default: build/linux of the project).
set -euo pipefail
folder=$(realpath "${1:-$(dirname "$0")/../build/linux}")
cd "$(dirname "$0")"
./build.sh
exec node test/page.test.mjs "$folder"
