/// \file
/// The order of drawing and the colours of a map.
#pragma once

#include "apps/zulmap/map_data.h"

namespace zulmap {

/// Larger features lie below smaller ones; neighbours differ in colour where the number of colours allows it.
/// \p map: not empty, without a scheme
MapScheme MakeScheme(const MapData& map);

}  // namespace zulmap
