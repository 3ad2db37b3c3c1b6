/// \file
/// Boxes of pixels that stand at an angle, and which of them overlap.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "apps/zulmap/map_data.h"
#include "zul/geometry/coordinates.h"

namespace zulmap {

/// The axes of something that stands at an angle on a screen, where y grows downwards.
class Turn {
public:
    /// Counter-clockwise.
    explicit Turn(double degrees = 0.0);

    double GetDegrees() const { return m_Degrees; }
    /// From coordinates along the axes to those of the screen.
    TDoublePoint ToScreen(const TDoublePoint& point) const {
        return {point.X * m_Cosine + point.Y * m_Sine, point.Y * m_Cosine - point.X * m_Sine};
    }
    TDoublePoint FromScreen(const TDoublePoint& point) const {
        return {point.X * m_Cosine - point.Y * m_Sine, point.X * m_Sine + point.Y * m_Cosine};
    }

private:
    double m_Degrees;
    double m_Cosine;
    double m_Sine;
};

/// Half of either side of a box.
struct HalfSize {
    double width;
    double height;
};

struct TurnedBox {
    TDoublePoint center;
    HalfSize half;
    Turn turn;

    TDoublePoint CornerAt(double x, double y) const {
        const TDoublePoint corner = turn.ToScreen({x * half.width, y * half.height});
        return {center.X + corner.X, center.Y + corner.Y};
    }
    /// The upright box around it.
    Box GetBounds() const;
};

/// Whether two boxes have a point inside both.
bool Overlap(const TurnedBox& a, const TurnedBox& b);

/// Boxes on a screen, found by where they are.
class BoxIndex {
public:
    explicit BoxIndex(zul::TSize screen);

    void Add(const TurnedBox& box);
    /// Whether the box overlaps none of those added.
    bool IsFree(const TurnedBox& box) const;
    /// Those that reach into a box or its neighbourhood, each once, in the order in which they were added.
    std::vector<TurnedBox> FindNear(const Box& bounds) const;

private:
    template <typename Visit>
    bool VisitCells(const Box& bounds, Visit visit) const;

    std::int32_t m_Columns;
    std::int32_t m_Rows;
    std::vector<TurnedBox> m_Boxes;
    std::vector<std::vector<std::uint32_t>> m_Cells;  ///< indices of the boxes that reach into each
};

}  // namespace zulmap
