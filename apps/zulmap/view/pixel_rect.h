/// \file
/// Rectangles of pixels; right and bottom are excluded.
#pragma once

#include <algorithm>
#include <cstdint>

#include "zul/geometry/coordinates.h"

namespace zulmap {

using PixelRect = zul::TLongRect;

inline bool IsEmpty(const PixelRect& rect) {
    return rect.MinX >= rect.MaxX || rect.MinY >= rect.MaxY;
}

inline bool IsEqual(const PixelRect& a, const PixelRect& b) {
    return a.MinX == b.MinX && a.MinY == b.MinY && a.MaxX == b.MaxX && a.MaxY == b.MaxY;
}

inline std::int64_t AreaOf(const PixelRect& rect) {
    return IsEmpty(rect) ? 0 : (std::int64_t{rect.MaxX} - rect.MinX) * (std::int64_t{rect.MaxY} - rect.MinY);
}

inline PixelRect Intersect(const PixelRect& a, const PixelRect& b) {
    return {std::max(a.MinX, b.MinX), std::max(a.MinY, b.MinY), std::min(a.MaxX, b.MaxX),
            std::min(a.MaxY, b.MaxY)};
}

/// The smallest rectangle around two that are not empty.
inline PixelRect Unite(const PixelRect& a, const PixelRect& b) {
    return {std::min(a.MinX, b.MinX), std::min(a.MinY, b.MinY), std::max(a.MaxX, b.MaxX),
            std::max(a.MaxY, b.MaxY)};
}

inline bool Overlap(const PixelRect& a, const PixelRect& b) {
    return !IsEmpty(Intersect(a, b));
}

inline PixelRect Shifted(const PixelRect& rect, zul::TLongPoint by) {
    return {rect.MinX + by.X, rect.MinY + by.Y, rect.MaxX + by.X, rect.MaxY + by.Y};
}

}  // namespace zulmap
