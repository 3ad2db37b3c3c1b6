/// \file
/// Draws a map on a canvas.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

#include "apps/zulmap/edge_net.h"
#include "apps/zulmap/map_data.h"
#include "apps/zulmap/map_space.h"
#include "apps/zulmap/tool_settings.h"
#include "zul/canvas/canvas.h"
#include "zul/geometry/points.h"

namespace zulmap {

/// What the user asked to look different.
struct MapStyle {
    std::optional<PenSettings> pen;      ///< replaces the pens of outlines, lines and points
    std::optional<BrushSettings> brush;  ///< replaces the colours of areas and points
    double graticule = 0.0;              ///< the file's units between two lines of the net; 0: no net
};

/// A map made ready for drawing: everything in map units, sorted into layers. From bottom to top: water, net,
/// areas (large ones first), their outlines, lines, points.
class MapPainter {
public:
    /// \throws ToolError when the net would have too many lines
    MapPainter(const MapData& map, const MapSpace& space, const MapStyle& style);

    /// Draws one frame of \p width x \p height pixels through the canvas's scaler, which shows the space's
    /// visible box. Leaves its own settings in the canvas's tools.
    void Paint(zul::CCanvas& canvas, std::int32_t width, std::int32_t height);

private:
    using Lines = std::deque<zul::CPoints>;
    struct Fill {
        zul::CPoints ring;
        std::int32_t color;
    };
    /// An area so small that it may fall between the pixels.
    struct Islet {
        zul::TPoint place;
        std::int32_t extent;  ///< map units, the longer side of its box
        std::int32_t color;
    };

    void PrepareAreas(const MapData& map, const MapSpace& space);
    void PrepareNet(const MapSpace& space, double step);
    void PaintLines(zul::CCanvas& canvas, const PenSettings& pen, Lines& lines) const;
    void PaintFills(zul::CCanvas& canvas);
    void PaintIslets(zul::CCanvas& canvas) const;
    void PaintPoints(zul::CCanvas& canvas, std::int32_t width, std::int32_t height) const;

    MapStyle m_Style;
    std::deque<Fill> m_Fills;
    std::vector<Islet> m_Islets;
    Lines m_Net;
    Lines m_Coasts;
    Lines m_Borders;
    Lines m_Lines;
    std::vector<zul::TPoint> m_Points;
};

}  // namespace zulmap
