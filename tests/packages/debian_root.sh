#!/usr/bin/env bash
# An empty Debian system in a folder, with what the packages need of others and what shows manual pages, so
# that they can be installed without a network. Made once by mmdebstrap and kept packed in build/; needs root.
#
#   tests/packages/debian_root.sh FOLDER
set -euo pipefail
folder=$1
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
kept=build/packages/debian-root.1.tar  # with a new number it is made anew

if [[ ! -f $kept ]]; then
  mkdir -p "$(dirname "$kept")"
  # The system's own release, of all that its list names; through its own proxies.
  release=$(. /etc/os-release && echo "$VERSION_CODENAME")
  sources() { scripts/debian_release.sh deb | awk -v release="$release" '$3 == release || $3 == "stable"'; }
  source=$(sources)
  [[ -n $source ]] || { apt-get update >/dev/null && source=$(sources); }
  mapfile -t proxies < <(apt-config dump | sed -nE 's/^Acquire::https?::Proxy .*/--aptopt=&/p')
  making=$(mktemp --suffix .tar "$kept.XXXXXX")
  trap 'rm -f "$making"' EXIT
  mmdebstrap --variant=minbase --dpkgopt=force-unsafe-io --include=libexpat1,man-db "${proxies[@]}" \
    "$release" "$making" "${source%%$'\n'*}"
  mv "$making" "$kept"
fi
mkdir -p "$folder"
tar -C "$folder" --numeric-owner -xpf "$kept"
