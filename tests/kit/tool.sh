#!/bin/sh
# Checks that the installed tool finds its library and works from where it was moved to:
# tool.sh KIT BINDIR VERSION
set -eu
tool=$1/$2/lumofe version=$3
unset LD_LIBRARY_PATH

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
shown=$("$tool" --version)
if [ "$shown" != "lumofe $version" ]; then
    echo "tool.sh: --version prints '$shown', not 'lumofe $version'" >&2
    exit 1
fi
"$tool" scene "$scratch/scene.png" --size 320
"$tool" render "$scratch/scene.png" -o "$scratch/view.bmp" --size 160x120
size=$(wc -c <"$scratch/view.bmp")
if [ "$size" != $((54 + 160 * 120 * 3)) ]; then
    echo "tool.sh: the rendered view has $size bytes" >&2
    exit 1
fi
