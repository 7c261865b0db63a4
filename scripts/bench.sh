#!/bin/sh
# Compares the library's speed with others' and prints the table: bench.sh [--rounds N] [ROW...]
#
# With all rows, the results are also written to bench/RESULTS.md and the table to README.md.
set -eu
cd "$(dirname "$0")/.."

for bits in 32 64; do
    cmake --preset "bench-$bits" >/dev/null
done
cmake --build --preset bench-32 --target bench_ours -- --quiet
cmake --build --preset bench-64 --target bench_ours bench_peers bench_compare lumofe_bench -- --quiet

rounds=25
if [ "${1-}" = --rounds ]; then
    if [ $# = 1 ]; then
        echo "bench: --rounds needs a number" >&2
        exit 2
    fi
    rounds=$2
    shift 2
fi
compare="build/bench-64/bin/bench_compare --rounds $rounds"
programs="build/bench-64/bin/bench_ours build/bench-32/bin/bench_ours build/bench-64/bin/bench_peers"
# shellcheck disable=SC2086 # lists of words
if [ $# != 0 ]; then
    exec $compare $programs "$@"
fi
page=bench/RESULTS.md
# shellcheck disable=SC2086
$compare --page $page $programs

# README.md's table of its section on speed becomes the page's.
readme=$(mktemp)
trap 'rm -f "$readme"' EXIT
awk -v page=$page '
    /^## / { speed = $0 == "## Speed" }
    speed && /^\|/ {
        if (!copied++)
            while ((getline line < page) > 0)
                if (line ~ /^\|/) print line
        next
    }
    { print }' README.md >"$readme"
cat "$readme" >README.md
echo "bench: $page and the table in README.md are written"
