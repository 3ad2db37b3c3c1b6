/// \file
/// What a ring of points encloses, found in doubles: an oracle for clipping.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "zul/geometry/coordinates.h"

namespace zul::testing {

using List = std::vector<TPoint>;

inline double Distance(double dx, double dy) {
    return std::sqrt(dx * dx + dy * dy);
}

/// How often a closed list passes around a point, counter-clockwise.
inline int WindingNumber(const List& ring, double x, double y) {
    int winding = 0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const TPoint& a = ring[i];
        const TPoint& b = ring[(i + 1) % ring.size()];
        const double left =
            (static_cast<double>(b.X) - a.X) * (y - a.Y) - (static_cast<double>(b.Y) - a.Y) * (x - a.X);
        if (a.Y <= y && b.Y > y && left > 0) ++winding;
        if (a.Y > y && b.Y <= y && left < 0) --winding;
    }
    return winding;
}

/// From a point to the nearest segment of a closed list.
inline double DistanceTo(const List& ring, double x, double y) {
    double nearest = 1e9;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const TPoint& a = ring[i];
        const TPoint& b = ring[(i + 1) % ring.size()];
        const double dx = b.X - a.X;
        const double dy = b.Y - a.Y;
        const double square = dx * dx + dy * dy;
        const double t = square == 0 ? 0 : std::clamp(((x - a.X) * dx + (y - a.Y) * dy) / square, 0.0, 1.0);
        nearest = std::min(nearest, Distance(a.X + t * dx - x, a.Y + t * dy - y));
    }
    return nearest;
}

}  // namespace zul::testing
