/// \file
/// Filling polygons.
#pragma once

#include "platform/gdi.h"
#include "platform/software/coverage.h"
#include "platform/software/path.h"

namespace device {

/// Fills what an odd number of the ring's sides encloses. The ring closes itself; sides may cross. A pixel
/// belongs to the polygon when its upper left corner does, borders on the left and on top included, so rings
/// that share a side neither overlap nor leave a gap. Each pixel is put once.
///
/// Coordinates may be any 32-bit values. The time is linear in the number of points and in the visible rows
/// and crossings. Throws std::bad_alloc.
/// \param extents of the points
void FillPolygon(FillTarget& target, const POINT* points, int count, const RunExtents& extents);

}  // namespace device
