#!/usr/bin/env bash
# Fuzzes for a long time.
#
#   ./fuzz.sh MINUTES [--record] [TARGET...]     targets: batch_file, host_model, section_name, json_model,
#                                                tables, workbook
#
# All targets run side by side at low priority, each for MINUTES. What they find lies in out/fuzz:
# the grown corpus, logs, and one file for each finding; `build/fuzz/fuzz/fuzz_TARGET FILE` runs it
# again. --record keeps the counts as a further run in docs/figures and puts them into the documents.
# Ends with one line for each target and "N passed, N failed".
#
#   FUZZ_BUILD   build folder, build/fuzz if unset
#   FUZZ_OUT     where corpus, logs and findings go, out/fuzz if unset
set -euo pipefail

cd "$(dirname "$0")"
# shellcheck source=fuzz/targets.sh
. fuzz/targets.sh

minutes=${1-}
[[ $minutes =~ ^[0-9]+$ ]] || { sed -n '4,12s/^# \{0,1\}//p' "$0"; exit 2; }
shift
record=
[[ ${1-} != --record ]] || { record=1; shift; }
targets=("$@")
((${#targets[@]})) || targets=("${all_targets[@]}")
out=${FUZZ_OUT:-out/fuzz}

build_targets "${targets[@]}"

# In rounds: the module keeps the record of every batch bar for good, so memory grows by design.
round_seconds=300
fuzz_one() {
  local target=$1
  local corpus=$out/corpus/$target log=$out/$target.log deadline=$((SECONDS + minutes * 60))
  mkdir -p "$corpus" "$out/findings"
  : >"$log"
  while ((SECONDS < deadline)); do
    local left=$((deadline - SECONDS))
    nice -n 19 "$build/fuzz/fuzz_$target" "${options[@]}" \
      -max_total_time=$((left < round_seconds ? left : round_seconds)) \
      -artifact_prefix="$out/findings/$target-" -dict="fuzz/dictionaries/$target.dict" \
      -max_len="${longest[$target]}" -rss_limit_mb=3000 -print_final_stats=1 -reload=0 \
      "$corpus" "fuzz/corpus/$target" >>"$log" 2>&1 || true
  done
}

for target in "${targets[@]}"; do
  fuzz_one "$target" &
done
wait

passed=0 failed=0 figures="minutes $minutes"$'\n'
for target in "${targets[@]}"; do
  log=$out/$target.log
  executed=$(awk '/stat::number_of_executed_units/ { sum += $2 } END { print sum + 0 }' "$log")
  coverage=$(grep -o 'cov: [0-9]*' "$log" | tail -n 1 || true)
  findings=$(find "$out/findings" -name "$target-*" | wc -l)
  figures+="$target.executions $executed"$'\n'"$target.edges $(tr -dc 0-9 <<<"${coverage:-0}")"$'\n'
  figures+="$target.findings $findings"$'\n'
  echo "$target: $minutes min, $executed executions, ${coverage:-cov: 0} of" \
    "$(grep -om 1 '([0-9]* inline' "$log" | tr -dc 0-9) edges, $findings findings"
  if ((findings == 0 && executed > 0)); then passed=$((passed + 1)); else failed=$((failed + 1)); fi
done
if [[ -n $record ]]; then
  scripts/figures.py --record fuzzing './fuzz.sh MINUTES --record' --append <<<"$figures"
fi
echo "$passed passed, $failed failed"
((failed == 0))
