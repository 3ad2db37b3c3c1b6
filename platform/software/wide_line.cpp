#include "platform/software/wide_line.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "platform/software/edge.h"
#include "platform/software/ellipse.h"

namespace device {
namespace {

struct Place {
    std::int64_t x, y;
};

/// The disc of a pen: the ellipse filled in a square of the pen's width, of an even width a pixel more to the
/// left and above. Kept by each thread for as long as the width stays the same.
class Disc {
public:
    void Set(std::int32_t width) {
        if (width == m_Width) return;
        m_Quadrant.Set(width, width);
        m_Width = width;
    }

    void Cover(Coverage& coverage, POINT centre) const {
        const Box& bounds = coverage.Bounds();
        const std::int64_t left = std::int64_t{centre.x} - m_Width / 2;
        const std::int64_t top = std::int64_t{centre.y} - m_Width / 2;
        if (left >= bounds.right || left + m_Width <= bounds.left) return;
        const auto first = static_cast<std::int32_t>(std::max<std::int64_t>(top, bounds.top));
        const auto last = static_cast<std::int32_t>(std::min<std::int64_t>(top + m_Width, bounds.bottom));
        for (std::int32_t y = first; y < last; ++y) {
            const std::int64_t inset = Inset(y - top);
            coverage.Add(y, left + inset, left + m_Width - inset);
        }
    }

private:
    std::int64_t Inset(std::int64_t row) const {
        if (m_Width == 2) return 0;
        const std::int64_t upper = m_Quadrant.UpperRow(0), lower = m_Quadrant.LowerRow(0);
        return m_Quadrant.At(row >= lower ? row - lower : upper - row).outer;
    }

    std::int32_t m_Width = 0;
    EllipseQuadrant m_Quadrant;
};

void CoverBox(Coverage& coverage, Place upperLeft, Place lowerRight) {
    const Box& bounds = coverage.Bounds();
    const auto first = static_cast<std::int32_t>(std::max<std::int64_t>(upperLeft.y, bounds.top));
    const auto last = static_cast<std::int32_t>(std::min<std::int64_t>(lowerRight.y, bounds.bottom));
    for (std::int32_t y = first; y < last; ++y)
        coverage.Add(y, upperLeft.x, lowerRight.x);
}

/// Covers a convex shape of four corners.
void CoverQuad(Coverage& coverage, const Place (&corners)[4]) {
    struct Reach {
        std::int64_t left = std::numeric_limits<std::int64_t>::max();
        std::int64_t right = std::numeric_limits<std::int64_t>::min();
    };
    static thread_local std::vector<Reach> reaches;

    const Box& bounds = coverage.Bounds();
    std::int64_t top = bounds.bottom, bottom = bounds.top;
    for (const Place& corner : corners) {
        top = std::min(top, corner.y);
        bottom = std::max(bottom, corner.y);
    }
    top = std::max<std::int64_t>(top, bounds.top);
    bottom = std::min<std::int64_t>(bottom, bounds.bottom);
    if (top >= bottom) return;

    reaches.assign(static_cast<std::size_t>(bottom - top), Reach{});
    for (int i = 0; i < 4; ++i) {
        Place upper = corners[i], lower = corners[(i + 1) % 4];
        if (upper.y > lower.y) std::swap(upper, lower);
        const std::int64_t first = std::max(upper.y, top), last = std::min(lower.y, bottom);
        if (first >= last) continue;
        Edge edge(upper.x, upper.y, lower.x, lower.y, first);
        for (std::int64_t y = first; y < last; ++y, edge.NextRow()) {
            Reach& reach = reaches[static_cast<std::size_t>(y - top)];
            reach.left = std::min(reach.left, edge.X());
            reach.right = std::max(reach.right, edge.X());
        }
    }
    for (std::int64_t y = top; y < bottom; ++y) {
        const Reach& reach = reaches[static_cast<std::size_t>(y - top)];
        coverage.Add(static_cast<std::int32_t>(y), reach.left, reach.right);
    }
}

/// Covers the box of \p width along a segment. Its corners are whole pixels: the width's extent across the
/// segment is rounded up in x and in y, and of an odd extent the larger half goes to the right.
void CoverSegment(Coverage& coverage, POINT from, POINT to, std::int32_t width) {
    const std::int64_t x0 = from.x, y0 = from.y, x1 = to.x, y1 = to.y;
    const std::int64_t dx = x1 - x0, dy = y1 - y0;
    const std::int64_t before = width / 2, after = width - before;
    if (dx == 0) {
        CoverBox(coverage, {x0 - before, std::min(y0, y1)}, {x0 + after, std::max(y0, y1)});
        return;
    }
    if (dy == 0) {
        CoverBox(coverage, {std::min(x0, x1), y0 - before}, {std::max(x0, x1), y0 + after});
        return;
    }
    const double length = std::sqrt(static_cast<double>(dx) * static_cast<double>(dx) +
                                    static_cast<double>(dy) * static_cast<double>(dy));
    const auto extent = [width, length](std::int64_t across) {
        return static_cast<std::int64_t>(static_cast<double>(width) * static_cast<double>(std::abs(across)) /
                                         length) +
               1;
    };
    const std::int64_t extentX = extent(dy), extentY = extent(dx);
    const std::int64_t slope = (dx > 0) == (dy > 0) ? 1 : -1;  // the left corners lie below or above the ends
    const Place left{-(extentX / 2), slope * (extentY / 2)};
    const Place right{extentX - extentX / 2, -slope * (extentY - extentY / 2)};
    CoverQuad(coverage, {{x0 + left.x, y0 + left.y},
                         {x1 + left.x, y1 + left.y},
                         {x1 + right.x, y1 + right.y},
                         {x0 + right.x, y0 + right.y}});
}

bool MayReach(const Box& bounds, POINT from, POINT to, std::int64_t margin) {
    return std::max(from.x, to.x) + margin >= bounds.left && std::min(from.x, to.x) - margin < bounds.right &&
           std::max(from.y, to.y) + margin >= bounds.top && std::min(from.y, to.y) - margin < bounds.bottom;
}

/// How far from its path a pen may reach.
std::int64_t Margin(std::int32_t width) {
    return std::int64_t{width} / 2 + 2;
}

}  // namespace

Box WideReach(const Box& bounds, const Path& path, std::int32_t width) {
    if (path.count < 1) return {};
    std::int64_t left = path.points[0].x, top = path.points[0].y, right = left, bottom = top;
    for (int i = 1; i < path.count; ++i) {
        left = std::min<std::int64_t>(left, path.points[i].x);
        right = std::max<std::int64_t>(right, path.points[i].x);
        top = std::min<std::int64_t>(top, path.points[i].y);
        bottom = std::max<std::int64_t>(bottom, path.points[i].y);
    }
    const std::int64_t margin = Margin(width);
    if (left - margin >= bounds.right || right + margin < bounds.left || top - margin >= bounds.bottom ||
        bottom + margin < bounds.top) {
        return {};
    }
    return {static_cast<std::int32_t>(std::max<std::int64_t>(left - margin, bounds.left)),
            static_cast<std::int32_t>(std::max<std::int64_t>(top - margin, bounds.top)),
            static_cast<std::int32_t>(std::min<std::int64_t>(right + margin + 1, bounds.right)),
            static_cast<std::int32_t>(std::min<std::int64_t>(bottom + margin + 1, bounds.bottom))};
}

void CoverPath(Coverage& coverage, const Path& path, std::int32_t width) {
    static thread_local Disc disc;
    if (path.count < 1 || coverage.Bounds().IsEmpty()) return;
    disc.Set(width);
    const std::int64_t margin = Margin(width);
    disc.Cover(coverage, path.points[0]);
    for (int i = 1; i < path.count + (path.closed ? 1 : 0) && !coverage.IsFull(); ++i) {
        const POINT from = path.points[i - 1];
        const POINT to = path.points[i < path.count ? i : 0];
        if (!MayReach(coverage.Bounds(), from, to, margin)) continue;
        CoverSegment(coverage, from, to, width);
        disc.Cover(coverage, to);
    }
}

}  // namespace device
