#!/bin/sh
# Packs the release into dist/: dist.sh [32|64]...
#
#     lumofesdk-VERSION.tar.gz                the sources
#     lumofesdk-VERSION-linux-i686.tar.gz     the installed 32-bit kit
#     lumofesdk-VERSION-linux-x86_64.tar.gz   the installed 64-bit kit
#
# Without arguments both kits. The same sources give the same bytes in any folder. Files
# carry the time of the commit, or that of SOURCE_DATE_EPOCH when it is set. Works in a clone and in the unpacked sources.
set -eu
cd "$(dirname "$0")/.."
export LC_ALL=C
unset DESTDIR

if [ -e .git ]; then
    epoch=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)}
    [ -z "$(git status --porcelain --untracked-files=no)" ] ||
        echo "dist: note: changes that are not committed are packed too" >&2
else
    # What packing gave to every file.
    epoch=${SOURCE_DATE_EPOCH:-$(stat -c %Y include/LumoFESDK.h)}
fi

part() {
    sed -n "s/^#define LUMOFESDK_VERSION_$1 //p" include/LumoFESDK.h
}
name=lumofesdk-$(part MAJOR).$(part MINOR).$(part PATCH)

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir -p dist

# pack NAME FOLDER: the files of the folder that standard input lists.
pack() {
    sort | tar --create --file "$scratch/tar" --directory "$2" --files-from - --format ustar \
        --transform "s,^,$1/," --mtime "@$epoch" --owner 0 --group 0 --numeric-owner --mode u=rwX,go=rX
    gzip -n -9 <"$scratch/tar" >"dist/$1.tar.gz"
    echo "dist/$1.tar.gz"
}

sources() {
    if [ -e .git ]; then
        git ls-files
    else
        find . \( -path ./build -o -path ./dist -o -path ./out \) -prune -o -type f -printf '%P\n'
    fi
}
sources | pack "$name" .

# With the default folders, whatever the build was configured for before.
[ $# != 0 ] || set -- 32 64
for bits in "$@"; do
    case $bits in
    32) machine=i686 ;;
    64) machine=x86_64 ;;
    *)
        echo "dist: $bits is no word size; give 32 or 64" >&2
        exit 2
        ;;
    esac
    cmake --preset "release-$bits" -U 'CMAKE_INSTALL_*' >/dev/null
    cmake --build --preset "release-$bits" --target LumoFESDK lumofe man_page completions -- --quiet >&2
    # Not what else the build may have been configured for.
    for component in runtime development tools; do
        cmake --install "build/release-$bits" --component $component \
            --prefix "$scratch/$machine" --strip >/dev/null
    done
    (cd "$scratch/$machine" && find . -type f -printf '%P\n') |
        pack "$name-linux-$machine" "$scratch/$machine"
done
