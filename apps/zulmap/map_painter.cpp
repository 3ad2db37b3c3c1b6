#include "apps/zulmap/map_painter.h"

#include <iterator>

#include "apps/zulmap/pixel_coordinates.h"
#include "apps/zulmap/raster_painter.h"
#include "zul/kernel/numeric.h"
#include "zul/scaler/projective_scaler.h"

namespace zulmap {
namespace {

constexpr std::int32_t kWater = Color(0xC3DDEA);
constexpr std::int32_t kShallows = Color(0xD8EAF2);
constexpr std::int32_t kNet = Color(0xADCDDD);
constexpr std::int32_t kCoast = Color(0x7B9CAE);
constexpr std::int32_t kBorder = Color(0x9C8A78);
constexpr std::int32_t kLine = Color(0x8A6F5C);
constexpr std::int32_t kPointOutline = Color(0x6B3A2E);
constexpr std::int32_t kPoint = Color(0xC8664B);
constexpr std::int32_t kAreas[] = {
    Color(0xF2E3BC), Color(0xD5E3BD), Color(0xF3D3B9), Color(0xDFD0E4),
    Color(0xC8E0CF), Color(0xF7F1D0), Color(0xEECAC5), Color(0xE2D8C3),
};

static_assert(std::size(kAreas) == MapContent::kPaletteSize);

/// The sky of a perspective view, at the upper edge and at the horizon.
constexpr std::int32_t kSkyTop = Color(0x86B4DC);
constexpr std::int32_t kSkyBottom = Color(0xEAF2F5);

constexpr std::int32_t kShallowsWidth = 5;
constexpr std::int32_t kPointRadius = 3;

/// Areas below this many pixels get a dot of their own.
constexpr double kIsletPixels = 1.5;

PenSettings PlainPen(std::int32_t color, std::int32_t width = 1) {
    PenSettings pen;
    pen.color = color;
    pen.width = width;
    return pen;
}

void UseNoPen(zul::CPen& pen) {
    pen.SetType(zul::CPen::PenNone);
}

void UseBrush(zul::CBrush& brush, std::int32_t type, std::int32_t color) {
    brush.SetType(type);
    brush.SetColor(color);
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
    const auto choose = [this](const std::optional<PenSettings>& own, std::int32_t color) {
        return own.value_or(m_Style.pen.value_or(PlainPen(color)));
    };
    m_CoastPen = choose(m_Style.coastPen, kCoast);
    if (!m_Style.pen && !m_Style.coastPen) {
        AddLines(PlainPen(kShallows, kShallowsWidth), m_Content.GetCoasts());
    }
    AddLines(PlainPen(kNet), m_Content.GetNet());
    AddFills();
    AddIslets();
    AddLines(m_CoastPen, m_Content.GetCoasts());
    AddLines(choose(m_Style.borderPen, kBorder), m_Content.GetBorders());
    AddLines(choose(m_Style.linePen, kLine), m_Content.GetLines());
    AddPoints();
    AddSky();
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

std::int32_t MapPainter::ColorOf(std::size_t color) const {
    return m_Style.brush ? m_Style.brush->color : kAreas[color];
}

bool MapPainter::HasPattern() const {
    return m_Style.brush && m_Style.brush->type == zul::CBrush::BrushPattern;
}

void MapPainter::UsePen(PenSettings pen) {
    if (pen.scaled == 0) pen.width *= m_Style.magnification;
    pen.dashLength *= m_Style.magnification;
    zulmap::UsePen(m_Canvas.GetPen(), pen);
}

void MapPainter::UseAreaBrush(std::int32_t color) {
    const BrushSettings brush = m_Style.brush.value_or(BrushSettings{zul::CBrush::BrushSolid, color});
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
    m_Layers.push_back({lines.size(), [this, pen] { UsePen(pen); },
                        [this, &lines](std::size_t i) { m_Canvas.Polyline(&lines[i]); }});
}

void MapPainter::AddFills() {
    if (m_Style.brush && m_Style.brush->type == zul::CBrush::BrushNone) return;
    std::deque<MapContent::Fill>& fills = m_Content.GetFills();
    m_Layers.push_back({fills.size(), [this] { UseNoPen(m_Canvas.GetPen()); },
                        [this, &fills](std::size_t i) { PaintFill(fills[i]); }});
}

void MapPainter::PaintFill(MapContent::Fill& fill) {
    UseAreaBrush(ColorOf(fill.color));
    m_Canvas.Polygon(&fill.ring);
}

void MapPainter::AddIslets() {
    const bool hasPen = m_CoastPen.type != zul::CPen::PenNone;
    const bool hasBrush = !m_Style.brush || m_Style.brush->type != zul::CBrush::BrushNone;
    if (!hasPen && !hasBrush) return;
    const std::vector<MapContent::Islet>& islets = m_Content.GetIslets();
    m_Layers.push_back({islets.size(), [this] { UseAreaBrush(0); },
                        [this, &islets](std::size_t i) { PaintIslet(islets[i]); }});
}

void MapPainter::PaintIslet(const MapContent::Islet& islet) {
    const zul::CScaler& scaler = *m_Canvas.GetScaler();
    if (!scaler.IsInFront(islet.place.X, islet.place.Y)) return;
    if (islet.extent * scaler.GetScreenToVisibleAt(islet.place.X, islet.place.Y) >= kIsletPixels) return;
    std::int32_t x = islet.place.X;
    std::int32_t y = islet.place.Y;
    m_Canvas.PreparePoint(x, y);
    // So small an area is all outline.
    const bool hasPen = m_CoastPen.type != zul::CPen::PenNone;
    if (!hasPen && HasPattern()) {
        const PixelCoordinates pixels(m_Canvas);
        m_Canvas.FillRect(x, y, x + 1, y + 1, nullptr);
        return;
    }
    m_Canvas.SetPixel(x, y, hasPen ? m_CoastPen.color : ColorOf(islet.color));
}

void MapPainter::AddPoints() {
    const auto takeTools = [this] {
        UsePen(m_Style.pen.value_or(PlainPen(kPointOutline)));
        UseAreaBrush(kPoint);
    };
    const std::vector<zul::TPoint>& points = m_Content.GetPoints();
    m_Layers.push_back({points.size(), takeTools, [this, &points](std::size_t i) { PaintPoint(points[i]); }});
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
