#!/usr/bin/env bash
# Builds the plug-in and the workbench and plays the tour. Arguments go to the workbench; --help
# lists them.
set -euo pipefail
cd "$(dirname "$0")"

tools/install-dependencies.sh run
tools/build.sh release tessaline-workbench
exec build/release/workbench/tessaline-workbench "$@"
