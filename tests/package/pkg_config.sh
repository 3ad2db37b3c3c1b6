#!/usr/bin/env bash
# Builds and runs SOURCE with nothing but pkg-config's answers, and includes every header there is beside that.
set -euo pipefail
compiler=$1 pkg_config=$2 libdir=$3 source=$4 out=$5
shift 5

flags=$(PKG_CONFIG_PATH="$libdir/pkgconfig" "$pkg_config" --cflags --libs zulgraphics)
# shellcheck disable=SC2086  # the flags are a list
"$compiler" -std=c++17 "$@" "$source" $flags -Wl,-rpath,"$libdir" -o "$out/pkg_config_map"
"$out/pkg_config_map" "$out/pkg_config.ppm"

include=$("$pkg_config" --with-path="$libdir/pkgconfig" --variable=includedir zulgraphics)
(cd "$include" && find . -name '*.h' -printf '#include "%P"\n') >"$out/every_header.cpp"
"$compiler" -std=c++17 -I"$include" -fsyntax-only "$out/every_header.cpp"
