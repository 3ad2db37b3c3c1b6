#!/usr/bin/env bash
# Times the library against its peers and prints a table: name, ours, peer, ratio. Arguments go to the program, such as
# --benchmark_filter=polyline. On a bare Debian 12 it installs what it needs first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh

need_packages "${build_packages[@]}"
cmake --preset release >/dev/null
cmake --build --preset release --target zulbench >&2
exec build/release/bin/zulbench "$@"
