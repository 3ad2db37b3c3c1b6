#include "platform/software/polygon.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/software/edge.h"

namespace device {
namespace {

constexpr std::size_t kFewSides = 24;  ///< up to here inserting beats counting

struct Side {
    std::int32_t first, last;  ///< visible rows: first <= y < last
    Edge edge;
};

/// One fill's tables, kept by each thread for the next.
struct Tables {
    std::vector<Side> sides;
    std::vector<Side*> byFirst;         ///< the sides in the order of their first rows
    std::vector<Side*> active;          ///< those that cross the current row, from left to right
    std::vector<std::size_t> rowCount;  ///< of the counting sort
    std::vector<std::uint8_t>
        turnsLeft;  ///< by row: an odd number of sides left of the bounds begin or end here
    std::int32_t top = 0, bottom = 0;  ///< the rows in which anything happens
};

/// The first of the rows \p first to \p last in which a side stands right of column \p x, or for a side that
/// does not run to the right, in which it does so no more; \p last without one. Agrees with Edge.
std::int32_t RowPassing(POINT upper, POINT lower, std::int32_t first, std::int32_t last, std::int32_t x) {
    const bool rightwards = lower.x > upper.x;
    if ((upper.x > x) == rightwards) return first;
    if ((lower.x > x) != rightwards) return last;
    const auto distance = [](std::int64_t a, std::int64_t b) { return static_cast<std::uint64_t>(a - b); };
    const std::uint64_t width = rightwards ? distance(lower.x, upper.x) : distance(upper.x, lower.x);
    const std::uint64_t way = rightwards ? distance(x, upper.x) : distance(upper.x, x);
    const std::uint64_t product = way * distance(lower.y, upper.y);
    const std::uint64_t rows = product / width + (rightwards || product % width != 0 ? 1 : 0);
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(upper.y + static_cast<std::int64_t>(rows), first, last));
}

/// Notes that a side stands left of the bounds in the rows from <= y < to.
void PassLeft(Tables& tables, const Box& bounds, std::int32_t from, std::int32_t to) {
    if (from >= to) return;
    if (tables.turnsLeft.empty()) {
        tables.turnsLeft.assign(static_cast<std::size_t>(bounds.bottom - bounds.top) + 1, 0);
    }
    tables.turnsLeft[static_cast<std::size_t>(from - bounds.top)] ^= 1;
    tables.turnsLeft[static_cast<std::size_t>(to - bounds.top)] ^= 1;
    tables.top = std::min(tables.top, from);
    tables.bottom = std::max(tables.bottom, to);
}

/// Finds the ring's visible sides, each in the rows where it stands within the bounds: a long flat side does
/// in few. Right of the bounds a side changes nothing in them, and left of them only what is inside at the
/// left border.
void CollectSides(Tables& tables, const Box& bounds, const POINT* points, int count) {
    tables.sides.clear();
    tables.turnsLeft.clear();
    tables.top = bounds.bottom;
    tables.bottom = bounds.top;
    POINT from = points[count - 1];
    for (int i = 0; i < count; ++i) {
        const POINT to = points[i];
        const POINT upper = from.y < to.y ? from : to;
        const POINT lower = from.y < to.y ? to : from;
        from = to;
        std::int32_t first = std::max(upper.y, bounds.top);
        std::int32_t last = std::min(lower.y, bounds.bottom);
        if (first >= last) continue;
        const std::int32_t passesLeft = RowPassing(upper, lower, first, last, bounds.left);
        const std::int32_t passesRight = RowPassing(upper, lower, first, last, bounds.right - 1);
        if (lower.x > upper.x) {
            PassLeft(tables, bounds, first, passesLeft);
            first = passesLeft;
            last = passesRight;
        } else {
            PassLeft(tables, bounds, passesLeft, last);
            first = passesRight;
            last = passesLeft;
        }
        if (first >= last) continue;
        tables.top = std::min(tables.top, first);
        tables.bottom = std::max(tables.bottom, last);
        tables.sides.push_back({first, last, Edge(upper.x, upper.y, lower.x, lower.y, first)});
    }
}

void SortByFirstRow(Tables& tables) {
    std::vector<Side>& sides = tables.sides;
    std::vector<Side*>& sorted = tables.byFirst;
    sorted.resize(sides.size());
    if (sides.size() <= kFewSides) {
        for (std::size_t i = 0; i < sides.size(); ++i) {
            std::size_t place = i;
            for (; place > 0 && sorted[place - 1]->first > sides[i].first; --place) {
                sorted[place] = sorted[place - 1];
            }
            sorted[place] = &sides[i];
        }
        return;
    }
    const auto row = [&tables](const Side& side) {
        return static_cast<std::size_t>(side.first - tables.top);
    };
    tables.rowCount.assign(static_cast<std::size_t>(tables.bottom - tables.top) + 1, 0);
    for (const Side& side : sides)
        ++tables.rowCount[row(side) + 1];
    for (std::size_t i = 1; i < tables.rowCount.size(); ++i)
        tables.rowCount[i] += tables.rowCount[i - 1];
    for (Side& side : sides)
        sorted[tables.rowCount[row(side)]++] = &side;
}

bool StandsLeft(const Side* a, const Side* b) {
    return a->edge.X() < b->edge.X();
}

/// Drops the sides that ended above row \p y and puts the others in order. They mostly are in order, so each
/// is moved to its place; where that turns out long, as when thousands of sides cross at once, they are
/// sorted.
void OrderActive(std::vector<Side*>& active, std::int32_t y) {
    active.erase(
        std::remove_if(active.begin(), active.end(), [y](const Side* side) { return side->last <= y; }),
        active.end());
    std::size_t moves = 8 * active.size();
    for (std::size_t i = 1; i < active.size(); ++i) {
        Side* const side = active[i];
        std::size_t place = i;
        for (; place > 0 && StandsLeft(side, active[place - 1]); --place)
            active[place] = active[place - 1];
        active[place] = side;
        if (i - place > moves) {
            std::sort(active.begin(), active.end(), StandsLeft);
            return;
        }
        moves -= i - place;
    }
}

}  // namespace

void FillPolygon(FillTarget& target, const POINT* points, int count) {
    const Box bounds = target.Bounds();
    if (count < 1 || bounds.IsEmpty()) return;
    static thread_local Tables tables;
    CollectSides(tables, bounds, points, count);
    SortByFirstRow(tables);

    std::vector<Side*>& active = tables.active;
    active.clear();
    auto next = tables.byFirst.begin();
    bool leftInside = false;
    for (std::int32_t y = tables.top; y < tables.bottom; ++y) {
        for (; next != tables.byFirst.end() && (*next)->first == y; ++next)
            active.push_back(*next);
        OrderActive(active, y);
        if (!tables.turnsLeft.empty() && tables.turnsLeft[static_cast<std::size_t>(y - bounds.top)] != 0) {
            leftInside = !leftInside;
        }
        bool inside = leftInside;
        std::int64_t start = bounds.left;
        for (Side* side : active) {
            if (inside) {
                target.Put(y, start, side->edge.X());
            } else {
                start = side->edge.X();
            }
            inside = !inside;
            side->edge.NextRow();
        }
        if (inside) target.Put(y, start, bounds.right);
    }
}

}  // namespace device
