#!/usr/bin/env bash
# Builds the Debian packages of the library, of what is needed to build against it, and of the program into
# build/package/packages, and prints their names and sizes. On a bare Debian 12 it installs what it needs first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh

need_packages "${build_packages[@]}" "${deb_packages[@]}"
umask 022
# The same sources give the same packages, byte for byte.
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct 2>/dev/null || stat -c %Y CMakeLists.txt)
export SOURCE_DATE_EPOCH
cmake --preset package >/dev/null
cmake --build --preset package
rm -rf build/package/packages
cpack --preset package >build/package/cpack.log || { cat build/package/cpack.log; exit 1; }
cd build/package/packages
du -b -- *.deb
