#!/bin/sh
# Checks what the measuring example prints and refuses: check_measure_cameras.sh PROGRAM
set -eu
program=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

"$program" 320 240 160 120 2 3 >/dev/null 2>"$scratch/said"
grep -q '16 cameras of 320 x 240 on 160 x 120, 3 threads$' "$scratch/said"
grep -q '[1-9][0-9]* MiB resident, [1-9][0-9]* MiB of address space$' "$scratch/said"
# 16 slots take 330 MiB or more; without them there would be nothing to measure.
[ "$(sed -n 's/.* resident, \([0-9]*\) MiB.*/\1/p' "$scratch/said")" -gt 330 ]

# refuses WORDS ARGUMENTS...
refuses() {
    words=$1
    shift
    if "$program" "$@" >/dev/null 2>"$scratch/said"; then
        echo "accepted: $*" >&2
        exit 1
    fi
    grep -q "$words" "$scratch/said" || { cat "$scratch/said" >&2; exit 1; }
}

refuses 'expected no arguments' 320 240
refuses 'many is no number from 1' 320 240 160 120 2 many
refuses 'status 1' 5000 5000 160 120 1 1
