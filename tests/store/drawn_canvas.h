// A canvas whose every tool is set, and the picture that it draws.
#pragma once

#include <cstdint>

#include "zul/canvas/canvas.h"

namespace zul {

/// Sets the tools; the referred objects are the caller's.
void SetUpCanvas(CCanvas& canvas, CBitmap& pattern, CScaler& scaler, CGradient& gradient, CPalette& palette);

/// Draws lines, areas and text with the canvas's tools on 32 bits. What cannot be drawn here, the colours of
/// gradient and palette, goes into the hash as it is.
std::uint64_t HashOfPicture(CCanvas& canvas, CPalette* palette);

}  // namespace zul
