/// \file
/// A map made ready for drawing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

#include "apps/zulmap/edge_net.h"
#include "apps/zulmap/map_data.h"
#include "apps/zulmap/map_space.h"
#include "apps/zulmap/time_slice.h"
#include "zul/geometry/points.h"

namespace zulmap {

/// What holds for every part of a map. Handed on from one content to the next it saves time, and a feature
/// keeps its colour when another part of the map is shown.
struct MapScheme {
    std::vector<std::uint32_t> order;  ///< indices of the features, the largest first
    std::vector<std::size_t> colors;   ///< of the features in that order, below kPaletteSize
};

/// Everything on a map in the units of a space: areas with the colour of their feature, the outlines between
/// them once each, lines and points.
class MapContent {
public:
    static constexpr std::size_t kPaletteSize = 8;

    using Lines = std::deque<zul::CPoints>;
    struct Fill {
        zul::CPoints ring;
        std::size_t color;
    };
    /// An area with the corners that it has in the map's units.
    struct PlacedArea {
        std::size_t feature;  ///< its place in the scheme's order
        std::vector<Ring> rings;
    };
    /// An area so small that it may fall between the pixels.
    struct Islet {
        zul::TPoint place;
        std::int32_t extent;  ///< map units, the longer side of its box
        std::size_t color;
    };

    /// \p map outlives the content. \p netStep: the file's units between two lines of a net; 0: no net.
    /// \p scheme: that of an earlier content of the same map, or empty.
    MapContent(const MapData& map, const MapSpace& space, double netStep, MapScheme scheme = {});
    MapContent(const MapContent&) = delete;
    MapContent& operator=(const MapContent&) = delete;

    /// To be called until it is complete; nothing is drawn before. \returns whether it is.
    /// \throws ToolError when the net would have too many lines
    bool Prepare(const TimeSlice& slice = {});
    bool IsReady() const { return m_Stage == Stage::Ready; }

    const MapScheme& GetScheme() const { return m_Scheme; }
    const MapData& GetMap() const { return m_Map; }
    const std::vector<Raster>& GetRasters() const { return m_Map.rasters; }
    const MapSpace& GetSpace() const { return m_Space; }
    const std::vector<Islet>& GetIslets() const { return m_Islets; }
    const std::vector<zul::TPoint>& GetPoints() const { return m_Points; }
    /// For labels: areas in the scheme's order, and the features, as the map counts them, of all lines and
    /// points. Empty unless the map has names.
    const std::vector<PlacedArea>& GetAreas() const { return m_Areas; }
    const std::vector<std::uint32_t>& GetLineFeatures() const { return m_LineFeatures; }
    const std::vector<std::uint32_t>& GetPointFeatures() const { return m_PointFeatures; }
    // Lists are not constant because a canvas asks them for their box, which they work out when asked.
    std::deque<Fill>& GetFills() { return m_Fills; }
    Lines& GetNet() { return m_Net; }
    Lines& GetCoasts() { return m_Coasts; }
    Lines& GetBorders() { return m_Borders; }
    Lines& GetLines() { return m_Lines; }

private:
    enum class Stage { PlaceAreas, JoinAreas, ShapeAreas, PlaceLines, PlaceNet, Ready };

    std::size_t CountItems() const;
    void PrepareItem(std::size_t item);
    void PlaceAreas(std::size_t feature);
    void JoinAreas();
    void ShapeArea(PlacedArea& area);
    void PlaceLines(std::size_t feature);
    void PlaceNet();

    const MapData& m_Map;
    MapSpace m_Space;
    double m_NetStep;
    MapScheme m_Scheme;

    std::deque<Fill> m_Fills;
    std::vector<Islet> m_Islets;
    Lines m_Net;
    Lines m_Coasts;
    Lines m_Borders;
    Lines m_Lines;
    std::vector<zul::TPoint> m_Points;
    std::vector<std::uint32_t> m_LineFeatures;
    std::vector<std::uint32_t> m_PointFeatures;

    Stage m_Stage = Stage::PlaceAreas;
    std::size_t m_Item = 0;  ///< the next of the stage
    EdgeNet m_Edges;
    std::vector<PlacedArea> m_Areas;
};

}  // namespace zulmap
