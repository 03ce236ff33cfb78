#!/usr/bin/env bash
# Builds the fuzz targets with clang and runs each for a while on seeds made
# by make_seeds.sh plus the committed corpus, two at a time (the machines have
# two cores). New findings land in <work>/artifacts/<ext>/.
#   tests/fuzz/run_fuzzers.sh [seconds per extension] [work folder] [extensions...]
set -euo pipefail
cd "$(dirname "$0")/../.."
seconds=${1:-600}
work=${2:-build-fuzz/work}
shift $(( $# > 2 ? 2 : $# )) || true
exts=("$@")
[ ${#exts[@]} -gt 0 ] || exts=(mp3 ogg flac wav aac quote)

command -v clang++ >/dev/null || { echo "run_fuzzers: clang++ is missing (apt-get install clang)" >&2; exit 1; }
[ -f build-fuzz/build.ninja ] || CC=clang CXX=clang++ cmake -S tests/fuzz -B build-fuzz -G Ninja >/dev/null
cmake --build build-fuzz

mkdir -p "$work"
[ -d "$work/seeds" ] || tests/fuzz/make_seeds.sh "$work/seeds"

run() {
    local ext=$1
    mkdir -p "$work/corpus/$ext" "$work/artifacts/$ext" "$work/seeds/$ext" tests/fuzz/corpus/"$ext"
    local target=build-fuzz/fuzz_media_"$ext"
    [ "$ext" != quote ] || target=build-fuzz/fuzz_quote
    "$target" -max_total_time="$seconds" -timeout=10 -print_final_stats=1 \
        -artifact_prefix="$work/artifacts/$ext/" \
        "$work/corpus/$ext" "$work/seeds/$ext" tests/fuzz/corpus/"$ext" > "$work/$ext.log" 2>&1 || true
    echo "$ext: $(grep -E 'stat::number_of_executed_units' "$work/$ext.log" || echo 'no stats, see log')"
}

set -- "${exts[@]}"
while [ $# -gt 0 ]; do
    run "$1" &
    if [ $# -gt 1 ]; then run "$2" & fi
    wait
    shift $(( $# > 1 ? 2 : 1 ))
done
