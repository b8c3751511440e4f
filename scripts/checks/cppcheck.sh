#!/usr/bin/env bash
# Runs cppcheck on the files that the "clang" build compiles, without those of GoogleTest.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1

root=$PWD
cache=build/cppcheck
mkdir -p "$cache"
findings=$cache/findings.txt
# "style" findings are clang-tidy's field. Left out:
#   missingIncludeSystem  the standard library's headers are not given, on purpose: too slow
#   internalAstError      the parser's own trouble with newer C++, no statement about the code
#   constStatement        takes `double{values[i]} * 2` for a statement; the compilers warn of real ones
cppcheck --project=build/clang/compile_commands.json -i"/usr/src/googletest" -i"$root/build" -j "$(nproc)" \
  --library=googletest --cppcheck-build-dir="$cache" --enable=warning,performance,portability \
  --inline-suppr --suppress=missingIncludeSystem --suppress=internalAstError \
  --suppress=constStatement \
  --suppress='*:/usr/*' --template='{file}:{line}: {severity}: {message} [{id}]' --quiet \
  2>"$findings"
code=$?
cat "$findings"

failed=$(cut -d: -f1 "$findings" | grep -c .)
checked=$(python3 - "$root" <<'PY'
import json, sys
files = {c["file"] for c in json.load(open("build/clang/compile_commands.json"))}
print(sum(f.startswith(sys.argv[1] + "/") and not f.startswith(sys.argv[1] + "/build/") for f in files))
PY
)
((code != 0)) && ((++failed))
echo "$((failed ? 0 : checked)) passed, $failed failed"
((failed == 0 && checked > 0))
