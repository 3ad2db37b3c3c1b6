#include "apps/zulmap/map_content.h"

#include <algorithm>
#include <cmath>
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

MapContent::MapContent(std::shared_ptr<const MapData> map, const MapSpace& space, double netStep)
    : m_Map(std::move(map)), m_Space(space), m_NetStep(netStep) {
    m_Outlines.resize(m_Map->layers.size());
    m_LineEnds.resize(m_Map->layers.size());
    m_PointEnds.resize(m_Map->layers.size());
    if (m_Map->isInDegrees) HideSeams(space, m_Edges);
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
            return m_Map->features.size();
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
    for (const Area& area : m_Map->features[m_Map->scheme.order[feature]].areas) {
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
}

void MapContent::ShapeArea(PlacedArea& area) {
    const Ring stitched = StitchRings(area.rings);
    if (stitched.empty()) return;
    const MapScheme& scheme = m_Map->scheme;
    const std::size_t color = scheme.colors[area.feature];
    const std::uint32_t layer = m_Map->features[scheme.order[area.feature]].layer;
    m_Islets.push_back({stitched.front(), ExtentOf(stitched), color, layer});
    if (stitched.size() >= 3) {
        m_Fills.push_back({zul::CPoints(false), color, layer});
        m_Fills.back().ring.SetPoints(stitched.data(), static_cast<std::uint32_t>(stitched.size()));
    }
    for (const Ring& ring : area.rings) {
        m_Edges.TakeLines(ring, [&outlines = m_Outlines[layer]](EdgeNet::Kind kind, const Ring& line) {
            AppendTo(kind == EdgeNet::Kind::Coast ? outlines.coasts : outlines.borders, line);
        });
    }
    if (!m_Map->hasNames) area.rings.clear();
}

void MapContent::PlaceLines(std::size_t feature) {
    for (const Path& line : m_Map->features[feature].lines) {
        AppendTo(m_Lines, m_Space.PlaceLine(line));
    }
    for (const TDoublePoint& point : m_Map->features[feature].points) {
        const Ring placed = m_Space.PlaceLine({point});
        m_Points.insert(m_Points.end(), placed.begin(), placed.end());
    }
    // Layers without features end where the one before does.
    for (std::size_t layer = m_Map->features[feature].layer; layer < m_LineEnds.size(); ++layer) {
        m_LineEnds[layer] = m_Lines.size();
        m_PointEnds[layer] = m_Points.size();
    }
    if (!m_Map->hasNames) return;
    m_LineFeatures.resize(m_Lines.size(), static_cast<std::uint32_t>(feature));
    m_PointFeatures.resize(m_Points.size(), static_cast<std::uint32_t>(feature));
}

void MapContent::PlaceNet() {
    // The last stage: what only the preparation needs is no longer needed.
    m_Edges = EdgeNet();
    if (!m_Map->hasNames) m_Areas.clear();
    if (!(m_NetStep > 0.0)) return;
    const Box held =
        m_Map->isInDegrees ? Intersect(m_Space.GetHeld(), {-180.0, -90.0, 180.0, 90.0}) : m_Space.GetHeld();
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
