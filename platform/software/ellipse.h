/// \file
/// The pixels of an ellipse.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/software/coverage.h"
#include "platform/software/path.h"

namespace device {

/// The outline of the ellipse that is inscribed in a box of whole pixels, one quadrant of it: the others
/// mirror it.
///
/// Rows are counted from the middle outwards. In each the outline covers the columns from `outer` to `inner`,
/// counted from the box's side inwards; what an ellipse fills reaches from `outer` on one side to `outer` on
/// the other.
///
/// Up to 65536 pixels wide and high the outline is traced with integers: the error of the ellipse's equation
/// at the next pixel decides each step. Very slender ones end before the box does, since the trace ends where
/// its two sides meet; callers rely on the picture. Beyond that size rows are computed one by one, in
/// doubles, so that only those which are asked for cost anything.
class EllipseQuadrant {
public:
    struct Run {
        std::int64_t outer = 0, inner = 0;
    };

    /// \param width, height of the box, from 1 to 2^32. Throws std::bad_alloc.
    void Set(std::int64_t width, std::int64_t height);

    std::int64_t Width() const { return m_Width; }
    std::int64_t Height() const { return m_Height; }
    /// Rows from the middle outwards that the outline reaches.
    std::int64_t RowCount() const { return m_RowCount; }
    /// The outline in row \p row, 0 <= row < RowCount().
    Run At(std::int64_t row) const;
    /// Pixel steps along the outline from the middle to where it enters \p row.
    std::int64_t StepsTo(std::int64_t row) const;

    /// The row of the box, counted from its top, in which row \p row of the upper or lower half lies.
    std::int64_t UpperRow(std::int64_t row) const { return (m_Height - 1) / 2 - row; }
    std::int64_t LowerRow(std::int64_t row) const { return m_Height / 2 + row; }

private:
    bool IsTraced() const { return !m_Traced.empty(); }
    void Trace();
    std::int64_t OuterOf(std::int64_t row) const;

    struct TracedRun {
        std::int32_t outer, inner;
    };
    std::int64_t m_Width = 0, m_Height = 0;
    std::int64_t m_RowCount = 0;
    std::vector<TracedRun> m_Traced;
};

/// The outline as paths that a pen can follow: counter-clockwise from the right end of the middle row. A
/// whole ring is one closed path; of one that is partly out of sight, the open paths that are seen.
struct EllipseOutline {
    std::vector<POINT> points;
    std::vector<Path> paths;  ///< over points
};

/// Finds the outline of the ellipse in \p box (at least a pixel wide and high) as far as a pen on it reaches
/// the rows of \p visible. Pens thousands of pixels wide on ellipses as large follow it in steps of several
/// rows. Throws std::bad_alloc.
void FindEllipseOutline(EllipseOutline& outline, const Box& box, const Box& visible, std::int32_t penWidth);

/// Fills the ellipse in \p box, outline included. Each pixel is put once. Throws std::bad_alloc.
void FillEllipse(FillTarget& target, const Box& box);

}  // namespace device
