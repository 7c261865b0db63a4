#!/bin/sh
# Writes the reference of the public headers and pages into out/docs/html; fails on warnings: docs.sh
set -eu
cd "$(dirname "$0")/.."

if ! command -v doxygen >/dev/null 2>&1; then
    echo "docs: doxygen is missing; run scripts/setup.sh, or install it" >&2
    exit 1
fi
version=
for part in MAJOR MINOR PATCH; do
    version=$version.$(sed -n "s/^#define LUMOFESDK_VERSION_$part //p" include/LumoFESDK.h)
done
rm -rf out/docs
mkdir -p out/docs
LUMOFE_VERSION=${version#.} doxygen docs/Doxyfile
echo "out/docs/html/index.html: the reference, version ${version#.}"
