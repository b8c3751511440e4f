#!/usr/bin/env bash
# Builds the benchmarks, runs them and prints the table of goals: goal, measured, verdict.
#
#   ./bench.sh [--record]   all of it, about twenty minutes
#   ./bench.sh quick        smaller models, some minutes: a look, no verdict to quote
#
# --record keeps the values as a further run in docs/figures and puts them into the documents.
#
# bench/README.md says which data, which command, what each ratio means. The numbers of all
# measurements stay in $BENCH_WORK/results.
#
#   BENCH_WORK   folder for models and outputs, build/bench if unset; its file system is the one
#                that is measured
#   BENCH_LINUX, BENCH_WINDOWS   build folders, build/bench-linux and build/bench-windows if unset
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
cd "$root"
work=${BENCH_WORK:-build/bench}
linux=${BENCH_LINUX:-build/bench-linux}
windows=${BENCH_WINDOWS:-build/bench-windows}
mkdir -p "$work"
results=$work/results
: >"$results"

case ${1-} in
  '' | --record) bars=100000 rounds=11 pairs=25 processes=7 large=1000000 ;;
  quick) bars=100000 rounds=3 pairs=5 processes=3 large=100000 ;;
  *) sed -n '2,/^set/{/^set/d;s/^# \{0,1\}//;p}' "$0"; exit 2 ;;
esac

scripts/setup.sh build bench

say() { echo "bench: $*" >&2; }

say "building"
build() { # PRESET FOLDER TARGET...
  if ! { cmake --preset "$1" -B "$2" -DEXPORTIFC_BENCH=ON -DEXPORTIFC_TESTS=OFF \
      && cmake --build "$2" --target "${@:3}"; } >"$work/build.log" 2>&1; then
    tail -n 20 "$work/build.log" >&2
    exit 1
  fi
}
build linux "$linux" goals pieces json_read workbook_read ifcplusplus_writer exportifc_program exportifc_shared
build windows "$windows" goals
goals=$linux/bench/goals

for kind in all built-up simple; do
  for count in 1000 10000 "$bars" "$large"; do
    [[ $kind == all || $count == "$large" || $count -le 10000 ]] || continue
    "$goals" model samples/galpao.txt "$kind" "$count" "$work/$kind-$count.txt"
  done
done

measure() { # COMMAND...  appends "name value" lines to the results
  say "$*"
  "$@" >>"$results"
}

# Many short pairs: the two of a pair then meet the machine in the same mood. Several processes: how
# one happens to lie in memory is a hundredth or two.
for ((process = 0; process < processes; ++process)); do
  measure "$goals" floor "$work/all-10000.txt" "$pairs"
done
say "the same, $bars bars"
"$goals" floor "$work/all-$bars.txt" "$rounds" | sed 's/^/large_/' >>"$results"
say "the same, $large bars"
"$goals" floor "$work/all-$large.txt" 3 | sed 's/^/largest_/' >>"$results"
measure "$goals" format "$work/all-10000.txt" 41
measure "$goals" read "$work/all-$bars.txt" "$rounds"
measure "$goals" registry
measure "$goals" linear "$work/all-10000.txt" "$work/all-$large.txt" 3

# Peak memory of an export: the kernel's count for the process.
for kind in all built-up; do
  say "peak memory, $kind, $large bars"
  /usr/bin/env python3 - "$goals" "$work/$kind-$large.txt" "${kind/-/_}" >>"$results" <<'PY'
import resource, subprocess, sys
subprocess.run([sys.argv[1], 'export', sys.argv[2]], check=True)
print(f'peak_mb_{sys.argv[3]}', resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss * 1024 // 1000000)
PY
  rm -f "$work/$kind-$large.txttemp"
done

# Instructions a bar: the difference between two models, so that what an export does once is out.
for kind in all simple built-up; do
  say "instructions, $kind"
  for count in 1000 10000; do
    valgrind --tool=callgrind --callgrind-out-file=/dev/null "$goals" once "$work/$kind-$count.txt" \
      2>&1 >/dev/null | awk '/Collected/ { print $NF }'
  done | awk -v name="instructions_${kind/-/_}" \
    'NR == 1 { small = $1 } NR == 2 { printf "%s %d\n", name, ($1 - small) / 9000 }' >>"$results"
done

# The Windows code. Its model lies in the same folder; Wine sees it as a drive.
say "Windows code under Wine"
for ((process = 0; process < processes; ++process)); do
  scripts/wine.sh "$windows/bench/goals.exe" floor "Z:$(realpath "$work")/all-10000.txt" "$pairs" \
    | tr -d '\r' | sed 's/^/windows_/' >>"$results"
done

# Others: the same entities, written by them.
cp "$work/all-10000.txt" "$work/others.txt"
"$goals" export "$work/others.txt"
measure "$goals" entities "$work/all-10000.txt" "$rounds"
measure "$linux/bench/ifcplusplus_writer" "$work/others.txttemp" "$work/others.ifc" 5
mkdir -p "$work/webifc"
cp bench/writers/webifc/* "$work/webifc"
(cd "$work/webifc" && npm ci --no-audit --no-fund >npm.log 2>&1) || { cat "$work/webifc/npm.log" >&2; exit 1; }
measure node "$work/webifc/write.mjs" "$work/others.txttemp" "$work/others.ifc" 3

if [[ -x $linux/bench/json_read ]]; then
  "$linux/exportifc" convert "$work/all-10000.txt" --output "$work/all-10000.json" >/dev/null
  measure "$linux/bench/json_read" "$work/all-10000.json" "$rounds"
fi
if [[ -x $linux/bench/workbook_read ]]; then
  python3 bench/workbooks.py 50000 "$work"
  for kind in saf tables; do
    measure "$linux/bench/workbook_read" "$kind" "$work/$kind.xlsx" "$rounds"
  done
fi
rm -f "$work"/others.*
if [[ -f $linux/libexportifc.so ]]; then
  measure env EXPORTIFC_LIBRARY="$(realpath "$linux/libexportifc.so")" PYTHONPATH=python PYTHONDONTWRITEBYTECODE=1 \
    /usr/bin/python3 bench/python_arrays.py "$linux/exportifc" 10000 "$pairs" "$work"
fi

python3 bench/table.py "$results"
if [[ ${1-} == --record ]]; then
  python3 bench/table.py "$results" --values \
    | scripts/figures.py --record benchmarks './bench.sh --record' --append
fi
