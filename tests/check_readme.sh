#!/bin/sh
# Checks that the README's C++ is the example that is built: check_readme.sh README EXAMPLE
set -eu
sed -n '/^```cpp$/,/^```$/p' "$1" | sed '1d;$d' | diff - "$2"
