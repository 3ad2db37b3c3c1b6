/// \file
/// A mask of pixels: what several overlapping shapes cover together.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/software/clip_rows.h"

namespace device {

/// Shapes are added row by row; then every covered pixel is put once, however many of them cover it. That
/// keeps wide lines right under raster operations that undo themselves.
///
/// One bit a pixel within bounds that the figure sets. The memory is kept between figures and is clean
/// between them: only what a figure marked is wiped.
class Coverage {
public:
    /// Starts an empty mask. \p bounds lie within the surface. Throws std::bad_alloc; whatever was begun
    /// before is forgotten.
    void Begin(const Box& bounds);

    const Box& Bounds() const { return m_Bounds; }

    /// Covers x0 <= x < x1 of row \p y, which lies within the bounds; x may be anything.
    void Add(std::int32_t y, std::int64_t x0, std::int64_t x1) {
        const std::int64_t left = x0 > m_Bounds.left ? x0 - m_Bounds.left : 0;
        const std::int64_t right = (x1 < m_Bounds.right ? x1 : m_Bounds.right) - m_Bounds.left;
        if (left < right)
            Mark(y - m_Bounds.top, static_cast<std::int32_t>(left), static_cast<std::int32_t>(right));
    }

    /// Whether nothing is left to cover.
    bool IsFull() const { return m_WholeRows == m_Extents.size(); }

    /// Calls `run(x0, x1)` for the uncovered parts of x0 <= x < x1 in row \p y; any coordinates.
    template <class Run>
    void ForUncovered(std::int32_t y, std::int64_t x0, std::int64_t x1, Run&& run) const;

    /// Puts what is covered, through the clip.
    void Put(const Ink& ink, const Clip& clip) const;

    /// Forgets what is covered.
    void Clear();

private:
    struct Extent {
        std::int32_t first, last;  ///< columns marked, relative to the bounds: first <= x < last
        bool whole;                ///< the row is covered from end to end
    };

    void Mark(std::int32_t row, std::int32_t left, std::int32_t right);
    /// The first column from \p x on, and before \p end, that is covered or not as asked; \p end without one.
    std::int32_t Seek(std::int32_t row, std::int32_t x, std::int32_t end, bool covered) const;

    Box m_Bounds;
    std::size_t m_Stride = 0;            ///< words a row
    std::vector<std::uint64_t> m_Words;  ///< lowest bit: leftmost pixel
    std::vector<Extent> m_Extents;       ///< by row
    std::size_t m_WholeRows = 0;
};

template <class Run>
void Coverage::ForUncovered(std::int32_t y, std::int64_t x0, std::int64_t x1, Run&& run) const {
    if (y < m_Bounds.top || y >= m_Bounds.bottom) {
        run(x0, x1);
        return;
    }
    const std::int32_t row = y - m_Bounds.top;
    const Extent extent = m_Extents[static_cast<std::size_t>(row)];
    const std::int64_t marked = std::int64_t{m_Bounds.left} + extent.first;
    const std::int64_t markedEnd = std::int64_t{m_Bounds.left} + extent.last;
    if (marked >= markedEnd || x1 <= marked || x0 >= markedEnd) {
        run(x0, x1);
        return;
    }
    if (x0 < marked) run(x0, marked);
    std::int32_t x = static_cast<std::int32_t>(std::max(x0, marked) - m_Bounds.left);
    const std::int32_t end = static_cast<std::int32_t>(std::min(x1, markedEnd) - m_Bounds.left);
    while (x < end) {
        x = Seek(row, x, end, false);
        const std::int32_t next = Seek(row, x, end, true);
        if (x < next) run(std::int64_t{m_Bounds.left} + x, std::int64_t{m_Bounds.left} + next);
        x = next;
    }
    if (x1 > markedEnd) run(markedEnd, x1);
}

/// Takes the rows of a fill, from top to bottom, and puts them where the clip allows it and the figure's own
/// outline, when one is given, does not cover them.
class FillTarget {
public:
    FillTarget(const Ink& ink, const Clip& clip, const Coverage* outline)
        : m_Ink(ink), m_Clip(clip), m_Rows(ink, clip), m_Outline(outline) {}

    /// The rows and columns that matter; what lies outside need not be put.
    const Box& Bounds() const { return m_Clip.bounds; }

    void Put(std::int32_t y, std::int64_t x0, std::int64_t x1) {
        if (x0 >= x1) return;
        if (m_Outline == nullptr) {
            m_Rows.Put(y, x0, x1);
        } else {
            m_Outline->ForUncovered(
                y, x0, x1, [&](std::int64_t left, std::int64_t right) { m_Rows.Put(y, left, right); });
        }
    }

    void PutBox(const Box& box) {
        if (m_Outline == nullptr) {
            device::PutBox(m_Ink, m_Clip, box);
            return;
        }
        const Box visible = Intersect(box, Bounds());
        for (std::int32_t y = visible.top; y < visible.bottom; ++y)
            Put(y, visible.left, visible.right);
    }

private:
    const Ink& m_Ink;
    const Clip& m_Clip;
    ClipRows m_Rows;
    const Coverage* m_Outline;
};

}  // namespace device
