#!/bin/sh
# Installs the Debian packages of a list that are not there: install.sh SCRIPT PACKAGE...
#
# SCRIPT is the name that messages begin with.
set -eu

script=$1
shift
missing=
for package in "$@"; do
    state=$(dpkg-query -W -f '${Status}' "$package" 2>/dev/null || true)
    [ "$state" = "install ok installed" ] || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

if [ "$(id -u)" = 0 ]; then
    as_root=
elif command -v sudo >/dev/null 2>&1; then
    as_root=sudo
else
    echo "$script: these packages are missing and neither root rights nor sudo are at hand:" >&2
    echo "$script:     apt-get install$missing" >&2
    exit 1
fi
if ! command -v apt-get >/dev/null 2>&1; then
    echo "$script: apt-get is missing; install by hand:$missing" >&2
    exit 1
fi

echo "$script: installing$missing"
export DEBIAN_FRONTEND=noninteractive
$as_root apt-get update -qq
# shellcheck disable=SC2086 # a list of packages
$as_root apt-get install -y -qq --no-install-recommends $missing
