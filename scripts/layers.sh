#!/usr/bin/env bash
# Draws a raster, patterned areas and symbols as one map into build/layers.png, after a small program has made the
# three pictures. On a bare Debian 12 it installs what it needs first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh

need_packages "${build_packages[@]}"
cmake --preset release >/dev/null
cmake --build --preset release --target zulmap layer_pictures
mkdir -p build/layers
build/release/bin/layer_pictures build/layers
cat >build/layers/towns.geojson <<'TOWNS'
{"type": "MultiPoint", "coordinates": [[-0.1, 51.5], [2.4, 48.9], [13.4, 52.5], [12.5, 41.9], [-3.7, 40.4], [18.1, 59.3],
    [24.9, 60.2], [21.0, 52.2], [16.4, 48.2], [23.7, 38.0], [10.8, 59.9], [-6.3, 53.3], [30.5, 50.5], [26.1, 44.4]]}
TOWNS
cd build/layers
../release/bin/zulmap render relief.bmp ../../data/countries-10m.topojson towns.geojson -o ../layers.png \
    --bbox -12,37,32,61 --size 1200x800 --brush "type=3 pattern=land.bmp" --symbol pin.bmp
