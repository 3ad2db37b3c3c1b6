#!/usr/bin/env bash
# recorded.sh LIST PROGRAM...: draws the scenes again that LIST records and tells which of them are others now. The list
# is of scenes that the system's own device was seen to draw alike (scripts/compare-windows.sh --record).
set -euo pipefail
list=$1
shift
diff "$list" <("$@" --seed 1 --count "$(wc -l <"$list")") >&2
