#!/bin/sh
# Builds and runs every test for both word sizes: check.sh [PRESET...]
#
# Without presets: the release and the sanitized builds, then unoptimised and Clang builds, whose
# golden hashes must be the same.
set -eu
cd "$(dirname "$0")/.."

if [ $# = 0 ]; then
    set -- release-32 release-64 sanitize-32 sanitize-64 debug-32 debug-64 clang-32 clang-64
fi

for preset in "$@"; do
    echo "== $preset"
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" --target all -- --quiet
    ctest --preset "$preset"
done
echo "all tests passed: $*"
