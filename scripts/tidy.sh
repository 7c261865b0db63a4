#!/bin/sh
# Runs clang-tidy over the library, the tool and the fuzzers; any finding fails: tidy.sh
set -eu
cd "$(dirname "$0")/.."

cmake --preset fuzz-64 >/dev/null
cmake --build --preset fuzz-64 --target lumofe_make_fixed_map -- --quiet
git ls-files 'src/*.cpp' 'tools/*.cpp' 'fuzz/*.cpp' |
    xargs -P "$(nproc)" -n 6 clang-tidy -p build/fuzz-64 --quiet --warnings-as-errors='*'
