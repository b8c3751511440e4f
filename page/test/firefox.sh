#!/usr/bin/env bash
# Tests both pages in Firefox: test/firefox.sh [FOLDER]
#   FOLDER holds the built exportifc, run_host and libexportIFC.so (default: build/linux of the project).
set -euo pipefail
folder=$(realpath "${1:-$(dirname "$0")/../../build/linux}")
cd "$(dirname "$0")/.."
./build.sh
exec xvfb-run -a -s '-screen 0 1300x900x24 +extension GLX' node test/firefox.test.mjs "$folder"
