#!/bin/sh
# Checks the C example's files: check_dewarp_frame_c.sh /FULL/PATH/PROGRAM
set -eu
program=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"

# plain LUMA_BYTES: a 4:2:0 frame with luma 'x' and chroma 'y'
plain() {
    head -c "$1" /dev/zero | tr '\0' x
    head -c $(($1 / 2)) /dev/zero | tr '\0' y
}

plain $((640 * 480)) >in.nv12
plain $((800 * 600)) >expected.nv12
"$program" out.nv12 in.nv12 640 480 >/dev/null
cmp out.nv12 expected.nv12

# refuses WORDS ARGUMENTS...: fails, saying WORDS, and writes nothing
refuses() {
    words=$1
    shift
    rm -f out.nv12
    if "$program" "$@" >/dev/null 2>said; then
        echo "accepted: $*" >&2
        exit 1
    fi
    grep -q "$words" said || { cat said >&2; exit 1; }
    [ ! -e out.nv12 ] || { echo "wrote in spite of: $*" >&2; exit 1; }
}

refuses 'one NV12 frame of 640 x 482 pixels, 462720 bytes' out.nv12 in.nv12 640 482
refuses 'one NV12 frame of 640 x 478 pixels' out.nv12 in.nv12 640 478
refuses 'none.nv12: No such file' out.nv12 none.nv12 640 480
refuses 'usage:' out.nv12 in.nv12 640
refuses 'usage:' out.nv12 in.nv12 640 480p
refuses 'folder/out.nv12: No such file' folder/out.nv12 in.nv12 640 480
