/// \file
/// Long points as the device's own points.
#pragma once

#include <cstddef>

#include "platform/gdi.h"
#include "zul/geometry/coordinates.h"

namespace zul {

static_assert(sizeof(TLongPoint) == sizeof(POINT) && offsetof(TLongPoint, X) == offsetof(POINT, x) &&
                  offsetof(TLongPoint, Y) == offsetof(POINT, y),
              "point lists reach the device without being copied");

inline const POINT* DevicePoints(const TLongPoint* points) {
    return reinterpret_cast<const POINT*>(points);
}

}  // namespace zul
