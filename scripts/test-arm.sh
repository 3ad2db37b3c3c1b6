#!/usr/bin/env bash
# Builds the libraries for 32-bit ARM and runs their tests there, under qemu. On a bare Debian 12 it installs what it
# needs first. Ends with one line: N passed, M failed.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh
. scripts/whole_programs.sh

need_packages "${arm_packages[@]}"
prepare_arm
cmake --preset arm >/dev/null
cmake --build --preset arm
run_whole_programs arm
