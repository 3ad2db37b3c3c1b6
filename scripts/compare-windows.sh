#!/usr/bin/env bash
# Holds the software device against the system's own: scripts/compare-windows.sh [--seed S] [--count N] [--kind K]
# [--first I]. Builds both sides, draws the same scenes on both, prints a table of kinds and ends with "N scenes, M
# differ". The first difference of each kind goes to build/scenes/ as expected (the system's), got (ours) and
# difference. A scene that the system does not finish counts as differing. On a bare Debian 12 it installs what it needs
# first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh

seed=1 count=2000 first=0 kind=()
while [ $# -gt 0 ]; do
    [ $# -gt 1 ] || { echo "$1 needs a value" >&2; exit 2; }
    case $1 in
        --seed) seed=$2 ;;
        --count) count=$2 ;;
        --first) first=$2 ;;
        --kind) kind=(--kind "$2") ;;
        *) echo "unknown option $1" >&2; exit 2 ;;
    esac
    shift 2
done

need_packages "${build_packages[@]}" "${windows_packages[@]}"
for preset in release windows; do
    cmake --preset "$preset" >/dev/null
done
cmake --build --preset release --target scenes --target scene_difference >&2
cmake --build --preset windows --target scenes >&2

out=build/scenes
rm -rf "$out"
mkdir -p "$out/ours" "$out/theirs"
export WINEPREFIX=$PWD/build/windows/wine WINEDEBUG=-all

ours() { build/release/bin/scenes --seed "$seed" "$@"; }
theirs() { timeout 600 wine build/windows/bin/scenes.exe --seed "$seed" "$@" 2>/dev/null | tr -d '\r'; }

ours --first "$first" --count "$count" "${kind[@]}" >"$out/ours.txt"
theirs --first "$first" --count "$count" "${kind[@]}" >"$out/theirs.txt" ||
    echo "the system ended after $(wc -l <"$out/theirs.txt") scenes" >&2

# Numbers of the scenes that differ, with their kinds.
awk 'FILENAME == ARGV[1] { hash[$1] = $3; next } hash[$1] != $3 { print $1, $2 }' \
    "$out/theirs.txt" "$out/ours.txt" >"$out/differing.txt"

printf '%-16s %8s %8s %8s\n' kind scenes equal differ
awk 'FILENAME == ARGV[1] { bad[$2]++; next } { if (!all[$2]++) order[++n] = $2 }
    END { for (i = 1; i <= n; ++i) { k = order[i]; printf "%-16s %8d %8d %8d\n", k, all[k], all[k] - bad[k], bad[k] } }' \
    "$out/differing.txt" "$out/ours.txt"

awk '!seen[$2]++' "$out/differing.txt" | while read -r number name; do
    one=(--kind "$name" --first "$number" --count 1)
    ours "${one[@]}" --dump "$out/ours" >/dev/null
    picture=$name-$number
    if theirs "${one[@]}" --dump "$out/theirs" >/dev/null && [ -e "$out/theirs/$picture.ppm" ]; then
        printf '%s: ' "$out/$picture"
        build/release/bin/scene_difference "$out/theirs/$picture.ppm" "$out/ours/$picture.ppm" "$out/$picture"
    else
        echo "$out/$picture: the system does not finish it"
    fi
done

differ=$(wc -l <"$out/differing.txt")
echo "$(wc -l <"$out/ours.txt") scenes, $differ differ"
[ "$differ" -eq 0 ]
