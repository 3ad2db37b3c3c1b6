#!/usr/bin/env bash
# Holds the pictures of the 32-bit ARM build against those of this machine: scripts/compare-arm.sh [--seed S] [--count N]
# [--kind K] [--first I]. Builds both sides, draws the same scenes on both, the former under qemu, prints a table of kinds
# and ends with "N scenes, M differ". A scene must be equal to its last stored bit. The first of each kind that is not goes
# to build/scenes/ as expected (this machine's), got (ARM's) and difference. On a bare Debian 12 the script installs what
# it needs first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh
. scripts/scenes.sh

read_scene_options "$@"
need_packages "${build_packages[@]}" "${arm_packages[@]}"
prepare_arm
build_scenes arm

ours() { qemu-arm -L build/arm/sysroot build/arm/bin/scenes --seed "$seed" "$@"; }
theirs() { build/release/bin/scenes --seed "$seed" "$@"; }

compare_scenes
