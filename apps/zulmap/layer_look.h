/// \file
/// What the features of a layer look like.
#pragma once

#include <vector>

#include "apps/zulmap/tool_settings.h"

namespace zulmap {

/// The tools that a layer is drawn with. A new one has those of the program.
struct LayerLook {
    LayerLook();

    PenSettings shallows;  ///< below the coasts, in the water; type 0: none
    PenSettings coast;     ///< of areas without a neighbour
    PenSettings border;    ///< between two areas
    PenSettings line;
    PenSettings point;                 ///< around the discs of points
    BrushSettings disc;                ///< within them
    std::vector<BrushSettings> areas;  ///< that tell areas apart; at least one
    FontSettings font;

    /// For an area of a colour of the scheme.
    const BrushSettings& GetAreaBrush(std::size_t color) const { return areas[color % areas.size()]; }
};

}  // namespace zulmap
