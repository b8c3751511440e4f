# What fuzz.sh and fuzz/short.sh share: the targets and how to build them.
# shellcheck shell=bash disable=SC2034  # the scripts that read this file use the variables

all_targets=(batch_file host_model section_name json_model tables workbook)
declare -A longest=([batch_file]=4096 [host_model]=2048 [section_name]=512 [json_model]=4096
                      [tables]=4096 [workbook]=12000)

# The module keeps narrow paths and batch records on purpose: leaks are measured elsewhere.
options=(-detect_leaks=0 -timeout=20)

export ASAN_OPTIONS=detect_leaks=0:${ASAN_OPTIONS-}
build=${FUZZ_BUILD:-build/fuzz}

build_targets() {
  local log
  log=$(mktemp)
  if ! { cmake -S . -B "$build" -G Ninja -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
           -DCMAKE_BUILD_TYPE=RelWithDebInfo -DEXPORTIFC_FUZZ=ON -DEXPORTIFC_TESTS=OFF \
           -DEXPORTIFC_PRECOMPILE=ON \
         && cmake --build "$build" -j2 --target "${@/#/fuzz_}"; } >"$log" 2>&1; then
    tail -n 30 "$log"
    rm -f "$log"
    echo "the fuzz targets do not build"
    echo "0 passed, 1 failed"
    exit 1
  fi
  rm -f "$log"
}
