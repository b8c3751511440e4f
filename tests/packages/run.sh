#!/usr/bin/env bash
# The packages as their users have them: each installed in an empty place, and used there.
#
#   tests/packages/run.sh        packs what is built in build/linux, build/windows and page/dist
#
# What is in the zip, and its README, scripts/checks/package.sh looks at. The Debian packages go into an empty
# Debian system, which needs root: as another user it takes sudo. Ends with "N passed, N failed".
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1
# shellcheck source=tests/support/outcome.sh
. tests/support/outcome.sh

root=$PWD
as_root=()
((EUID == 0)) || as_root=(sudo -n)
trap '"${as_root[@]}" rm -rf "$work"' EXIT
# Nothing of the sources may help.
unset EXPORTIFC_LIBRARY EXPORTIFC_VIEWER PYTHONPATH
export PYTHONDONTWRITEBYTECODE=1

masked() { "$root/tests/support/model_files.py" "$1"; }
# same_structure NAME FILE
same_structure() { holds "$1" cmp <(masked "$2") <(masked "$work/wanted.ifc"); }
holds "the built program exports" build/linux/exportifc export -q samples/galpao.json -o "$work/wanted.ifc"

# ---- the same twice

dist=$work/dist
# run.sh configures the folder without the program.
holds "the Windows program is built" bash -c "cmake --preset windows && cmake --build --preset windows"
holds "they are packed" packaging/make.sh "$dist"
other_user() {
  (umask 077 && TZ=Asia/Tokyo LC_ALL=C packaging/make.sh "$work/another folder")
}
holds "they are packed by another user, elsewhere and later" other_user
for file in "$dist"/*; do
  holds "${file##*/} is the same" cmp "$file" "$work/another folder/${file##*/}"
done
holds "the sums are right" env -C "$dist" sha256sum --quiet -c SHA256SUMS
same "all packages have one" "$(wc -l <"$dist/SHA256SUMS")" 7
# shellcheck source=packaging/facts.sh
. build/linux/packaging/facts.sh
same "they have the version of the sources" "$version" "$(sed -nE 's/^project\(.* VERSION ([0-9.]+) .*/\1/p' CMakeLists.txt)"

# ---- other Linux systems

mkdir "$work/other linux"
cd "$work/other linux" || exit 1
holds "the tar.gz can be unpacked" tar xzf "$dist/exportIFC-$version-linux.tar.gz"
cd exportIFC-* || exit 1
holds "its program exports, without a path or any other setting" \
  env -i bin/exportifc export -q samples/galpao.json -o galpao.ifc
same_structure "the same structure" galpao.ifc
holds "its program views" env -i bin/exportifc view galpao.ifc -o galpao.html
held_in galpao.html >"$work/held.ifc"
holds "the page holds the structure" cmp "$work/held.ifc" galpao.ifc
needed=$(readelf -d bin/exportifc "lib/libexportifc.so.$abi" | sed -n 's/.*(NEEDED).*\[\(.*\)\].*/\1/p' | sort -u | xargs)
same "program and library need the C library alone" "$needed" 'ld-linux-x86-64.so.2 libc.so.6 libm.so.6'
newest=$("$root/packaging/glibc.sh" bin/exportifc "lib/libexportifc.so.$abi" lib/libexportIFC.so)
# said_in FILE...: every glibc that they name.
said_in() { grep -hoE 'glibc [0-9]+\.[0-9]+' "$@" | sort -u; }
same "its README says how old a glibc may be" "$(said_in README.md)" "glibc $newest"
same "so do the documents" "$(said_in "$root/README.md" "$root"/docs/*.md)" "glibc $newest"
holds "its example is built" cc examples/export_model.c -Iinclude -Llib -lexportifc -o "$work/export_model"
holds "and exports" env -i LD_LIBRARY_PATH=lib "$work/export_model" samples/galpao.json example.ifc
same_structure "the same structure by the library" example.ifc
holds "it brings the notices" test -s THIRD-PARTY.md

# ---- Windows

mkdir -p "$work/Área de Trabalho" "$work/wine"
cd "$work/Área de Trabalho" || exit 1
holds "the zip can be unpacked" cmake -E tar xf "$dist/exportIFC-$version-windows.zip"
cd exportIFC-* || exit 1
mkdir "$work/wheel"
holds "the wheel for Windows can be unpacked" \
  cmake -E chdir "$work/wheel" cmake -E tar xf "$dist/exportifc-$version-py3-none-win_amd64.whl"
holds "it has the library of the zip" cmp "$work/wheel/exportifc/exportifc-$abi.dll" "bin/exportifc-$abi.dll"
holds "it has the page" cmp "$work/wheel/exportifc/viewer.html" "$root/page/dist/viewer.html"
holds "a C host is built for it" x86_64-w64-mingw32-gcc-posix examples/export_model.c -Iinclude \
  -Llib -lexportifc -o "$work/wheel/exportifc/host.exe"
in_wine() {
  "$root/scripts/wine.sh" bin/exportifc.exe export -q samples/galpao.json -o galpão.ifc \
    && "$root/scripts/wine.sh" bin/exportifc.exe view galpão.ifc -o galpão.html \
    && "$root/scripts/wine.sh" "$work/wheel/exportifc/host.exe" samples/galpao.json host.ifc
}
export -f in_wine
export root work
holds "in a fresh Wine the program exports and views, and a C host loads the library of the wheel" \
  env WINE_HOME="$work/wine" "$root/scripts/wine.sh" --session bash -c in_wine
same_structure "the same structure by the program of the zip" galpão.ifc
held_in galpão.html >"$work/held.ifc"
holds "the page of the zip's program holds it" cmp "$work/held.ifc" galpão.ifc
same_structure "the same structure by the library of the wheel" host.ifc

# ---- Python

mkdir "$work/notebook"
cd "$work/notebook" || exit 1
holds "there is an empty Python" /usr/bin/python3 -m venv "$work/venv"
python=$work/venv/bin/python
holds "pip installs the wheel offline" \
  "$work/venv/bin/pip" --disable-pip-version-check install --no-index "$dist"/exportifc-*-manylinux*.whl
holds "pip would take the other one on Windows" "$work/venv/bin/pip" --disable-pip-version-check download --no-index \
  --find-links "$dist" --platform win_amd64 --only-binary :all: --no-deps --dest "$work/for windows" exportifc
# shellcheck disable=SC2016  # the marks of a block
sed -n '/^```python$/,/^```$/{/^```/d;p}' "$root/README.md" >readme.py
same "the README has three lines of Python" "$(wc -l <readme.py)" 3
holds "they work" "$python" readme.py
holds "they write a whole file" grep -q '^END-ISO-10303-21;' portal.ifc
holds "the example builds a hall" "$python" "$root/examples/warehouse.py" warehouse.ifc
cat >view.py <<'PY'
import pathlib, sys, exportifc
assert exportifc.__version__ == sys.argv[1], exportifc.__version__
page = exportifc.view(sys.argv[2])
page.save("page.html")
pathlib.Path("cell.html").write_text(page._repr_html_(), encoding="utf-8")
PY
holds "a notebook's cell is made" "$python" view.py "$version" "$root/samples/galpao.json"
held_in page.html >held.ifc
same_structure "the page holds the structure" held.ifc
holds "the whole page is in the cell" "$python" -c 'import html, pathlib
cell = pathlib.Path("cell.html").read_text(encoding="utf-8")
assert html.unescape(cell.split("srcdoc=\"")[1].split("\"")[0]) == pathlib.Path("page.html").read_text(encoding="utf-8")'
# Elements of the exported kinds, whatever lines they have.
elements=$(grep -cE '^#[0-9]+= IFC(BEAM|COLUMN|MEMBER)\(' held.ifc)
holds "a browser shows the cell with its $elements elements" node "$root/tests/packages/cell.mjs" cell.html "$elements"
# pytest and numpy are the system's; the package is the one that was installed.
holds "the tests of the package hold for the installed one" env PYTHONPATH=/usr/lib/python3/dist-packages \
  EXPORTIFC_PROGRAM="$root/build/linux/exportifc" "$python" -m pytest -q -p no:cacheprovider "$root/python/tests"
holds "they have not met another one" "$python" -c "import exportifc, sys
assert exportifc.__file__.startswith(sys.prefix), exportifc.__file__"
holds "pip takes it away" "$work/venv/bin/pip" --disable-pip-version-check uninstall -y exportifc
same "nothing of it stays" "$(find "$work/venv" -ipath '*exportifc*')" ''

# ---- Debian

debian=$work/debian
in_debian() { "${as_root[@]}" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"; }
# With the files of the kernel in which the program finds itself; they are gone with the command.
inside() { in_debian unshare --mount --pid --fork --mount-proc="$debian/proc" chroot "$debian" "$@"; }
# All files but what package management writes down, and what the linker and the manual keep in mind.
all_files() {
  "${as_root[@]}" find "$debian" \( -path "$debian/var/lib/dpkg" -o -path "$debian/var/lib/apt" -o -path "$debian/var/cache" \
    -o -path "$debian/var/log" -o -path "$debian/tmp" \) -prune -o -printf '%P %y %l\n' | sort
}
holds "there is an empty Debian" "${as_root[@]}" "$root/tests/packages/debian_root.sh" "$debian"
in_debian cp "$dist"/*.deb "$root/samples/galpao.json" "$debian/tmp"
all_files >"$work/before"
holds "apt installs the program" inside sh -c 'cd /tmp && apt-get install -y ./exportifc_*.deb'
holds "it exports" inside env -C /tmp exportifc export -q galpao.json
same_structure "the same structure by the installed program" "$debian/tmp/galpao.ifc"
holds "it views" inside env -C /tmp exportifc view galpao.ifc -o galpao.html
held_in "$debian/tmp/galpao.html" >"$work/held.ifc"
holds "the page of the installed program holds it" cmp "$work/held.ifc" "$debian/tmp/galpao.ifc"
expect "the manual shows its page" 0 'export structural models as IFC2X3' inside man -P cat exportifc
expect "in Portuguese, too" 0 'exporta modelos de estruturas' inside man -P cat -L pt exportifc
holds "the completion is where bash looks" test -s "$debian/usr/share/bash-completion/completions/exportifc"
holds "apt installs library and headers" inside sh -c 'cd /tmp && apt-get install -y ./libexportifc*.deb'
for package in exportifc "libexportifc$abi" libexportifc-dev; do
  same "the files of $package are the packed ones" "$(inside dpkg --verify "$package")" ''
  holds "$package brings the notices" grep -q 'Boost\|University\|MIT' "$debian/usr/share/doc/$package/copyright"
done
flags=$(PKG_CONFIG_PATH=$debian/usr/lib/pkgconfig pkg-config --cflags --libs exportifc)
# shellcheck disable=SC2086  # words
holds "pkg-config finds it" cc "$root/examples/export_model.c" $flags -o "$work/by_pkg_config"
holds "CMake finds it" cmake -S "$root/tests/c_library" -B "$work/build" -G Ninja "-Dexportifc_DIR=$debian/usr/lib/cmake/exportifc"
holds "and builds the example with it" cmake --build "$work/build" --target export_model
for program in "$work/by_pkg_config" "$work/build/export_model"; do
  in_debian cp "$program" "$debian/tmp"
  holds "$(basename "$program") starts in there" inside "/tmp/$(basename "$program")" /tmp/galpao.json /tmp/by_library.ifc
  same_structure "the same structure by $(basename "$program")" "$debian/tmp/by_library.ifc"
  "${as_root[@]}" rm -f "$debian/tmp/by_library.ifc"
done
holds "apt removes all of them" inside apt-get remove -y exportifc "libexportifc$abi" libexportifc-dev
all_files >"$work/after"
same "nothing stays" "$(diff "$work/before" "$work/after")" ''

cd "$root" || exit 1
end
