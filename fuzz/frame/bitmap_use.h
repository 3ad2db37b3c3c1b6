/// \file
/// Everything that can be done with a bitmap, whatever it was made from.
#pragma once

#include "zul/raster/bitmap.h"

namespace fuzz {

/// Asks \p bitmap for all that it tells, draws it in every way, makes a brush and a region of it and stores
/// it. One whose header announces more than a few hundred thousand pixels is not drawn: that takes as long as
/// they are many.
void UseBitmap(zul::CBitmap& bitmap);

}  // namespace fuzz
