#!/bin/sh
# Compares the library's binary interface with the one recorded in abi/, or records it anew:
# abi.sh check|update
#
# abi/README.md says when updating is allowed.
set -eu
cd "$(dirname "$0")/.."

case ${1-} in
check | update) ;;
*)
    echo "abi: give check or update" >&2
    exit 2
    ;;
esac
if ! command -v abidw >/dev/null 2>&1; then
    echo "abi: abidw is missing; run scripts/setup.sh, or install the package abigail-tools" >&2
    exit 1
fi

# record BITS FILE: what hosts can see of the built library. Neither paths nor lines, so that the
# file only changes with the interface.
record() {
    cmake --preset "debug-$1" >/dev/null
    cmake --build --preset "debug-$1" --target LumoFESDK -- --quiet
    abidw --exported-interfaces-only --no-parameter-names --no-show-locs --no-comp-dir-path \
        --no-corpus-path --type-id-style hash --out-file "$2" "build/debug-$1/libLumoFESDK.so"
    sed -i "s,\( path='\)[^']*/src/,\1src/," "$2"
}

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
status=0
for bits in 32 64; do
    recorded=abi/lumofesdk-$bits.abi built=$scratch/$bits.abi
    record $bits "$built"
    if [ "$1" = update ]; then
        cp "$built" "$recorded"
    elif ! abidiff --harmless --leaf-changes-only "$recorded" "$built"; then
        echo "abi: the $bits-bit library differs from $recorded; see abi/README.md" >&2
        status=1
    fi
done
[ $status != 0 ] || [ "$1" = update ] || echo "abi: the 32- and 64-bit libraries are as recorded"
exit $status
