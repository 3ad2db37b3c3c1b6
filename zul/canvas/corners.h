/// \file
/// Two opposite corners of a rectangle on their way to the device.
#pragma once

#include <utility>

#include "zul/geometry/coordinates.h"
#include "zul/scaler/scaler.h"

namespace zul {

inline void OrderCorners(TLongPoint& low, TLongPoint& high) {
    if (high.X < low.X) std::swap(low.X, high.X);
    if (high.Y < low.Y) std::swap(low.Y, high.Y);
}

/// Map units to pixels, without the rotation, which would leave no upright rectangle. Then \p low is the
/// upper left corner.
inline void MapCorners(const CScaler& scaler, TLongPoint& low, TLongPoint& high) {
    for (TLongPoint* corner : {&low, &high})
        scaler.MapToScreen(corner->X, corner->Y, corner->X, corner->Y);
    OrderCorners(low, high);
}

}  // namespace zul
