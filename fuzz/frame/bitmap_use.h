/// \file
/// Everything that can be done with a bitmap, whatever it was made from.
#pragma once

#include <cstddef>
#include <cstdint>

#include "zul/raster/bitmap.h"

namespace fuzz {

/// Whether the \p size bytes of a packed image at \p image announce so many pixels that to make room for them
/// takes much of a second. Images of more than that are refused at once.
bool IsSlow(const std::uint8_t* image, std::size_t size);

/// Asks \p bitmap for all that it tells, draws it in every way, makes a brush and a region of it and stores
/// it. One whose header announces more than a few ten thousand pixels is not drawn: that takes as long as
/// they are many.
void UseBitmap(zul::CBitmap& bitmap);

}  // namespace fuzz
