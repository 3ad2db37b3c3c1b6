/// \file
/// Colours that change from pixel to pixel: the ink of gradients.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "platform/software/context.h"

namespace device {

/// The ink of one rectangle or triangle between coloured vertices. Each 16-bit channel is a plane over the
/// pixels' upper left corners; its value is rounded down.
///
/// Surfaces of 24 and 32 bits take the high byte of a channel, the latter alpha too. The others are dithered,
/// in cells that begin at the surface's corner: 16 bits among the 32 levels of a channel, fewer bits among
/// the levels 0, 127 and 254, of which the table's nearest entry is put.
///
/// Values are exact as long as a rectangle's sides fit 32 bits and the vertices of a triangle are less than
/// 2^22 pixels apart; for other triangles they are formed in double precision.
struct GradientInk : Ink {
    static constexpr int kChannels = 4;
    /// value(x, y) = start + floor((perX * (x - originX) + perY * (y - originY)) / divisor)
    struct Plane {
        std::int64_t perX = 0, perY = 0;
        std::int32_t start = 0;
    };
    /// In the order of a pixel's bits: blue, green, red, alpha.
    std::array<Plane, kChannels> planes;
    std::int64_t divisor = 1;  ///< positive
    double farDivisor = 0;     ///< takes the divisor's place where that is too large for integers; else 0
    std::int32_t originX = 0, originY = 0;
    /// Of an indexed surface: the pixel for each combination of a level of blue, green and red.
    std::array<std::uint8_t, 27> entries{};

    /// Between two corners, whose order in the list does not matter; along y when \p vertical, else along x.
    GradientInk(const Context& context, const TRIVERTEX& first, const TRIVERTEX& second, bool vertical);
    /// Between three corners that do not stand on one line.
    GradientInk(const Context& context, const TRIVERTEX& a, const TRIVERTEX& b, const TRIVERTEX& c);
    /// Whether no channel changes along x or y.
    bool IsConstantAlong(std::int64_t Plane::*direction) const {
        return std::all_of(planes.begin(), planes.end(), [&](const Plane& p) { return p.*direction == 0; });
    }
    GradientInk(const GradientInk&) = delete;
    GradientInk& operator=(const GradientInk&) = delete;

private:
    void Prepare(const Context& context);
};

/// Whether three vertices stand on one line.
bool IsFlat(const TRIVERTEX& a, const TRIVERTEX& b, const TRIVERTEX& c);

}  // namespace device
