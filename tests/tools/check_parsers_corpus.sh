#!/bin/sh
# Replays the fuzzer's inputs: check_parsers_corpus.sh PROGRAM CORPUS
set -eu
program=$1 corpus=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir "$scratch/learned"
tar --extract --gzip --file "$corpus/parsers.tar.gz" --directory "$scratch/learned"
# The last file named is the one that breaks something.
if ! find "$corpus/parsers" "$scratch/learned" -type f -print0 |
    xargs -0 "$program" >"$scratch/out" 2>"$scratch/err"; then
    tail -n 40 "$scratch/err" >&2
    exit 1
fi
cat "$scratch/out"
