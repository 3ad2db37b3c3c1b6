#include "apps/zulmap/map_painter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <numeric>
#include <utility>

#include "apps/zulmap/path_cutting.h"
#include "apps/zulmap/tool_error.h"

namespace zulmap {
namespace {

constexpr std::int32_t Color(std::int32_t redGreenBlue) {
    return ((redGreenBlue & 0xFF) << 16) | (redGreenBlue & 0xFF00) | (redGreenBlue >> 16);
}

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

constexpr std::int32_t kShallowsWidth = 5;
constexpr std::int32_t kPointRadius = 3;
constexpr double kMostNetLines = 2000.0;

/// Areas below this many pixels get a dot of their own.
constexpr double kIsletPixels = 1.5;

PenSettings PlainPen(std::int32_t color, std::int32_t width = 1) {
    PenSettings pen;
    pen.color = color;
    pen.width = width;
    return pen;
}

void Use(zul::CPen& pen, const PenSettings& settings) {
    pen.Create(static_cast<zul::CPen::TPenType>(settings.type), settings.style, settings.width,
               settings.color, settings.endType, settings.dashLength, settings.extraColor);
    pen.SetScaled(settings.scaled != 0);
}

void UseNoPen(zul::CPen& pen) {
    pen.SetType(zul::CPen::PenNone);
}

void UseBrush(zul::CBrush& brush, std::int32_t type, std::int32_t color) {
    brush.SetType(type);
    brush.SetColor(color);
}

void AppendTo(std::deque<zul::CPoints>& lines, const Ring& line) {
    if (line.size() < 2) return;
    lines.emplace_back(false);
    lines.back().SetPoints(line.data(), static_cast<std::uint32_t>(line.size()));
}

double SizeOf(const Feature& feature) {
    double size = 0.0;
    for (const Area& area : feature.areas) {
        size = std::accumulate(area.rings.begin(), area.rings.end(), size,
                               [](double sum, const Path& ring) { return sum + TwiceSignedArea(ring); });
    }
    return size;
}

/// Indices of the features, the largest first: what lies inside another is drawn after it.
std::vector<std::uint32_t> OrderBySize(const std::vector<Feature>& features) {
    std::vector<double> sizes(features.size());
    std::transform(features.begin(), features.end(), sizes.begin(), SizeOf);
    std::vector<std::uint32_t> order(features.size());
    std::iota(order.begin(), order.end(), 0U);
    std::stable_sort(order.begin(), order.end(),
                     [&sizes](std::uint32_t a, std::uint32_t b) { return sizes[a] > sizes[b]; });
    return order;
}

std::int32_t ExtentOf(const Ring& ring) {
    zul::TPoint low = ring.front();
    zul::TPoint high = ring.front();
    for (const zul::TPoint& point : ring) {
        low = {std::min(low.X, point.X), std::min(low.Y, point.Y)};
        high = {std::max(high.X, point.X), std::max(high.Y, point.Y)};
    }
    return std::max(high.X - low.X, high.Y - low.Y);
}

/// The ends of a flat globe: its areas end there because the map does.
void HideSeams(const MapSpace& space, EdgeNet& net) {
    for (const double end : {-1.0, 1.0}) {
        const Ring meridian = space.PlaceLine({{end * 180.0, -90.0}, {end * 180.0, 90.0}});
        const Ring pole = space.PlaceLine({{-180.0, end * 90.0}, {180.0, end * 90.0}});
        if (!meridian.empty()) net.HideUpright(meridian.front().X);
        if (!pole.empty()) net.HideLevel(pole.front().Y);
    }
}

}  // namespace

MapPainter::MapPainter(const MapData& map, const MapSpace& space, const MapStyle& style) : m_Style(style) {
    PrepareAreas(map, space);
    for (const Feature& feature : map.features) {
        for (const Path& line : feature.lines) {
            AppendTo(m_Lines, space.PlaceLine(line));
        }
        for (const TDoublePoint& point : feature.points) {
            const Ring placed = space.PlaceLine({point});
            m_Points.insert(m_Points.end(), placed.begin(), placed.end());
        }
    }
    if (style.graticule > 0.0) PrepareNet(space, style.graticule);
}

void MapPainter::PrepareAreas(const MapData& map, const MapSpace& space) {
    // Features are numbered by size from here on.
    struct PlacedArea {
        std::uint32_t feature;
        std::vector<Ring> rings;
    };
    std::vector<PlacedArea> areas;
    EdgeNet net;
    if (map.isInDegrees) HideSeams(space, net);
    const std::vector<std::uint32_t> order = OrderBySize(map.features);
    for (std::uint32_t number = 0; number < order.size(); ++number) {
        for (const Area& area : map.features[order[number]].areas) {
            PlacedArea placed{number, {}};
            for (const Path& ring : area.rings) {
                placed.rings.push_back(space.PlaceRing(ring));
                net.Add(placed.rings.back(), number);
            }
            areas.push_back(std::move(placed));
        }
    }
    net.Finish();

    const std::vector<std::size_t> colors = ChooseColors(net.FindNeighbours(order.size()), std::size(kAreas));
    for (const PlacedArea& area : areas) {
        const Ring stitched = StitchRings(area.rings);
        if (stitched.empty()) continue;
        const std::int32_t color = m_Style.brush ? m_Style.brush->color : kAreas[colors[area.feature]];
        m_Islets.push_back({stitched.front(), ExtentOf(stitched), color});
        if (stitched.size() >= 3) {
            m_Fills.push_back({zul::CPoints(false), color});
            m_Fills.back().ring.SetPoints(stitched.data(), static_cast<std::uint32_t>(stitched.size()));
        }
        for (const Ring& ring : area.rings) {
            net.TakeLines(ring, [this](EdgeNet::Kind kind, const Ring& line) {
                AppendTo(kind == EdgeNet::Kind::Coast ? m_Coasts : m_Borders, line);
            });
        }
    }
}

void MapPainter::PrepareNet(const MapSpace& space, double step) {
    const Box held = space.GetHeld();
    if ((held.Width() + held.Height()) / step > kMostNetLines) {
        throw ToolError("the lines of the net would lie too close together");
    }
    // Counted, since far from the origin a coordinate plus a step may be the coordinate.
    const auto linesBetween = [step](double low, double high) {
        std::vector<double> places;
        const double first = std::ceil(low / step);
        for (double i = 0.0; i <= std::floor(high / step) - first; i += 1.0) {
            places.push_back((first + i) * step);
        }
        return places;
    };
    for (const double x : linesBetween(held.minX, held.maxX)) {
        AppendTo(m_Net, space.PlaceLine({{x, held.minY}, {x, held.maxY}}));
    }
    for (const double y : linesBetween(held.minY, held.maxY)) {
        AppendTo(m_Net, space.PlaceLine({{held.minX, y}, {held.maxX, y}}));
    }
}

void MapPainter::Paint(zul::CCanvas& canvas, std::int32_t width, std::int32_t height) {
    // Uncut lists keep crossing points exact; what lies beyond the picture costs the device nothing.
    canvas.SetListClipping(false);

    canvas.SetPretranslation(false);
    UseBrush(canvas.GetBrush(), zul::CBrush::BrushSolid, kWater);
    canvas.FillRect(0, 0, width, height, nullptr);
    canvas.SetPretranslation(true);

    if (!m_Style.pen) PaintLines(canvas, PlainPen(kShallows, kShallowsWidth), m_Coasts);
    PaintLines(canvas, PlainPen(kNet), m_Net);
    PaintFills(canvas);
    PaintIslets(canvas);
    PaintLines(canvas, m_Style.pen.value_or(PlainPen(kCoast)), m_Coasts);
    PaintLines(canvas, m_Style.pen.value_or(PlainPen(kBorder)), m_Borders);
    PaintLines(canvas, m_Style.pen.value_or(PlainPen(kLine)), m_Lines);
    PaintPoints(canvas, width, height);
}

void MapPainter::PaintLines(zul::CCanvas& canvas, const PenSettings& pen, Lines& lines) const {
    if (lines.empty()) return;
    Use(canvas.GetPen(), pen);
    for (zul::CPoints& line : lines) {
        canvas.Polyline(&line);
    }
}

void MapPainter::PaintFills(zul::CCanvas& canvas) {
    if (m_Style.brush && m_Style.brush->type == zul::CBrush::BrushNone) return;
    UseNoPen(canvas.GetPen());
    for (Fill& fill : m_Fills) {
        UseBrush(canvas.GetBrush(), zul::CBrush::BrushSolid, fill.color);
        canvas.Polygon(&fill.ring);
    }
}

void MapPainter::PaintIslets(zul::CCanvas& canvas) const {
    const bool hasPen = !m_Style.pen || m_Style.pen->type != zul::CPen::PenNone;
    const bool hasBrush = !m_Style.brush || m_Style.brush->type != zul::CBrush::BrushNone;
    if (!hasPen && !hasBrush) return;
    const std::int32_t outline = m_Style.pen ? m_Style.pen->color : kCoast;
    const double pixelsPerUnit = canvas.GetScaler()->GetScreenToVisible();
    for (const Islet& islet : m_Islets) {
        if (islet.extent * pixelsPerUnit >= kIsletPixels) continue;
        std::int32_t x = islet.place.X;
        std::int32_t y = islet.place.Y;
        canvas.PreparePoint(x, y);
        // So small an area is all outline.
        canvas.SetPixel(x, y, hasPen ? outline : islet.color);
    }
}

void MapPainter::PaintPoints(zul::CCanvas& canvas, std::int32_t width, std::int32_t height) const {
    if (m_Points.empty()) return;
    Use(canvas.GetPen(), m_Style.pen.value_or(PlainPen(kPointOutline)));
    const BrushSettings brush = m_Style.brush.value_or(BrushSettings{zul::CBrush::BrushSolid, kPoint});
    UseBrush(canvas.GetBrush(), brush.type, brush.color);
    for (const zul::TPoint& point : m_Points) {
        std::int32_t x = point.X;
        std::int32_t y = point.Y;
        canvas.PreparePoint(x, y);
        if (x < -kPointRadius || y < -kPointRadius || x > width + kPointRadius || y > height + kPointRadius) {
            continue;
        }
        // A sign of constant size, so its box is given in pixels.
        canvas.SetPretranslation(false);
        canvas.Ellipse(x - kPointRadius, y - kPointRadius, x + kPointRadius + 1, y + kPointRadius + 1);
        canvas.SetPretranslation(true);
    }
}

}  // namespace zulmap
