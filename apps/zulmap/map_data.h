/// \file
/// Map content in memory, in the coordinates of its file (degrees, metres ...; x to the right, y upwards).
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "apps/zulmap/layer_look.h"
#include "zul/geometry/coordinates.h"
#include "zul/kernel/string.h"
#include "zul/raster/dib_section.h"

namespace zulmap {

/// An upright box. A new one is empty: its minimum lies above its maximum.
struct Box {
    double minX = std::numeric_limits<double>::infinity();
    double minY = std::numeric_limits<double>::infinity();
    double maxX = -std::numeric_limits<double>::infinity();
    double maxY = -std::numeric_limits<double>::infinity();

    bool IsEmpty() const { return !(minX <= maxX && minY <= maxY); }
    double Width() const { return maxX - minX; }
    double Height() const { return maxY - minY; }

    void Include(const TDoublePoint& point) {
        minX = std::min(minX, point.X);
        minY = std::min(minY, point.Y);
        maxX = std::max(maxX, point.X);
        maxY = std::max(maxY, point.Y);
    }
    bool Contains(const Box& other) const {
        return minX <= other.minX && minY <= other.minY && maxX >= other.maxX && maxY >= other.maxY;
    }
};

/// Coordinates beyond this are broken data, and differences of them would lose everything that matters.
constexpr double kFarthestCoordinate = 1e15;

/// Every coordinate is finite.
using Path = std::vector<TDoublePoint>;

/// What all rings together enclose under the alternate rule. Outer rings (mostly one, the first) run
/// counter-clockwise, holes clockwise; so two areas that touch walk along their common border in opposite
/// directions. No ring is empty, and its first point is not repeated at its end.
struct Area {
    std::vector<Path> rings;
};

/// What belongs together on the map, and has one colour: a country with all its islands.
struct Feature {
    std::vector<Area> areas;
    std::vector<Path> lines;
    Path points;
    zul::CString name{};                ///< what it is labelled with; mostly empty
    std::uint32_t layer = 0;            ///< in the map's list
    std::vector<std::string> values{};  ///< UTF-8, of the layer's fields, where they were asked for
};

/// A picture that covers a box of the map, its columns running east and its rows south.
struct Raster {
    std::shared_ptr<zul::CDibSection> picture;  ///< 32 bits a pixel, the bottom row first
    std::int32_t width = 0;
    std::int32_t height = 0;
    Box place;  ///< finite, neither side 0
};

struct MapLayer {
    std::string name;                 ///< UTF-8
    std::vector<std::string> fields;  ///< UTF-8, what its features say about themselves
    LayerLook look;
};

/// What holds for a map as a whole.
struct MapFacts {
    std::vector<MapLayer> layers;
    Box extent;                 ///< holds every coordinate; empty when there is none
    bool hasNames = false;      ///< whether the features' names were read
    bool isInDegrees = false;   ///< longitudes and latitudes
    double metresInUnit = 1.0;  ///< metres on the ground in one coordinate unit, at the equator for degrees
};

/// Which feature lies on which, and their colours. Worked out from the whole map, so that a feature looks the
/// same whatever part is shown.
struct MapScheme {
    static constexpr std::size_t kColors = 8;

    std::vector<std::uint32_t> order;  ///< indices of the features, the largest first
    std::vector<std::size_t> colors;   ///< of the features in that order, below kColors
};

struct MapData : MapFacts {
    std::vector<Feature> features;  ///< layer by layer
    std::vector<Raster> rasters;    ///< from the bottom to the top, all below the features
    MapScheme scheme;
};

}  // namespace zulmap
