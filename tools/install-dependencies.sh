#!/usr/bin/env bash
# Installs missing Debian 12 packages for building and running.
#   tools/install-dependencies.sh run|test|ci|windows|debian
# With TESSALINE_NO_INSTALL=1 it names the missing packages and fails.
set -euo pipefail

run=(g++ cmake ninja-build qt6-base-dev qt6-declarative-dev libqt6sql6-sqlite
     libbenchmark-dev libsqlite3-dev
     qml6-module-qt-labs-settings qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript qml6-module-qtquick qml6-module-qtquick-controls
     qml6-module-qtquick-layouts qml6-module-qtquick-templates qml6-module-qtquick-window
     tzdata)
test=("${run[@]}" qml6-module-qttest qt6-declarative-dev-tools)
ci=("${test[@]}" git clang-format-14 clang-tidy-14 clazy clang-14 libclang-rt-14-dev gcovr)
windows=(g++-mingw-w64-x86-64-posix wine wine64 cmake ninja-build qt6-base-dev qt6-base-dev-tools
         dpkg-dev perl ca-certificates locales tzdata)
debian=(debootstrap git)

case "${1:-}" in
    run) wanted=("${run[@]}") ;;
    test) wanted=("${test[@]}") ;;
    ci) wanted=("${ci[@]}") ;;
    windows) wanted=("${windows[@]}") ;;
    debian) wanted=("${debian[@]}") ;;
    *) echo "usage: $0 run|test|ci|windows|debian" >&2; exit 2 ;;
esac

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    echo "$0: this is not a Debian system, so no package is installed. Continuing." >&2
    echo "$0: if the build fails, install the counterparts of these packages: ${wanted[*]}" >&2
    exit 0
fi

missing=()
for package in "${wanted[@]}"; do
    state=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$state" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

if [ -n "${TESSALINE_NO_INSTALL:-}" ]; then
    echo "$0: missing packages; install them and try again: ${missing[*]}" >&2
    exit 1
fi

as_root=()
if [ "$(id -u)" != 0 ]; then
    if command -v sudo >/dev/null; then
        as_root=(sudo)
    else
        echo "$0: no permission to install packages. Ask an administrator to install: ${missing[*]}" >&2
        exit 1
    fi
fi

echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
