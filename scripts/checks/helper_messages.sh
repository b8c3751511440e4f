#!/usr/bin/env bash
# The helpers without what they need: one line that says what is missing, and no stack.
#
#   scripts/checks/helper_messages.sh [BUILD]    build/linux if left out
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1
# shellcheck source=tests/support/outcome.sh
. tests/support/outcome.sh

build=$(cd "${1:-build/linux}" && pwd) || exit 1
root=$PWD

# The command, if it says one line; the one that counts for test.sh is none of it.
one_line() {
  local code
  "$@" >"$work/lines" 2>&1
  code=$?
  cat "$work/lines"
  [[ $(grep -cvE '^[0-9]+ passed, [0-9]+ failed$' "$work/lines") == 1 ]] || code=125
  return "$code"
}

# says NAME CODE PATTERN COMMAND...: it ends with CODE and says one line, which holds PATTERN.
says() { expect "$1" "$2" "$3" one_line "${@:4}"; }

git clone -q "$root" "$work/clone" && cd "$work/clone" || exit 1
echo 'ISO-10303-21;' >"$work/some.ifc"

# ---- nothing is built

says "reproducible" 1 'exportIFC\.dll is missing: cmake --preset windows' scripts/checks/reproducible.sh
says "embed without the page" 2 'dist/viewer\.html is missing: run page/build\.sh' \
  page/embed.mjs "$work/some.ifc" "$work/some.html"
says "bench without packages" 2 'playwright-core is missing: build' node page/bench.mjs "$build"
says "pictures without packages" 2 'playwright-core is missing: build' page/pictures.mjs

# ---- the page is there

mkdir -p page/dist
cp "$root/page/dist/viewer.html" page/dist/ || exit 1
ln -s "$root/page/node_modules" page/node_modules
says "embed of no file" 2 'there is no file nowhere\.ifc' page/embed.mjs nowhere.ifc "$work/some.html"
says "embed onto its input" 2 'is what is read: choose another output' \
  page/embed.mjs "$work/some.ifc" "$work/some.ifc"
says "bench without a build" 2 'nowhere/run_host is missing: build' node page/bench.mjs nowhere
says "pictures without the program" 2 'exportifc is missing: build' page/pictures.mjs

# ---- the batch host

host=("$build/run_host" "$build/libexportIFC.so")
cp samples/galpao.txt samples/galpao.json "$work"
says "run_host, JSON" 2 'no batch text file; .*exportifc convert model\.json -o model\.txt' \
  "${host[@]}" "$work/galpao.json" "$work/out.ifc"
says "run_host, its model as output" 2 'OUT is the model itself' \
  "${host[@]}" "$work/galpao.txt" "$work/../$(basename "$work")/galpao.txt"
says "run_host, no model" 2 'there is no model file nowhere\.txt' "${host[@]}" nowhere.txt "$work/out.ifc"
says "run_host, a folder as output" 2 'OUT is a folder' "${host[@]}" "$work/galpao.txt" "$work"
mkdir "$work/out.ifc.parttemp"
says "run_host, no room for the output" 1 'cannot create .*out\.ifc\.parttemp' \
  "${host[@]}" "$work/galpao.txt" "$work/out.ifc"

end
