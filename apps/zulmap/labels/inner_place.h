/// \file
/// Where inside an area there is most room for a label.
#pragma once

#include <optional>
#include <vector>

#include "apps/zulmap/labels/turned_box.h"
#include "apps/zulmap/map_data.h"

namespace zulmap {

struct InnerPlace {
    TDoublePoint center;  ///< inside the area
    double room;          ///< a label this many times as large fits in with its middle there
};

/// The place for an upright box of a given size inside what \p rings enclose under the alternate rule: where
/// there is most room around it, and, of places with room to spare, the one nearest the middle of the area.
/// \p least  the room there must be: 1 for a label that is to lie inside, 0 for one that may stick out
/// \returns none when there is no such place
///
/// The pole of inaccessibility (Garcia-Castellanos and Lombardo, "Poles of inaccessibility: a calculation
/// algorithm for the remotest places on earth", 2007), found as V. Agafonkin's polylabel (2016) finds it: a
/// quadtree over the area whose cells are divided, the most promising first, until none can hold anything
/// better. Distance here is what a box measures: the area is scaled so that the box becomes a square, and the
/// distance of two points is the greater one of their distances along the axes. Then the box fits exactly
/// where the distance to the nearest edge is 1 or more; a cell is such a square, too, so that no promise is
/// too high. Ends within a hundredth of the box; areas thinner than that have no place.
std::optional<InnerPlace> FindInnerPlace(const std::vector<Path>& rings, HalfSize box, double least);

}  // namespace zulmap
