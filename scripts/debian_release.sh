#!/usr/bin/env bash
# Where the release of this system comes from, whatever the style of its own list: lines "TYPE ADDRESS RELEASE
# COMPONENT" as apt has them. Without what comes later: updates have their sources elsewhere.
#
#   scripts/debian_release.sh TYPE [APT-OPTION...]     deb or deb-src; the options are those of apt-get
set -euo pipefail
type=$1
shift
# shellcheck disable=SC2016  # apt fills these in
apt-get "$@" indextargets --format '$(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' 'Component: main' \
  | awk -v type="$type" '$2 !~ /-/ && !seen[$0]++ { print type, $1, $2, $3 }'
