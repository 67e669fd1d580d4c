#!/usr/bin/env bash
# Checks the layout of the classes in host/ for Microsoft's compiler: the number of each virtual
# function, the offset of each field. Clang computes that layout on any machine.
set -euo pipefail
cd "$(dirname "$0")/.."

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# Empty Qt headers; interfaces.cpp defines the types that host/ uses.
mkdir -p "$work/QtCore"
touch "$work"/QtCore/{QObject,QString,QVariant,qglobal.h}
echo '#include <stdarg.h>' >"$work/cstdarg"
echo '#include <stddef.h>' >"$work/cstddef"

layouts() { # WHICH
    clang++-14 --target=x86_64-pc-windows-msvc -std=c++17 -nostdinc++ -S -emit-llvm -o /dev/null \
        -I "$work" -I host -Xclang "-fdump-$1-layouts" tools/msvc-abi/interfaces.cpp
}
layouts vtable >"$work/vtables"
layouts record >"$work/records"

expect() { # WHAT EXPECTED ACTUAL
    diff -u --label "$1, by contract" --label "$1, by clang" <(echo "$2") <(echo "$3") || exit 1
}

# operations CLASS: number and name of each virtual function. Clang's list begins with the type's
# description, which is not a part of the table.
operations() {
    sed -n "/^VFTable for .*'$1'/,/^\$/p" "$work/vtables" |
        sed -n 's/^ *\([0-9]\+\) | .*[ :*&]\(~\?[A-Za-z_0-9]\+\)(.*/\1 \2/p' |
        while read -r number name; do echo "$((number - 1)) $name"; done
}
# fields CLASS: offset and name of each
fields() {
    sed -n "/^ *0 | \(class\|struct\) $1\$/,/^\$/p" "$work/records" |
        sed -n 's/^ *\([0-9]\+\) |   [^ (].* \([A-Za-z_0-9]\+\)$/\1 \2/p'
}

# Microsoft's compiler uses one entry for a destructor.
plugin='0 metaObject
1 qt_metacast
2 qt_metacall
3 ~Plugin
4 event
5 eventFilter
6 timerEvent
7 childEvent
8 customEvent
9 connectNotify
10 disconnectNotify
11 InitialPluginBase
12 EventProcessor
13 EventProcessorEx
14 CommandProcessor
15 CommandProcessorEx
16 Init
17 HostHook1
18 HostHook2
19 PluginServerConnected
20 HostHook3'
framework=$(for number in {0..13}; do
    case $number in
        1) echo "1 SendCommand" ;;
        13) echo "13 FindPlugin" ;;
        *) echo "$number HostEntry$((number + 1))" ;;
    esac
done)
expect "operations of PluginBase" "$plugin" "$(operations Plugin)"
expect "operations of FrameworkWrapperBase" "$framework" "$(operations Framework)"
expect "fields of LogObject" '0 reserved1
24 handle
32 reserved2
72 registerModule
80 reserved3
112 checkLine
120 writeLine' "$(fields LogObject)"
expect "fields of PluginBase" '16 m_hostReserved
24 name
48 pluginID' "$(fields PluginBase | grep -v base)"
echo "host/ has the layout that the host expects with Microsoft's compiler."
