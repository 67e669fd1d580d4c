#!/usr/bin/env bash
# The gates: what tools can tell about the sources without running them.
#   tools/gates.sh [format|words|names|shell|qml|tidy|clazy ...]     all of them without an argument
set -euo pipefail
cd "$(dirname "$0")/.."

sources() { git ls-files -- "$@" ':!:build'; }
fail() { echo "gate $1: $2" >&2; exit 1; }

gate_format() {
    sources '*.cpp' '*.h' | xargs clang-format-14 --dry-run -Werror
}

# The project describes itself; it does not lean on papers that its readers do not have.
gate_words() {
    local words='\b(spec|specs|specification|specifications)\b|\bParts? [1-4]\.[1-5]\b'
    if git grep -nIiE "$words" -- . ':!tools/gates.sh'; then
        fail words "these lines refer to papers outside of the project"
    fi
}

# A name that host, server or QML knows stands once, in the table of its side.
gate_names() {
    names_of() { grep -oE '"[A-Za-z]{4,}"' "$1" | sort -u; }
    local hits
    hits=$(names_of src/Names.h | grep -nFf - $(sources 'src/*.cpp' 'src/*.h' | grep -v Names.h) |
           grep -v -e 'LOG_ERROR' -e '"Tessaline"' || true)
    [ -z "$hits" ] || fail names $'names outside of src/Names.h:\n'"$hits"
    hits=$(names_of workbench/stations/Protocol.h |
           grep -nFf - $(sources 'workbench/*.cpp' 'workbench/*.h' | grep -v Protocol.h) || true)
    [ -z "$hits" ] || fail names $'names outside of workbench/stations/Protocol.h:\n'"$hits"
}

gate_shell() {
    local script
    for script in run.sh test.sh .ci/run tools/*.sh; do
        bash -n "$script"
        [ -x "$script" ] || fail shell "$script cannot be executed"
    done
}

gate_qml() {
    tools/build.sh dev
    cmake --build --preset dev --target all_qmllint
}

own_sources() { sources '*.cpp'; }

gate_tidy() {
    tools/build.sh dev
    own_sources | grep -v _win.cpp | xargs -P 2 -n 4 clang-tidy-14 --quiet -p build/dev 2>/dev/null
}

gate_clazy() {
    tools/build.sh dev
    own_sources | grep -v _win.cpp |
        CLAZY_CHECKS=level1 xargs -P 2 -n 4 clazy-standalone -p build/dev --extra-arg=-Werror
}

for gate in "${@:-format words names shell qml tidy clazy}"; do
    for name in $gate; do
        echo "Gate: $name"
        "gate_$name"
    done
done
