#!/bin/sh
# Checks that every test that the list of kept oddities names exists: check_kept.sh LIST TESTS_FOLDER
set -eu
status=0
for name in $(grep -o '| `[A-Za-z0-9]*\.[A-Za-z0-9]*` |' "$1" | tr -d '|` '); do
    if ! grep -rqE "^TEST(_F)?\(${name%.*}, ${name#*.}\)" "$2"; then
        echo "$1 names $name, which is no test" >&2
        status=1
    fi
done
exit $status
