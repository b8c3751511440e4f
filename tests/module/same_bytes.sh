#!/usr/bin/env bash
# Exports the same models through the modules of two builds and compares the files, GlobalIds masked.
#
#   tests/module/same_bytes.sh LINUX_BUILD WINDOWS_BUILD
#
# The samples and random models run in batch mode, random frames through the host's queries.
set -uo pipefail

(($# == 2)) || { sed -n '2,/^set/{/^set/d;s/^# \{0,1\}//;p}' "$0"; exit 2; }
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

# One Wine session for all exports: each then starts at once.
if [[ -z ${SAME_BYTES_IN_SESSION-} ]]; then
  exec env SAME_BYTES_IN_SESSION=1 "$root/scripts/wine.sh" --session "$0" "$@"
fi

linux=$(cd "$1" && pwd) && windows=$(cd "$2" && pwd) || exit 2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
bars=5000
passed=0 failed=0

windows_path() { local path=${1//\//\\}; echo "Z:$path"; }

# The masked identifiers of generated lines; those of the preamble are constants and must agree.
count_ids() { LC_ALL=C grep -cE "^#[0-9]+= [A-Z]+\('GlobalId'" "$1"; }

# compare NAME: the two files of a model, both written by now.
compare() {
  local name=$1 a=$work/$1.linux.ifc b=$work/$1.windows.ifc
  if [[ ! -s $a || ! -s $b ]]; then
    echo "failed: $name: a file is missing"
  elif ! tail -c 100 "$a" | grep -q '^END-ISO-10303-21;'; then
    echo "failed: $name: no trailer"
  elif ! { "$root/tests/support/model_files.py" "$a" >"$a.masked" \
           && "$root/tests/support/model_files.py" "$b" >"$b.masked"; }; then
    echo "failed: $name: cannot mask its GlobalIds"
  elif (($(count_ids "$a.masked") == 0)); then
    echo "failed: $name: no GlobalIds found"
  elif ! cmp "$a.masked" "$b.masked"; then
    echo "failed: $name: the files differ:"
    diff "$a.masked" "$b.masked" | head -n 6
  else
    echo "passed: $name ($(wc -c <"$a") bytes, $(count_ids "$a.masked") GlobalIds)"
    ((passed += 1))
    return
  fi
  ((failed += 1))
}

batch() {
  local name=$1 model=$2
  "$linux/run_host" "$linux/libexportIFC.so" "$model" "$work/$name.linux.ifc" \
    >"$work/log" 2>&1 || cat "$work/log"
  "$root/scripts/wine.sh" "$windows/run_host.exe" "$(windows_path "$windows/exportIFC.dll")" \
    "$(windows_path "$model")" "$(windows_path "$work/$name.windows.ifc")" \
    >"$work/log" 2>&1 || cat "$work/log"
  compare "$name"
}

frame() {
  local name=$1 unit=$2
  "$linux/tests/module/random_frame" "$linux/libexportIFC.so" "$work/$name.linux.ifc" \
    "$bars" "$unit" || true
  "$root/scripts/wine.sh" "$windows/tests/module/random_frame.exe" \
    "$(windows_path "$windows/exportIFC.dll")" "$(windows_path "$work/$name.windows.ifc")" \
    "$bars" "$unit" || true
  compare "$name"
}

for sample in "$root"/samples/*.txt; do
  batch "$(basename "$sample" .txt)" "$sample"
done
for unit in 0 1 2; do
  "$linux/tests/module/random_frame" --batch "$work/random.txt" "$bars" "$unit"
  batch "random-batch-unit-$unit" "$work/random.txt"
  frame "random-frame-unit-$unit" "$unit"
done

echo "$passed passed, $failed failed"
((failed == 0))
