#!/bin/sh
# Draws the pictures of the documentation anew from the built-in scene: pictures.sh
set -eu
cd "$(dirname "$0")/.."

cmake --preset release-32 >/dev/null
cmake --build --preset release-32 --target LumoFESDK lumofe draw_directions draw_cut_circle -- --quiet
lumofe=build/release-32/bin/lumofe
scene=$(mktemp --suffix .png)
trap 'rm -f "$scene"' EXIT

mkdir -p docs/pictures
$lumofe scene "$scene" --force --size 1280 --mount ceiling
$lumofe scene docs/pictures/scene-ceiling.jpg --force --size 480 --mount ceiling
$lumofe render "$scene" -o docs/pictures/single.jpg --force --size 640x480 --pan -22.5 --tilt 70
$lumofe render "$scene" -o docs/pictures/quad.jpg --force --size 544x408 --view quad
$lumofe render "$scene" -o docs/pictures/360.jpg --force --size 640x360 --view 360
$lumofe render "$scene" -o docs/pictures/180.jpg --force --size 640x360 --view 180
for mount in ceiling wall floor; do
    build/release-32/bin/draw_directions $mount docs/pictures/directions-$mount.jpg
done
build/release-32/bin/draw_cut_circle docs/pictures/calibrate-input.jpg
$lumofe calibrate docs/pictures/calibrate-input.jpg -o docs/pictures/calibrate-overlay.jpg >/dev/null
