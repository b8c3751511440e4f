#!/usr/bin/env bash
# Counts the write calls of a native export: as many as the file has lines, each one whole line.
#
#   bench/write_count.sh BUILD_DIR      the folder with run_host and libexportIFC.so
#
# Ends with "N passed, N failed".
set -euo pipefail

build=$(cd "${1:?BUILD_DIR}" && pwd)
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
passed=0 failed=0

check() { # NAME EXPECTED ACTUAL
  if [[ $2 == "$3" ]]; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    echo "FAILED: $1: expected $2, got $3"
  fi
}

for model in galpao familias; do
  out=$work/$model.ifc
  # run_host hands the module a copy of the model, which it replaces: the calls to "….parttemp" count.
  # -y shows the file behind each descriptor, -e write the calls, -s the bytes.
  strace -f -y -s 65536 -e trace=write,writev,pwrite64 -o "$work/trace" \
    "$build/run_host" "$build/libexportIFC.so" "$root/samples/$model.txt" "$out" >/dev/null 2>&1
  grep -F "<${out}.parttemp>" "$work/trace" >"$work/calls" || true
  lines=$(wc -l <"$out")
  check "$model: write calls for $lines lines" "$lines" "$(wc -l <"$work/calls")"
  check "$model: calls that end with their line" "$lines" "$(grep -c '\\r\\n", [0-9]*)' "$work/calls")"
  check "$model: bytes taken" "$(wc -c <"$out")" "$(awk '{ sum += $NF } END { print sum }' "$work/calls")"

  # The same count as the kernel keeps it, over the whole process: the export and nothing but
  # what the host program and the unknown profile of a sample print.
  strace -f -c -e trace=write -o "$work/count" \
    "$build/run_host" "$build/libexportIFC.so" "$root/samples/$model.txt" "$out" >"$work/printed" 2>&1
  calls=$(awk '$NF == "write" { print $4 }' "$work/count")
  printed=$(wc -l <"$work/printed")
  if ((calls >= lines && calls <= lines + 2 * printed + 2)); then
    check "$model: calls of the whole process" 1 1
  else
    check "$model: calls of the whole process" "$lines and at most a few more" "$calls"
  fi
done

echo "$passed passed, $failed failed"
((failed == 0))
