#!/usr/bin/env bash
# Hands damaged BMP files to everything that reads them, under the address and undefined behaviour sanitizers. Arguments
# go to the program: --count N (200000 if not given), --seed S, --first NUMBER to try one again, --cap MIB. On a bare Debian
# 12 it installs what it needs first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh

need_packages "${build_packages[@]}"
cmake --preset asan >/dev/null
cmake --build --preset asan --target mutated_bmp_files >&2
# Files in memory: the disk would take most of the time.
[ ! -d /dev/shm ] || export TMPDIR=/dev/shm
ASAN_OPTIONS=max_allocation_size_mb=1100:${ASAN_OPTIONS:-} exec build/asan/bin/mutated_bmp_files --count 200000 "$@"
