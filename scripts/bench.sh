#!/usr/bin/env bash
# Times the library beside its peers in one run and prints a table: our times through the classes and through the device's
# calls, each peer's, the ratio to the best. Arguments go to the program: --filter REGEX, --json, --markdown, --seconds N.
# With --windows as the first one it builds for Windows too, times the system's own device there, under wine, and shows
# those times as one more column. On a bare Debian 12 it installs what it needs first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh

need_packages "${build_packages[@]}"
cmake --preset release >/dev/null
cmake --build --preset release --target zulbench >&2
[ "${1:-}" = --windows ] || exec build/release/bin/zulbench "$@"

shift
need_packages "${windows_packages[@]}"
cmake --preset windows -DZUL_BENCH=ON >/dev/null
cmake --build --preset windows --target zulbench >&2
build/release/bin/zulbench --write-rings build/windows/world.rings
WINEPREFIX="$PWD/build/windows/wine" WINEDEBUG=-all \
    wine build/windows/bin/zulbench.exe --device-times build/windows/device.times "$@" >/dev/null
exec build/release/bin/zulbench --gdi build/windows/device.times "$@"
