#!/usr/bin/env bash
# Builds the plug-in and the workbench, and opens the workbench's window.
#   ./run.sh [OPTION...]               options of the workbench; --help lists them
#   ./run.sh --tour                    plays the tour and writes pictures of the window to out/; this is
#                                      the default without a display
#   ./run.sh --frame-times             measures how soon a frame shows each input; writes to out/
#   ./run.sh --benchmark [OPTION...]   measures the plug-in; writes to out/
# --no-install as the first argument: fails if packages are missing, instead of installing them.
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
# Draws in software, so that the result does not depend on the graphics card.
export QT_QUICK_BACKEND=software
exec build/release/workbench/tessaline-workbench --pictures out "$@"
