#include "platform/software/ellipse.h"

#include <algorithm>
#include <cmath>

namespace device {
namespace {

constexpr std::int64_t kLargestTraced = 65536;  ///< its error terms stay within 64 bits
constexpr std::int64_t kMostRows = 16384;  ///< of a quadrant that a wide pen follows before it skips some

}  // namespace

void EllipseQuadrant::Set(std::int64_t width, std::int64_t height) {
    if (width == m_Width && height == m_Height) return;
    const std::int64_t rows = (height - 1) / 2 + 1;
    const bool traced = width <= kLargestTraced && height <= kLargestTraced;
    if (traced) m_Traced.reserve(static_cast<std::size_t>(rows));  // may throw, so nothing is changed before
    m_Traced.clear();
    m_Width = width;
    m_Height = height;
    m_RowCount = rows;
    if (traced) Trace();
}

void EllipseQuadrant::Trace() {
    const std::int64_t a = m_Width - 1, b = m_Height - 1;
    const std::int64_t odd = b & 1;  // of an even height: the middle lies between two rows
    std::int64_t left = 0, right = a;
    std::int64_t errorX = 4 * (1 - a) * b * b;
    std::int64_t errorY = 4 * (odd + 1) * a * a;
    std::int64_t error = errorX + errorY + odd * a * a;
    const std::int64_t turnX = 8 * b * b, turnY = 8 * a * a;
    bool newRow = true;
    do {
        const auto column = static_cast<std::int32_t>(left);
        if (newRow) m_Traced.push_back({column, column});
        m_Traced.back().inner = column;
        const std::int64_t twice = 2 * error;
        newRow = twice <= errorY;
        if (twice >= errorX) {
            ++left;
            --right;
            errorX += turnX;
            error += errorX;
        }
        if (newRow) {
            errorY += turnY;
            error += errorY;
        }
    } while (left <= right);
    m_RowCount = static_cast<std::int64_t>(m_Traced.size());
}

/// Nearest column where the outline is steep; where it is flat, the first column that is nearest to this row.
std::int64_t EllipseQuadrant::OuterOf(std::int64_t row) const {
    const double a = static_cast<double>(m_Width - 1) / 2, b = static_cast<double>(m_Height - 1) / 2;
    const double y = static_cast<double>(row) + (m_Height % 2 == 0 ? 0.5 : 0.0);
    const auto inset = [a, b](double at) {
        if (at <= 0 || b <= 0) return 0.0;
        return a - a * std::sqrt(std::max(0.0, (b - at) * (b + at))) / b;
    };
    const double nearest = std::floor(inset(y) + 0.5);
    const double flat = std::ceil(inset(y - 0.5));
    return std::min(static_cast<std::int64_t>(std::min(nearest, flat)), (m_Width - 1) / 2);
}

EllipseQuadrant::Run EllipseQuadrant::At(std::int64_t row) const {
    if (IsTraced()) {
        const TracedRun run = m_Traced[static_cast<std::size_t>(row)];
        return {run.outer, run.inner};
    }
    const std::int64_t outer = OuterOf(row);
    const std::int64_t end = row + 1 < m_RowCount ? OuterOf(row + 1) - 1 : (m_Width - 1) / 2;
    return {outer, std::max(outer, end)};
}

std::int64_t EllipseQuadrant::StepsTo(std::int64_t row) const {
    if (IsTraced()) {
        std::int64_t steps = row;
        for (std::int64_t i = 0; i < row; ++i) {
            const TracedRun run = m_Traced[static_cast<std::size_t>(i)];
            steps += run.inner - run.outer;
        }
        return steps;
    }
    // A step goes a row further where the outline is steep and a column further where it is flat.
    const double a = static_cast<double>(m_Width), b = static_cast<double>(m_Height);
    const auto turn = static_cast<std::int64_t>(b * b / (2 * std::sqrt(a * a + b * b)));
    const std::int64_t last = m_RowCount - 1;
    return row <= turn ? row : turn + OuterOf(row) - OuterOf(std::min(turn, last));
}

namespace {

/// Puts an outline together from the four quadrants, in the order in which the pen passes them.
class OutlineBuilder {
public:
    OutlineBuilder(EllipseOutline& outline, const EllipseQuadrant& quadrant, const Box& box)
        : m_Outline(outline), m_Quadrant(quadrant), m_Box(box) {
        outline.points.clear();
        outline.paths.clear();
    }

    void Build(std::int64_t top, std::int64_t bottom, std::int64_t reach) {
        m_MostRows = std::max(kMostRows, bottom - top + 4);
        top -= reach;
        bottom += reach;
        const std::int64_t last = m_Quadrant.RowCount() - 1;
        const std::int64_t upper = m_Box.top + m_Quadrant.UpperRow(0);
        const std::int64_t lower = m_Box.top + m_Quadrant.LowerRow(0);
        // A row more on each side: an open path leaves its last pixel out.
        const Range above{std::max<std::int64_t>(0, upper - bottom), std::min(last, upper - top + 1)};
        const Range below{std::max<std::int64_t>(0, top - lower - 1), std::min(last, bottom - lower)};
        const std::int64_t quarter = m_Quadrant.StepsTo(last) + Length(last);
        const EllipseQuadrant::Run pole = m_Quadrant.At(last);
        const std::int64_t across = std::abs(m_Quadrant.Width() - 1 - 2 * pole.inner);
        const std::int64_t half = 2 * quarter + across + (lower - upper);

        Quarter(above, true, true, 0);
        Join(above.last == last);
        Quarter(above, false, true, quarter + across);
        Join(above.first == 0 && below.first == 0);
        Quarter(below, true, false, half);
        Join(below.last == last);
        Quarter(below, false, false, half + quarter + across);
        Close(above, below, last);

        const POINT* points = m_Outline.points.data();
        for (Path& path : m_Outline.paths) {
            path.points = points;
            points += path.count;
        }
    }

private:
    struct Range {
        std::int64_t first, last;  ///< rows of a half, from the middle outwards, both included
        bool IsEmpty() const { return first > last; }
    };

    std::int64_t Length(std::int64_t row) const {
        const EllipseQuadrant::Run run = m_Quadrant.At(row);
        return run.inner - run.outer;
    }

    /// One quadrant's rows, outwards or back. Of the upper half the right side goes outwards, of the lower
    /// the left one. \p start counts the steps to the quadrant's beginning.
    void Quarter(Range rows, bool outwards, bool isUpper, std::int64_t start) {
        if (rows.IsEmpty()) {
            m_Joined = false;
            return;
        }
        const bool right = outwards == isUpper;
        if (!m_Joined) {
            std::int64_t steps = m_Quadrant.StepsTo(outwards ? rows.first : rows.last);
            if (!outwards) {
                const std::int64_t last = m_Quadrant.RowCount() - 1;
                steps = m_Quadrant.StepsTo(last) + Length(last) - steps - Length(rows.last);
            }
            m_Outline.paths.push_back({nullptr, 0, false, static_cast<std::uint64_t>(start + steps)});
        }
        const std::int64_t stride = (rows.last - rows.first) / m_MostRows + 1;
        const std::int64_t from = outwards ? rows.first : rows.last;
        const std::int64_t to = outwards ? rows.last : rows.first;
        for (std::int64_t row = from;;
             row = outwards ? std::min(to, row + stride) : std::max(to, row - stride)) {
            const EllipseQuadrant::Run run = m_Quadrant.At(row);
            Add(row, outwards ? run.outer : run.inner, right, isUpper);
            if (run.outer != run.inner) Add(row, outwards ? run.inner : run.outer, right, isUpper);
            if (row == to) break;
        }
        m_Joined = true;
    }

    void Add(std::int64_t row, std::int64_t inset, bool right, bool isUpper) {
        const std::int64_t x = right ? std::int64_t{m_Box.right} - 1 - inset : m_Box.left + inset;
        const std::int64_t y = m_Box.top + (isUpper ? m_Quadrant.UpperRow(row) : m_Quadrant.LowerRow(row));
        m_Outline.points.push_back({static_cast<LONG>(x), static_cast<LONG>(y)});
        ++m_Outline.paths.back().count;
    }

    /// Says whether the next quadrant carries the path on.
    void Join(bool joined) { m_Joined = m_Joined && joined; }

    void Close(Range above, Range below, std::int64_t last) {
        if (m_Outline.paths.empty() || above.IsEmpty() || below.IsEmpty()) return;
        if (above.first != 0 || below.first != 0) return;
        if (above.last == last && below.last == last) {
            m_Outline.paths.back().closed = true;
        } else {
            const POINT start = m_Outline.points.front();
            m_Outline.points.push_back(start);
            ++m_Outline.paths.back().count;
        }
    }

    EllipseOutline& m_Outline;
    const EllipseQuadrant& m_Quadrant;
    const Box& m_Box;
    std::int64_t m_MostRows = kMostRows;
    bool m_Joined = false;
};

EllipseQuadrant& ScratchQuadrant() {
    static thread_local EllipseQuadrant quadrant;
    return quadrant;
}

std::int64_t Extent(std::int32_t low, std::int32_t high) {
    return std::int64_t{high} - low;
}

}  // namespace

void FindEllipseOutline(EllipseOutline& outline, const Box& box, const Box& visible, std::int32_t penWidth) {
    EllipseQuadrant& quadrant = ScratchQuadrant();
    quadrant.Set(Extent(box.left, box.right), Extent(box.top, box.bottom));
    OutlineBuilder(outline, quadrant, box).Build(visible.top, visible.bottom, penWidth);
}

void FillEllipse(FillTarget& target, const Box& box) {
    EllipseQuadrant& quadrant = ScratchQuadrant();
    quadrant.Set(Extent(box.left, box.right), Extent(box.top, box.bottom));
    const std::int64_t upper = box.top + quadrant.UpperRow(0);
    const std::int64_t lower = box.top + quadrant.LowerRow(0);
    const std::int32_t top = std::max(box.top, target.Bounds().top);
    const std::int32_t bottom = std::min(box.bottom, target.Bounds().bottom);
    for (std::int32_t y = top; y < bottom; ++y) {
        const std::int64_t row = y >= lower ? y - lower : upper - y;
        if (row >= quadrant.RowCount()) continue;
        const std::int64_t outer = quadrant.At(row).outer;
        target.Put(y, box.left + outer, std::int64_t{box.right} - outer);
    }
}

}  // namespace device
