#!/usr/bin/env bash
# Holds the 32-bit ARM build against this machine's: scripts/compare-arm.sh [--seed S] [--count N] [--kind K] [--first I].
# Builds both sides; the former runs under qemu. Each stores objects of every class and reads what the other has stored,
# which must be the bytes that it stores itself. Then both draw the same scenes, which must be equal to their last stored
# bit; a table of kinds is printed and last "N scenes, M differ". The first of each kind that is not equal goes to
# build/scenes/ as expected (this machine's), got (ARM's) and difference. On a bare Debian 12 the script installs what it
# needs first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh
. scripts/scenes.sh

read_scene_options "$@"
need_packages "${build_packages[@]}" "${arm_packages[@]}"
prepare_arm
build_scenes arm

emulated() { qemu-arm -L build/arm/sysroot "build/arm/bin/$1" "${@:2}"; }

for preset in release arm; do
    cmake --build --preset "$preset" --target stored_files >&2
done
stored=build/stored
rm -rf "$stored"
mkdir -p "$stored"/{here,arm}
build/release/bin/stored_files write "$stored/here" >/dev/null
emulated stored_files write "$stored/arm" >/dev/null
build/release/bin/stored_files read "$stored/arm"
emulated stored_files read "$stored/here"

ours() { emulated scenes --seed "$seed" "$@"; }
theirs() { build/release/bin/scenes --seed "$seed" "$@"; }

compare_scenes
