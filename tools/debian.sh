#!/usr/bin/env bash
# Runs a command on a copy of this tree in another Debian release. debootstrap makes its root folder
# once for a machine, from the mirror in tools/mirror.sh. Needs root, with the right to mount /proc:
# programs find the libraries of the build by it.
#   tools/debian.sh SUITE COMMAND...
#   tools/debian.sh SUITE --if-made     fails where the root folder has not been made yet
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
    echo "Making a root folder with Debian $suite ..." >&2
    rm -rf "$root"
    mkdir -p "$cache"
    debootstrap --variant=minbase --include=ca-certificates,locales "$suite" "$root" \
        "$mirror" >"$cache/debootstrap.log" 2>&1 ||
        { tail -n 40 "$cache/debootstrap.log" >&2; exit 1; }
    # A mirror may be a few days behind: its lists are still the ones that the folder was made from.
    echo 'Acquire::Check-Valid-Until "false";' >"$root/etc/apt/apt.conf.d/90mirror"
    for locale in en_US de_DE; do # Qt complains of locales that are not there
        chroot "$root" localedef -i "$locale" -f UTF-8 "$locale.UTF-8"
    done
    touch "$root/made"
fi

# What was built before stays, so that only what has changed is built again.
mkdir -p "$root/tree"
find "$root/tree" -mindepth 1 -maxdepth 1 ! -name build -exec rm -rf {} +
git ls-files -z -co --exclude-standard |
    tar --null -T - --ignore-failed-read -c 2>/dev/null | tar -x -C "$root/tree"
cp /etc/resolv.conf "$root/etc/resolv.conf" 2>/dev/null || true

# In a mount namespace of its own, so that nothing stays mounted.
# shellcheck disable=SC2016 # for the other shells
exec env -u LC_ALL -u CMAKE_CXX_COMPILER_LAUNCHER LANG=C.UTF-8 unshare --mount bash -euc '
    mount -t proc proc "$0/proc"
    exec chroot "$0" bash -euc '\''cd /tree; exec "$@"'\'' bash "$@"' "$root" "$@"
