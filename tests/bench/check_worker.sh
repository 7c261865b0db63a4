#!/bin/sh
# Checks that the program that times cases answers what it is asked: check_worker.sh PROGRAM
set -eu
answers=$(printf '%s\n' view/single@SSE2 frame/steered close kernel/nothing \
    view/single@nothing | "$1")
expected='number
number
closed
error: no case kernel/nothing
error: no instruction set nothing'
# A number's digits do not matter, but that it is above zero does.
found=$(echo "$answers" | sed -E 's/^[0-9.]*[1-9][0-9.]*$/number/')
if [ "$found" != "$expected" ]; then
    printf 'expected\n%s\ngot\n%s\n' "$expected" "$answers" >&2
    exit 1
fi
