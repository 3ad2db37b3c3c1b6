#!/usr/bin/env bash
# Builds the libraries for Windows and runs their tests there, headless. On a bare Debian 12 it installs what it needs
# first. Ends with one line: N passed, M failed.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh
. scripts/whole_programs.sh

need_packages "${windows_packages[@]}"
cmake --preset windows >/dev/null
cmake --build --preset windows
prepare_wine

run_whole_programs windows
