#!/bin/sh
# Measures where the time of a rendered video goes, and what ffmpeg alone needs for the like:
# video_shares.sh [FRAMES]
#
# Dewarps FRAMES frames (default 200) of 2048x2048 H.264 to the 1920x1080 quad, into nowhere and into
# H.264, and prints what --stats says. Then ffmpeg's own filter v360 makes one 960x540 view of the same
# frames, and four of them stacked, into nowhere. Each ffmpeg decodes and filters on one thread;
# processor times are those of the processes and their children.
set -eu
cd "$(dirname "$0")/.."

frames=${1:-200}
cmake --preset release-64 >/dev/null
cmake --build --preset release-64 --target LumoFESDK lumofe -- --quiet
lumofe=build/release-64/bin/lumofe
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

$lumofe scene "$scratch/scene.png" --size 2048
ffmpeg -v error -loop 1 -framerate 25 -i "$scratch/scene.png" -vf scroll=h=0.002 -frames:v "$frames" \
    -pix_fmt yuv420p -c:v libx264 -preset veryfast "$scratch/in.mp4"

# quad TITLE ENCODE: where the time of a rendering goes, with these options of the encoder.
quad() {
    echo "== lumofe render --view quad, $1"
    $lumofe render "$scratch/in.mp4" -o - --view quad --size 1920x1080 --stats \
        --decode "-threads 1" --encode "$2" >/dev/null
}

# filtered TITLE FILTER: processor (utime, stime) and wall time of an ffmpeg that decodes and filters.
filtered() {
    echo "== ffmpeg, $1"
    ffmpeg -v info -nostats -benchmark -threads 1 -i "$scratch/in.mp4" -filter_threads 1 \
        -filter_complex_threads 1 -filter_complex "$2" -f null - 2>&1 | grep '^bench: utime'
}

quad "raw frames into nowhere" "-c:v rawvideo -pix_fmt nv12 -f rawvideo"
quad "H.264 into nowhere" "-c:v libx264 -preset veryfast -crf 20 -threads 1 -f mpegts"

view=v360=input=fisheye:output=flat:ih_fov=180:iv_fov=180:h_fov=90:v_fov=60:w=960:h=540:pitch=-45
filtered "decoding alone" "[0:v]null"
filtered "one view of 960x540 by v360" "[0:v]$view"
filtered "four views of 960x540 by v360, stacked to 1920x1080" \
    "[0:v]split=4[a][b][c][d];[a]$view:yaw=0[e];[b]$view:yaw=45[f];[c]$view:yaw=-45[g];[d]$view:yaw=90[h];[e][f]hstack[i];[g][h]hstack[j];[i][j]vstack"
