#include "platform/software/polygon.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "platform/software/crossings.h"
#include "platform/software/edge.h"

namespace device {
namespace {

/// Sides of more rows are cut to those in which they stand within the bounds before they are followed.
constexpr std::int32_t kManyRows = 16;
/// Rings of more points are seldom as simple as Flank wants them.
constexpr int kFewPoints = 16;

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

// --- any ring: crossings ---

/// Calls visit(upper, lower) for the two ends of a side in their order.
template <class Visit>
void Ordered(POINT from, POINT to, Visit&& visit) {
    if (from.y < to.y) {
        visit(from, to);
    } else {
        visit(to, from);
    }
}

template <class AnyEdge>
void CrossRows(Crossings& crossings, AnyEdge edge, std::int32_t first, std::int32_t last) {
    const Box& bounds = crossings.Bounds();
    for (std::int32_t y = first; y < last; ++y, edge.NextRow()) {
        const auto x = std::clamp<std::int64_t>(edge.X(), bounds.left, bounds.right);
        crossings.Cross(y, static_cast<std::int32_t>(x));
    }
}

/// A side that the bounds may cut.
void AddSide(Crossings& crossings, POINT from, POINT to) {
    Ordered(from, to, [&crossings](POINT upper, POINT lower) {
        const Box& bounds = crossings.Bounds();
        std::int32_t first = std::max(upper.y, bounds.top);
        std::int32_t last = std::min(lower.y, bounds.bottom);
        if (first >= last || (upper.x >= bounds.right && lower.x >= bounds.right)) return;
        if (last - first > kManyRows || (upper.x <= bounds.left && lower.x <= bounds.left)) {
            const std::int32_t passesLeft = RowPassing(upper, lower, first, last, bounds.left);
            const std::int32_t passesRight = RowPassing(upper, lower, first, last, bounds.right - 1);
            if (lower.x > upper.x) {
                crossings.PassLeft(first, passesLeft);
                first = passesLeft;
                last = passesRight;
            } else {
                crossings.PassLeft(passesLeft, last);
                first = passesRight;
                last = passesLeft;
            }
            if (first >= last) return;
        }
        if (ShortEdge::Holds(upper, lower)) {
            CrossRows(crossings, ShortEdge(upper, lower, first), first, last);
        } else {
            CrossRows(crossings, Edge(upper.x, upper.y, lower.x, lower.y, first), first, last);
        }
    });
}

/// A side of at least one row within the bounds that ShortEdge holds. Kept out of the loop below, which wants
/// the registers for itself.
__attribute__((noinline)) void AddLongSide(Crossings& crossings, POINT from, POINT to) {
    Ordered(from, to, [&crossings](POINT upper, POINT lower) {
        ShortEdge edge(upper, lower, upper.y);
        for (std::int32_t y = upper.y; y < lower.y; ++y, edge.NextRow())
            crossings.Cross(y, edge.X());
    });
}

/// The sides of a run within the bounds, or on their right or lower end, that ShortEdge holds.
void AddInnerSides(Crossings& crossings, const POINT* points, int count) {
    for (int i = 1; i < count; ++i) {
        const POINT from = points[i - 1], to = points[i];
        const std::int32_t rows = to.y - from.y;
        if (rows >= -1 && rows <= 1) {
            // As most sides of a coast are.
            crossings.Cross(std::min(from.y, to.y), rows > 0 ? from.x : to.x,
                            static_cast<std::uint64_t>(rows & 1));
        } else {
            AddLongSide(crossings, from, to);
        }
    }
}

/// Whether AddInnerSides takes all sides between points.
bool AreInner(const Extents& extents, const Box& bounds) {
    return extents.left >= bounds.left && extents.right <= bounds.right && extents.top >= bounds.top &&
           extents.bottom <= bounds.bottom && extents.AreNear(ShortEdge::kMost);
}

/// The sides of a run.
void AddRun(Crossings& crossings, const POINT* points, int count, const Extents& extents) {
    const Box& bounds = crossings.Bounds();
    if (extents.bottom <= bounds.top || extents.top >= bounds.bottom || extents.left >= bounds.right) return;
    if (AreInner(extents, bounds)) {
        if (RepeatsPoints(points, count)) {
            const DistinctPoints distinct(points, count);
            AddInnerSides(crossings, distinct.Points(), distinct.Count());
        } else {
            AddInnerSides(crossings, points, count);
        }
    } else if (extents.right <= bounds.left) {
        // In each row they pass as often, odd or even, as the straight way would.
        AddSide(crossings, points[0], points[count - 1]);
    } else {
        for (int i = 1; i < count; ++i)
            AddSide(crossings, points[i - 1], points[i]);
    }
}

Crossings& Scratch() {
    static thread_local Crossings crossings;
    return crossings;
}

void FillByCrossings(FillTarget& target, const POINT* points, int count, const RunExtents& runs) {
    const Box& bounds = target.Bounds();
    const Extents& extents = runs.All();
    const Box part{std::max(extents.left, bounds.left), std::max(extents.top, bounds.top),
                   std::min(extents.right, bounds.right), std::min(extents.bottom, bounds.bottom)};
    if (part.IsEmpty()) return;
    Crossings& crossings = Scratch();
    crossings.Begin(part);
    for (int i = 0; i + 1 < count; i += kRunSegments)
        AddRun(crossings, points + i, std::min(kRunSegments, count - 1 - i) + 1, runs.Run(i));
    AddSide(crossings, points[count - 1], points[0]);
    crossings.Take([&target](std::int32_t y, std::int32_t x0, std::int32_t x1) { target.Put(y, x0, x1); });
}

// --- rings that go down once and up once, as all convex ones do: two sides in each row ---

/// The sides from the uppermost point down, in one direction around the ring.
class Flank {
public:
    /// \param step 1, or as many points as there are less 1, to go backwards
    /// \param y the first row to be asked for
    Flank(const POINT* points, int count, int uppermost, int step, std::int32_t y)
        : m_Points(points), m_Count(count), m_Step(step), m_At(uppermost), m_Edge(Begin(y)) {}

    /// Goes to row \p y, one of the ring's; rows come in order.
    void Enter(std::int32_t y) {
        if (y >= m_End) m_Edge = Begin(y);
    }
    /// The first row below the side.
    std::int32_t End() const { return m_End; }
    std::int32_t Next() {
        const std::int32_t x = m_Edge.X();
        m_Edge.NextRow();
        return x;
    }

private:
    ShortEdge Begin(std::int32_t y) {
        POINT upper{};
        do {
            upper = m_Points[m_At];
            m_At += m_Step;
            if (m_At >= m_Count) m_At -= m_Count;
        } while (m_Points[m_At].y <= y);
        m_End = m_Points[m_At].y;
        return ShortEdge(upper, m_Points[m_At], y);
    }

    const POINT* m_Points;
    int m_Count, m_Step, m_At;
    std::int32_t m_End = 0;
    ShortEdge m_Edge;
};

/// Whether the way around a ring goes up only after it has gone down.
bool GoesDownOnce(const POINT* points, int count, int uppermost) {
    bool up = false;
    for (int i = 0, at = uppermost; i < count; ++i) {
        const int next = at + 1 < count ? at + 1 : 0;
        if (points[next].y < points[at].y) {
            up = true;
        } else if (points[next].y > points[at].y && up) {
            return false;
        }
        at = next;
    }
    return true;
}

/// False, and nothing filled, when the ring is none of these.
bool FillFlanks(FillTarget& target, const POINT* points, int count, const Extents& extents) {
    if (count > kFewPoints || !extents.AreNear(ShortEdge::kMost)) return false;
    int uppermost = 0;
    while (points[uppermost].y != extents.top)
        ++uppermost;
    if (count > 3 && !GoesDownOnce(points, count, uppermost)) return false;

    std::int32_t y = std::max(extents.top, target.Bounds().top);
    const std::int32_t bottom = std::min(extents.bottom, target.Bounds().bottom);
    if (y >= bottom) return true;
    Flank one(points, count, uppermost, 1, y), other(points, count, uppermost, count - 1, y);
    while (y < bottom) {
        one.Enter(y);
        other.Enter(y);
        const std::int32_t end = std::min({one.End(), other.End(), bottom});
        for (; y < end; ++y) {
            const std::int32_t a = one.Next(), b = other.Next();
            target.Put(y, std::min(a, b), std::max(a, b));
        }
    }
    return true;
}

}  // namespace

void FillPolygon(FillTarget& target, const POINT* points, int count, const RunExtents& extents) {
    if (count < 3 || !extents.All().Meet(target.Bounds())) return;
    if (!FillFlanks(target, points, count, extents.All())) FillByCrossings(target, points, count, extents);
}

}  // namespace device
