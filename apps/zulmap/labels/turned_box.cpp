#include "apps/zulmap/labels/turned_box.h"

#include <algorithm>
#include <cmath>

#include "zul/geometry/angle.h"
#include "zul/geometry/trigonometry.h"
#include "zul/kernel/numeric.h"

namespace zulmap {
namespace {

constexpr double kCell = 64.0;  ///< pixels

/// Whether the boxes are apart across the axes of the first one.
bool IsApart(const TurnedBox& a, const TurnedBox& b) {
    const TDoublePoint between = a.turn.FromScreen({b.center.X - a.center.X, b.center.Y - a.center.Y});
    double reachX = 0.0;
    double reachY = 0.0;
    for (const double side : {-1.0, 1.0}) {
        const TDoublePoint corner = a.turn.FromScreen(b.turn.ToScreen({b.half.width, side * b.half.height}));
        reachX = std::max(reachX, std::abs(corner.X));
        reachY = std::max(reachY, std::abs(corner.Y));
    }
    return std::abs(between.X) >= a.half.width + reachX || std::abs(between.Y) >= a.half.height + reachY;
}

std::int32_t CellOf(double coordinate, std::int32_t count) {
    return std::clamp(zul::ToLong(std::floor(coordinate / kCell)), 0, count - 1);
}

std::int32_t CellsFor(std::int32_t pixels) {
    return zul::ToLong(pixels / kCell) + 1;
}

}  // namespace

Turn::Turn(double degrees)
    : m_Degrees(degrees),
      m_Cosine(zul::Cosine(zul::CAngle::DegreeToRadian(degrees))),
      m_Sine(zul::Sine(zul::CAngle::DegreeToRadian(degrees))) {}

Box TurnedBox::GetBounds() const {
    Box bounds;
    for (const double x : {-1.0, 1.0}) {
        for (const double y : {-1.0, 1.0}) {
            bounds.Include(CornerAt(x, y));
        }
    }
    return bounds;
}

// Boxes that do not overlap are parted by a line along a side of one of them (the separating axis theorem).
bool Overlap(const TurnedBox& a, const TurnedBox& b) {
    return !IsApart(a, b) && !IsApart(b, a);
}

BoxIndex::BoxIndex(zul::TSize screen)
    : m_Columns(CellsFor(screen.Width)),
      m_Rows(CellsFor(screen.Height)),
      m_Cells(static_cast<std::size_t>(m_Columns) * static_cast<std::size_t>(m_Rows)) {}

/// Visits the cells that a box reaches into, those along the sides for what lies beyond them, until \p visit
/// says no. \returns whether it never did.
template <typename Visit>
bool BoxIndex::VisitCells(const Box& bounds, Visit visit) const {
    for (std::int32_t row = CellOf(bounds.minY, m_Rows); row <= CellOf(bounds.maxY, m_Rows); ++row) {
        for (std::int32_t column = CellOf(bounds.minX, m_Columns); column <= CellOf(bounds.maxX, m_Columns);
             ++column) {
            if (!visit(static_cast<std::size_t>(row) * static_cast<std::size_t>(m_Columns) +
                       static_cast<std::size_t>(column))) {
                return false;
            }
        }
    }
    return true;
}

void BoxIndex::Add(const TurnedBox& box) {
    const auto index = static_cast<std::uint32_t>(m_Boxes.size());
    m_Boxes.push_back(box);
    VisitCells(box.GetBounds(), [&](std::size_t cell) {
        m_Cells[cell].push_back(index);
        return true;
    });
}

std::vector<TurnedBox> BoxIndex::FindNear(const Box& bounds) const {
    std::vector<std::uint32_t> found;
    VisitCells(bounds, [&](std::size_t cell) {
        found.insert(found.end(), m_Cells[cell].begin(), m_Cells[cell].end());
        return true;
    });
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    std::vector<TurnedBox> boxes;
    for (const std::uint32_t index : found) {
        boxes.push_back(m_Boxes[index]);
    }
    return boxes;
}

bool BoxIndex::IsFree(const TurnedBox& box) const {
    return VisitCells(box.GetBounds(), [&](std::size_t cell) {
        return std::none_of(m_Cells[cell].begin(), m_Cells[cell].end(),
                            [&](std::uint32_t index) { return Overlap(m_Boxes[index], box); });
    });
}

}  // namespace zulmap
