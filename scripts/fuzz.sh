#!/bin/sh
# Builds the fuzz harnesses with clang and runs one of them, or all in turn:
#
#   scripts/fuzz.sh HARNESS [SECONDS]     one harness, 60 s unless told otherwise
#   scripts/fuzz.sh all [SECONDS]         every harness, 20 s each unless told otherwise
#
# Each run first replays the inputs under tests/fuzz-regressions/HARNESS, then fuzzes
# from the seeds (the record formats as the program writes them, the bookmark and feed
# corpus) and the corpus earlier runs grew in build-fuzz/corpus. It fails on a finding
# and leaves the input in build-fuzz/findings.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
build="$top/build-fuzz"
all="prefs bookindex folder layoutindex layoutfile layoutexport netscapeimport feed feedcleaner handover pop3 searchform opensearch"
what=${1:?usage: fuzz.sh HARNESS|all [SECONDS]}
if [ "$what" = all ]; then
    seconds=${2:-20}
    harnesses=$all
else
    seconds=${2:-60}
    harnesses=$what
fi

"$top/scripts/install-deps.sh"
cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_CXX_COMPILER=clang++-14 -DVANTRELL_CORE_ONLY=ON -DVANTRELL_FUZZ=ON >/dev/null
targets="--target fuzz_seeds"
for h in $harnesses; do targets="$targets --target fuzz_$h"; done
# shellcheck disable=SC2086
cmake --build "$build" -j "$(nproc 2>/dev/null || echo 2)" $targets

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
"$build/fuzz/fuzz_seeds" "$scratch/data" "$build/seeds"
mkdir -p "$build/findings"

for h in $harnesses; do
    case $h in
        prefs) max=31144 dict= extra= ;;
        bookindex) max=18328 dict= extra= ;;
        folder) max=20208 dict= extra= ;;
        layoutindex) max=20220 dict= extra= ;;
        layoutfile) max=15690 dict= extra= ;;
        layoutexport) max=12448 dict= extra= ;;
        netscapeimport) max=65536 dict=html.dict extra="$top/tests/corpus/bookmarks" ;;
        feed) max=65536 dict=xml.dict extra="$top/tests/corpus/feeds" ;;
        feedcleaner) max=16384 dict=html.dict extra="$top/tests/corpus/xss $top/tests/corpus/bookmarks" ;;
        handover) max=70000 dict= extra= ;;
        pop3) max=4096 dict=pop3.dict extra= ;;
        searchform) max=65536 dict=html.dict extra="$top/resources" ;;
        opensearch) max=16384 dict=xml.dict extra= ;;
        *) echo "fuzz.sh: no harness named $h (one of: $all)" >&2; exit 2 ;;
    esac
    corpus="$build/corpus/$h"
    mkdir -p "$corpus"
    regressions="$top/tests/fuzz-regressions/$h"
    if [ -d "$regressions" ]; then
        echo "== $h: replaying $(ls "$regressions" | wc -l) regression inputs"
        "$build/fuzz/fuzz_$h" "$regressions"/* >/dev/null 2>&1 \
            || { "$build/fuzz/fuzz_$h" "$regressions"/*; exit 1; }
    fi
    seeds=""
    [ -d "$build/seeds/$h" ] && seeds="$build/seeds/$h"
    dictarg=""
    [ -n "$dict" ] && dictarg="-dict=$top/fuzz/$dict"
    echo "== $h: fuzzing for $seconds s"
    # shellcheck disable=SC2086
    "$build/fuzz/fuzz_$h" -max_total_time="$seconds" -max_len="$max" -timeout=10 \
        -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$build/findings/$h-" \
        $dictarg "$corpus" $seeds $extra 2>"$build/findings/$h.log" \
        || { tail -40 "$build/findings/$h.log"; exit 1; }
    grep -E '^stat::number_of_executed_units|^stat::peak_rss_mb' "$build/findings/$h.log" \
        | sed "s/^/   $h /"
done
