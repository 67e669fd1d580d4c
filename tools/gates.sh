#!/usr/bin/env bash
# The gates: what tools can tell about the sources without running them.
#   tools/gates.sh [format|names|shell|abi|qml|tidy|clazy ...]     all of them without an argument
set -euo pipefail
cd "$(dirname "$0")/.."

sources() { git ls-files -- "$@" ':!:build'; }
fail() { echo "gate $1: $2" >&2; exit 1; }

gate_format() {
    sources '*.cpp' '*.h' | xargs clang-format-14 --dry-run -Werror
}

# A name that host, server or QML knows stands once, in the table of its side. Comments may quote.
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
        [ -z "$hits" ] || fail names "names of $table in $file:"$'\n'"$hits"
    done
}

gate_shell() {
    local script
    for script in run.sh test.sh .ci/run tools/*.sh; do
        bash -n "$script"
        [ -x "$script" ] || fail shell "$script cannot be executed"
    done
}

# Where no such compiler is: what its build of host/ would look like.
gate_abi() {
    tools/check-msvc-abi.sh
}

gate_qml() {
    tools/build.sh release
    cmake --build --preset release --target all_qmllint
}

# Of the shipped preset, which the tests need as well. The compile commands are g++'s; what clang's tools do not know of them is left out.
clang_database() {
    tools/build.sh release
    mkdir -p build/release/clang
    sed 's/ -fno-gnu-unique//' build/release/compile_commands.json >build/release/clang/compile_commands.json
}

# each_source FOLDERS TOOL...: in portions of a few files, so that both cores have work to the end
each_source() {
    local files
    files=$(sources '*.cpp' ':!:tools' | grep -v _win.cpp | grep -E "^($1)/")
    shift
    xargs -P 2 -n 3 tools/unless-passed.sh "$@" -- <<<"$files"
}

# What is shipped or run by users; it takes too long for the tests, which clazy and the compiler see.
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
