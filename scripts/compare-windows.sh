#!/usr/bin/env bash
# Holds the software device against the system's own: scripts/compare-windows.sh [--seed S] [--count N] [--kind K]
# [--first I] | --record. Builds both sides, draws the same scenes on both, prints a table of kinds and ends with "N
# scenes, M differ". A scene must be equal to its last stored bit. Two kinds may be near instead, wide lines and ellipses: at most
# one in two hundred of the drawn pixels differs, and none lies further than a pixel from its place. Figures of these
# kinds in scenes of other kinds must be equal. A scene that the system does not finish counts as differing.
# The first scene of each kind that is not equal goes to build/scenes/ as expected (the system's), got (ours) and
# difference. With --record 5000 scenes are compared and, when none differs, written down as those that every run of the
# tests draws again. On a bare Debian 12 the script installs what it needs first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh
. scripts/scenes.sh

near_kinds='wide-lines ellipses'
record=
[ "${1:-}" != --record ] || { record=yes count=5000; shift; }
read_scene_options "$@"

need_packages "${build_packages[@]}" "${windows_packages[@]}"
build_scenes windows
prepare_wine

ours() { build/release/bin/scenes --seed "$seed" "$@"; }
theirs() { wine build/windows/bin/scenes.exe --seed "$seed" "$@" 2>/dev/null | tr -d '\r'; }

theirs --first 0 --count 1 >/dev/null || true # sets the prefix up
compare_scenes
[ -z "$record" ] || cp "$out/ours.txt" tests/scenes/recorded.txt
