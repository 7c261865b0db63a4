#!/bin/sh
# Installs what building and testing needs on Debian 12, if it is not there: setup.sh
set -eu

packages="cmake ninja-build g++ g++-multilib clang clang-tidy libclang-rt-14-dev googletest libcli11-dev libstb-dev binutils doxygen \
    abigail-tools groff-base pkgconf"

missing=
for package in $packages; do
    state=$(dpkg-query -W -f '${Status}' "$package" 2>/dev/null || true)
    [ "$state" = "install ok installed" ] || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

if [ "$(id -u)" = 0 ]; then
    as_root=
elif command -v sudo >/dev/null 2>&1; then
    as_root=sudo
else
    echo "setup: these packages are missing and neither root rights nor sudo are at hand:" >&2
    echo "setup:     apt-get install$missing" >&2
    exit 1
fi
if ! command -v apt-get >/dev/null 2>&1; then
    echo "setup: apt-get is missing; install by hand:$missing" >&2
    exit 1
fi

echo "setup: installing$missing"
export DEBIAN_FRONTEND=noninteractive
$as_root apt-get update -qq
# shellcheck disable=SC2086 # a list of packages
$as_root apt-get install -y -qq --no-install-recommends $missing
