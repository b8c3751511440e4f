#!/usr/bin/env bash
# A short run of every fuzz target: all seeds, all inputs that once failed, then a fixed number of new
# inputs from a fixed random seed. Ends with "N passed, N failed".
#
#   fuzz/short.sh [TARGET...]
#
#   FUZZ_BUILD   build folder, build/fuzz if unset
set -uo pipefail

cd "$(dirname "$0")/.." || exit 1
# shellcheck source=fuzz/targets.sh
. fuzz/targets.sh

targets=("$@")
((${#targets[@]})) || targets=("${all_targets[@]}")
build_targets "${targets[@]}"

# About ten seconds each with sanitizers.
declare -A runs=([batch_file]=6000 [host_model]=6000 [section_name]=20000 [json_model]=6000 [tables]=6000 [workbook]=5000)

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# A gate should try the same inputs each time. What makes runs differ is left out: seeds in the order
# of the folder, values compared (random identifiers), the time an input took and, when built, the
# depth of the stack. 38 of 40 runs were then the same; ./fuzz.sh is the one that goes looking.
repeatable=(-seed=1 -use_cmp=0 -entropic=0)

run_one() {
  local target=$1
  mkdir "$scratch/$target"
  find fuzz/corpus fuzz/crashes -path "*/$target/*" -type f | LC_ALL=C sort \
    | paste -sd, | tr -d '\n' >"$scratch/$target.seeds"
  "$build/fuzz/fuzz_$target" "${options[@]}" "${repeatable[@]}" -runs="${runs[$target]}" \
    -artifact_prefix="$scratch/$target-" -dict="fuzz/dictionaries/$target.dict" \
    -max_len="${longest[$target]}" -reload=0 -seed_inputs=@"$scratch/$target.seeds" "$scratch/$target" \
    >"$scratch/$target.log" 2>&1
  echo $? >"$scratch/$target.rc"
}

# Two at a time.
for ((i = 0; i < ${#targets[@]}; i += 2)); do
  for target in "${targets[@]:i:2}"; do
    run_one "$target" &
  done
  wait
done

passed=0 failed=0
for target in "${targets[@]}"; do
  if [[ $(cat "$scratch/$target.rc") == 0 ]] && grep -q "^Done" "$scratch/$target.log"; then
    passed=$((passed + 1))
    echo "$target: $(grep '^Done' "$scratch/$target.log"), $(grep -o 'cov: [0-9]*' "$scratch/$target.log" | tail -n 1)"
  else
    failed=$((failed + 1))
    echo "$target:"
    grep -E 'FINDING|ERROR|SUMMARY|runtime error|seed_inputs' "$scratch/$target.log" | head -n 10
    mkdir -p out/fuzz/findings
    # The input itself too: a log is often all that is left of a build machine.
    find "$scratch" -maxdepth 1 -name "$target-*" -exec cp {} out/fuzz/findings/ \; \
      -printf 'kept as out/fuzz/findings/%f; base64 --decode gives it from:\n' -exec base64 -w 120 {} \;
  fi
done
echo "$passed passed, $failed failed"
((failed == 0))
