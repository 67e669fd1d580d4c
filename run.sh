#!/usr/bin/env bash
# Builds the plug-in and the workbench and opens its window; without a display, or with --tour, plays
# the tour instead and writes pictures of the window to out/. Arguments go to the workbench; --help
# lists them. With --frame-times, measures how fluid the window is, and with --benchmark first, the
# plug-in instead; both write to out/. --no-install first: fails where packages are missing.
set -euo pipefail
cd "$(dirname "$0")"

if [ "${1:-}" = --no-install ]; then
    shift
    export TESSALINE_NO_INSTALL=1
fi
tools/install-dependencies.sh run
if [ "${1:-}" = --benchmark ]; then
    shift
    tools/build.sh release tessaline-benchmark
    exec build/release/benchmark/tessaline-benchmark "$@"
fi
tools/build.sh release tessaline-workbench
for argument in "$@"; do
    if [ "$argument" = --tour ]; then
        unset DISPLAY WAYLAND_DISPLAY
    fi
done
# In software everywhere: it draws the same with and without a graphics card.
export QT_QUICK_BACKEND=software
exec build/release/workbench/tessaline-workbench --pictures out "$@"
