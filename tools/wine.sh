#!/usr/bin/env bash
# Runs a Windows program of the preset windows as on a client's machine: the libraries of Qt and of
# the compiler lie on the search path, and so does what TESSALINE_DLL_PATH (folders, ":" between)
# adds. The user's locale and zone are those of LC_ALL and TZ. Spaces in arguments are not handled.
set -euo pipefail

locale=${LC_ALL:-en_US.UTF-8}
unset LC_ALL # bash would complain that the machine lacks it
tools=$(dirname "${BASH_SOURCE[0]}")
source "$tools/cache.sh"
# A Windows for each locale, as the user's formats are kept in it.
export WINEPREFIX="$cache/wine-$locale" WINEARCH=win64 WINEDEBUG=-all DISPLAY=''
# Nothing here needs what wine would otherwise offer to download.
export WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe='
# wine takes locales from the machine's, of which these may not be among the installed ones.
export LOCPATH="$cache/locales"

run() { LC_ALL=$locale wine "$@"; }

make_windows() {
    mkdir -p "$LOCPATH"
    [ -d "$LOCPATH/$locale" ] || localedef -i "${locale%.*}" -f UTF-8 "$LOCPATH/$locale"
    # Tests of Qt write to the debugger otherwise, and wine keeps the machine's QT_* to itself.
    run reg add 'HKCU\Environment' /v QT_FORCE_STDERR_LOGGING /d 1 /f
    # The short dates that Linux has there. On Windows they are the user's choice.
    local -A dates=([en_US.UTF-8]=M/d/yy [de_DE.UTF-8]=dd.MM.yy)
    run reg add 'HKCU\Control Panel\International' /v sShortDate /d "${dates[$locale]}" /f
    touch "$WINEPREFIX/made"
}

mkdir -p "$cache"
if [ ! -f "$WINEPREFIX/made" ]; then # tests run side by side; the first makes what all need
    (flock 9; [ -f "$WINEPREFIX/made" ] || make_windows) 9>"$cache/wine.lock" >&2
fi

# Drive Z: is the machine's root.
as_windows() { sed 's,^/,Z:/,; s,:/,;Z:/,g; s,Z;Z:,Z:,; s,/,\\,g' <<<"$1"; }

compiler=$(dirname "$(x86_64-w64-mingw32-g++-posix -print-file-name=libstdc++-6.dll)")
qt=${TESSALINE_WINDOWS_QT:-$("$tools/windows-qt.sh" --if-made)}
folders=${TESSALINE_DLL_PATH:+$TESSALINE_DLL_PATH:}$qt/bin:$compiler
WINEPATH=$(as_windows "$folders:/usr/x86_64-w64-mingw32/lib")
export WINEPATH
# wine has its zone from TZ; a Windows program that finds one would read another meaning into it.
# Its output takes the way over a file, as the servers that wine leaves behind would hold on to a pipe.
output=$(mktemp)
trap 'cat "$output"; rm -f "$output"' EXIT
run cmd /c "set TZ=& $(as_windows "$1") ${*:2}" </dev/null >"$output" 2>&1
