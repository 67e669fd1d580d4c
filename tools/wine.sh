#!/usr/bin/env bash
# Runs a Windows program of the preset windows as on a client's machine. The search path has the
# libraries of Qt and of the compiler, and the folders in TESSALINE_DLL_PATH, separated by ":". LC_ALL
# and TZ set the user's locale and time zone. Arguments must not contain spaces.
set -euo pipefail

locale=${LC_ALL:-en_US.UTF-8}
unset LC_ALL # bash would warn if the machine lacks the locale
tools=$(dirname "${BASH_SOURCE[0]}")
source "$tools/cache.sh"
# One Windows for each locale, because it stores the user's formats.
export WINEPREFIX="$cache/wine-$locale" WINEARCH=win64 WINEDEBUG=-all DISPLAY=''
# Disables components that wine would offer to download; no program here needs them.
export WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe='
# wine uses the machine's locales, and these may not be installed.
export LOCPATH="$cache/locales"

run() { LC_ALL=$locale wine "$@"; }

make_windows() {
    mkdir -p "$LOCPATH"
    [ -d "$LOCPATH/$locale" ] || localedef -i "${locale%.*}" -f UTF-8 "$LOCPATH/$locale"
    # Qt's tests would write to the debugger, and wine does not pass the machine's QT_* variables.
    run reg add 'HKCU\Environment' /v QT_FORCE_STDERR_LOGGING /d 1 /f
    # The short date formats of Linux; on Windows the user chooses them.
    local -A dates=([en_US.UTF-8]=M/d/yy [de_DE.UTF-8]=dd.MM.yy)
    run reg add 'HKCU\Control Panel\International' /v sShortDate /d "${dates[$locale]}" /f
    touch "$WINEPREFIX/made"
}

mkdir -p "$cache"
if [ ! -f "$WINEPREFIX/made" ]; then # tests run in parallel; the first one creates it for all
    (flock 9; [ -f "$WINEPREFIX/made" ] || make_windows) 9>"$cache/wine.lock" >&2
fi

# Drive Z: is the machine's root.
as_windows() { sed 's,^/,Z:/,; s,:/,;Z:/,g; s,Z;Z:,Z:,; s,/,\\,g' <<<"$1"; }

compiler=$(dirname "$(x86_64-w64-mingw32-g++-posix -print-file-name=libstdc++-6.dll)")
qt=${TESSALINE_WINDOWS_QT:-$("$tools/windows-qt.sh" --if-made)}
folders=${TESSALINE_DLL_PATH:+$TESSALINE_DLL_PATH:}$qt/bin:$compiler
WINEPATH=$(as_windows "$folders:/usr/x86_64-w64-mingw32/lib")
export WINEPATH
# wine reads its time zone from TZ, but Windows programs interpret TZ differently, so they must not see
# it. The output goes to a file, because wine's background servers would keep a pipe open.
output=$(mktemp)
trap 'cat "$output"; rm -f "$output"' EXIT
run cmd /c "set TZ=& $(as_windows "$1") ${*:2}" </dev/null >"$output" 2>&1
