#!/usr/bin/env bash
# Builds build/page/exporter.wasm, the exporter of the page, from what has changed.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

if ! command -v emcc >/dev/null; then
  echo "page/exporter/build.sh: emcc is not installed: run scripts/setup.sh program" >&2
  exit 1
fi
cmake --preset page >/dev/null
cmake --build --preset page
