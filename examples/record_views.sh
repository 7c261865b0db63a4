#!/bin/sh
# Records the four views of a camera, in files of so many seconds, and connects again whenever the
# camera breaks off: record_views.sh ADDRESS FOLDER SECONDS [OPTIONS OF LUMOFE RENDER...]
#
#     record_views.sh rtsp://camera/1 hall 600 --circle 800,640,610 --decode "-rtsp_transport tcp"
#
# writes hall/20260131-235959-1.mkv to -4.mkv, and so on every ten minutes until Ctrl-C or SIGTERM.
# LUMOFE names another lumofe than the shell finds, PAUSE other seconds than 2 before it connects
# again.
set -u
if [ $# -lt 3 ]; then
    echo "usage: record_views.sh ADDRESS FOLDER SECONDS [OPTIONS OF LUMOFE RENDER...]" >&2
    exit 2
fi
address=$1 folder=$2 seconds=$3
shift 3
mkdir -p "$folder" || exit 2

child= stopped=
# One SIGINT has lumofe complete its files, a second one would throw them away: so it is started
# out of reach of the terminal's own.
trap 'stopped=1; kill -INT $child 2>/dev/null' HUP INT TERM
while [ -z "$stopped" ]; do
    setsid timeout --foreground -s INT "$seconds" "${LUMOFE:-lumofe}" render "$address" \
        -o "$folder/$(date +%Y%m%d-%H%M%S).mkv" --view quad --views separate "$@" &
    child=$!
    wait $child
    status=$?
    # The signal ends the first wait, not the recording.
    [ -n "$stopped" ] && wait $child
    # The time was up (124): go on at once. Else the camera broke off, or was not there.
    [ -n "$stopped" ] || [ $status -eq 124 ] || sleep "${PAUSE:-2}"
done
