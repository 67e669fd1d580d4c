#!/usr/bin/env bash
# Runs all tests on a build that counts, and prints the lines and branches of src/ that they reach.
# What they do not reach is listed in build/coverage/report.html.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install-dependencies.sh ci
tools/build.sh coverage
find build/coverage -name '*.gcda' -delete
ctest --preset coverage
# Branches that only an exception takes are the compiler's, not the source's.
report() {
    gcovr --root . --filter src/ --exclude-throw-branches --exclude-unreachable-branches \
        --gcov-ignore-parse-errors "$@" build/coverage
}
report --html-details build/coverage/report.html >/dev/null
report
report --branches
