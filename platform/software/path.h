/// \file
/// What a pen follows.
#pragma once

#include <cstdint>

#include "platform/gdi.h"

namespace device {

/// Points joined by straight segments. The points belong to whoever made the path.
struct Path {
    const POINT* points = nullptr;
    int count = 0;
    bool closed = false;      ///< a last segment leads back to the first point
    std::uint64_t phase = 0;  ///< pixels of a dash pattern that lie before the first point
};

}  // namespace device
