/// \file
/// The loops that map point arrays to the screen in perspective. As with the flat ones, the vector code gives
/// the bits of the plain code; both take the road of GetMappingRoad().
#pragma once

#include <cstddef>

#include "zul/geometry/coordinates.h"
#include "zul/kernel/export.h"
#include "zul/scaler/projection.h"

namespace zul {

/// One point, rounded half away from zero. A point without an image keeps its coordinates.
ZUL_API TLongPoint ProjectPoint(const TProjection& projection, TPoint point);

/// `count` points by ProjectPoint().
ZUL_API void ProjectPoints(const TProjection& projection, const TPoint* in, std::size_t count,
                           TLongPoint* out);

/// Maps points as long as their weight is at least \p limit, which is above kTinyWeight, and leaves out each
/// that falls on the pixel of the one before it in \p out, where \p kept stand already. \p out has room for
/// \p count more. \returns how many points of \p in were read: \p count, or up to the first that lies nearer.
ZUL_API std::size_t ProjectPointsInFront(const TProjection& projection, double limit, const TPoint* in,
                                         std::size_t count, TLongPoint* out, std::size_t& kept);

}  // namespace zul
