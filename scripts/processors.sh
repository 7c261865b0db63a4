#!/bin/sh
# Runs the library on emulated processors without AVX2 and without SSSE3: processors.sh
#
# An instruction that such a processor does not have ends a program. A frame of each layout must come
# out as on this machine, and tests of the kernels and of the tables must pass. First it is made sure
# that the emulator does stop at instructions that the processor does not have.
set -eu
cd "$(dirname "$0")/.."

kernels='BandKernels.*:BilinearSample.*:CBilinear.*:CopyPairs.*:Isa.*:LMAffine*:MappingDrivers.*:Packed.*:RemapOps.*'
kernels=$kernels':RemapPlan.*:ResizeImage.*:ReversedCopy.*:ScalePlane.*:Strides.*:WholeFrame.*'
kernels=$kernels':Isas/*:EveryInstructionSet/*'
tables='PanoramaPolar.*:PanoramaRemap.*:Polar.*:Variants/*'

for emulator in qemu-i386 qemu-x86_64; do
    command -v $emulator >/dev/null 2>&1 && continue
    echo "processors: $emulator is missing; run scripts/setup.sh, or install the package qemu-user" >&2
    exit 1
done
for bits in 32 64; do
    cmake --preset "release-$bits" >/dev/null
    cmake --build --preset "release-$bits" --target steady_frames one_instruction kernels_tests \
        mapping_tests -- --quiet
done
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
ulimit -c 0

# emulated PROCESSOR STATUS PROGRAM ARGUMENTS...: fails unless the program ends with the status.
emulated() {
    processor=$1 expected=$2 program=$3
    shift 3
    status=0
    "$emulator" -cpu "$processor" "$bin/$program" "$@" >"$log" 2>"$log.err" || status=$?
    [ $status != "$expected" ] || return 0
    cat "$log" "$log.err" >&2
    echo "processors: $emulator -cpu $processor $bin/$program $* ended with $status, not $expected" >&2
    exit 1
}

# check EMULATOR BITS PROCESSOR LACKING...: a processor, and the instruction sets that it lacks.
check() {
    emulator=$1 bin=build/release-$2/bin tested=$3 log=$scratch/$2-$3
    shift 3
    for set in "$@"; do
        emulated max 0 one_instruction "$set"
        emulated "$tested" 132 one_instruction "$set" # an illegal instruction, as the shell has it
        emulated "$tested" 3 steady_frames "$set"     # the library sees that it is not there
    done
    "$bin/steady_frames" >"$log.here"
    emulated "$tested" 0 steady_frames
    if ! diff "$log.here" "$log" >&2; then
        echo "processors: the frames of $bin/steady_frames differ on a $tested (>)" >&2
        exit 1
    fi
    emulated "$tested" 0 kernels_tests --gtest_filter="$kernels"
    emulated "$tested" 0 mapping_tests --gtest_filter="$tables"
}

status=0
{
    check qemu-i386 32 core2duo AVX2
    check qemu-i386 32 coreduo AVX2 SSSE3
} &
other=$!
(
    check qemu-x86_64 64 core2duo AVX2
    check qemu-x86_64 64 qemu64 AVX2 SSSE3
) || status=1
wait "$other" || status=1
[ $status = 0 ] || exit $status
echo "processors: the same frames without AVX2 and without SSSE3"
