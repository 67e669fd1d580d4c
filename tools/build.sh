#!/usr/bin/env bash
# Configures a preset if necessary and builds it. Prints the output only if the build fails.
#   tools/build.sh PRESET [TARGET...]
set -euo pipefail
cd "$(dirname "$0")/.."

preset=$1
log=$(mktemp)
trap 'rm -f "$log"' EXIT

quietly() { "$@" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }; }

echo "Building the preset $preset ..."
[ -f "build/$preset/build.ninja" ] || quietly cmake --preset "$preset"
quietly cmake --build --preset "$preset" ${2:+--target "${@:2}"}
