#!/usr/bin/env bash
# Draws the world with the names of its countries into build/world.png. On a bare Debian 12 it installs what it needs first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh

need_packages "${build_packages[@]}"
cmake --preset release >/dev/null
cmake --build --preset release --target zulmap
cd data
../build/release/bin/zulmap render "${demo_map[@]}" -o ../build/world.png
