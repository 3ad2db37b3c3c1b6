#!/usr/bin/env bash
# Builds everything and runs every test: scripts/test.sh [release|debug|asan]. On a bare Debian 12 it installs what it
# needs first. Ends with one line: N passed, M failed.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh
preset=${1:-release}

need_packages "${build_packages[@]}" "${docs_packages[@]}"
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"

log=build/$preset/tests.log
status=0
ctest --preset "$preset" >"$log" 2>&1 || status=$?
summary=$(sed -n 's/^[0-9]*% tests passed, \([0-9]*\) tests failed out of \([0-9]*\)$/\1 \2/p' "$log")
if [ "$status" -ne 0 ] || [ -z "$summary" ]; then
    cat "$log"
else
    grep '^Total Test time' "$log"
fi
read -r failed total <<<"${summary:-1 1}"
echo "$((total - failed)) passed, $failed failed"
exit "$status"
