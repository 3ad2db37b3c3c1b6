#!/usr/bin/env bash
# Draws, loads and stores in eight threads at once under the thread sanitizer, and holds the results against those of one
# thread. On a bare Debian 12 it installs what it needs first. Ends with one line: N passed, M failed.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh

need_packages "${build_packages[@]}"
export TSAN_OPTIONS=halt_on_error=1
cmake --preset tsan >/dev/null
cmake --build --preset tsan --target scenes test_threads

passed=0 failed=0
# try NAME COMMAND...: with the first race that the sanitizer sees the program ends.
try() {
    local name=$1
    shift
    if "$@"; then
        passed=$((passed + 1))
        echo "$name: as one thread does it, without races"
    else
        failed=$((failed + 1))
        echo "$name: FAILED"
    fi
}
try "Texts, images, stores, objects by name" build/tsan/bin/test_threads --gtest_brief=1
try "$(wc -l <tests/scenes/recorded.txt) scenes" \
    tests/scenes/recorded.sh tests/scenes/recorded.txt build/tsan/bin/scenes --threads 8
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
