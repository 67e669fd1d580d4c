#!/usr/bin/env bash
# Runs the gates, that is, checks of the sources by tools.
#   tools/gates.sh [format|names|shell|abi|qml|tidy|clazy ...]     without arguments: all gates
set -euo pipefail
cd "$(dirname "$0")/.."

sources() { git ls-files -- "$@" ':!:build'; }
fail() { echo "gate $1: $2" >&2; exit 1; }

gate_format() {
    sources '*.cpp' '*.h' | xargs clang-format-14 --dry-run -Werror
}

# Host, server and QML depend on these names, so each occurs once, in the table of its side. Comments
# may quote them.
gate_names() {
    check_names src/Names.h src
    check_names stations/Protocol.h stations
    check_names stations/Protocol.h workbench
}

# check_names TABLE FOLDER: literals of the table in other C++ files of the folder
check_names() {
    local table=$1 names hits file
    names=$(grep -oE '"[A-Za-z]{4,}"' "$table" | sort -u)
    for file in $(sources "$2/*.cpp" "$2/*.h" | grep -vF "$table"); do
        hits=$(sed 's,//.*,,' "$file" | grep -nF "$names" || true)
        [ -z "$hits" ] || fail names "$file repeats names of $table; use the constants there:"$'\n'"$hits"
    done
}

gate_shell() {
    local script
    for script in run.sh test.sh .ci/run tools/*.sh; do
        bash -n "$script"
        [ -x "$script" ] || fail shell "$script is not executable; run: chmod +x $script"
    done
}

# Replaces a build with Microsoft's compiler, which this machine lacks.
gate_abi() {
    tools/check-msvc-abi.sh
}

gate_qml() {
    tools/build.sh release
    cmake --build --preset release --target all_qmllint
}

# Creates compile commands without the options of g++ that clang's tools reject.
clang_database() {
    tools/build.sh release
    mkdir -p build/release/clang
    sed 's/ -fno-gnu-unique//' build/release/compile_commands.json >build/release/clang/compile_commands.json
}

# each_source FOLDERS TOOL...: runs a tool on three files at a time, to keep both cores busy
each_source() {
    local files
    files=$(sources '*.cpp' ':!:tools' | grep -v _win.cpp | grep -E "^($1)/")
    shift
    xargs -P 2 -n 3 tools/unless-passed.sh "$@" -- <<<"$files"
}

# Without tests/ except the contract: clang-tidy takes too long for them; clazy checks them.
gate_tidy() {
    clang_database
    each_source 'src|standin|stations|workbench|check|driver|tests/contract' clang-tidy-14 --quiet -p build/release/clang \
        --extra-arg=-Wno-gnu-zero-variadic-macro-arguments 2> >(grep -v 'warnings generated' >&2)
}

gate_clazy() {
    clang_database
    CLAZY_CHECKS=level1 each_source 'benchmark|check|driver|src|standin|stations|tests|workbench' clazy-standalone -p build/release/clang \
        --extra-arg=-Wno-gnu-zero-variadic-macro-arguments --extra-arg=-Werror
}

for gate in "${@:-format names shell abi qml tidy clazy}"; do
    for name in $gate; do
        echo "Gate: $name"
        "gate_$name"
    done
done
