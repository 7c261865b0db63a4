#!/bin/sh
# Checks that a page's table of speeds is that of the results: check_speed_table.sh PAGE RESULTS
set -eu
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
sed -n '/^## Speed$/,/^## /p' "$1" | grep '^|' >"$scratch/page" || true
grep '^|' "$2" >"$scratch/results" || true
if [ ! -s "$scratch/results" ] || ! diff "$scratch/page" "$scratch/results" >&2; then
    echo "the table of section Speed in $1 is not that of $2; make bench writes both" >&2
    exit 1
fi
