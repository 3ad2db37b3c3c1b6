/// \file
/// Boxes from what callers give: a corner and signed extents, or a rectangle.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "platform/gdi.h"
#include "platform/software/surface.h"

namespace device {

/// The pixels from \p start over \p extent: start <= x < start + extent, or for a negative extent
/// start + extent < x <= start. Cut to 32 bits, which no surface reaches.
inline void ExtentRange(std::int64_t start, std::int64_t extent, std::int32_t& from, std::int32_t& to) {
    const auto cut = [](std::int64_t value) {
        return static_cast<std::int32_t>(std::clamp<std::int64_t>(
            value, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
    };
    from = cut(extent >= 0 ? start : start + extent + 1);
    to = cut(extent >= 0 ? start + extent : start + 1);
}

/// The pixels that a box of signed extents covers.
inline Box ExtentBox(std::int64_t x, std::int64_t y, std::int64_t width, std::int64_t height) {
    Box box;
    ExtentRange(x, width, box.left, box.right);
    ExtentRange(y, height, box.top, box.bottom);
    return box;
}

inline Box BoxOf(const RECT& rect) {
    return {rect.left, rect.top, rect.right, rect.bottom};
}
inline RECT RectOf(const Box& box) {
    return {box.left, box.top, box.right, box.bottom};
}

}  // namespace device
