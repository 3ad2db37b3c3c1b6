#include "apps/zulmap/labels/ground_plan.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "zul/kernel/numeric.h"

namespace zulmap {
namespace {

/// Samples of a large box.
constexpr int kMostColumns = 64;
constexpr int kMostRows = 32;

std::int32_t SquaresFor(std::int32_t pixels) {
    return (pixels + GroundPlan::kSquare - 1) / GroundPlan::kSquare;
}

/// The first square whose middle does not lie before a coordinate.
std::int32_t FirstFrom(double pixel, std::int32_t count) {
    return std::clamp(zul::ToLong(std::ceil(pixel / GroundPlan::kSquare - 0.5)), 0, count);
}

}  // namespace

GroundPlan::GroundPlan(zul::TSize screen)
    : m_Columns(SquaresFor(screen.Width)),
      m_Rows(SquaresFor(screen.Height)),
      m_Owners(static_cast<std::size_t>(m_Columns) * static_cast<std::size_t>(m_Rows), kWater) {}

void GroundPlan::Fill(const std::vector<Path>& rings, std::int32_t owner) {
    Box bounds;
    for (const Path& ring : rings) {
        for (const TDoublePoint& point : ring) {
            bounds.Include(point);
        }
    }
    if (bounds.IsEmpty()) return;
    const std::int32_t top = FirstFrom(bounds.minY, m_Rows);
    std::vector<std::vector<double>> crossings(
        static_cast<std::size_t>(std::max(0, FirstFrom(bounds.maxY, m_Rows) - top)));
    for (const Path& ring : rings) {
        for (std::size_t i = 0, last = ring.size() - 1; i < ring.size(); last = i++) {
            const TDoublePoint& a = ring[last].Y < ring[i].Y ? ring[last] : ring[i];
            const TDoublePoint& b = ring[last].Y < ring[i].Y ? ring[i] : ring[last];
            for (std::int32_t row = FirstFrom(a.Y, m_Rows); row < FirstFrom(b.Y, m_Rows); ++row) {
                const double y = (row + 0.5) * kSquare;
                crossings[static_cast<std::size_t>(row - top)].push_back(a.X + (b.X - a.X) *
                                                                                   ((y - a.Y) / (b.Y - a.Y)));
            }
        }
    }
    for (std::size_t i = 0; i < crossings.size(); ++i) {
        FillRow(top + static_cast<std::int32_t>(i), crossings[i], owner);
    }
    if (bounds.Width() > 2.0 * kSquare || bounds.Height() > 2.0 * kSquare) return;
    const auto column = static_cast<std::int32_t>((bounds.minX + bounds.maxX) / 2.0 / kSquare);
    const auto row = static_cast<std::int32_t>((bounds.minY + bounds.maxY) / 2.0 / kSquare);
    std::vector<double> square = {column * 1.0 * kSquare, (column + 1.0) * kSquare};
    if (row >= 0 && row < m_Rows) FillRow(row, square, owner);
}

void GroundPlan::FillRow(std::int32_t row, std::vector<double>& crossings, std::int32_t owner) {
    std::sort(crossings.begin(), crossings.end());
    const auto first = m_Owners.begin() + static_cast<std::ptrdiff_t>(row) * m_Columns;
    for (std::size_t i = 0; i + 1 < crossings.size(); i += 2) {
        std::fill(first + FirstFrom(crossings[i], m_Columns), first + FirstFrom(crossings[i + 1], m_Columns),
                  owner);
    }
}

std::int32_t GroundPlan::OwnerAt(const TDoublePoint& pixel) const {
    const std::int32_t column = zul::ToLong(std::floor(pixel.X / kSquare));
    const std::int32_t row = zul::ToLong(std::floor(pixel.Y / kSquare));
    if (column < 0 || row < 0 || column >= m_Columns || row >= m_Rows) return kWater;
    return m_Owners[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_Columns) +
                    static_cast<std::size_t>(column)];
}

GroundPlan::Shares GroundPlan::Under(const TurnedBox& box, std::int32_t owner) const {
    const int columns = std::clamp(zul::ToLong(2.0 * box.half.width / kSquare), 1, kMostColumns);
    const int rows = std::clamp(zul::ToLong(2.0 * box.half.height / kSquare), 1, kMostRows);
    int own = 0;
    int foreign = 0;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const std::int32_t found =
                OwnerAt(box.CornerAt((2 * column + 1.0) / columns - 1.0, (2 * row + 1.0) / rows - 1.0));
            own += found == owner ? 1 : 0;
            foreign += found != owner && found != kWater ? 1 : 0;
        }
    }
    const double all = static_cast<double>(rows) * columns;
    return {own / all, foreign / all};
}

}  // namespace zulmap
