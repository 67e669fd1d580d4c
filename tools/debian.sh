#!/usr/bin/env bash
# Runs a command on a copy of this tree in another Debian release. debootstrap creates a root folder
# once, from the mirror in tools/mirror.sh. Needs root and the right to mount /proc, through which
# programs find the libraries of the build.
#   tools/debian.sh SUITE COMMAND...
#   tools/debian.sh SUITE --if-made     exits with 0 if the root folder exists, else with 1
set -euo pipefail
cd "$(dirname "$0")/.."
source tools/cache.sh

suite=$1
root=$cache/debian-$suite
if [ "${2:-}" = --if-made ]; then
    [ -f "$root/made" ]
    exit
fi
[ "$(id -u)" = 0 ] || exec sudo TESSALINE_CACHE="$cache" TESSALINE_MIRROR="${TESSALINE_MIRROR:-}" "$0" "$@"
shift

if [ ! -f "$root/made" ]; then
    source tools/mirror.sh
    echo "Creating a root folder with Debian $suite in $root ..." >&2
    rm -rf "$root"
    mkdir -p "$cache"
    debootstrap --variant=minbase --include=ca-certificates,locales "$suite" "$root" \
        "$mirror" >"$cache/debootstrap.log" 2>&1 ||
        { tail -n 40 "$cache/debootstrap.log" >&2; exit 1; }
    # A mirror may be a few days old; apt would then reject its package lists.
    echo 'Acquire::Check-Valid-Until "false";' >"$root/etc/apt/apt.conf.d/90mirror"
    for locale in en_US de_DE; do # Qt warns of missing locales
        chroot "$root" localedef -i "$locale" -f UTF-8 "$locale.UTF-8"
    done
    touch "$root/made"
fi

# Keep the build folder, so that only changed files are compiled again.
mkdir -p "$root/tree"
find "$root/tree" -mindepth 1 -maxdepth 1 ! -name build -exec rm -rf {} +
git ls-files -z -co --exclude-standard |
    tar --null -T - --ignore-failed-read -c 2>/dev/null | tar -x -C "$root/tree"
cp /etc/resolv.conf "$root/etc/resolv.conf" 2>/dev/null || true

# A separate mount namespace removes the mount at exit.
# shellcheck disable=SC2016 # the inner shells expand the variables
exec env -u LC_ALL -u CMAKE_CXX_COMPILER_LAUNCHER LANG=C.UTF-8 unshare --mount bash -euc '
    mount -t proc proc "$0/proc"
    exec chroot "$0" bash -euc '\''cd /tree; exec "$@"'\'' bash "$@"' "$root" "$@"
