/// \file
/// Words on sheets and panels: in pixels, whatever a canvas maps.
#pragma once

#include <cstdint>
#include <string_view>

#include "zul/canvas/canvas.h"
#include "zul/geometry/coordinates.h"

namespace zulmap {

/// How a caption is set.
struct CaptionFont {
    std::int32_t points;
    bool isBold = false;
    bool isFixed = false;  ///< all characters equally wide, so that blanks make columns
};

/// Draws one line of UTF-8 with \p position at the upper left of its cell. Leaves its own settings in the
/// canvas's font.
void DrawCaption(zul::CCanvas& canvas, zul::TLongPoint position, std::string_view text, CaptionFont font,
                 std::int32_t color);

/// Pixels of the cell on a picture or on the screen.
zul::TSize GetCaptionSize(std::string_view text, CaptionFont font);

}  // namespace zulmap
