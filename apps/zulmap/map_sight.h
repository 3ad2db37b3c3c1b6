/// \file
/// What part of a map a picture shows, and from where.
#pragma once

#include <memory>
#include <optional>

#include "apps/zulmap/map_data.h"
#include "apps/zulmap/map_space.h"
#include "apps/zulmap/memory_picture.h"
#include "zul/geometry/coordinates.h"
#include "zul/scaler/scaler.h"

namespace zulmap {

/// The part of a perspective picture that is sky.
constexpr double kSky = 0.2;

/// What was asked for. Nothing: the whole map from above.
struct SightRequest {
    std::optional<Box> box;              ///< in the map's coordinates; goes before `center` and `scale`
    std::optional<TDoublePoint> center;  ///< in the map's coordinates
    std::optional<double> scale;         ///< metres on the ground in a centimetre of the picture, above 0
    /// In perspective: metres from the upper edge of the box that is seen from near to the horizon, above 0.
    std::optional<double> depth;
    double degrees = 0.0;               ///< counter-clockwise
    double pixelsPerSm = kPixelsPerSm;  ///< of the picture
};

/// The map's units for a picture, and the scaler that shows them.
struct Sight {
    MapSpace space;
    std::unique_ptr<zul::CScaler> scaler;
};

/// \p map is not empty, both sides of \p size are positive.
///
/// In perspective box and scale hold at the lower edge of the picture, whose middle is the centre; the box
/// lies beyond that edge, and the depth is kept within 1.5 and 10 of its heights. With neither box nor scale
/// the box is a third of the depth high. The sky takes a fifth of the picture.
/// \throws ToolError when the part of the map is too large or too small to be divided into units
Sight MakeSight(const MapFacts& map, const SightRequest& request, zul::TSize size);

}  // namespace zulmap
