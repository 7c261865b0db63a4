#!/bin/sh
# Installs a build through DESTDIR and moves the tree to where the other tests of the kit expect it:
# install.sh BUILD KIT
set -eu
build=$1 kit=$2
prefix=/opt/lumofesdk

rm -rf "$kit" "$kit.staging"
DESTDIR=$kit.staging cmake --install "$build" --prefix $prefix >/dev/null
if [ "$(cd "$kit.staging" && find . -type f ! -path ".$prefix/*")" ]; then
    echo "install.sh: the build installs files outside of its prefix; look into $kit.staging" >&2
    exit 1
fi
mv "$kit.staging$prefix" "$kit"
rm -r "$kit.staging"
