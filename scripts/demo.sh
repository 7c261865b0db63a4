#!/bin/sh
# Builds the 32-bit library and tool and renders the built-in scene into out/: demo.sh
#
# Prints each picture's path and the time per frame.
set -eu
cd "$(dirname "$0")/.."

cmake --preset release-32 >/dev/null
cmake --build --preset release-32 --target LumoFESDK lumofe -- --quiet
lumofe=build/release-32/bin/lumofe

mkdir -p out
set -- # the arguments of the contact sheet: captions and pictures in the same order
for mount in ceiling wall floor; do
    scene=out/scene-$mount.png
    $lumofe scene "$scene" --force --size 2048 --mount "$mount"
    echo "$scene: the fisheye picture of a camera on the $mount"
    set -- "$@" --caption "$mount: the fisheye picture" "$scene"
    for view in single quad 360 180; do
        picture=out/$mount-$view.png
        case $view-$mount in
        single-ceiling | single-floor) aim=--pan=-22.5 ;; # straight at a wall
        *) aim= ;;
        esac
        time=$($lumofe render "$scene" -o "$picture" --force --mount "$mount" --view "$view" ${aim:+"$aim"} \
            --time 15 2>&1)
        echo "$picture: $time"
        set -- "$@" --caption "$mount: --view $view, ${time##*: }" "$picture"
    done
done
# The single view of the camera on the ceiling, steered around.
for aim in "67.5 70" "157.5 70" "247.5 70" "0 0" "112.5 40"; do
    pan=${aim% *} tilt=${aim#* }
    picture=out/ceiling-single-pan$pan-tilt$tilt.png
    time=$($lumofe render out/scene-ceiling.png -o "$picture" --force --pan "$pan" --tilt "$tilt" \
        --time 15 2>&1)
    echo "$picture: $time"
    set -- "$@" --caption "single, pan $pan, tilt $tilt" "$picture"
done
$lumofe sheet out/contact-sheet.png --force --columns 5 --width 384 "$@"
echo "out/contact-sheet.png: all of them"

$lumofe render out/scene-ceiling.png -o out/pan.y4m --force --size 640x480 --pan-sweep 360 --frames 100
echo "out/pan.y4m: a turn of the single view in four seconds"
echo "The pictures are in $(pwd)/out"
