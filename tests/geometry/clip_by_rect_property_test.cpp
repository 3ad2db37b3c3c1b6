// Clipping held against winding numbers and lengths that are found in other ways, over seeded random lists.
//
// Only crossing points are rounded, each along its edge and by at most half a unit. So a visible stretch P-Q
// of a segment becomes P'-Q' with |PP'|, |QQ'| <= 1/2 for ends that were cut and 0 for ends that were not,
// and every point of it moves by at most 1/2. That bounds what may differ:
//
// - length: |P'Q'| differs from |PQ| by at most 1/2 for each cut end. When rounding lays a stretch onto an
// edge, it
//   was within 1/2 of that edge. So the length inside lies between that in a frame smaller by 1/2 all around
//   and that in the frame itself, give or take 1/2 for each cut end;
// - which points are enclosed, and how often: unchanged farther than 1/2 from all segments.
//
// Lists whose segments run along the axes or diagonally cross edges at whole coordinates: nothing may differ.
#include <algorithm>
#include <cmath>
#include <random>

#include "geometry_testing.h"
#include "zul/geometry/rect.h"

namespace zul::testing {
namespace {

constexpr int CaseCount = 50000;  // of rings, and again of open lists
constexpr double Slack = 1e-6;    // of sums of doubles

struct Case {
    std::uint64_t seed = 0;
    TRect frame = {};
    List list;
    bool exact = false;  // no crossing point needs rounding
};

std::string Describe(const Case& c, const List& result) {
    std::string text =
        "seed " + std::to_string(c.seed) + ", frame " +
        ::testing::PrintToString(std::vector<int>{c.frame.MinX, c.frame.MinY, c.frame.MaxX, c.frame.MaxY});
    for (const List* list : {&c.list, &result}) {
        text += list == &result ? "\nresult" : "\nlist";
        for (const TPoint& p : *list)
            text += " " + std::to_string(p.X) + "," + std::to_string(p.Y);
    }
    return text;
}

// --- making cases ---

class Maker {
public:
    explicit Maker(std::uint64_t seed) : m_Random(seed) {
        const int scales[] = {6, 40, 1000, 32767};
        m_Scale = scales[Pick(0, 3)];
        m_Case.seed = seed;
        const TPoint a = Place(1);
        const TPoint b = Place(1);
        m_Case.frame = {std::min(a.X, b.X), std::min(a.Y, b.Y), std::max(a.X, b.X), std::max(a.Y, b.Y)};
        if (Pick(0, 31) == 0) m_Case.frame = {MinCoord, MinCoord, MaxCoord, MaxCoord};
    }

    Case Ring() {
        switch (Pick(0, 2)) {
            case 0:
                Scatter(Pick(1, 12));
                break;
            case 1:
                Spiral();
                break;
            default:
                Walk(Pick(1, 30), true);
                m_Case.list.push_back({m_Case.list.front().X, m_Case.list.back().Y});
                m_Case.exact = true;
        }
        if (Pick(0, 3) == 0) m_Case.list.push_back(m_Case.list.front());
        return m_Case;
    }

    Case Line() {
        switch (Pick(0, 2)) {
            case 0:
                Scatter(Pick(2, 12));
                break;
            case 1:
                Walk(Pick(1, 40), false);
                break;
            default:
                Walk(Pick(1, 40), true);
                m_Case.exact = true;
        }
        return m_Case;
    }

private:
    int Pick(int low, int high) {
        return low + static_cast<int>(m_Random() % static_cast<unsigned>(high - low + 1));
    }

    static TPoint Cut(int x, int y) { return {SaturateToCoord(x), SaturateToCoord(y)}; }

    TPoint Place(int factor) {
        const int reach = std::min(factor * m_Scale, 32768);
        return Cut(Pick(-reach, reach), Pick(-reach, reach));
    }

    // Anywhere about the frame, often on its border lines or at the limits of the range.
    void Scatter(int count) {
        const TRect& f = m_Case.frame;
        const TCoord xs[] = {f.MinX, f.MaxX, MinCoord, MaxCoord};
        const TCoord ys[] = {f.MinY, f.MaxY, MinCoord, MaxCoord};
        for (int i = 0; i < count; ++i) {
            TPoint p = Place(2);
            if (Pick(0, 5) == 0) p.X = xs[Pick(0, 3)];
            if (Pick(0, 5) == 0) p.Y = ys[Pick(0, 3)];
            m_Case.list.push_back(p);
        }
    }

    // A band that winds about the frame, outwards and back.
    void Spiral() {
        const double cx = (m_Case.frame.MinX + m_Case.frame.MaxX) / 2.0;
        const double cy = (m_Case.frame.MinY + m_Case.frame.MaxY) / 2.0;
        const int steps = Pick(6, 40);
        const double growth = m_Scale * Pick(10, 100) / 2000.0;
        const double turn = Pick(0, 1) == 0 ? 0.7 : -0.7;
        const auto at = [&](int i, double width) {
            const double r = growth * (i + width);
            return Cut(static_cast<int>(cx + r * std::cos(turn * i)),
                       static_cast<int>(cy + r * std::sin(turn * i)));
        };
        for (int i = 0; i < steps; ++i)
            m_Case.list.push_back(at(i, 0));
        for (int i = steps - 1; i >= 0; --i)
            m_Case.list.push_back(at(i, 4));
    }

    // Step by step; with `octilinear` along the axes and diagonals only.
    void Walk(int count, bool octilinear) {
        const int step = std::max(1, m_Scale / Pick(1, 6));
        TPoint at = Place(1);
        m_Case.list.push_back(at);
        for (int i = 0; i < count; ++i) {
            const int length = Pick(1, step);
            const int dx = octilinear ? Pick(-1, 1) * length : Pick(-step, step);
            const int dy = octilinear ? Pick(-1, 1) * length : Pick(-step, step);
            if (Cut(at.X + dx, at.Y + dy) != WrapToPoint(at.X + dx, at.Y + dy)) continue;
            at = WrapToPoint(at.X + dx, at.Y + dy);
            m_Case.list.push_back(at);
        }
    }

    std::mt19937_64 m_Random;
    int m_Scale = 0;
    Case m_Case;
};

// --- measuring ---

double Distance(double dx, double dy) {
    return std::sqrt(dx * dx + dy * dy);
}

int WindingNumber(const List& ring, double x, double y) {
    int winding = 0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const TPoint& a = ring[i];
        const TPoint& b = ring[(i + 1) % ring.size()];
        const double left =
            (static_cast<double>(b.X) - a.X) * (y - a.Y) - (static_cast<double>(b.Y) - a.Y) * (x - a.X);
        if (a.Y <= y && b.Y > y && left > 0) ++winding;
        if (a.Y > y && b.Y <= y && left < 0) --winding;
    }
    return winding;
}

double DistanceTo(const List& ring, double x, double y) {
    double nearest = 1e9;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const TPoint& a = ring[i];
        const TPoint& b = ring[(i + 1) % ring.size()];
        const double dx = b.X - a.X;
        const double dy = b.Y - a.Y;
        const double square = dx * dx + dy * dy;
        const double t = square == 0 ? 0 : std::clamp(((x - a.X) * dx + (y - a.Y) * dy) / square, 0.0, 1.0);
        nearest = std::min(nearest, Distance(a.X + t * dx - x, a.Y + t * dy - y));
    }
    return nearest;
}

/// How many ends lie outside, of segments that may reach the frame.
int CountCutEnds(const Case& c) {
    const CRect frame(c.frame);
    int ends = 0;
    for (std::size_t i = 1; i < c.list.size(); ++i) {
        const TPoint& a = c.list[i - 1];
        const TPoint& b = c.list[i];
        if (!frame.IsIntersect(std::min(a.X, b.X), std::min(a.Y, b.Y), std::max(a.X, b.X),
                               std::max(a.Y, b.Y)))
            continue;
        ends += (frame.IsInside(a.X, a.Y) ? 0 : 1) + (frame.IsInside(b.X, b.Y) ? 0 : 1);
    }
    return ends;
}

struct Box {
    double minX, minY, maxX, maxY;
};

/// The length of what of a line lies inside, without what runs along an edge, by the parts of each segment
/// that lie between both pairs of edges.
double LengthInside(const Box& f, const List& line) {
    double sum = 0;
    for (std::size_t i = 1; i < line.size(); ++i) {
        const TPoint& a = line[i - 1];
        const double dx = line[i].X - a.X, dy = line[i].Y - a.Y;
        const bool along =
            (dx == 0 && (a.X == f.minX || a.X == f.maxX)) || (dy == 0 && (a.Y == f.minY || a.Y == f.maxY));
        double from = along ? 1 : 0, to = 1;
        const auto cut = [&](double start, double step, double low, double high) {
            if (step == 0 && (start < low || start > high)) to = 0;
            if (step == 0) return;
            from = std::max(from, std::min((low - start) / step, (high - start) / step));
            to = std::min(to, std::max((low - start) / step, (high - start) / step));
        };
        cut(a.X, dx, f.minX, f.maxX);
        cut(a.Y, dy, f.minY, f.maxY);
        sum += std::max(0.0, to - from) * Distance(dx, dy);
    }
    return sum;
}

List Clip(const Case& c, bool closed) {
    CPoints result(true);
    Points(c.list).ClipByRect(c.frame.MinX, c.frame.MinY, c.frame.MaxX, c.frame.MaxY, result, closed);
    return Read(result);
}

bool AllInside(const Case& c, const List& result) {
    const CRect frame(c.frame);
    return std::all_of(result.begin(), result.end(),
                       [&](const TPoint& p) { return frame.IsInside(p.X, p.Y); });
}

TEST(ClipByRectProperty, RingsEncloseTheSamePointsAsOften) {
    int samples = 0;
    for (int i = 0; i < CaseCount; ++i) {
        const Case c = Maker(static_cast<std::uint64_t>(i)).Ring();
        const List result = Clip(c, true);
        ASSERT_TRUE(AllInside(c, result)) << Describe(c, result);
        ASSERT_LE(result.size(), 4 * c.list.size() + 8) << Describe(c, result);

        std::mt19937_64 random(static_cast<std::uint64_t>(i));
        for (int sample = 0; sample < 12; ++sample) {
            const auto between = [&](double low, double high) {
                return low + (high - low) * (static_cast<double>(random() >> 11) + 0.5) / 9007199254740992.0;
            };
            const double x = between(c.frame.MinX, c.frame.MaxX);
            const double y = between(c.frame.MinY, c.frame.MaxY);
            if (DistanceTo(c.list, x, y) < (c.exact ? Slack : 0.5 + Slack)) continue;
            if (!(x > c.frame.MinX && x < c.frame.MaxX && y > c.frame.MinY && y < c.frame.MaxY)) continue;
            ++samples;
            ASSERT_EQ(WindingNumber(result, x, y), WindingNumber(c.list, x, y))
                << "at " << x << "," << y << "\n"
                << Describe(c, result);
        }
    }
    // The property must not pass by comparing nothing.
    EXPECT_GT(samples, CaseCount * 4);
}

TEST(ClipByRectProperty, LinesKeepTheirLengthInside) {
    int compared = 0;
    int crossing = 0;
    for (int i = 0; i < CaseCount; ++i) {
        const Case c = Maker(static_cast<std::uint64_t>(CaseCount + i)).Line();
        const List result = Clip(c, false);
        ASSERT_TRUE(AllInside(c, result)) << Describe(c, result);
        ASSERT_LE(result.size(), 6 * c.list.size()) << Describe(c, result);
        if (c.list.size() < 2 || c.frame.MinX == c.frame.MaxX || c.frame.MinY == c.frame.MaxY) continue;

        const Box frame = {double(c.frame.MinX), double(c.frame.MinY), double(c.frame.MaxX),
                           double(c.frame.MaxY)};
        const double length = LengthInside(frame, result);
        const double most = LengthInside(frame, c.list);
        const double slack = Slack * (1 + most * 1e-3);
        const int ends = CountCutEnds(c);
        ++compared;
        if (ends > 0 && most > 0) ++crossing;
        if (c.exact) {
            ASSERT_NEAR(length, most, slack) << Describe(c, result);
            continue;
        }
        ASSERT_LE(length, most + 0.5 * ends + slack) << Describe(c, result);
        if (c.frame.MaxX - c.frame.MinX < 2 || c.frame.MaxY - c.frame.MinY < 2) continue;
        const Box smaller = {frame.minX + 0.5, frame.minY + 0.5, frame.maxX - 0.5, frame.maxY - 0.5};
        const double least = LengthInside(smaller, c.list);
        ASSERT_GE(length, least - 0.5 * ends - slack) << Describe(c, result);
    }
    EXPECT_GT(compared, CaseCount / 2);
    EXPECT_GT(crossing, CaseCount / 3);
}

}  // namespace
}  // namespace zul::testing
