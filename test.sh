#!/usr/bin/env bash
# Builds everything and runs the tests; ends with one line "N passed, N failed".
#
#   ./test.sh [--quick] [STAGE...]    all stages, or those named
#   ./test.sh --list                  the stages
#
#   --quick   leaves out the stages marked "full" below
#
# The output of each stage is in build/test-logs/STAGE.log; that of a failing one is shown too.
#
# First everything is built. Then the stages run in two lanes side by side: those with Wine in one,
# the others in the other, each in the order of the table; what only reads sources runs in the lane
# that is done first. At last come those that want to be alone, one after the other, and beside them what
# mostly waits.
#
#   CCACHE_DIR   what was compiled, for the stages that build the same again in a clone;
#                build/ccache if unset
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")" || exit 1

# name | when | what it needs, in this order | command
#
# Needs are the presets of CMake (of "clang" its unit tests), "page" (the viewer), "wine" (Wine stays
# up for the stage), "alone" (the stage uses both cores, or moves files that others read), "beside" (it
# has files of its own, and may run beside those) and "any" (it may run in either lane).
# A command ends with the line "N passed, N failed" and exits with 0 or 1. One that ends without
# that line, is killed or runs over $stage_limit counts as one failed test.
stages='
unit-asan      | quick | asan          | scripts/run_gtest.sh build/asan/tests/unit/unit_tests
unit-linux     | quick | linux         | scripts/run_gtest.sh build/linux/tests/unit/unit_tests
unit-clang     | full  | clang         | scripts/run_gtest.sh build/clang/tests/unit/unit_tests
unit-windows   | quick | windows wine  | scripts/run_gtest.sh build/windows/tests/unit/unit_tests.exe
library-asan   | quick | asan          | scripts/run_gtest.sh build/asan/tests/library/library_tests
library-linux  | quick | linux         | scripts/run_gtest.sh build/linux/tests/library/library_tests
library-windows | quick | windows wine | scripts/run_gtest.sh build/windows/tests/library/library_tests.exe
module-linux   | quick | linux         | scripts/run_gtest.sh build/linux/tests/module/module_tests
module-asan    | quick | asan          | scripts/run_gtest.sh build/asan/tests/module/module_tests
module-windows | quick | windows wine  | scripts/run_gtest.sh build/windows/tests/module/module_tests.exe
same-bytes     | quick | linux windows wine | tests/module/same_bytes.sh build/linux build/windows
same-as-page   | full  | page linux windows wine | tests/module/same_as_page.py build/page/exporter.wasm build/linux build/windows
python         | quick | linux         | python/test.sh build/linux
careless-asan  | quick | asan          | scripts/run_gtest.sh build/asan/tests/reliability/reliability_tests
careless-linux | quick | linux         | scripts/run_gtest.sh build/linux/tests/reliability/reliability_tests
careless-windows | quick | windows wine | scripts/run_gtest.sh build/windows/tests/reliability/reliability_tests.exe
faults-module  | full  | linux         | tests/reliability/module_faults.py build/linux
faults-windows | full  | windows wine  | tests/reliability/module_faults.py build/windows
faults-program | full  | linux         | tests/reliability/program_faults.py
faults-program-windows | full | windows wine | tests/reliability/program_faults.py build/windows/exportifc.exe
other-compiler | full  | windows wine  | tests/reliability/other_compiler.sh
c-library      | quick | linux         | tests/c_library/run.sh build/linux
c-library-windows | full | windows wine | tests/c_library/run.sh build/windows
threads        | full  |               | tests/c_library/threads.sh
msvc-host      | quick | windows wine  | tests/msvc_host/run.sh build/windows
fresh-clone    | full  |               | scripts/checks/fresh_clone.sh
helpers        | quick | page linux    | scripts/checks/helper_messages.sh build/linux
documented     | full  | beside        | scripts/checks/documented_commands.py
run            | quick | windows wine  | scripts/checks/run_command.sh
cli-linux      | quick | page linux    | tests/cli/run.py build/linux/exportifc
cli-windows    | full  | page linux windows wine | tests/cli/run.py build/windows/exportifc.exe --wine --native build/linux/exportifc
files-linux    | quick | linux         | tests/cli/random_files.py build/linux/exportifc
files-windows  | full  | windows wine  | tests/cli/random_files.py build/windows/exportifc.exe --wine --calls 200
readers        | full  | linux         | tests/readers/run.sh
viewer         | full  | page linux    | page/test.sh build/linux
firefox        | full  | page linux    | page/test/firefox.sh build/linux
writes         | quick | linux         | bench/write_count.sh build/linux
coverage       | full  | alone         | scripts/coverage.sh
samples        | quick | any           | scripts/checks/samples.sh
fuzz           | full  | any           | fuzz/short.sh
binary         | quick | windows linux wine | scripts/checks/binary.sh
package        | quick | page windows wine alone | scripts/checks/package.sh
packages       | full  | page linux windows wine | tests/packages/run.sh
notices        | full  | page          | scripts/third_party.py --check
reproducible   | full  | page linux windows wine | scripts/checks/reproducible.sh
ctest          | quick | linux         | scripts/checks/ctest.sh build/linux
figures        | quick | any           | scripts/figures.py --check
headers        | quick | any           | scripts/checks/headers.sh
rooms          | quick | any           | scripts/checks/rooms.py
fixed-shapes   | quick | any           | scripts/checks/fixed_shapes.sh
format         | quick | any           | scripts/checks/format.sh
shellcheck     | quick | any           | scripts/checks/shellcheck.sh
cppcheck       | full  | clang alone   | scripts/checks/cppcheck.sh
clang-tidy     | full  | clang alone   | scripts/checks/clang_tidy.sh
'
stage_limit=1200  # seconds
shown_lines=80    # the last ones of the log of a failing stage

usage() { sed -n '2,/^set/s/^# \{0,1\}//p' "$0"; }

now() { echo "${EPOCHREALTIME/[.,]/}"; }  # microseconds

rows() { sed -E '/^ *$/d; s/ *\| */|/g; s/ +$//' <<<"$stages"; }

quick='' chosen=()
for argument in "$@"; do
  case $argument in
    -h | --help) usage; exit 0 ;;
    --list) rows | awk -F'|' '{ printf "%-22s %-6s %-24s %s\n", $1, $2, $3, $4 }'; exit 0 ;;
    --quick) quick=1 ;;
    -*) echo "test.sh: unknown option '$argument'" >&2; exit 2 ;;
    *)
      rows | cut -d'|' -f1 | grep -qxF -- "$argument" \
        || { echo "test.sh: unknown stage '$argument' (see ./test.sh --list)" >&2; exit 2; }
      chosen+=("$argument")
      ;;
  esac
done

logs=build/test-logs
mkdir -p "$logs"
counts=$(mktemp "$logs/counts.XXXXXX")  # a line for each build and stage: passed, failed
taken=$(mktemp -d "$logs/taken.XXXXXX")  # a folder for each stage that a lane has begun
trap 'rm -rf "$counts" "$taken"' EXIT
started=$(now)
declare -A build_state=()

# Clones of this folder get what was compiled here: their paths count from their own roots, and
# their scripts say which these are.
export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
export CCACHE_DIR=${CCACHE_DIR:-$PWD/build/ccache} CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1
export CCACHE_SLOPPINESS=pch_defines,time_macros  # without which it knows no precompiled headers

# seconds START: since then, with one decimal.
seconds() {
  local micros=$(($(now) - $1))
  printf '%5d.%d s' $((micros / 1000000)) $((micros / 100000 % 10))
}

# report NAME START LOG PASSED FAILED: prints the line of a stage, whole, and keeps its counts.
report() {
  local name=$1 log=$3 passed=$4 failed=$5 text
  text=$(printf '%-22s %s   %d passed, %d failed' "$name" "$(seconds "$2")" "$passed" "$failed")
  if ((failed)); then
    text+=$'\n'"---- from $log"$'\n'
    # The messages of a compiler fill pages: of a build, the errors alone.
    text+=$({ { [[ $name == build-* ]] && grep -am 20 -E 'error:|Error ' "$log"; } \
      || tail -n "$shown_lines" "$log"; } | sed 's/^/  | /')
    text+=$'\n'"----"
  fi
  {
    flock 5
    echo "$text"
    echo "$passed $failed" >>"$counts"
  } 5>"$logs/report.lock"
}

# build WHAT: once a run.
build() {
  local what=$1 start log=$logs/build-$1.log steps
  [[ -z ${build_state[$what]-} ]] || return
  start=$(now)
  case $what in
    page) steps='page/build.sh' ;;
    clang) steps='cmake --preset clang && cmake --build --preset clang --target unit_tests' ;;
    *) steps="cmake --preset $what && cmake --build --preset $what" ;;
  esac
  if bash -c "$steps" </dev/null >"$log" 2>&1; then
    build_state[$what]=good
    report "build-$what" "$start" "$log" 1 0
  else
    build_state[$what]=bad
    report "build-$what" "$start" "$log" 0 1
  fi
}

# run_stage NAME NEEDS COMMAND
run_stage() {
  local name=$1 needs=$2 command=$3 log=$logs/$1.log
  local start code summary passed=0 failed=1 need runner=()
  for need in $needs; do
    if [[ $need == wine ]]; then
      runner=(scripts/wine.sh --session)
    elif [[ ! $need =~ ^(alone|beside|any)$ && ${build_state[$need]} != good ]]; then
      echo "not run: the build '$need' failed" >"$log"
      report "$name" "$(now)" "$log" 0 1
      return
    fi
  done
  start=$(now)
  timeout -k 10 "$stage_limit" "${runner[@]}" bash -c "$command" </dev/null >"$log" 2>&1 &
  child=$!
  wait "$child"
  code=$?
  child=''
  summary=$(tr -d '\r' <"$log" | grep -aE '^[0-9]+ passed, [0-9]+ failed$' | tail -n 1)
  if [[ -n $summary ]]; then
    passed=${summary%% *}
    failed=${summary#*, }
    failed=${failed%% *}
  fi
  if ((code == 124 || code == 137)); then
    echo "ended after $stage_limit s" >>"$log"
  elif [[ -z $summary ]]; then
    echo "no line 'N passed, N failed'; exit code $code" >>"$log"
  elif ((code != 0 && failed == 0)); then
    echo "exit code $code although nothing failed" >>"$log"
  fi
  ((code != 0 && failed == 0)) && failed=1
  report "$name" "$start" "$log" "$passed" "$failed"
}

# lane_of NEEDS
lane_of() {
  case " $1 " in
    *' alone '*) echo alone ;;
    *' beside '*) echo beside ;;
    *' any '*) echo any ;;
    *' wine '*) echo wine ;;
    *) echo native ;;
  esac
}

# run_lane LANE: its stages, one after the other, then those of any lane that no other has taken. A
# signal ends the one that runs, too.
run_lane() {
  local name needs command lane child=''
  trap '[[ -z $child ]] || kill "$child"; exit 143' TERM
  for lane in "$1" any; do
    while IFS='|' read -r name _ needs command <&3; do
      if [[ $(lane_of "$needs") == "$lane" ]] && mkdir "$taken/$name" 2>/dev/null; then
        run_stage "$name" "$needs" "$command"
      fi
    done 3<<<"$to_run"
  done
}

# run_lanes LANE...: side by side.
run_lanes() {
  local lane lanes=()
  for lane; do
    run_lane "$lane" &
    lanes+=($!)
  done
  # shellcheck disable=SC2064  # these lanes, which have numbers by now
  trap "kill ${lanes[*]} 2>/dev/null; wait; exit 130" INT TERM HUP
  wait "${lanes[@]}"
}

if ! scripts/setup.sh build test; then
  echo "0 passed, 1 failed"
  exit 1
fi

to_run=$(rows | while IFS='|' read -r name when needs command; do
  if ((${#chosen[@]})); then
    [[ " ${chosen[*]} " == *" $name "* ]] || continue
  elif [[ -n $quick && $when != quick ]]; then
    continue
  fi
  echo "$name|$when|$needs|$command"
done)

while read -r need <&3; do
  [[ $need =~ ^(wine|alone|beside|any)$ ]] || build "$need"
done 3< <(cut -d'|' -f3 <<<"$to_run" | grep -oE '[a-z]+')
run_lanes wine native
run_lanes alone beside

printf '%-22s %s\n' 'all of it' "$(seconds "$started")"
total_passed=0 total_failed=0
awaited=$((${#build_state[@]} + $(wc -l <<<"$to_run")))
if (($(wc -l <"$counts") != awaited)); then
  echo "stages without a result: $((awaited - $(wc -l <"$counts")))"
  ((++total_failed))
fi
while read -r passed failed; do
  ((total_passed += passed, total_failed += failed))
done <"$counts"
echo "$total_passed passed, $total_failed failed"
((total_failed == 0))
