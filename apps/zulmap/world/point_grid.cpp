#include "apps/zulmap/world/point_grid.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace zulmap {
namespace {

/// Digits behind the point that are tried.
constexpr int kMostDecimals = 8;

/// Points off the grid are few: those where a map was cut at a meridian.
constexpr double kMostStray = 0.05;

/// Neighbouring doubles that are tried on either side of a step that is known nearly.
constexpr int kStepSearch = 16;

/// Least coordinates that are tried as the corner of the steps.
constexpr std::size_t kMostOrigins = 4;

/// Coordinates that a grid is first tried with.
constexpr std::size_t kSample = 512;

void VisitPaths(const Feature& feature, const std::function<void(const Path&)>& visit) {
    for (const Area& area : feature.areas) {
        std::for_each(area.rings.begin(), area.rings.end(), visit);
    }
    std::for_each(feature.lines.begin(), feature.lines.end(), visit);
    visit(feature.points);
}

/// Ascending, each once.
std::vector<double> CoordinatesOf(const MapData& map, std::uint32_t layer, double TDoublePoint::*axis) {
    std::vector<double> values;
    for (const Feature& feature : map.features) {
        if (feature.layer != layer) continue;
        VisitPaths(feature, [&](const Path& path) {
            for (const TDoublePoint& point : path) {
                values.push_back(point.*axis);
            }
        });
    }
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    return values;
}

/// Of every so many coordinates, the share that is not on the grid.
double ShareOfStrays(const GridAxis& axis, const std::vector<double>& values, std::size_t every) {
    std::size_t stray = 0;
    std::size_t tried = 0;
    for (std::size_t i = 0; i < values.size(); i += every) {
        ++tried;
        if (!axis.Find(values[i])) ++stray;
    }
    return static_cast<double>(stray) / static_cast<double>(tried);
}

/// 1 for a grid that a sample does not lie on.
double ShareOfStrays(const GridAxis& axis, const std::vector<double>& values) {
    if (ShareOfStrays(axis, values, values.size() / kSample + 1) > kMostStray) return 1.0;
    return ShareOfStrays(axis, values, 1);
}

/// One step, nearly: among many coordinates most neighbours are a few apart, and many just one. Closer ones
/// are one place that was calculated in two ways, or strays.
double EstimateStep(const std::vector<double>& values) {
    std::vector<double> gaps;
    for (std::size_t i = 1; i < values.size(); ++i) {
        const double gap = values[i] - values[i - 1];
        if (gap > std::abs(values[i]) * 1e-9) gaps.push_back(gap);
    }
    if (gaps.empty()) return 0.0;
    const auto low = gaps.begin() + static_cast<std::ptrdiff_t>(gaps.size() / 10);
    std::nth_element(gaps.begin(), low, gaps.end());
    return *low;
}

/// Of a source whose coordinates are steps from its least one. That is among the first, behind strays. A step
/// that misses the source's by a little holds for many coordinates, but the source's own for more.
GridAxis FindSteps(const std::vector<double>& values) {
    const double estimate = EstimateStep(values);
    if (estimate == 0.0) return {};
    GridAxis best;
    double fewest = kMostStray;
    for (std::size_t first = 0; first < std::min(kMostOrigins, values.size()); ++first) {
        GridAxis axis;
        axis.origin = values[first];
        for (const std::size_t tenth : {9, 8, 7}) {
            const double distance = values[values.size() * tenth / 10] - axis.origin;
            const double count = std::round(distance / estimate);
            if (count < 1.0) continue;
            double up = distance / count;
            double down = up;
            for (int i = 0; i <= kStepSearch && fewest > 0.0; ++i) {
                for (const double step : {up, down}) {
                    axis.step = step;
                    const double share = ShareOfStrays(axis, values);
                    if (share >= fewest) continue;
                    fewest = share;
                    best = axis;
                }
                up = std::nextafter(up, HUGE_VAL);
                down = std::nextafter(down, 0.0);
            }
        }
    }
    return best;
}

GridAxis FindAxis(const std::vector<double>& values) {
    if (values.empty()) return {};
    GridAxis axis;
    for (int i = 0; i <= kMostDecimals; ++i) {
        axis.divisor = std::pow(10.0, i);
        if (ShareOfStrays(axis, values) <= kMostStray) return axis;
    }
    return values.size() > 1 ? FindSteps(values) : GridAxis{};
}

}  // namespace

std::optional<std::int32_t> GridAxis::Find(double value) const {
    double place = 0.0;
    if (divisor != 0.0) {
        place = std::round(value * divisor);
    } else if (step != 0.0) {
        place = std::round((value - origin) / step);
    } else {
        return {};
    }
    if (!(std::abs(place) < 2147483648.0)) return {};
    const auto n = static_cast<std::int32_t>(place);
    // To the bit: minus zero is another number than zero.
    if (At(n) != value || std::signbit(At(n)) != std::signbit(value)) return {};
    return n;
}

PointGrid FindGrid(const MapData& map, std::uint32_t layer) {
    return {FindAxis(CoordinatesOf(map, layer, &TDoublePoint::X)),
            FindAxis(CoordinatesOf(map, layer, &TDoublePoint::Y))};
}

}  // namespace zulmap
