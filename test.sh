#!/usr/bin/env bash
# Builds and runs all tests.
#   ./test.sh              the shipped build, then a build with sanitizers
#   ./test.sh --threads    the programs with a second thread, with the thread sanitizer
#   ./test.sh --windows    the Windows library, cross-built, under wine
#   ./test.sh --qt-next    with the Qt of Debian 13, in a separate root folder
#   ./test.sh --qt-newest  with the Qt of Debian unstable, in a separate root folder
# --no-install as the first argument: fails if packages are missing, instead of installing them.
# Further arguments are passed to ctest, for example -R timeline.
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

threads() {
    tools/install-dependencies.sh test
    local programs=(tst_framework tst_traffic tst_window tst_workbench)
    tools/build.sh tsan "${programs[@]}"
    echo "Tests of the preset tsan:"
    ctest --preset tsan -R "^($(IFS='|'; echo "${programs[*]}"))\$" "$@"
}

windows() {
    tools/install-dependencies.sh windows
    TESSALINE_WINDOWS_QT=$(tools/windows-qt.sh)
    export TESSALINE_WINDOWS_QT
    tools/build.sh windows
    echo "Tests of the preset windows:"
    ctest --preset windows "$@"
}

# in_debian SUITE PRESET ARGUMENTS...
in_debian() {
    tools/install-dependencies.sh debian
    # shellcheck disable=SC2016 # the inner shell expands the variables
    tools/debian.sh "$1" bash -euc '
        tools/install-dependencies.sh test
        tools/build.sh "$0"
        echo "Tests of the preset $0:"
        exec ctest --preset "$0" "$@"' "${@:2}"
}

if [ "${1:-}" = --no-install ]; then
    shift
    export TESSALINE_NO_INSTALL=1
fi
case "${1:-}" in
    --threads) shift; threads "$@" ;;
    --windows) shift; windows "$@" ;;
    --qt-next) shift; in_debian "${TESSALINE_NEXT:-trixie}" next "$@" ;;
    --qt-newest) shift; in_debian "${TESSALINE_NEWEST:-sid}" newest "$@" ;;
    *) here "$@" ;;
esac
