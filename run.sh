#!/usr/bin/env bash
# Builds the plug-in and the workbench and plays the tour. Arguments go to the workbench; --help
# lists them. With --benchmark first, measures the plug-in instead and writes to out/.
set -euo pipefail
cd "$(dirname "$0")"

tools/install-dependencies.sh run
if [ "${1:-}" = --benchmark ]; then
    shift
    tools/build.sh release tessaline-benchmark
    exec build/release/benchmark/tessaline-benchmark "$@"
fi
tools/build.sh release tessaline-workbench
exec build/release/workbench/tessaline-workbench "$@"
