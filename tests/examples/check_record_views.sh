#!/bin/sh
# Checks that the recording example goes on from file to file, connects again, and completes its last
# files when it is stopped: check_record_views.sh SCRIPT LUMOFE
set -eu
script=$1
export LUMOFE="$2" PAUSE=1
folder=$(mktemp -d)
recording=
trap 'kill $recording 2>/dev/null || true; rm -rf "$folder"' EXIT
cd "$folder"

"$LUMOFE" scene scene.png --size 320
"$LUMOFE" render scene.png -o cam.mp4 --pan-sweep 90 --frames 25

# await COUNT FOLDER: waits for so many files that are complete
await() {
    for _ in $(seq 300); do
        [ "$(ls "$2" 2>/dev/null | grep -c '^[0-9]*-[0-9]*-4\.mkv$')" -lt "$1" ] || return 0
        sleep 0.1
    done
    echo "check_record_views.sh: too few files in $2" >&2
    ls "$2" >&2
    exit 1
}

# playable FOLDER: sets of four files that hold frames, and nothing else
playable() {
    sets=$(ls "$1" | grep -c '^[0-9]*-[0-9]*-4\.mkv$')
    [ "$(ls "$1" | wc -l)" -eq $((4 * sets)) ] || { ls "$1" >&2; exit 1; }
    for file in "$1"/*; do
        frames=$(ffprobe -v error -count_packets -show_entries stream=nb_read_packets -of csv=p=0 "$file")
        [ "$frames" -gt 0 ] || { echo "$file has no frames" >&2; exit 1; }
    done
}

# A camera that goes on: a file every two seconds. The signal comes to all of the group, as Ctrl-C.
setsid "$script" cam.mp4 endless 2 --size 160x120 --decode "-re -stream_loop -1" 2>said &
recording=$!
await 2 endless
sleep 1
kill -TERM -$recording
wait $recording
playable endless
[ "$(grep -c 'lumofe: interrupted' said)" -ge 2 ] || { cat said >&2; exit 1; }

# A camera that breaks off after a second is connected again.
setsid "$script" cam.mp4 broken 60 --size 160x120 2>said &
recording=$!
await 2 broken
kill -TERM $recording
wait $recording
playable broken
[ ! -s said ] || { cat said >&2; exit 1; }

if "$script" cam.mp4 2>said; then exit 1; fi
grep -q '^usage: record_views.sh' said
