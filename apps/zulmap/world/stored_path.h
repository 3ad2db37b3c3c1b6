/// \file
/// A path of a map as it is stored.
#pragma once

#include <vector>

#include "apps/zulmap/map_data.h"
#include "apps/zulmap/world/point_grid.h"
#include "zul/kernel/stream.h"

namespace zulmap {

/// Writes a path so that it comes back to the bit.
///
/// A path on the grid becomes sheets: an origin in places of the grid, 32 bits on either axis, and a list of
/// points with 16-bit coordinates counted from there, as the library stores them; a sheet ends where the next
/// point is too far from its origin. So a path of any size keeps all its detail at four bytes a point, and
/// each sheet is a map of its own with the grid's step for a unit. A path off the grid is stored in doubles.
bool WritePath(zul::CStream& stream, const Path& path, const PointGrid& grid);

/// \returns false for what WritePath did not write; \p path is then of no use.
bool ReadPath(zul::CStream& stream, Path& path, const PointGrid& grid);

}  // namespace zulmap
