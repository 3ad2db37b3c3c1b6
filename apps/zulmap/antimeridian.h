/// \file
/// Geometry in degrees that goes around the globe.
#pragma once

#include <vector>

#include "apps/zulmap/map_data.h"

namespace zulmap {

/// Files on a globe lead rings and lines over the meridian of 180 degrees by a jump from one end of the
/// longitudes to the other, which on a flat map would run straight across the world. Here every edge longer
/// than half the globe is such a jump: lines end and begin anew at the meridian, rings are parted along it,
/// and a ring around a pole is closed by way of the pole. Other geometry stays as it is.
void CutAtAntimeridian(MapData& map);

}  // namespace zulmap
