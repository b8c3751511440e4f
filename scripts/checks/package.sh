#!/usr/bin/env bash
# The zip for users: what is in it, that each link of its documents leads to a file in it, that the
# commands of its README work in the unpacked folder, and that there is none without the page.

# shellcheck disable=SC2016  # patterns, and commands of other shells
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1
# shellcheck source=tests/support/outcome.sh
. tests/support/outcome.sh

root=$PWD
page=page/dist/viewer.html
put_back() { [[ ! -e $work/viewer.html ]] || mv "$work/viewer.html" "$page"; }
trap 'put_back; rm -rf "$work"' EXIT

pack() { packaging/make.sh "$work/package" zip; }

# run.sh configures the folder without the program.
holds "the program is built" bash -c "cmake --preset windows && cmake --build --preset windows"

# ---- without the page

refuses_without_page() {
  mv "$page" "$work/viewer.html" || return 1
  pack >"$work/pack" 2>&1
  local code=$?
  put_back
  cat "$work/pack"
  ((code != 0)) && grep -qF 'page/dist/viewer.html is missing: run page/build.sh' "$work/pack" \
    && ! ls "$work"/package/*.zip
}
holds "no package without the page" refuses_without_page

# ---- what is in it

holds "the package is made" pack
mkdir "$work/unpacked"
holds "its sum is listed" env -C "$work/package" sha256sum --quiet -c SHA256SUMS
holds "it can be unpacked" cmake -E chdir "$work/unpacked" cmake -E tar xf "$work"/package/*.zip
folder=$(echo "$work"/unpacked/*)
cd "$folder" || exit 1

for file in bin/exportifc.exe bin/exportIFC.dll bin/exportifc-1.dll lib/libexportifc.dll.a exportifc.html \
  bin/viewer.html include/exportifc/plugin.h include/exportifc/library.h samples/galpao.json \
  README.md SECURITY.md THIRD-PARTY.md CHANGELOG.md docs/guia.md docs/host-guide.md; do
  holds "$file is in it" test -s "$file"
done
holds "the page is the one that was built" cmp bin/viewer.html "$root/$page"
holds "so is the page that exports" cmp exportifc.html "$root/page/dist/exportifc.html"
holds "the README is the package's own" bash -c '! cmp -s "$1" README.md' - "$root/README.md"
holds "nothing is left to fill in" bash -c '! grep -E "@[A-Za-z_]+@" README.md'

# ---- links

links=0
while IFS=$'\t' read -r document link; do
  ((++links))
  holds "$document links to $link" test -e "$(dirname "$document")/$link"
done < <(find . -name '*.md' -printf '%P\n' | sort | while read -r document; do
  # Outside of blocks and code; without what stands behind "#".
  sed -E '/^ *```/,/^ *```/d; s/`[^`]*`//g' "$document" \
    | grep -oE '\]\([^) ]+\)' | sed -E 's/^\]\(//; s/\)$//; s/#.*//' | grep -vE '^$|^[a-z]+:' \
    | sort -u | sed "s|^|$document\t|"
done)
holds "there are links" test "$links" -ge 20

# ---- the README's commands

mapfile -t commands < <(sed -n '/^```sh$/,/^```$/{/^```/d;p}' README.md)
holds "two commands in the README" test "${#commands[@]}" -eq 2
for line in "${commands[@]}"; do
  read -r -a words <<<"${line//\\//}"
  words=("$root/scripts/wine.sh" "${words[0]}.exe" "${words[@]:1}")
  holds "$line" "${words[@]}"
done
holds "the file is whole" grep -q '^END-ISO-10303-21;' galpao.ifc
held_in galpao.html >"$work/held.ifc"
holds "the page holds the structure" cmp "$work/held.ifc" galpao.ifc

end
