#!/bin/sh
# Fuzzes for a while: fuzz.sh PRESET SECONDS [HARNESS...]
#
# PRESET is fuzz-32, fuzz-64 (sanitized), guard-32 or guard-64 (unreadable pages behind every buffer).
# Each harness (slots, kernels, parsers; default all) first replays its inputs in fuzz/corpus, then
# goes on for SECONDS seconds, 0 for the replay alone. What it learns is kept in build/corpus, what
# breaks something in out/fuzz. Two harnesses run at a time. LUMOFE_FUZZ_SEED fixes what is tried.
set -eu
cd "$(dirname "$0")/.."

if [ $# -lt 2 ]; then
    echo "usage: $0 PRESET SECONDS [HARNESS...]" >&2
    exit 2
fi
preset=$1 seconds=$2
shift 2
[ $# != 0 ] || set -- slots kernels parsers

cmake --preset "$preset" >/dev/null
for harness in "$@"; do
    cmake --build --preset "$preset" --target "fuzz_$harness" -- --quiet
done
mkdir -p out/fuzz

# fuzz HARNESS
fuzz() {
    learned=build/corpus/$1 log=out/fuzz/$preset-$1.log
    mkdir -p build/corpus
    tar --extract --gzip --file "fuzz/corpus/$1.tar.gz" --directory build/corpus
    runs=-1 longest=600
    [ "$seconds" != 0 ] || runs=0
    [ "$1" != parsers ] || longest=4000
    if "build/$preset/bin/fuzz_$1" -max_total_time="$seconds" -runs=$runs \
        -seed="${LUMOFE_FUZZ_SEED:-0}" -len_control=0 -max_len=$longest \
        -rss_limit_mb=3000 -timeout=60 -artifact_prefix="out/fuzz/$1-" -print_final_stats=1 \
        "$learned" "fuzz/corpus/$1" >"$log" 2>&1; then
        echo "$preset $1: $(sed -n 's/^stat::number_of_executed_units: *//p' "$log") inputs, nothing found"
    else
        tail -n 40 "$log" >&2
        echo "fuzz: $preset $1 found something; the whole log is $log" >&2
        return 1
    fi
}

status=0
while [ $# != 0 ]; do
    fuzz "$1" &
    first=$!
    shift
    if [ $# != 0 ]; then
        fuzz "$1" || status=1
        shift
    fi
    wait $first || status=1
done
exit $status
