#!/usr/bin/env bash
# Runs all tests on an instrumented build and prints the coverage of lines and branches of src/.
# build/coverage/report.html lists what is not covered.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install-dependencies.sh ci
tools/build.sh coverage
find build/coverage -name '*.gcda' -delete
ctest --preset coverage
# Excludes branches for exceptions, which the compiler adds.
report() {
    gcovr --root . --filter src/ --exclude-throw-branches --exclude-unreachable-branches \
        --gcov-ignore-parse-errors "$@" build/coverage
}
report --html-details build/coverage/report.html >/dev/null
report
report --branches
