#!/bin/sh
# Draws the pictures of the documentation anew from the built-in scene: pictures.sh
set -eu
cd "$(dirname "$0")/.."

cmake --preset release-32 >/dev/null
cmake --build --preset release-32 --target LumoFESDK lumofe draw_directions draw_cut_circle -- --quiet
lumofe=build/release-32/bin/lumofe
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
scene=$scratch/scene.png

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
$lumofe calibrate docs/pictures/calibrate-input.jpg -o docs/pictures/calibrate-overlay.jpg --force >/dev/null

# The sheets of docs/parameters.md and docs/recipes/: what to show is put on a list, picture by picture.
for mount in ceiling wall floor; do
    $lumofe scene "$scratch/$mount.png" --size 1024 --mount $mount
done

# raw CAPTION CAMERA: puts the camera's own picture on the sheet
raw() {
    printf '%s\n' --caption "$1" "$scratch/$2.png" >>"$scratch/list"
}

# put CAPTION CAMERA SIZE OPTIONS...: puts what the camera's picture becomes with these options on it
count=0
put() {
    caption=$1 camera=$2 size=$3
    shift 3
    count=$((count + 1))
    $lumofe render "$scratch/$camera.png" -o "$scratch/$count.png" --size "$size" "$@"
    raw "$caption" $count
}

# sheet NAME OPTIONS...: makes the sheet of what was put, smaller than the tool's own JPEG files
sheet() {
    name=$1
    shift
    while read -r word; do
        set -- "$@" "$word"
    done <"$scratch/list"
    $lumofe sheet "$scratch/sheet.png" --force "$@"
    ffmpeg -v error -y -i "$scratch/sheet.png" -q:v 8 -bitexact "docs/pictures/$name.jpg"
    rm "$scratch/list"
}

for camera in ceiling wall floor; do
    raw "a $camera camera" $camera
    put "--mount ceiling" $camera 480x360 --mount ceiling --pan 22.5 --tilt 60
    put "--mount wall" $camera 480x360 --mount wall --pan 45 --tilt 0
    put "--mount floor" $camera 480x360 --mount floor --pan 22.5 --tilt -60
done
sheet recipe-mountings --columns 4 --width 240

for view in single quad; do
    for circle in "512,512,512 right" "512,512,440 radius too small" "512,512,600 radius too large" \
        "582,512,512 too far right" "512,582,512 too far down"; do
        options="--view $view --circle ${circle%% *}"
        [ $view = quad ] || options="$options --pan -22.5 --tilt 60"
        put "${circle#* }" ceiling 480x360 $options
    done
done
sheet recipe-circles --columns 5 --width 240

put single ceiling 480x360
put quad ceiling 480x360 --view quad
put 360 ceiling 480x268 --view 360
put 180 ceiling 480x272 --view 180
put "180, wall" wall 480x360 --view 180 --mount wall
sheet parameter-layout --columns 5 --width 200

for mount in ceiling wall floor; do
    raw $mount $mount
done
put "ceiling, pan -22.5" ceiling 480x360 --pan -22.5
put "wall, pan 0" wall 480x360 --mount wall
put "floor, pan -22.5" floor 480x360 --mount floor --pan -22.5
sheet parameter-mount --columns 3 --width 200

for pan in -22.5 0 45 90; do
    put "ceiling $pan" ceiling 480x360 --pan $pan
done
for pan in -22.5 0 45 90; do
    put "floor $pan" floor 480x360 --mount floor --pan $pan
done
for pan in -90 -10 0 90; do
    put "wall, zoom 50: $pan" wall 480x360 --mount wall --pan $pan --zoom 50
done
sheet parameter-pan --columns 4 --width 200

for tilt in 0 30 60 90; do
    put "ceiling $tilt" ceiling 480x360 --pan -22.5 --tilt $tilt
done
for tilt in 0 -30 -60 -90; do
    put "floor $tilt" floor 480x360 --mount floor --pan -22.5 --tilt $tilt
done
for tilt in -90 -45 0 90; do
    put "wall $tilt" wall 480x360 --mount wall --tilt $tilt
done
sheet parameter-tilt --columns 4 --width 200

for zoom in 0 25 50 75; do
    put "ceiling $zoom" ceiling 480x360 --pan -22.5 --tilt 60 --zoom $zoom
done
for zoom in 0 25 50 100; do
    put "wall $zoom" wall 480x360 --mount wall --zoom $zoom
done
for zoom in 0 25 50 100; do
    put "quad $zoom" ceiling 480x360 --view quad \
        --ptz 0,80,$zoom --ptz 90,80,$zoom --ptz 180,80,$zoom --ptz 270,80,$zoom
done
sheet parameter-zoom --columns 4 --width 200

for offset in 0 45 90 180; do
    put "$offset" ceiling 480x272 --view 180 --pano-offset $offset
done
sheet parameter-pano-offset --columns 4 --width 200

put "single 480x360" ceiling 480x360 --pan -22.5 --tilt 60
put "single 480x270" ceiling 480x270 --pan -22.5 --tilt 60
put "single 360x360" ceiling 360x360 --pan -22.5 --tilt 60
put "quad 480x360" ceiling 480x360 --view quad
put "exact 476x358" ceiling 476x358 --view quad --exact-size
sheet parameter-size --columns 5 --width 200

for format in nv12 yv12 rgb; do
    put "single $format" ceiling 480x360 --pan -22.5 --tilt 60 --format $format
done
put "quad rgb, exact" ceiling 480x360 --view quad --format rgb --exact-format
put "360 rgb, exact" ceiling 480x268 --view 360 --format rgb --exact-format
sheet parameter-format --columns 5 --width 200

# The viewer's, which needs what setup_extras.sh installs.
cmake --preset extras-64 >/dev/null
cmake --build --preset extras-64 --target draw_viewer -- --quiet
build/extras-64/bin/draw_viewer "$scene" docs/pictures/viewer.jpg
