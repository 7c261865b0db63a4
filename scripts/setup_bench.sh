#!/bin/sh
# Installs what the benchmarks need beyond setup.sh, if it is not there: setup_bench.sh
set -eu
exec "$(dirname "$0")/install.sh" setup_bench \
    libbenchmark-dev libopencv-imgproc-dev libopencv-calib3d-dev ffmpeg
