#!/bin/sh
# Builds and runs a C++ and a C host that find an installed kit with pkg-config:
# pkg_config.sh KIT LIBDIR WORK BITS VERSION
set -eu
kit=$1 libdir=$2 work=$3 bits=$4 version=$5
sources=$(dirname "$0")/consumers
export PKG_CONFIG_LIBDIR="$kit/$libdir/pkgconfig"

mkdir -p "$work"
found=$(pkg-config --modversion lumofesdk)
if [ "$found" != "$version" ]; then
    echo "pkg_config.sh: lumofesdk.pc says version $found, not $version" >&2
    exit 1
fi

# build COMPILER LANGUAGE SOURCE: and run.
build() {
    # shellcheck disable=SC2046 # several options
    "$1" "-std=$2" "-m$bits" -Wall -Wextra -Wpedantic -Werror "-DEXPECTED_VERSION=\"$found\"" \
        "$sources/$3" -o "$work/$3.host" \
        $(pkg-config --cflags --libs lumofesdk) "-Wl,-rpath,$kit/$libdir"
    "$work/$3.host"
}
build c++ c++11 host.cpp
build cc c99 host.c
