#!/usr/bin/env bash
# Builds and runs all tests: once on the library that is shipped, once under the sanitizers.
#   ./test.sh              on this machine
#   ./test.sh --windows    the Windows library, cross-built, under wine
#   ./test.sh --qt-next    with the Qt of the next Debian, in a root folder of its own
# Further arguments go to ctest (for example -R timeline).
set -euo pipefail
cd "$(dirname "$0")"

here() {
    tools/install-dependencies.sh test
    for preset in release asan; do
        tools/build.sh "$preset"
        echo "Tests of the preset $preset:"
        ctest --preset "$preset" "$@"
    done
}

windows() {
    tools/install-dependencies.sh windows
    TESSALINE_WINDOWS_QT=$(tools/windows-qt.sh)
    export TESSALINE_WINDOWS_QT
    tools/build.sh windows
    echo "Tests of the preset windows:"
    ctest --preset windows "$@"
}

qt_next() {
    tools/install-dependencies.sh next
    # shellcheck disable=SC2016 # for the other shell
    tools/next-debian.sh bash -euc '
        tools/install-dependencies.sh test
        tools/build.sh next
        echo "Tests of the preset next:"
        exec ctest --preset next "$@"' test "$@"
}

case "${1:-}" in
    --windows) shift; windows "$@" ;;
    --qt-next) shift; qt_next "$@" ;;
    *) here "$@" ;;
esac
