#!/bin/sh
# Runs clang-tidy; any finding fails: tidy.sh [quick]
#
# Over the library, the tool and the fuzzers. quick is for every day: over the library alone and
# without the two slowest parts, the analyzer and the search for reserved names.
set -eu
cd "$(dirname "$0")/.."

case ${1-} in
'')
    checks=
    sources() { git ls-files 'src/*.cpp' 'tools/*.cpp' 'fuzz/*.cpp'; }
    ;;
quick)
    checks='-clang-analyzer-*,-bugprone-reserved-identifier'
    sources() { find src -name '*.cpp'; }
    ;;
*)
    echo "tidy: $1 is not known; give quick or nothing" >&2
    exit 2
    ;;
esac
cmake --preset fuzz-64 >/dev/null
sources | sort |
    xargs -P "$(nproc)" -n 5 clang-tidy -p build/fuzz-64 --quiet --warnings-as-errors='*' --checks="$checks"
