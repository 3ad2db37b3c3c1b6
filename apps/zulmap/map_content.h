/// \file
/// A map made ready for drawing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "apps/zulmap/edge_net.h"
#include "apps/zulmap/map_data.h"
#include "apps/zulmap/map_space.h"
#include "apps/zulmap/time_slice.h"
#include "zul/geometry/points.h"

namespace zulmap {

/// Everything on a map in the units of a space: areas with the colour of their feature, the outlines between
/// them once each, lines and points.
class MapContent {
public:
    using Lines = std::deque<zul::CPoints>;
    struct Fill {
        zul::CPoints ring;
        std::size_t color;
        std::uint32_t layer;
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
        std::uint32_t layer;
    };
    /// The outlines of a layer's areas.
    struct Outlines {
        Lines coasts;   ///< without a neighbour
        Lines borders;  ///< between two features
    };

    /// \p netStep: the map's units between two lines of a net; 0: no net.
    MapContent(std::shared_ptr<const MapData> map, const MapSpace& space, double netStep);
    MapContent(const MapContent&) = delete;
    MapContent& operator=(const MapContent&) = delete;

    /// To be called until it is complete; nothing is drawn before. \returns whether it is.
    /// \throws ToolError when the net would have too many lines
    bool Prepare(const TimeSlice& slice = {});
    bool IsReady() const { return m_Stage == Stage::Ready; }

    const MapData& GetMap() const { return *m_Map; }
    const std::vector<Raster>& GetRasters() const { return m_Map->rasters; }
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
    /// One for each of the map's layers.
    std::vector<Outlines>& GetOutlines() { return m_Outlines; }
    Lines& GetLines() { return m_Lines; }
    /// How many of all lines and points there are up to the end of each layer.
    const std::vector<std::size_t>& GetLineEnds() const { return m_LineEnds; }
    const std::vector<std::size_t>& GetPointEnds() const { return m_PointEnds; }

private:
    enum class Stage { PlaceAreas, JoinAreas, ShapeAreas, PlaceLines, PlaceNet, Ready };

    std::size_t CountItems() const;
    void PrepareItem(std::size_t item);
    void PlaceAreas(std::size_t feature);
    void JoinAreas();
    void ShapeArea(PlacedArea& area);
    void PlaceLines(std::size_t feature);
    void PlaceNet();

    std::shared_ptr<const MapData> m_Map;
    MapSpace m_Space;
    double m_NetStep;

    std::deque<Fill> m_Fills;
    std::vector<Islet> m_Islets;
    Lines m_Net;
    std::vector<Outlines> m_Outlines;
    Lines m_Lines;
    std::vector<zul::TPoint> m_Points;
    std::vector<std::size_t> m_LineEnds;
    std::vector<std::size_t> m_PointEnds;
    std::vector<std::uint32_t> m_LineFeatures;
    std::vector<std::uint32_t> m_PointFeatures;

    Stage m_Stage = Stage::PlaceAreas;
    std::size_t m_Item = 0;  ///< the next of the stage
    EdgeNet m_Edges;
    std::vector<PlacedArea> m_Areas;
};

}  // namespace zulmap
