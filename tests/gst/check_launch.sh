#!/bin/sh
# Runs the built plugin in GStreamer's own programs: check_launch.sh PLUGIN SCRATCH
set -eu
plugin=$1 scratch=$2
GST_PLUGIN_PATH=$(dirname "$plugin")
GST_REGISTRY=$scratch/registry.bin
export GST_PLUGIN_PATH GST_REGISTRY
status=0
server=
trap '[ -z "$server" ] || kill "$server"' EXIT

fail() {
    echo "check_launch.sh: $*" >&2
    status=1
}

exports=$(nm -D --defined-only "$plugin" | awk '{print $3}' | LC_ALL=C sort | tr '\n' ' ')
[ "$exports" = "gst_plugin_lumofe_get_desc gst_plugin_lumofe_register " ] ||
    fail "the plugin exports $exports"

inspected=$(gst-inspect-1.0 lumofe)
for name in layout mount circle-x circle-y circle-radius panorama-offset camera-file preset pan1 tilt4 zoom2; do
    echo "$inspected" | grep -q "^  $name  *: ." || fail "gst-inspect-1.0 does not describe $name"
done

# launch PIPELINE...: three frames through the element, quietly. --no-fault: a crash must end it.
launch() {
    timeout 60 gst-launch-1.0 --no-fault -q videotestsrc num-buffers=3 ! \
        video/x-raw,width=640,height=640 ! "$@" >"$scratch/out" 2>"$scratch/err"
}

for layout in single quad 360 180; do
    for mount in ceiling wall floor; do
        launch videoconvert ! lumofe layout=$layout mount=$mount ! fakesink ||
            fail "layout=$layout mount=$mount fails: $(cat "$scratch/err")"
        [ ! -s "$scratch/out" ] || fail "layout=$layout prints $(cat "$scratch/out")"
    done
done

# The picture is of the size and in the colours that the caps say: a red input stays red.
timeout 60 gst-launch-1.0 --no-fault -q videotestsrc num-buffers=1 pattern=red ! \
    video/x-raw,format=RGB,width=640,height=640 ! lumofe ! videoconvert ! \
    video/x-raw,format=RGB,width=320,height=240 ! filesink "location=$scratch/red" ||
    fail "RGB fails"
bytes=$(wc -c <"$scratch/red")
[ "$bytes" = 230400 ] || fail "$bytes bytes come out, not 230400"
middle=$(od -An -tu1 -j 115680 -N 3 "$scratch/red" | tr -s ' ')
[ "$middle" = " 255 0 0" ] || fail "red becomes$middle"

if launch videoconvert ! lumofe layout=quad ! video/x-raw,width=302,height=240 ! fakesink; then
    fail "a size that leaves gaps is taken"
fi
grep -q "the nearest is 304x240" "$scratch/err" || fail "the message is: $(cat "$scratch/err")"

# The element's own conversion is that of a videoconvert behind it. Without a colorimetry in the caps
# that one takes what is usual for the size of the output, not of the input.
for input in "NV12,colorimetry=bt709 NV12 quad" "I420,colorimetry=bt601 I420 quad" "NV12,colorimetry=bt709 NV12 360" \
    "RGB BGR single"; do
    # shellcheck disable=SC2086 # three words
    set -- $input
    for direct in "" "video/x-raw,format=$2 ! videoconvert !"; do
        # shellcheck disable=SC2086 # elements
        launch videoconvert ! "video/x-raw,format=$1" ! lumofe layout="$3" ! $direct video/x-raw,format=BGRx ! \
            filesink "location=$scratch/bgrx${direct:+_behind}" || fail "$input to BGRx fails: $(cat "$scratch/err")"
    done
    cmp "$scratch/bgrx" "$scratch/bgrx_behind" || fail "$input is converted differently"
done

# Pipelines of the page, on a screen of the test's own.
rm -f "$scratch/display"
Xvfb -displayfd 1 -screen 0 800x600x24 -nolisten tcp >"$scratch/display" 2>/dev/null &
server=$!
for _ in 1 2 3 4 5 6 7 8 9 10; do
    [ ! -s "$scratch/display" ] || break
    sleep 1
done
DISPLAY=:$(cat "$scratch/display")
export DISPLAY
launch theoraenc ! oggmux ! filesink "location=$scratch/cam.ogg" || fail "no video: $(cat "$scratch/err")"
page=$(dirname "$0")/../../docs/gstreamer.md
line=$(sed -n 's/^    gst-launch-1.0 \(filesrc location=cam.mp4 ! .*\) ! autovideosink$/\1/p' "$page")
[ -n "$line" ] || fail "the page has no pipeline"
for sink in ximagesink "video/x-raw,format=RGB16 ! fakesink"; do
    # shellcheck disable=SC2086 # elements
    (cd "$scratch" && timeout 60 gst-launch-1.0 --no-fault -q ${line%%cam.mp4*}cam.ogg${line#*cam.mp4} ! $sink) \
        >"$scratch/out" 2>&1 || fail "$line ! $sink fails: $(cat "$scratch/out")"
done
exit $status
