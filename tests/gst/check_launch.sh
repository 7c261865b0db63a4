#!/bin/sh
# Runs the built plugin in GStreamer's own programs: check_launch.sh PLUGIN SCRATCH
set -eu
plugin=$1 scratch=$2
GST_PLUGIN_PATH=$(dirname "$plugin")
GST_REGISTRY=$scratch/registry.bin
export GST_PLUGIN_PATH GST_REGISTRY
status=0

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
exit $status
