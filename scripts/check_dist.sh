#!/bin/sh
# Checks that the packed sources build, and that they pack to the same bytes in another folder:
# check_dist.sh
#
# One of the kits stands for both, which differ in nothing but a compiler option.
set -eu
cd "$(dirname "$0")/.."

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
scripts/dist.sh >"$scratch/packed"
source=$(head -n 1 "$scratch/packed")

# Elsewhere, with another mask for new files.
umask 077
mkdir "$scratch/elsewhere"
tar --extract --file "$source" --directory "$scratch/elsewhere"
copy=$scratch/elsewhere/$(basename "$source" .tar.gz)
"$copy/scripts/dist.sh" 32 >"$scratch/packed"

status=0
while read -r file; do
    if ! cmp "$file" "$copy/$file"; then
        echo "check_dist: $file is not the same when it is made from the sources in $source" >&2
        status=1
    fi
done <"$scratch/packed"
[ $status != 0 ] || echo "check_dist: what dist/ holds can be made again"
exit $status
