#!/bin/sh
# Builds and runs every test for both word sizes: check.sh [PRESET...]
#
# Without presets: the release builds in full, one of them with the viewer, the GStreamer element and
# the Python module, the library and the tool sanitized, then the golden hashes of unoptimised and
# Clang builds, which must be the same, processors with fewer instructions, the instructions that a
# frame takes, slots on threads, clang-tidy over the library, a while of fuzzing, the documentation,
# which must build without warnings, the binary interface and the release's archives. The whole needs
# what setup.sh and setup_extras.sh install.
set -eu
cd "$(dirname "$0")/.."

# run PRESET TARGETS CTEST-ARGUMENTS...
run() {
    preset=$1 targets=$2
    shift 2
    echo "== $preset"
    cmake --preset "$preset" >/dev/null
    # shellcheck disable=SC2086 # a list of targets
    cmake --build --preset "$preset" --target $targets -- --quiet
    ctest --preset "$preset" "$@"
}

if [ $# != 0 ]; then
    for preset in "$@"; do
        run "$preset" all
    done
    exit
fi

# What is built on the library joins this build, which keeps the options, instead of the library's
# being built once more for it.
cmake --preset release-64 -DLUMOFE_BUILD_GSTREAMER=ON -DLUMOFE_BUILD_PYTHON=ON \
    -DLUMOFE_BUILD_VIEWER=ON >/dev/null
for preset in release-32 release-64 sanitize-32; do
    run "$preset" all
done
for preset in debug-32 debug-64 clang-32 clang-64; do
    echo "== $preset"
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" --target golden_frames -- --quiet
done
for compiler in debug clang; do
    ctest --preset "$compiler-32" -R '^golden$' &
    other=$!
    ctest --preset "$compiler-64" -R '^golden$'
    wait "$other"
done
echo "== processors"
scripts/processors.sh
echo "== instructions"
scripts/instructions.sh check
run threads-64 "api_tests serve_sixteen_cameras" -R '^(api|example_serve_sixteen_cameras)$'
echo "== tidy"
scripts/tidy.sh quick
echo "== fuzzing"
export LUMOFE_FUZZ_SEED=1
scripts/fuzz.sh fuzz-64 40 slots kernels
scripts/fuzz.sh guard-32 0 slots kernels
echo "== documentation"
cmake --build --preset release-32 --target draw_directions draw_cut_circle -- --quiet
scripts/docs.sh
echo "== abi"
scripts/abi.sh check
echo "== dist"
scripts/check_dist.sh
echo "all tests passed"
