#!/usr/bin/env bash
# Counts the write calls of a native export: as many as the file has lines, each one whole line.
#
#   bench/write_count.sh BUILD_DIR      the folder with run_host and libexportIFC.so
#
# Ends with "N passed, N failed".
set -euo pipefail

build=$(cd "${1:?BUILD_DIR}" && pwd)
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=tests/support/outcome.sh
. "$root/tests/support/outcome.sh"

for model in galpao familias; do
  out=$work/$model.ifc
  # run_host hands the module a copy of the model, which it replaces: the calls to "….parttemp" count.
  # -y shows the file behind each descriptor, -e write the calls, -s the bytes.
  strace -f -y -s 65536 -e trace=write,writev,pwrite64 -o "$work/trace" \
    "$build/run_host" "$build/libexportIFC.so" "$root/samples/$model.txt" "$out" >/dev/null 2>&1
  grep -F "<${out}.parttemp>" "$work/trace" >"$work/calls" || true
  lines=$(wc -l <"$out")
  same "$model: write calls for $lines lines" "$(wc -l <"$work/calls")" "$lines"
  same "$model: calls that end with their line" "$(grep -c '\\r\\n", [0-9]*)' "$work/calls")" "$lines"
  same "$model: bytes taken" "$(awk '{ sum += $NF } END { print sum }' "$work/calls")" "$(wc -c <"$out")"

  # The same count as the kernel keeps it, over the whole process: the export and nothing but
  # what the host program and the unknown profile of a sample print.
  strace -f -c -e trace=write -o "$work/count" \
    "$build/run_host" "$build/libexportIFC.so" "$root/samples/$model.txt" "$out" >"$work/printed" 2>&1
  calls=$(awk '$NF == "write" { print $4 }' "$work/count")
  printed=$(wc -l <"$work/printed")
  holds "$model: $calls calls of the whole process, $lines and at most a few more" \
    test "$calls" -ge "$lines" -a "$calls" -le $((lines + 2 * printed + 2))
done

end
