/// \file
/// The loops that map point arrays to the screen, free of any object: the library's hottest code.
///
/// Each loop exists as plain C++, which is the rule, and as vector code that gives the same bits; which one
/// runs is chosen once for the process. Every double operation of the plain loop is done by the vector code
/// in the same order, or a single-precision one gives a result that leaves no doubt about it: so there is no
/// tolerance between them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "zul/geometry/coordinates.h"
#include "zul/kernel/export.h"

namespace zul {

/// Map to screen without turning: ((x - left) * k, (bottom - y) * k). Any value of k is legal.
struct TLinearMap {
    double k;
    std::int32_t left;
    std::int32_t bottom;
};

/// A turn about a pivot by CPoint::RotateEx: to 16 bits, wrapping.
struct TMapTurn {
    double sine;
    double cosine;
    TCoord pivotX;
    TCoord pivotY;
};

enum class TMappingRoad { Plain, Sse2, Avx2, Avx512 };

/// Whether this processor and this build have the road.
ZUL_API bool IsMappingRoadAvailable(TMappingRoad road);
/// The road that all mapping loops take, those of perspective views too.
ZUL_API TMappingRoad GetMappingRoad();
/// Takes the road from now on, in every thread; one that is not available changes nothing. Returns the road
/// taken before. At the start it is the fastest one available.
ZUL_API TMappingRoad SelectMappingRoad(TMappingRoad road);

/// Maps `count` points, rounded half away from zero.
ZUL_API void MapPoints(const TLinearMap& map, const TPoint* in, std::size_t count, TLongPoint* out);
/// Maps as MapPoints() and leaves out each point that equals the one before. Returns the number kept; up to
/// `count` elements of `out` are used as working space.
ZUL_API std::size_t MapDistinctPoints(const TLinearMap& map, const TPoint* in, std::size_t count,
                                      TLongPoint* out);
/// Turns each point, then maps it truncating toward zero.
ZUL_API void MapTurnedPoints(const TLinearMap& map, const TMapTurn& turn, const TPoint* in, std::size_t count,
                             TLongPoint* out);

}  // namespace zul
