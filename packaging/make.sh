#!/usr/bin/env bash
# Lays what is built into packages; ../package.sh builds it and calls this.
#
#   packaging/make.sh FOLDER [KIND...]     kinds: zip tar wheels deb; all of them if left out
#
# At the end FOLDER holds the packages and SHA256SUMS. The same sources give the same bytes, whatever the
# folder, the time and the user: the date in the packages is SOURCE_DATE_EPOCH, that of the last commit if
# unset.
set -euo pipefail

die() { echo "packages: $*" >&2; exit 1; }

target=${1:?a folder}
shift
mkdir -p "$target"
target=$(cd "$target" && pwd)
cd "$(dirname "${BASH_SOURCE[0]}")/.."
kinds=" ${*:-zip tar wheels deb} "
linux=build/linux windows=build/windows
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
umask 022
export LC_ALL=C.UTF-8 TZ=UTC
SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)} || die "no commit: set SOURCE_DATE_EPOCH"
export SOURCE_DATE_EPOCH

wanted() { [[ $kinds == *" $1 "* ]]; }

facts=$linux/packaging/facts.sh
[[ -f $facts ]] || facts=$windows/packaging/facts.sh
[[ -f $facts ]] || die "nothing is built in $linux or $windows: ./package.sh builds it"
# shellcheck source=packaging/facts.sh
. "$facts"

# What is installed once and packed in several ways.
linux_tree=$work/linux portable_tree=$work/portable windows_tree=$work/exportIFC-$version-windows

# installed BUILD FOLDER [COMPONENT]: without the debugging symbols; nothing if it is there.
installed() {
  [[ ! -d $2 ]] || return 0
  cmake --install "$1" --strip --prefix "$2" ${3:+--component "$3"} >"$work/log" 2>&1 \
    || { tail -n 5 "$work/log" >&2; die "$1 cannot be installed"; }
}

# of_one_date FOLDER: dates and rights of all that is in it.
of_one_date() {
  find "$1" -type d -exec chmod 755 {} +
  find "$1" -type f -perm /100 -exec chmod 755 {} +
  find "$1" -type f ! -perm /100 -exec chmod 644 {} +
  find "$1" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +
}

# The files for other Linux systems, which ask for no newer C library than promised.
portable() {
  local newest
  [[ -f $linux/portable/exportifc ]] || die "not built: $linux/portable/exportifc; are libexpat.a and libz.a installed?"
  installed "$linux" "$portable_tree" portable
  newest=$(packaging/glibc.sh "$portable_tree/bin/exportifc" "$portable_tree/lib/libexportifc.so.$abi")
  [[ $newest == "$oldest_glibc" ]] \
    || die "the files for other Linux systems need glibc $newest, cmake/package.cmake says $oldest_glibc"
}

make_zip() {
  installed "$windows" "$windows_tree"
  /usr/bin/python3 packaging/archive.py zip "$windows_tree" "$target/$(basename "$windows_tree").zip"
}

make_tar() {
  local tree=$work/exportIFC-$version-linux
  installed "$linux" "$linux_tree"
  portable
  cp -a "$linux_tree" "$tree"
  cp -a "$portable_tree/." "$tree"
  of_one_date "$tree"
  tar -C "$work" --sort=name --format=ustar --owner=0 --group=0 --numeric-owner -cf - "$(basename "$tree")" \
    | gzip -9n >"$target/$(basename "$tree").tar.gz"
}

# wheel TAG LIBRARY: Python alone, the library and the page of `view`.
wheel() {
  local tree=$work/wheel-$1
  mkdir -p "$tree/exportifc" "$tree/exportifc-$version.dist-info"
  cp python/exportifc/*.py python/exportifc/py.typed page/dist/viewer.html "$tree/exportifc"
  cp -L "$2" "$tree/exportifc"
  chmod -x "$tree"/exportifc/*
  cp THIRD-PARTY.md "$tree/exportifc-$version.dist-info"
  /usr/bin/python3 packaging/archive.py wheel "$tree" "$target" "$version" "$1" docs/python.md >/dev/null
}

make_wheels() {
  portable
  wheel "manylinux_${oldest_glibc/./_}_x86_64" "$portable_tree/lib/libexportifc.so.$abi"
  installed "$windows" "$windows_tree"
  wheel win_amd64 "$windows_tree/bin/exportifc-$abi.dll"
}

# ---- Debian

# control PACKAGE SECTION DEPENDS SUMMARY: besides it, the sums of the files and the notices.
control() {
  local tree=$work/deb/$1 size
  [[ -n $3 ]] || { cat "$work/log" >&2; die "what $1 needs is not known"; }
  install -D -m 644 "$work/copyright" "$tree/usr/share/doc/$1/copyright"
  of_one_date "$tree"
  size=$(find "$tree" -type f -not -path '*/DEBIAN/*' -printf '%s\n' | awk '{ sum += int(($1 + 1023) / 1024) } END { print sum }')
  mkdir -p "$tree/DEBIAN"
  (cd "$tree" && find usr -type f -print0 | sort -z | xargs -0 md5sum) >"$tree/DEBIAN/md5sums"
  cat >"$tree/DEBIAN/control" <<EOF
Package: $1
Version: $version
Architecture: amd64
Maintainer: the makers of exportIFC <exportifc@invalid>
Installed-Size: $size
Depends: $3
Section: $2
Priority: optional
Description: $4
 exportIFC reads the model of a steel structure and writes it as an IFC2X3 file,
 which tools for building models (BIM) open.
EOF
  of_one_date "$tree"
  # One thread: with more of them the bytes depend on how many there are.
  dpkg-deb --root-owner-group --threads-max=1 -Zxz --build "$tree" "$target/${1}_${version}_amd64.deb" >"$work/log" \
    || { cat "$work/log" >&2; die "$1 cannot be packed"; }
}

# needs FILE: the packages of the shared libraries that it is linked with.
needs() {
  mkdir -p "$work/shlibdeps/debian"
  printf 'Source: exportifc\n\nPackage: exportifc\nArchitecture: amd64\n' >"$work/shlibdeps/debian/control"
  (cd "$work/shlibdeps" && dpkg-shlibdeps -O "$1" 2>"$work/log") | sed 's/^shlibs:Depends=//'
}

make_deb() {
  local all=$linux_tree program=$work/deb/exportifc library=$work/deb/libexportifc$abi dev=$work/deb/libexportifc-dev
  local share=$program/usr/share documents=$program/usr/share/doc/exportifc
  installed "$linux" "$all"
  {
    printf '%s\n\n' "A licence for exportIFC itself is its owner's to choose; none is given here." \
      "What of others is in this package, or in others made with it:"
    cat THIRD-PARTY.md
  } >"$work/copyright"

  install -D -t "$program/usr/bin" "$all/bin/exportifc"
  install -D -m 644 -t "$share/exportifc" "$all/bin/viewer.html" "$all/exportifc.html"
  install -D -m 644 -t "$share/bash-completion/completions" "$all/share/bash-completion/completions/exportifc"
  # The links between the documents stay as they are.
  mkdir -p "$documents"
  cp -r "$all"/{docs,samples,examples,include,python,SECURITY.md,THIRD-PARTY.md} "$documents"
  ln -s ../../exportifc/exportifc.html "$documents/exportifc.html"
  gzip -9n <"$all/CHANGELOG.md" >"$work/changelog.gz"
  install -D -m 644 "$work/changelog.gz" "$documents/changelog.gz"
  mkdir -p "$share/man/man1" "$share/man/pt/man1"
  gzip -9n <"$all/share/man/man1/exportifc.1" >"$share/man/man1/exportifc.1.gz"
  EXPORTIFC_LANG=pt "$all/bin/exportifc" --man | gzip -9n >"$share/man/pt/man1/exportifc.1.gz"
  control exportifc science "$(needs "$program/usr/bin/exportifc")" \
    "structural frame models as IFC2X3 files - program"

  mkdir -p "$library/usr/lib" "$library/DEBIAN"
  cp -a "$all"/lib/libexportifc.so.* "$library/usr/lib"
  echo "libexportifc $abi libexportifc$abi (>= $version)" >"$library/DEBIAN/shlibs"
  echo "activate-noawait ldconfig" >"$library/DEBIAN/triggers"
  control "libexportifc$abi" libs "$(needs "$(readlink -f "$library/usr/lib/libexportifc.so.$abi")")" \
    "structural frame models as IFC2X3 files - library"

  mkdir -p "$dev/usr/lib" "$dev/usr/share/doc/libexportifc-dev/examples"
  cp -a "$all/lib/libexportifc.so" "$all/lib/cmake" "$all/lib/pkgconfig" "$dev/usr/lib"
  cp -r "$all/include" "$dev/usr"
  cp docs/library.md "$dev/usr/share/doc/libexportifc-dev"
  cp examples/export_model.c "$dev/usr/share/doc/libexportifc-dev/examples"
  control libexportifc-dev libdevel "libexportifc$abi (= $version)" \
    "structural frame models as IFC2X3 files - headers"
}

for page in viewer exportifc; do
  [[ -s page/dist/$page.html ]] || die "page/dist/$page.html is missing: run page/build.sh"
done
rm -f "$target"/{exportIFC-,exportifc-,exportifc_,libexportifc}* "$target/SHA256SUMS"
for kind in zip tar wheels deb; do
  if wanted "$kind"; then "make_$kind"; fi
done
cd "$target"
find . -maxdepth 1 -type f -printf '%P\n' | sort | xargs -d '\n' sha256sum -- >"$work/SHA256SUMS"
mv "$work/SHA256SUMS" .
