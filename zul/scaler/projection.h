/// \file
/// Plane projective transforms: what a flat map becomes when it is looked at from a slant.
#pragma once

#include "zul/geometry/coordinates.h"
#include "zul/kernel/export.h"

namespace zul {

/// Takes (x, y) to (X / w, Y / w). The weight w grows with the distance from the viewer; on the side behind
/// the viewer it is negative. All zeros is no transform: every weight is 0.
struct TProjection {
    /// X = a x + b y + c.
    double a, b, c;
    /// Y = d x + e y + f.
    double d, e, f;
    /// w = g x + h y + i.
    double g, h, i;

    /// In this order of operations: the vector loops repeat it.
    double X(double x, double y) const { return a * x + b * y + c; }
    double Y(double x, double y) const { return d * x + e * y + f; }
    double Weight(double x, double y) const { return g * x + h * y + i; }
};

/// Below this a weight counts as none: the point has no image.
constexpr double kTinyWeight = 1e-9;

/// Finds the transform that takes four points to four others; its weight in the middle of the first four is
/// 1. \returns false, and \p projection as it was, when three of the points of either side lie on a line.
ZUL_API bool FindProjection(const TDoublePoint (&from)[4], const TDoublePoint (&to)[4],
                            TProjection& projection);

}  // namespace zul
