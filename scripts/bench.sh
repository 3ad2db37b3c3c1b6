#!/usr/bin/env bash
# Times the library beside its peers in one run and prints a table: our times through the classes and through the device's
# calls, each peer's, the ratio to the best. Arguments go to the program: --filter REGEX, --json, --markdown, --seconds N;
# --help lists them. What may stand first:
#   --windows  builds for Windows too, times the system's own device there, under wine, and shows those times as a column
#   --docs     does that and renews docs/performance.md and its plots
# On a bare Debian 12 it installs what it needs first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh

bench=build/release/bin/zulbench

build() {
    need_packages "${build_packages[@]}"
    cmake --preset release >/dev/null
    cmake --build --preset release --target zulbench >&2
}

with_windows() {
    need_packages "${windows_packages[@]}"
    cmake --preset windows -DZUL_BENCH=ON >/dev/null
    cmake --build --preset windows --target zulbench >&2
    "$bench" --write-rings build/windows/world.rings
    prepare_wine
    wine build/windows/bin/zulbench.exe --device-times build/windows/device.times "$@" >/dev/null
    "$bench" --gdi build/windows/device.times "$@"
}

# What was measured and where, in place of what stands between the two marks.
renew_docs() {
    local page=docs/performance.md part=build/release/performance.md
    {
        printf 'Measured on %s, %s processors, with %s on %s.\n\n' \
            "$(sed -n 's/^model name[[:space:]]*: //p' /proc/cpuinfo | head -n 1)" "$(nproc)" \
            "$(c++ --version | head -n 1)" "$(. /etc/os-release && echo "$PRETTY_NAME")"
        with_windows --markdown
    } >"$part"
    sed -i -e '/<!-- measured -->/,/<!-- end -->/ { /<!--/!d }' -e "/<!-- measured -->/r $part" "$page"
    "$bench" --growth docs/pictures
}

build
case "${1:-}" in
    --windows) with_windows "${@:2}" ;;
    --docs) renew_docs ;;
    *) exec "$bench" "$@" ;;
esac
