#!/bin/sh
# Checks what an installed kit holds: contents.sh KIT LIST SOURCE BUILD
#
# LIST names the files but the pages, pictures and examples, which are those of the source tree.
set -eu
kit=$1 list=$2 source=$3 build=$4
status=0

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
docs=$(sed -n 's,/README.md$,,p' "$list")
{
    cat "$list"
    (cd "$source" && find docs -name '*.md' -o -name '*.jpg' -o -name '*.svg') | sed "s,^,$docs/,"
    (cd "$source" && find examples -type f ! -name CMakeLists.txt) | sed "s,^,$docs/,"
} | LC_ALL=C sort >"$scratch/expected"
(cd "$kit" && find . -type f) | sed 's,^\./,,' | LC_ALL=C sort >"$scratch/installed"
if ! diff "$scratch/expected" "$scratch/installed"; then
    echo "contents.sh: the installed files differ from $list (< missing, > unexpected)" >&2
    status=1
fi

for folder in "$source" "$build"; do
    if grep -rlF -e "$folder" "$kit"; then
        echo "contents.sh: these files name the folder of the build, $folder" >&2
        status=1
    fi
done

manual=$(find "$kit" -name lumofe.1)
groff -man -Tutf8 -ww -z "$manual" 2>"$scratch/warnings"
if [ -s "$scratch/warnings" ]; then
    cat "$scratch/warnings" >&2
    echo "contents.sh: the manual page is not clean" >&2
    status=1
fi
exit $status
