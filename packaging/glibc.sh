#!/usr/bin/env bash
# The oldest glibc with which these programs and libraries start, by the versions of the symbols that they ask
# for: "2.35".
#
#   packaging/glibc.sh FILE...
set -euo pipefail
objdump -T "$@" | grep -oE '\(GLIBC_[0-9.]+\)' | tr -d '()' | cut -d_ -f2 | sort -Vu | tail -n 1
