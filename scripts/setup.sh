#!/bin/sh
# Installs what building and testing needs on Debian 12, if it is not there: setup.sh
set -eu
exec "$(dirname "$0")/install.sh" setup \
    cmake ninja-build g++ g++-multilib clang clang-tidy libclang-rt-14-dev googletest libcli11-dev \
    libstb-dev nlohmann-json3-dev binutils doxygen abigail-tools groff-base pkgconf valgrind qemu-user \
    ffmpeg
