#!/usr/bin/env bash
# Replays the corpus in fuzz/corpus, then runs new inputs for SECONDS, 60 by default. An input that
# fails is stored in build/fuzz; build/fuzz/fuzz/tessaline_fuzz INPUT replays it.
#   tools/fuzz.sh [SECONDS] [keep]      "keep" adds inputs that reach new code to the corpus
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-60}
corpus=fuzz/corpus
grown=build/fuzz/grown
fuzz=build/fuzz/fuzz/tessaline_fuzz

tools/install-dependencies.sh ci
tools/build.sh fuzz
mkdir -p "$grown"
export QT_QPA_PLATFORM=offscreen TZ=Europe/Berlin
options=(-timeout=10 -artifact_prefix=build/fuzz/)
quietly() { "$@" >build/fuzz/log 2>&1 || { tail -n 60 build/fuzz/log >&2; exit 1; }; }

quietly "$fuzz" "${options[@]}" -runs=0 "$corpus"
echo "The corpus of $(find "$corpus" -type f | wc -l) inputs passes."
[ "$seconds" -gt 0 ] || exit 0
quietly "$fuzz" "${options[@]}" -max_len=400 -max_total_time="$seconds" -print_final_stats=1 \
    "$grown" "$corpus"
grep -E 'number_of_executed_units|peak_rss_mb' build/fuzz/log

if [ "${2:-}" = keep ]; then
    merged=$(mktemp -d)
    quietly "$fuzz" -set_cover_merge=1 -use_counters=0 "$merged" "$corpus" "$grown"
    rm -r "$corpus"
    mv "$merged" "$corpus"
    chmod 755 "$corpus"
fi
