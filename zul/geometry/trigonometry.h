/// \file
/// Sine, cosine and arc tangent with the same bits on every host, so that a turned map has the same
/// coordinates everywhere; C libraries differ in their last bit.
///
/// Sine and cosine are within one unit in the last place of the true value, arc tangents within two. Argument
/// reduction by a constant in three parts after Cody and Waite, "Software Manual for the Elementary
/// Functions"; Taylor series on what is left.
#pragma once

#include "zul/kernel/export.h"

namespace zul {

/// \p radians beyond 2^19 either way are left to the host's C library; NaN for NaN and infinities.
ZUL_API double Sine(double radians);
ZUL_API double Cosine(double radians);
/// Between minus and plus a right angle, which infinite slopes have exactly; NaN for NaN.
ZUL_API double Arctangent(double slope);

}  // namespace zul
