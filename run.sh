#!/usr/bin/env bash
# Exports a model file (batch text format) through exportIFC.dll, under Wine.
#
#   ./run.sh [MODEL.txt [OUT.ifc]]
#
#   MODEL.txt   the model, which stays untouched; samples/galpao.txt if left out
#   OUT.ifc     the exchange file; out/<name of MODEL>.ifc if left out
#
# Installs what the build needs, builds what has changed, and says what the file holds. Message
# boxes of the module are answered with Yes or OK and printed. TIMEOUT limits the export, in
# seconds (default 600).
#
# Exit codes: 0 fine, 1 the export or the build failed, 2 bad use or an unreadable model,
# 3 the output cannot be written.
set -euo pipefail

die() { echo "run.sh: $2" >&2; exit "$1"; }

case "${1-}" in
  -h | --help) sed -n '2,/^set/s/^# \{0,1\}//p' "$0"; exit 0 ;;
  -*) die 2 "unknown option '$1' (see ./run.sh --help)" ;;
esac
(($# <= 2)) || die 2 "at most two arguments: MODEL.txt OUT.ifc (see ./run.sh --help)"

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
model=${1:-$root/samples/galpao.txt}
if (($# == 2)); then
  out=$2
else
  name=$(basename "$model")
  out=$root/out/${name%.txt}.ifc
  mkdir -p "$root/out" || die 3 "cannot create the folder $root/out"
fi

[[ -e $model ]] || die 2 "no such model file: $model"
[[ -f $model && -r $model ]] || die 2 "not a readable file: $model"
folder=$(dirname "$out")
[[ -d $folder ]] || die 3 "no such folder for the output: $folder"
[[ ! -d $out ]] || die 3 "the output is a folder: $out"
[[ -w $folder && (! -e $out || -w $out) ]] || die 3 "not writable: $out"
[[ ! $model -ef $out ]] || die 3 "the output must not be the model itself: $out"

"$root/scripts/setup.sh" build

# A folder of this run, with plain names: the module's narrow paths cannot hold every character.
mkdir -p "$root/build"
work=$(mktemp -d "$root/build/run.XXXXXX")
trap 'rm -rf "$work"' EXIT

if ! { cmake -S "$root" --preset windows -DEXPORTIFC_TESTS=OFF -DEXPORTIFC_PROGRAM=OFF \
  && cmake --build "$root/build/windows" --target exportIFC run_host; } >"$work/build.log" 2>&1; then
  tail -n 40 "$work/build.log" >&2
  die 1 "the build failed (above)"
fi

windows_path() { echo "Z:${1//\//\\}"; }

cp -- "$model" "$work/model.txt" || die 2 "cannot read $model"
"$root/scripts/wine.sh" --session true  # the first run on a machine prepares Wine: not timed
start=${EPOCHREALTIME/[.,]/}
"$root/scripts/wine.sh" "$root/build/windows/run_host.exe" \
  "$(windows_path "$root/build/windows/exportIFC.dll")" \
  "$(windows_path "$work/model.txt")" "$(windows_path "$work/out.ifc")" \
  || die 1 "the export failed"
micros=$((${EPOCHREALTIME/[.,]/} - start))

# Beside the target first, so that the old file stands until the new one is whole.
part=$(mktemp "$out.XXXXXX" 2>/dev/null) || die 3 "not writable: $out"
trap 'rm -rf "$work" "$part"' EXIT
if ! { cat "$work/out.ifc" >"$part" && chmod "$(printf '%o' $((0666 & ~$(umask))))" "$part" \
  && mv -f -- "$part" "$out"; }; then
  die 3 "cannot write $out"
fi

# The fifth line is the bar count, twelve lines a bar follow; a file may hold fewer than it says.
awk -v out="$out" -v seconds="$((micros / 1000000)).$(printf '%06d' $((micros % 1000000)))" '
  FNR == NR {
    if (FNR == 5) said = int($0) < 0 ? 0 : int($0)
    if (FNR > 5) lines++
    next
  }
  match($0, /^#[0-9]+= IFC(BEAM|COLUMN|MEMBER)\(/) {
    type = substr($0, RSTART, RLENGTH - 1); sub(/.* /, "", type); count[type]++; elements++
  }
  END {
    held = int((lines + 11) / 12)
    if (held == 0) print "run.sh: the model holds no bars; is it in the batch text format?" > "/dev/stderr"
    printf "%s\n", out
    printf "%d bars, %d elements", (said < held ? said : held), elements
    printf " (IFCBEAM %d, IFCCOLUMN %d, IFCMEMBER %d), %.1f s\n", count["IFCBEAM"],
      count["IFCCOLUMN"], count["IFCMEMBER"], seconds
  }' "$work/model.txt" "$out"
