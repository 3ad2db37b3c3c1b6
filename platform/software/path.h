/// \file
/// What a pen follows and a fill stays within.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/gdi.h"
#include "platform/software/surface.h"

namespace device {

/// Points joined by straight segments. The points belong to whoever made the path.
struct Path {
    const POINT* points = nullptr;
    int count = 0;
    bool closed = false;      ///< a last segment leads back to the first point
    std::uint64_t phase = 0;  ///< pixels of a dash pattern that lie before the first point
};

/// What points reach over; unlike a Box it has all four sides.
struct Extents {
    std::int32_t left, top, right, bottom;

    /// Whether lines between the points may pass through the box's pixels.
    bool Meet(const Box& box) const {
        return left < box.right && right >= box.left && top < box.bottom && bottom >= box.top;
    }
    /// Whether no two points are further apart than \p most in either direction.
    bool AreNear(std::int64_t most) const {
        return std::int64_t{right} - left <= most && std::int64_t{bottom} - top <= most;
    }
    bool IsWithin(const Box& box) const {
        return left >= box.left && right < box.right && top >= box.top && bottom < box.bottom;
    }
};

/// \p count is at least 1.
inline Extents FindExtents(const POINT* points, std::size_t count) {
    // Two points at a time, as the compiler's vectors: left to itself it takes the pairs apart.
    using Pair = std::int32_t __attribute__((vector_size(16)));
    static_assert(sizeof(Pair) == 2 * sizeof(POINT));
    const POINT last = points[count - 1];
    Pair low = {last.x, last.y, last.x, last.y}, high = low;
    for (std::size_t i = 0; i + 1 < count; i += 2) {
        Pair pair;
        std::memcpy(&pair, points + i, sizeof pair);
        low = pair < low ? pair : low;
        high = pair > high ? pair : high;
    }
    return {std::min(low[0], low[2]), std::min(low[1], low[3]), std::max(high[0], high[2]),
            std::max(high[1], high[3])};
}

/// Runs of a long list are looked at as a whole first: most are wholly visible or not at all.
constexpr int kRunSegments = 64;

}  // namespace device
