#!/usr/bin/env bash
# Fetches the sources of the libraries that Debian has for its own systems alone, to be built for
# Windows and for the page: the release's own, with Debian's patches, checked by apt.
#
#   scripts/library_sources.sh       silent when they are there; scripts/setup.sh calls it
#
# They lie in ~/.cache/exportifc/sources (or under XDG_CACHE_HOME), for every clone and build folder.
# Root is not needed, and the system's own lists of packages are left as they are.
set -euo pipefail

packages=(expat zlib)
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
target=${XDG_CACHE_HOME:-${HOME:?}/.cache}/exportifc/sources

die() { echo "library sources: $*" >&2; exit 1; }

missing=()
for package in "${packages[@]}"; do
  [[ -f $target/$package/debian/copyright ]] || missing+=("$package")
done
((${#missing[@]})) || exit 0

command -v apt-get >/dev/null || die "apt-get not found; put the sources of ${missing[*]} into $target by hand"
mkdir -p "$target"
work=$(mktemp -d "$target/fetching-XXXXXX")
trap 'rm -rf "$work"' EXIT
log=$work/log

mkdir -p "$work/parts" "$work/lists/partial" "$work/cache/archives/partial" "$work/sources"
private=(-o "Dir::State::Lists=$work/lists" -o "Dir::Cache=$work/cache" -o APT::Sandbox::User=)
"$here/debian_release.sh" deb-src >"$work/parts/sources.list"
if [[ ! -s $work/parts/sources.list ]]; then  # an image without lists of packages
  apt-get "${private[@]}" update </dev/null >"$log" 2>&1 || { tail -n 20 "$log" >&2; die "apt-get failed (above)"; }
  "$here/debian_release.sh" deb-src "${private[@]}" >"$work/parts/sources.list"
fi
[[ -s $work/parts/sources.list ]] || die "apt knows no release"

apt=(apt-get -o Dir::Etc::SourceList=/dev/null -o "Dir::Etc::SourceParts=$work/parts" "${private[@]}")
echo "library sources: fetching ${missing[*]}"
if ! { "${apt[@]}" update && cd "$work/sources" && "${apt[@]}" --download-only source "${missing[@]}"; } \
    </dev/null >"$log" 2>&1; then
  tail -n 20 "$log" >&2
  die "apt-get failed (above)"
fi
for package in "${missing[@]}"; do
  dpkg-source --extract "$package"_*.dsc "$work/$package" >"$log" 2>&1 \
    || { tail -n 20 "$log" >&2; die "the sources of $package do not unpack"; }
  rm -rf "${target:?}/$package"
  mv -T "$work/$package" "$target/$package"
done
