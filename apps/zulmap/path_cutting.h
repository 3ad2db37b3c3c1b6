/// \file
/// Lines and rings in double precision: their direction, and what a box leaves of them.
#pragma once

#include "apps/zulmap/map_data.h"

namespace zulmap {

/// Twice the area inside a ring; positive when it runs counter-clockwise.
double TwiceSignedArea(const Path& ring);

/// Makes a ring run counter-clockwise when it is an outer one, else clockwise.
void Orient(Path& ring, bool isOuter);

/// What lies inside \p box, in one piece: from where the path leaves the box to where it comes back it is led
/// along the side that it crossed, or around the corner between two. Empty when nothing lies inside.
Path CutByBox(Path path, bool closed, const Box& box);

}  // namespace zulmap
