#!/usr/bin/env bash
# The checked-in samples are what their script makes.
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1
if samples/generate.py --check; then
  echo "1 passed, 0 failed"
else
  echo "0 passed, 1 failed"
  exit 1
fi
