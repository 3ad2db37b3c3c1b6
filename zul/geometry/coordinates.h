/// \file
/// The plain coordinate records that every room of the library hands around: map units in 16 bits, screen
/// pixels and sums in 32 bits. They are copied by value, carry no behaviour, and their layout is part of the
/// stored forms.
#pragma once

#include <cstdint>

#include "zul/kernel/numeric.h"

/// A point in double precision. It stands in the global namespace because applications share it with code
/// that knows nothing of this library.
struct TDoublePoint {
    /// Finite or not: what takes such a point says what it does with NaN.
    double X, Y;
};

namespace zul {

/// One coordinate in map units.
using TCoord = std::int16_t;

constexpr TCoord MinCoord = -32768;  ///< The smallest coordinate.
constexpr TCoord MaxCoord = 32767;   ///< The largest coordinate.

/// A point in map units.
struct TPoint {
    /// To the right, and up.
    TCoord X, Y;
};

/// A point in 32 bits: screen pixels, or map units that may have left the 16-bit range.
struct TLongPoint {
    /// To the right; pixels count down, map units up.
    std::int32_t X, Y;
};

/// A box in map units with closed bounds. The map's y axis points up, so MaxY is the upper edge.
struct TRect {
    /// A maximum may be below its minimum: only what says so puts them in order.
    TCoord MinX, MinY, MaxX, MaxY;
};

/// A box in 32 bits with closed bounds.
struct TLongRect {
    /// As in TRect.
    std::int32_t MinX, MinY, MaxX, MaxY;
};

/// An extent; the unit is that of the coordinates it was taken from.
struct TSize {
    /// Negative where an operation says so.
    std::int32_t Width, Height;
};

static_assert(sizeof(TDoublePoint) == 16 && sizeof(TPoint) == 4 && sizeof(TLongPoint) == 8 &&
                  sizeof(TRect) == 8 && sizeof(TLongRect) == 16 && sizeof(TSize) == 8,
              "the records are read and written as blocks of bytes and must not be padded");

/// The low 16 bits of both values.
constexpr TPoint WrapToPoint(std::int64_t x, std::int64_t y) {
    return {WrapToCoord(x), WrapToCoord(y)};
}

/// Rounds to the nearest integer, halves away from zero, and narrows it as `ToCoord` does.
inline TCoord RoundToCoord(double value) {
    return ToCoord(AddHalfIfPositive(value));
}

/// Whether both coordinates are equal.
inline bool operator==(const TPoint& a, const TPoint& b) {
    return a.X == b.X && a.Y == b.Y;
}
inline bool operator!=(const TPoint& a, const TPoint& b) {
    return !(a == b);
}
inline bool operator==(const TLongPoint& a, const TLongPoint& b) {
    return a.X == b.X && a.Y == b.Y;
}
inline bool operator!=(const TLongPoint& a, const TLongPoint& b) {
    return !(a == b);
}

}  // namespace zul
