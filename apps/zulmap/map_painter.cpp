#include "apps/zulmap/map_painter.h"

#include "apps/zulmap/pixel_coordinates.h"
#include "apps/zulmap/raster_painter.h"
#include "zul/kernel/numeric.h"
#include "zul/scaler/projective_scaler.h"

namespace zulmap {
namespace {

constexpr std::int32_t kWater = Color(0xC3DDEA);
constexpr std::int32_t kNet = Color(0xADCDDD);

/// The sky of a perspective view, at the upper edge and at the horizon.
constexpr std::int32_t kSkyTop = Color(0x86B4DC);
constexpr std::int32_t kSkyBottom = Color(0xEAF2F5);

constexpr std::int32_t kPointRadius = 3;

/// Areas below this many pixels get a dot of their own.
constexpr double kIsletPixels = 1.5;

PenSettings NetPen() {
    PenSettings pen;
    pen.color = kNet;
    return pen;
}

void UseNoPen(zul::CPen& pen) {
    pen.SetType(zul::CPen::PenNone);
}

void UseBrush(zul::CBrush& brush, std::int32_t type, std::int32_t color) {
    brush.SetType(type);
    brush.SetColor(color);
}

std::size_t StartOf(const std::vector<std::size_t>& ends, std::size_t i) {
    return i == 0 ? 0 : ends[i - 1];
}

/// \p part of the way from one colour to another.
std::int32_t Blend(std::int32_t from, std::int32_t to, double part) {
    std::int32_t color = 0;
    for (int shift = 0; shift < 24; shift += 8) {
        const int low = from >> shift & 0xFF;
        const int high = to >> shift & 0xFF;
        color |= zul::RoundToLong(low + (high - low) * part) << shift;
    }
    return color;
}

}  // namespace

void PaintGround(zul::CCanvas& canvas, std::int32_t width, std::int32_t height) {
    const PixelCoordinates pixels(canvas);
    UseBrush(canvas.GetBrush(), zul::CBrush::BrushSolid, kWater);
    canvas.FillRect(0, 0, width, height, nullptr);
}

zul::TSize GetSignSize(const MapStyle& style) {
    zul::TSize size{2 * kPointRadius + 1, 2 * kPointRadius + 1};
    if (style.symbol) style.symbol->picture->GetSize(size.Width, size.Height);
    const auto magnify = [&style](std::int32_t side) {
        return zul::SaturateToLong(std::int64_t{side} * style.magnification);
    };
    return {magnify(size.Width), magnify(size.Height)};
}

MapPainter::MapPainter(MapContent& content, const MapStyle& style, zul::CCanvas& canvas, std::int32_t width,
                       std::int32_t height)
    : m_Content(content), m_Style(style), m_Canvas(canvas), m_Width(width), m_Height(height) {
    m_Layers.push_back({1, [] {}, [this](std::size_t) { PaintGround(m_Canvas, m_Width, m_Height); }});
    AddRasters();
    for (const MapLayer& layer : m_Content.GetMap().layers) {
        m_Looks.push_back(layer.look);
        Overrule(m_Looks.back());
    }
    std::vector<MapContent::Outlines>& outlines = m_Content.GetOutlines();
    for (std::size_t i = 0; i < m_Looks.size(); ++i) {
        AddLines(m_Looks[i].shallows, outlines[i].coasts);
    }
    AddLines(NetPen(), m_Content.GetNet());
    AddFills();
    AddIslets();
    for (std::size_t i = 0; i < m_Looks.size(); ++i) {
        AddLines(m_Looks[i].coast, outlines[i].coasts);
    }
    for (std::size_t i = 0; i < m_Looks.size(); ++i) {
        AddLines(m_Looks[i].border, outlines[i].borders);
    }
    for (std::size_t i = 0; i < m_Looks.size(); ++i) {
        AddLines(m_Looks[i].line, m_Content.GetLines(), StartOf(m_Content.GetLineEnds(), i),
                 m_Content.GetLineEnds()[i]);
    }
    for (std::size_t i = 0; i < m_Looks.size(); ++i) {
        AddPoints(m_Looks[i], StartOf(m_Content.GetPointEnds(), i), m_Content.GetPointEnds()[i]);
    }
    AddSky();
}

/// What the user said goes before the layer's own.
void MapPainter::Overrule(LayerLook& look) const {
    const auto choose = [this](PenSettings& pen, const std::optional<PenSettings>& own) {
        pen = own.value_or(m_Style.pen.value_or(pen));
    };
    if (m_Style.pen || m_Style.coastPen) look.shallows.type = zul::CPen::PenNone;
    choose(look.coast, m_Style.coastPen);
    choose(look.border, m_Style.borderPen);
    choose(look.line, m_Style.linePen);
    if (m_Style.pen) look.point = *m_Style.pen;
    if (!m_Style.brush) return;
    look.areas = {*m_Style.brush};
    look.disc = *m_Style.brush;
}

bool MapPainter::Paint(const TimeSlice& slice) {
    // Uncut lists keep crossing points exact; what lies beyond the picture costs the device nothing.
    m_Canvas.SetListClipping(false);
    while (m_Layer < m_Layers.size()) {
        const Layer& layer = m_Layers[m_Layer];
        if (m_Item == 0 && layer.count > 0) layer.takeTools();
        if (m_Item < layer.count) layer.paint(m_Item++);
        if (m_Item == layer.count) {
            ++m_Layer;
            m_Item = 0;
        }
        if (slice.IsOver()) break;
    }
    return m_Layer == m_Layers.size();
}

void MapPainter::UsePen(PenSettings pen) {
    if (pen.scaled == 0) pen.width *= m_Style.magnification;
    pen.dashLength *= m_Style.magnification;
    zulmap::UsePen(m_Canvas.GetPen(), pen);
}

void MapPainter::UseAreaBrush(const BrushSettings& brush) {
    UseBrush(m_Canvas.GetBrush(), brush.type, brush.color);
    m_Canvas.GetBrush().SetPattern(m_Style.pattern.get());
}

void MapPainter::AddRasters() {
    const std::vector<Raster>& rasters = m_Content.GetRasters();
    const auto bands = static_cast<std::size_t>((m_Height + RasterPainter::kBand - 1) / RasterPainter::kBand);
    m_Layers.push_back({rasters.size() * bands, [] {},
                        [this, &rasters, bands](std::size_t i) {
                            RasterPainter(rasters[i / bands], m_Content.GetSpace(), m_Canvas,
                                          {m_Width, m_Height})
                                .PaintBand(static_cast<std::int32_t>(i % bands) * RasterPainter::kBand);
                        }});
}

void MapPainter::AddLines(const PenSettings& pen, MapContent::Lines& lines) {
    AddLines(pen, lines, 0, lines.size());
}

void MapPainter::AddLines(const PenSettings& pen, MapContent::Lines& lines, std::size_t begin,
                          std::size_t end) {
    if (pen.type == zul::CPen::PenNone) return;
    m_Layers.push_back({end - begin, [this, pen] { UsePen(pen); },
                        [this, &lines, begin](std::size_t i) { m_Canvas.Polyline(&lines[begin + i]); }});
}

void MapPainter::AddFills() {
    std::deque<MapContent::Fill>& fills = m_Content.GetFills();
    m_Layers.push_back({fills.size(), [this] { UseNoPen(m_Canvas.GetPen()); },
                        [this, &fills](std::size_t i) { PaintFill(fills[i]); }});
}

void MapPainter::PaintFill(MapContent::Fill& fill) {
    const BrushSettings& brush = m_Looks[fill.layer].GetAreaBrush(fill.color);
    if (brush.type == zul::CBrush::BrushNone) return;
    UseAreaBrush(brush);
    m_Canvas.Polygon(&fill.ring);
}

void MapPainter::AddIslets() {
    const std::vector<MapContent::Islet>& islets = m_Content.GetIslets();
    m_Layers.push_back({islets.size(), [] {}, [this, &islets](std::size_t i) { PaintIslet(islets[i]); }});
}

void MapPainter::PaintIslet(const MapContent::Islet& islet) {
    const zul::CScaler& scaler = *m_Canvas.GetScaler();
    if (!scaler.IsInFront(islet.place.X, islet.place.Y)) return;
    if (islet.extent * scaler.GetScreenToVisibleAt(islet.place.X, islet.place.Y) >= kIsletPixels) return;
    std::int32_t x = islet.place.X;
    std::int32_t y = islet.place.Y;
    m_Canvas.PreparePoint(x, y);
    const PenSettings& coast = m_Looks[islet.layer].coast;
    const BrushSettings& brush = m_Looks[islet.layer].GetAreaBrush(islet.color);
    // So small an area is all outline.
    if (coast.type != zul::CPen::PenNone) {
        m_Canvas.SetPixel(x, y, coast.color);
    } else if (brush.type == zul::CBrush::BrushPattern) {
        const PixelCoordinates pixels(m_Canvas);
        UseAreaBrush(brush);
        m_Canvas.FillRect(x, y, x + 1, y + 1, nullptr);
    } else if (brush.type != zul::CBrush::BrushNone) {
        m_Canvas.SetPixel(x, y, brush.color);
    }
}

void MapPainter::AddPoints(const LayerLook& look, std::size_t begin, std::size_t end) {
    const auto takeTools = [this, &look] {
        UsePen(look.point);
        UseAreaBrush(look.disc);
    };
    const std::vector<zul::TPoint>& points = m_Content.GetPoints();
    m_Layers.push_back(
        {end - begin, takeTools, [this, &points, begin](std::size_t i) { PaintPoint(points[begin + i]); }});
}

void MapPainter::PaintPoint(zul::TPoint point) {
    if (!m_Canvas.GetScaler()->IsInFront(point.X, point.Y)) return;
    std::int32_t x = point.X;
    std::int32_t y = point.Y;
    m_Canvas.PreparePoint(x, y);
    if (m_Style.symbol) {
        PaintSign({x, y});
    } else {
        PaintDisc({x, y});
    }
}

void MapPainter::PaintSign(zul::TLongPoint middle) {
    zul::CBitmap& picture = *m_Style.symbol->picture;
    zul::TSize size{};
    picture.GetSize(size.Width, size.Height);
    const zul::TSize sign = GetSignSize(m_Style);
    const std::int64_t left = std::int64_t{middle.X} - sign.Width / 2;
    const std::int64_t top = std::int64_t{middle.Y} - sign.Height / 2;
    if (left + sign.Width <= 0 || top + sign.Height <= 0 || left >= m_Width || top >= m_Height) return;
    picture.Transparent(&m_Canvas, zul::SaturateToLong(left), zul::SaturateToLong(top), sign.Width,
                        sign.Height, 0, 0, size.Width, size.Height, m_Style.symbol->holes);
}

void MapPainter::PaintDisc(zul::TLongPoint middle) {
    const std::int32_t radius = kPointRadius * m_Style.magnification;
    const auto [x, y] = middle;
    if (x < -radius || y < -radius || x > m_Width + radius || y > m_Height + radius) return;
    // A sign of constant size, so its box is given in pixels.
    const PixelCoordinates pixels(m_Canvas);
    m_Canvas.Ellipse(x - radius, y - radius, x + radius + 1, y + radius + 1);
}

// The ground beyond the far edge is drawn, too: the sky comes last and covers it.
void MapPainter::AddSky() {
    const auto* perspective = dynamic_cast<const zul::CProjectiveScaler*>(m_Canvas.GetScaler());
    if (perspective == nullptr) return;
    const std::int32_t rows = zul::RoundToLong(perspective->GetHorizonY());
    m_Layers.push_back(
        {static_cast<std::size_t>(rows), [] {},
         [this, rows](std::size_t row) { PaintSkyRow(static_cast<std::int32_t>(row), rows); }});
}

void MapPainter::PaintSkyRow(std::int32_t row, std::int32_t rows) {
    const PixelCoordinates pixels(m_Canvas);
    UseBrush(m_Canvas.GetBrush(), zul::CBrush::BrushSolid,
             Blend(kSkyTop, kSkyBottom, static_cast<double>(row) / rows));
    m_Canvas.FillRect(0, row, m_Width, row + 1, nullptr);
}

}  // namespace zulmap
