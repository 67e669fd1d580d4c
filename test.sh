#!/usr/bin/env bash
# Builds and runs all tests: once on the library that is shipped, once under the sanitizers.
# Arguments go to ctest (for example -R timeline).
set -euo pipefail
cd "$(dirname "$0")"

tools/install-dependencies.sh test
for preset in release asan; do
    tools/build.sh "$preset"
    echo "Tests of the preset $preset:"
    ctest --preset "$preset" "$@"
done
