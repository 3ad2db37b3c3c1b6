#include "apps/zulmap/map_content.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "apps/zulmap/path_cutting.h"
#include "apps/zulmap/tool_error.h"

namespace zulmap {
namespace {

constexpr double kMostNetLines = 2000.0;

void AppendTo(MapContent::Lines& lines, const Ring& line) {
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

Box Intersect(const Box& a, const Box& b) {
    return {std::max(a.minX, b.minX), std::max(a.minY, b.minY), std::min(a.maxX, b.maxX),
            std::min(a.maxY, b.maxY)};
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

MapContent::MapContent(const MapData& map, const MapSpace& space, double netStep, MapScheme scheme)
    : m_Map(map), m_Space(space), m_NetStep(netStep), m_Scheme(std::move(scheme)) {
    if (m_Scheme.order.empty()) m_Scheme.order = OrderBySize(map.features);
    if (map.isInDegrees) HideSeams(space, m_Edges);
}

bool MapContent::Prepare(const TimeSlice& slice) {
    while (m_Stage != Stage::Ready) {
        if (m_Item < CountItems()) {
            PrepareItem(m_Item++);
        } else {
            m_Stage = static_cast<Stage>(static_cast<int>(m_Stage) + 1);
            m_Item = 0;
        }
        if (slice.IsOver()) break;
    }
    return IsReady();
}

std::size_t MapContent::CountItems() const {
    switch (m_Stage) {
        case Stage::PlaceAreas:
        case Stage::PlaceLines:
            return m_Map.features.size();
        case Stage::ShapeAreas:
            return m_Areas.size();
        case Stage::JoinAreas:
        case Stage::PlaceNet:
            return 1;
        case Stage::Ready:
            break;
    }
    return 0;
}

void MapContent::PrepareItem(std::size_t item) {
    switch (m_Stage) {
        case Stage::PlaceAreas:
            return PlaceAreas(item);
        case Stage::JoinAreas:
            return JoinAreas();
        case Stage::ShapeAreas:
            return ShapeArea(m_Areas[item]);
        case Stage::PlaceLines:
            return PlaceLines(item);
        case Stage::PlaceNet:
            return PlaceNet();
        case Stage::Ready:
            break;
    }
}

void MapContent::PlaceAreas(std::size_t feature) {
    for (const Area& area : m_Map.features[m_Scheme.order[feature]].areas) {
        PlacedArea placed{feature, {}};
        for (const Path& ring : area.rings) {
            placed.rings.push_back(m_Space.PlaceRing(ring));
            m_Edges.Add(placed.rings.back(), static_cast<std::uint32_t>(feature));
        }
        m_Areas.push_back(std::move(placed));
    }
}

void MapContent::JoinAreas() {
    m_Edges.Finish();
    if (m_Scheme.colors.empty()) {
        m_Scheme.colors = ChooseColors(m_Edges.FindNeighbours(m_Scheme.order.size()), kPaletteSize);
    }
}

void MapContent::ShapeArea(PlacedArea& area) {
    const Ring stitched = StitchRings(area.rings);
    if (stitched.empty()) return;
    const std::size_t color = m_Scheme.colors[area.feature];
    m_Islets.push_back({stitched.front(), ExtentOf(stitched), color});
    if (stitched.size() >= 3) {
        m_Fills.push_back({zul::CPoints(false), color});
        m_Fills.back().ring.SetPoints(stitched.data(), static_cast<std::uint32_t>(stitched.size()));
    }
    for (const Ring& ring : area.rings) {
        m_Edges.TakeLines(ring, [this](EdgeNet::Kind kind, const Ring& line) {
            AppendTo(kind == EdgeNet::Kind::Coast ? m_Coasts : m_Borders, line);
        });
    }
    if (!m_Map.hasNames) area.rings.clear();
}

void MapContent::PlaceLines(std::size_t feature) {
    for (const Path& line : m_Map.features[feature].lines) {
        AppendTo(m_Lines, m_Space.PlaceLine(line));
    }
    for (const TDoublePoint& point : m_Map.features[feature].points) {
        const Ring placed = m_Space.PlaceLine({point});
        m_Points.insert(m_Points.end(), placed.begin(), placed.end());
    }
    if (!m_Map.hasNames) return;
    m_LineFeatures.resize(m_Lines.size(), static_cast<std::uint32_t>(feature));
    m_PointFeatures.resize(m_Points.size(), static_cast<std::uint32_t>(feature));
}

void MapContent::PlaceNet() {
    // The last stage: what only the preparation needs is no longer needed.
    m_Edges = EdgeNet();
    if (!m_Map.hasNames) m_Areas.clear();
    if (!(m_NetStep > 0.0)) return;
    const Box held =
        m_Map.isInDegrees ? Intersect(m_Space.GetHeld(), {-180.0, -90.0, 180.0, 90.0}) : m_Space.GetHeld();
    if ((held.Width() + held.Height()) / m_NetStep > kMostNetLines) {
        throw ToolError("the lines of the net would lie too close together");
    }
    // Counted, since far from the origin a coordinate plus a step may be the coordinate.
    const auto linesBetween = [step = m_NetStep](double low, double high) {
        std::vector<double> places;
        const double first = std::ceil(low / step);
        for (double i = 0.0; i <= std::floor(high / step) - first; i += 1.0) {
            places.push_back((first + i) * step);
        }
        return places;
    };
    for (const double x : linesBetween(held.minX, held.maxX)) {
        AppendTo(m_Net, m_Space.PlaceLine({{x, held.minY}, {x, held.maxY}}));
    }
    for (const double y : linesBetween(held.minY, held.maxY)) {
        AppendTo(m_Net, m_Space.PlaceLine({{held.minX, y}, {held.maxX, y}}));
    }
}

}  // namespace zulmap
