/// \file
/// Draws a map on a canvas.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "apps/zulmap/map_content.h"
#include "apps/zulmap/time_slice.h"
#include "apps/zulmap/tool_settings.h"
#include "zul/canvas/canvas.h"
#include "zul/raster/bitmap.h"

namespace zulmap {

/// A picture that stands for a point.
struct Symbol {
    std::shared_ptr<zul::CBitmap> picture;
    std::int32_t holes = 0;  ///< the colour that is left out, platform order
};

/// What the user asked to look different from what the layers say.
struct MapStyle {
    std::optional<PenSettings> pen;         ///< replaces the pens of outlines, lines and points
    std::optional<PenSettings> coastPen;    ///< goes before `pen` where an area has no neighbour
    std::optional<PenSettings> borderPen;   ///< goes before `pen` between two areas
    std::optional<PenSettings> linePen;     ///< goes before `pen` on lines
    std::optional<BrushSettings> brush;     ///< replaces the colours of areas and points
    std::shared_ptr<zul::CBitmap> pattern;  ///< of a brush that tiles one
    std::optional<Symbol> symbol;           ///< replaces the discs of points; centred on them
    std::int32_t magnification = 1;    ///< pixels for each of a pen or a symbol, on devices with small ones
    double graticule = 0.0;            ///< the file's units between two lines of the net; 0: no net
    bool hasLabels = false;            ///< whether names are written
    std::optional<FontSettings> font;  ///< replaces that of labels
};

/// Device pixels of the sign that stands for a point.
zul::TSize GetSignSize(const MapStyle& style);

/// Fills \p width x \p height pixels with the colour that lies below everything. Leaves pretranslation as it
/// was.
void PaintGround(zul::CCanvas& canvas, std::int32_t width, std::int32_t height);

/// One frame in the making, in layers. From bottom to top: water, rasters, net, areas (large ones first),
/// their outlines, lines, points; in perspective the sky above the horizon.
class MapPainter {
public:
    /// A frame of \p width x \p height pixels, drawn through the canvas's scaler, which shows some part of
    /// the content's space. Content, style, canvas and view stay as they are until the frame is complete. The
    /// painter leaves its own settings in the canvas's tools.
    MapPainter(MapContent& content, const MapStyle& style, zul::CCanvas& canvas, std::int32_t width,
               std::int32_t height);
    MapPainter(const MapPainter&) = delete;
    MapPainter& operator=(const MapPainter&) = delete;

    /// Goes on where the last call stopped. \returns whether the frame is complete.
    bool Paint(const TimeSlice& slice = {});

private:
    /// Items that are drawn one after the other with the same tools.
    struct Layer {
        std::size_t count;
        std::function<void()> takeTools;
        std::function<void(std::size_t)> paint;
    };

    void AddRasters();
    void Overrule(LayerLook& look) const;
    void AddLines(const PenSettings& pen, MapContent::Lines& lines);
    void AddLines(const PenSettings& pen, MapContent::Lines& lines, std::size_t begin, std::size_t end);
    void AddFills();
    void AddIslets();
    void AddPoints(const LayerLook& look, std::size_t begin, std::size_t end);
    void AddSky();
    void PaintFill(MapContent::Fill& fill);
    void PaintIslet(const MapContent::Islet& islet);
    void PaintPoint(zul::TPoint point);
    void PaintSkyRow(std::int32_t row, std::int32_t rows);
    void PaintSign(zul::TLongPoint middle);
    void PaintDisc(zul::TLongPoint middle);
    void UsePen(PenSettings pen);
    void UseAreaBrush(const BrushSettings& brush);

    MapContent& m_Content;
    const MapStyle& m_Style;
    zul::CCanvas& m_Canvas;
    std::int32_t m_Width;
    std::int32_t m_Height;
    std::vector<LayerLook> m_Looks;  ///< of the map's layers
    std::vector<Layer> m_Layers;
    std::size_t m_Layer = 0;
    std::size_t m_Item = 0;  ///< the next of the layer
};

}  // namespace zulmap
