/// \file
/// Short texts drawn as lines.
#pragma once

#include <cstdint>
#include <string_view>

#include "zul/canvas/canvas.h"
#include "zul/geometry/coordinates.h"

namespace zulmap {

/// Draws capitals, digits and the signs . , : ; - + = / % ( ) _ ' with the canvas's pen, whatever its scaler.
/// Small letters look like capitals; any other character leaves a gap. \p position is the top left pixel,
/// \p height the pixels from the top to the bottom of a capital; below 7 signs become hard to tell apart,
/// below 2 nothing is drawn.
void DrawStrokeText(zul::CCanvas& canvas, zul::TLongPoint position, std::string_view text,
                    std::int32_t height);

/// Pixels from the left side of the first character to the right side of the last; 0 for no text.
std::int32_t GetStrokeTextWidth(std::string_view text, std::int32_t height);

}  // namespace zulmap
