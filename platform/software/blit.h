/// \file
/// Block transfers between the surfaces of two contexts, or within one.
///
/// The clip applies to the target only. Where the source lies outside its bitmap the target keeps its pixels.
/// Overlapping transfers within one surface read the pixels as they were before. What a transfer costs
/// depends on what is visible and on what the source really has, never on its extents.
#pragma once

#include <cstdint>

#include "platform/software/context.h"
#include "platform/software/rop3.h"
#include "platform/software/stretch_axis.h"

namespace device {

/// Paints a box with the selected brush. \p rop must not use the source.
void PaintPixels(Context& target, const Box& box, Rop3 rop);

/// Transfers pixel by pixel: target pixel (x, y) meets source pixel (x - \p dx, y - \p dy).
/// \p rop must use the source.
void CopyPixels(Context& target, const Box& box, const Context& source, std::int64_t dx, std::int64_t dy,
                Rop3 rop);

/// Transfers with stretching, under the target's stretch mode. False when memory is short.
bool StretchPixels(Context& target, const StretchAxis& columns, const StretchAxis& rows,
                   const Context& source, Rop3 rop);

/// Copies with stretching to the nearest pixel, but leaves out pixels of colour \p key. A one-bit bitmap
/// without a table counts as black and white. False when memory is short.
bool KeyPixels(Context& target, const StretchAxis& columns, const StretchAxis& rows, const Context& source,
               COLORREF key);

}  // namespace device
