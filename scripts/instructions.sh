#!/bin/sh
# Compares the instructions that a steady frame of each layout takes with the figures in
# bench/instructions.txt, or writes that file anew: instructions.sh check|update
#
# Unlike times, they come out the same on every machine. Fails when a frame takes 5 % more than its
# figure, and when it takes 25 % less: the figure would then let a later slow-down pass.
set -eu
cd "$(dirname "$0")/.."
figures=bench/instructions.txt

case ${1-} in
check | update) ;;
*)
    echo "instructions: give check or update" >&2
    exit 2
    ;;
esac
if ! command -v valgrind >/dev/null 2>&1; then
    echo "instructions: valgrind is missing; run scripts/setup.sh, or install the package valgrind" >&2
    exit 1
fi
for bits in 32 64; do
    cmake --preset "release-$bits" >/dev/null
    cmake --build --preset "release-$bits" --target steady_frames -- --quiet
done
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# count BITS ISA: a line for each layout. Copies by the C library, which chooses them by processor,
# are made the same way everywhere.
count() {
    name=$1-$2
    if ! GLIBC_TUNABLES=glibc.cpu.hwcaps=-AVX2,-AVX,-ERMS,-FSRM,-AVX_Fast_Unaligned_Load \
        valgrind --tool=callgrind --callgrind-out-file="$scratch/$name" --collect-atstart=no \
        --toggle-collect=countedFrame --dump-after=countedFrame \
        "build/release-$1/bin/steady_frames" "$2" >"$scratch/$name.layouts" 2>"$scratch/$name.log"; then
        cat "$scratch/$name.log" >&2
        echo "instructions: counting those of the $1-bit build with $2 failed" >&2
        return 1
    fi
    part=0
    while read -r layout _; do
        first=$(sed -n 's/^summary: //p' "$scratch/$name.$((part + 1))")
        second=$(sed -n 's/^summary: //p' "$scratch/$name.$((part + 2))")
        part=$((part + 2))
        if [ $((first - second)) -gt $((second / 100)) ] || [ $((second - first)) -gt $((first / 100)) ]; then
            echo "instructions: $layout, $1-bit build, $2: $first, then $second; frames are not steady yet," \
                "see kFirstFrames in bench/Camera.h" >&2
            return 1
        fi
        echo "$1 $2 $layout $second"
    done <"$scratch/$name.layouts"
}

lacking=
# Valgrind knows AVX2 in 64-bit programs only.
if ! grep -qw avx2 /proc/cpuinfo; then
    lacking=AVX2
    echo "instructions: this processor has no AVX2; its figures are not checked"
fi
status=0
count 32 SSSE3 >"$scratch/32" &
other=$!
count 64 SSSE3 >"$scratch/64" || status=1
[ -n "$lacking" ] || count 64 AVX2 >>"$scratch/64" || status=1
wait "$other" || status=1
[ $status = 0 ] || exit $status
cat "$scratch/32" "$scratch/64" >"$scratch/counted"

if [ "$1" = update ]; then
    if [ -n "$lacking" ]; then
        echo "instructions: $figures needs those with AVX2; update it on a processor that has it" >&2
        exit 1
    fi
    mv "$scratch/counted" "$figures"
    echo "instructions: $figures written"
    exit
fi
awk -v figures="$figures" -v lacking="$lacking" '
    FILENAME == figures { expected[$1 " " $2 " " $3] = $4; next }
    {
        name = $1 " " $2 " " $3
        was = expected[name]
        delete expected[name]
        if (!was) {
            print "instructions: " figures " has no figure for " name
            bad = 1
            next
        }
        change = ($4 - was) * 100 / was
        said = sprintf("instructions: %s-bit build, %s, %s layout: %d, %+.1f %% of %d", $1, $2, $3, $4, change, was)
        if (change > 5) {
            print said ": too many"
            bad = 1
        } else if (change < -25) {
            print said ": take up the new figure with scripts/instructions.sh update"
            bad = 1
        } else if (change < -5) {
            print said
        }
        ++checked
    }
    END {
        for (name in expected) {
            split(name, part)
            if (part[2] == lacking) continue
            print "instructions: " name " of " figures " was not counted"
            bad = 1
        }
        if (!bad) print "instructions: " checked " frames take as many as " figures " says"
        exit bad
    }' "$figures" "$scratch/counted"
