# What CMake knows, for packaging/make.sh.
# shellcheck shell=bash disable=SC2034
version=@PROJECT_VERSION@
abi=@abi@
oldest_glibc=@oldest_glibc@
