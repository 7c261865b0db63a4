#!/bin/sh
# Checks that a page's C++ is the example that is built: check_readme.sh PAGE EXAMPLE
set -eu
sed -n '/^```cpp$/,/^```$/p' "$1" | sed '1d;$d' | diff - "$2"
