#include "apps/zulmap/map_space.h"

#include <cmath>
#include <cstddef>

#include "apps/zulmap/path_cutting.h"
#include "apps/zulmap/tool_error.h"
#include "zul/geometry/angle.h"
#include "zul/geometry/trigonometry.h"

namespace zulmap {
namespace {

constexpr double kReach = zul::MaxCoord;

/// A turned point is rounded once more on either axis, so a turned view stays that much inside.
constexpr double kTurnedReach = kReach - 2.0;

/// Part of the view by which more than the view is held, on every side: the margin that the scaler keeps too.
constexpr double kMargin = 1.0 / 8.0;

/// Degrees of longitude.
constexpr double kAroundTheGlobe = 350.0;

/// Half the size of the box around a turned box.
struct HalfSize {
    double width;
    double height;
};

HalfSize Turned(double halfWidth, double halfHeight, double degrees) {
    const double radians = zul::CAngle::DegreeToRadian(degrees);
    const double sine = std::abs(zul::Sine(radians));
    const double cosine = std::abs(zul::Cosine(radians));
    return {halfWidth * cosine + halfHeight * sine, halfWidth * sine + halfHeight * cosine};
}

/// The greatest distance of a coordinate of the interval from the centre.
double FarthestFrom(double center, double low, double high) {
    return low > high ? 0.0 : std::max(std::abs(low - center), std::abs(high - center));
}

}  // namespace

MapSpace::MapSpace(const Box& data, const std::optional<Box>& wanted, std::int32_t width, std::int32_t height,
                   double degrees) {
    const Box& shown = wanted ? *wanted : data;
    m_Center = {shown.minX + shown.Width() / 2.0, shown.minY + shown.Height() / 2.0};
    m_HalfWidth = shown.Width() / 2.0;
    m_HalfHeight = shown.Height() / 2.0;
    const bool isTurned = degrees != 0.0;
    if (isTurned && !wanted) {
        const HalfSize turned = Turned(m_HalfWidth, m_HalfHeight, degrees);
        m_HalfWidth = turned.width;
        m_HalfHeight = turned.height;
    }
    // A single point has no size of its own; one unit of the file around it is as good as any.
    if (m_HalfWidth == 0.0 && m_HalfHeight == 0.0) m_HalfWidth = m_HalfHeight = 0.5;

    const double shape = static_cast<double>(width) / height;
    m_HalfWidth = std::max(m_HalfWidth, m_HalfHeight * shape);
    m_HalfHeight = std::max(m_HalfHeight, m_HalfWidth / shape);

    const HalfSize turned = Turned(m_HalfWidth, m_HalfHeight, degrees);
    const double heldWidth = turned.width + 2.0 * m_HalfWidth * kMargin;
    const double heldHeight = turned.height + 2.0 * m_HalfHeight * kMargin;
    m_Held = {m_Center.X - heldWidth, m_Center.Y - heldHeight, m_Center.X + heldWidth,
              m_Center.Y + heldHeight};

    const double dataWidth =
        FarthestFrom(m_Center.X, std::max(data.minX, m_Held.minX), std::min(data.maxX, m_Held.maxX));
    const double dataHeight =
        FarthestFrom(m_Center.Y, std::max(data.minY, m_Held.minY), std::min(data.maxY, m_Held.maxY));
    m_Unit = isTurned ? std::max(std::hypot(m_HalfWidth, m_HalfHeight), std::hypot(dataWidth, dataHeight)) /
                            kTurnedReach
                      : std::max({m_HalfWidth, m_HalfHeight, dataWidth, dataHeight}) / kReach;
    if (!std::isnormal(m_Unit)) throw ToolError("the part of the map to show is too large or too small");
}

MapSpace MapSpace::Around(const TDoublePoint& center, double unit, double reach) {
    MapSpace space;
    space.m_Center = center;
    space.m_Unit = unit;
    space.m_HalfWidth = space.m_HalfHeight = reach * unit;
    space.m_Held = space.GetView();
    return space;
}

Box MapSpace::GetView() const {
    return {m_Center.X - m_HalfWidth, m_Center.Y - m_HalfHeight, m_Center.X + m_HalfWidth,
            m_Center.Y + m_HalfHeight};
}

zul::TLongRect MapSpace::GetVisibleBox() const {
    // Never empty, however flat the picture is.
    const auto halfWidth = static_cast<std::int32_t>(std::max(1.0, std::round(m_HalfWidth / m_Unit)));
    const auto halfHeight = static_cast<std::int32_t>(std::max(1.0, std::round(m_HalfHeight / m_Unit)));
    return {-halfWidth, -halfHeight, halfWidth, halfHeight};
}

zul::TPoint MapSpace::Round(const TDoublePoint& point) const {
    // The quotient exceeds the space by rounding errors at most.
    const auto round = [this](double distance) {
        return static_cast<zul::TCoord>(std::clamp(std::round(distance / m_Unit), -kReach, kReach));
    };
    return {round(point.X - m_Center.X), round(point.Y - m_Center.Y)};
}

std::vector<zul::TPoint> MapSpace::PlaceLine(const Path& line) const {
    return Place(line, false);
}

std::vector<zul::TPoint> MapSpace::PlaceRing(const Path& ring) const {
    std::vector<zul::TPoint> placed = Place(ring, true);
    while (placed.size() > 1 && placed.front() == placed.back()) {
        placed.pop_back();
    }
    return placed;
}

std::vector<zul::TPoint> MapSpace::Place(const Path& path, bool closed) const {
    Box box;
    for (const TDoublePoint& point : path) {
        box.Include(point);
    }
    Path cut;
    const bool isWhole = m_Held.Contains(box);
    if (!isWhole) cut = CutByBox(path, closed, m_Held);

    std::vector<zul::TPoint> placed;
    placed.reserve(isWhole ? path.size() : cut.size());
    for (const TDoublePoint& point : isWhole ? path : cut) {
        const zul::TPoint rounded = Round(point);
        if (placed.empty() || placed.back() != rounded) placed.push_back(rounded);
    }
    return placed;
}

Box WholeOf(const MapFacts& map) {
    Box whole = map.extent;
    if (map.isInDegrees && whole.Width() >= kAroundTheGlobe) {
        whole.Include({whole.minX, -90.0});
        whole.Include({whole.minX, 90.0});
    }
    return whole;
}

std::vector<zul::TPoint> StitchRings(const std::vector<std::vector<zul::TPoint>>& rings) {
    std::vector<zul::TPoint> stitched;
    for (const std::vector<zul::TPoint>& ring : rings) {
        if (ring.empty()) continue;
        if (stitched.empty()) {
            stitched = ring;
            continue;
        }
        const zul::TPoint anchor = stitched.front();
        if (stitched.back() != anchor) stitched.push_back(anchor);
        stitched.insert(stitched.end(), ring.begin(), ring.end());
        stitched.push_back(ring.front());
        stitched.push_back(anchor);
    }
    return stitched;
}

}  // namespace zulmap
