#!/bin/sh
# Checks what the built library exports and needs: check_library.sh LIBRARY EXPECTED_EXPORTS
set -eu
library=$1
expected=$2
status=0

exports=$(nm -D --defined-only "$library" | awk '{print $3}' | LC_ALL=C sort)
if ! printf '%s\n' "$exports" | diff "$expected" - ; then
    echo "the exported symbols differ from $expected (< missing, > unexpected)" >&2
    status=1
fi

soname=$(readelf -d "$library" | sed -n 's/.*SONAME.*\[\(.*\)\]/\1/p')
if [ "$soname" != libLumoFESDK.so ]; then
    echo "the SONAME is '$soname', not libLumoFESDK.so" >&2
    status=1
fi

for needed in $(readelf -d "$library" | sed -n 's/.*NEEDED.*\[\(.*\)\]/\1/p'); do
    case $needed in
        libstdc++.so.6 | libm.so.6 | libgcc_s.so.1 | libc.so.6) ;;
        *)
            echo "the library needs $needed" >&2
            status=1
            ;;
    esac
done

if readelf -d "$library" | grep -q TEXTREL; then
    echo "the library has text relocations" >&2
    status=1
fi
exit $status
