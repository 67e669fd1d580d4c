#!/usr/bin/env bash
# Runs a clang tool on source files. Skips files that have passed on this machine with the same tool,
# the same settings and the same text of the file and its headers.
#   tools/unless-passed.sh TOOL ARGUMENTS... -- FILE...      TESSALINE_AGAIN=1 checks all files
set -euo pipefail
cd "$(dirname "$0")/.."
source tools/cache.sh

tool=()
while [ "$1" != -- ]; do
    tool+=("$1")
    shift
done
shift
passed=$cache/passed
mkdir -p "$passed"

# text_of FILE: the text that the tool reads, with headers and comments, without expanded macros
text_of() {
    local command
    command=$(grep -B 1 -F "\"file\": \"$PWD/$1\"" build/release/compile_commands.json |
        sed -n '/"command"/{s/^ *"command": "//; s/",$//; s/\\\(.\)/\1/g
            s/ -o [^ ]* -c / -E -fdirectives-only -P /; p; q}')
    [ -n "$command" ] || return 1
    (cd build/release && eval "$command") | sed "s,$PWD,,g"
}

key_of() {
    { printf '%s\n' "${tool[@]}" && "${tool[0]}" --version && cat .clang-tidy && text_of "$1"; } |
        sha256sum | cut -d' ' -f1
}

# Without a key the file is always checked: it is not in the preset, or its text can't be computed.
status=0
for file; do
    key=$(key_of "$file" 2>/dev/null) || key=
    [ -n "$key" ] && [ -f "$passed/$key" ] && [ -z "${TESSALINE_AGAIN:-}" ] && continue
    if ! "${tool[@]}" "$file"; then
        status=1
    elif [ -n "$key" ]; then
        touch "$passed/$key"
    fi
done
exit "$status"
