#!/usr/bin/env bash
# The library for other languages under the thread sanitizer: eight threads use it at once.
#
#   tests/c_library/threads.sh
#
# Ends with "N passed, N failed".
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1
root=$PWD
# shellcheck source=tests/support/outcome.sh
. tests/support/outcome.sh

build=build/threads
watched='-fsanitize=thread -O0 -g1'
holds "it is configured" cmake -S . -B $build -G Ninja -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
  -DCMAKE_BUILD_TYPE= -DEXPORTIFC_TESTS=OFF -DEXPORTIFC_PRECOMPILE=ON \
  "-DCMAKE_C_FLAGS=$watched" "-DCMAKE_CXX_FLAGS=$watched"
holds "it is built" cmake --build $build -j2 --target exportifc_shared
# shellcheck disable=SC2086  # words
holds "the program is built" clang -std=c99 -Wall -Wextra -Wpedantic -Wconversion -Werror $watched -Iinclude \
  tests/c_library/threads.c -L$build "-Wl,-rpath,$root/$build" -lexportifc -pthread -o $build/threads
export TSAN_OPTIONS=halt_on_error=1
for model in samples/galpao.json samples/galpao.txt; do
  # shellcheck disable=SC2154  # by the file above
  $build/threads $model >"$work/said" 2>"$work/report"
  same "eight threads with $model" "$? $(cat "$work/said")" '0 all went well'
  same "what the sanitizer reports of it" "$(head -n 40 "$work/report")" ''
done
end
