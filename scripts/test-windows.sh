#!/usr/bin/env bash
# Builds the libraries for Windows and runs their tests there, headless. On a bare Debian 12 it installs what it needs
# first. Ends with one line: N passed, M failed.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh

need_packages "${windows_packages[@]}"
cmake --preset windows >/dev/null
cmake --build --preset windows
prepare_wine

log=build/windows/tests.log
status=0
ctest --preset windows --verbose >"$log" 2>&1 || status=$?
# A program that ends before its summary is a failure too, though it names none.
passed=$(awk '/^[0-9]+: \[  PASSED  \] [0-9]+ test/ { for (i = 1; i < NF; ++i) if ($i == "PASSED") n += $(i + 2) } END { print n + 0 }' "$log")
failed=$(grep -c '^[0-9]*: \[  FAILED  \] [^ ]* (' "$log" || true)
[ "$status" -eq 0 ] || cat "$log"
[ "$status" -eq 0 ] || [ "$failed" -gt 0 ] || failed=1
echo "$passed passed, $failed failed"
exit "$status"
