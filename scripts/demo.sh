#!/bin/sh
# Builds the 32-bit library and tool and renders the built-in scene into out/: demo.sh
set -eu
cd "$(dirname "$0")/.."

cmake --preset release-32 >/dev/null
cmake --build --preset release-32 --target LumoFESDK lumofe -- --quiet
lumofe=build/release-32/bin/lumofe

# render MOUNT PAN TILT
render() {
    picture=out/single-$1-pan$2-tilt$3.png
    printf '%s: ' "$picture"
    $lumofe render "out/scene-$1.png" -o "$picture" --mount "$1" --pan "$2" --tilt "$3" --time 20 2>&1
}

mkdir -p out
for mount in ceiling wall floor; do
    $lumofe scene out/scene-$mount.png --size 2048 --mount $mount
    echo "out/scene-$mount.png: the fisheye picture of a camera on the $mount"
done
for pan in -22.5 67.5 157.5 247.5; do
    render ceiling $pan 70
done
render ceiling 0 0
render floor 67.5 -70
render floor 0 -20
render wall 0 0
render wall 0 -40
echo "The pictures are in $(pwd)/out"
