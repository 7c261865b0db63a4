#!/bin/sh
# Builds and runs a host that finds an installed kit with find_package, and checks that hosts it
# cannot serve are refused: find_package.sh KIT WORK BITS VERSION
set -eu
kit=$1 work=$2 bits=$3 version=$4
project=$(dirname "$0")/consumers

rm -rf "$work"
mkdir -p "$work"

# configure FOLDER BITS WANTED
configure() {
    cmake -G Ninja -S "$project" -B "$work/$1" -DCMAKE_CXX_FLAGS="-m$2" -DWANTED="$3" \
        -DCMAKE_PREFIX_PATH="$kit" -DCMAKE_BUILD_TYPE=Release >"$work/$1.log" 2>&1
}

# refused FOLDER BITS WANTED: by the version file, which then is named with what it offers.
refused() {
    if configure "$@"; then
        echo "find_package.sh: a $2-bit host that wants version $3 is not refused" >&2
        exit 1
    fi
    if ! grep -q "LumoFESDKConfig.cmake, version: $version" "$work/$1.log"; then
        cat "$work/$1.log" >&2
        echo "find_package.sh: a $2-bit host that wants version $3 fails for another reason" >&2
        exit 1
    fi
}

if ! configure host "$bits" "$version" || ! cmake --build "$work/host" >>"$work/host.log" 2>&1; then
    cat "$work/host.log" >&2
    exit 1
fi
"$work/host/host"
refused other-size $((96 - bits)) "$version"
refused other-major "$bits" $((${version%%.*} + 1))
