// Clipping over seeded random lists.
//
// Only crossing points are rounded, each along its edge and by at most half a unit. So a visible stretch P-Q
// of a segment becomes P'-Q' with |PP'|, |QQ'| <= 1/2 for ends that were cut and 0 for ends that were not,
// and every point of it moves by at most 1/2. That bounds what may differ:
//
// - length: by at most 1/2 for each cut end. When rounding lays a stretch onto an edge, it was within 1/2 of
// that edge. So
//   the length inside lies between that in a frame smaller by 1/2 all around and that in the frame itself,
//   give or take 1/2 for each cut end;
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

constexpr int CaseCount = 30000;  // of rings, and again of open lists
constexpr double Slack = 1e-6;    // of sums of doubles

/// A frame and a list about it, made of a seed.
class Case {
public:
    Case(unsigned seed, bool closed) : exact(seed % 2 != 0), m_Random(seed) {
        const int scales[] = {6, 40, 1000, 32767};
        m_Scale = scales[Pick(0, 3)];
        const TPoint a = Place(1), b = Place(1);
        frame = {std::min(a.X, b.X), std::min(a.Y, b.Y), std::max(a.X, b.X), std::max(a.Y, b.Y)};
        if (Pick(0, 31) == 0) frame = {MinCoord, MinCoord, MaxCoord, MaxCoord};
        exact ? Walk(Pick(1, 30)) : Scatter(Pick(2, 12));
        if (exact && closed) list.push_back({list.front().X, list.back().Y});
        if ((closed || !exact) && Pick(0, 3) == 0) list.push_back(list.front());
    }
    List Clipped(bool closed) const {
        CPoints result(true);
        Points(list).ClipByRect(frame.MinX, frame.MinY, frame.MaxX, frame.MaxY, result, closed);
        return Read(result);
    }
    int Pick(int low, int high) {
        return low + static_cast<int>(m_Random() % static_cast<unsigned>(high - low + 1));
    }

    TRect frame{};
    List list;
    bool exact;  ///< no crossing point needs rounding

private:
    TPoint Place(int factor) {
        const int reach = std::min(factor * m_Scale, 32768);
        const TCoord x = SaturateToCoord(Pick(-reach, reach));
        return {x, SaturateToCoord(Pick(-reach, reach))};
    }
    /// Anywhere about the frame, often on its border lines or at the limits of the range.
    void Scatter(int count) {
        const TCoord xs[] = {frame.MinX, frame.MaxX, MinCoord, MaxCoord};
        const TCoord ys[] = {frame.MinY, frame.MaxY, MinCoord, MaxCoord};
        for (int i = 0; i < count; ++i) {
            TPoint p = Place(2);
            if (Pick(0, 5) == 0) p.X = xs[Pick(0, 3)];
            if (Pick(0, 5) == 0) p.Y = ys[Pick(0, 3)];
            list.push_back(p);
        }
    }
    /// Step by step along the axes and diagonals.
    void Walk(int count) {
        const int step = std::max(1, m_Scale / Pick(1, 6));
        list.push_back(Place(1));
        for (int i = 0; i < count; ++i) {
            const int length = Pick(1, step), dx = Pick(-1, 1) * length, dy = Pick(-1, 1) * length;
            const TPoint& at = list.back();
            const TPoint next{SaturateToCoord(at.X + dx), SaturateToCoord(at.Y + dy)};
            if (next == WrapToPoint(at.X + dx, at.Y + dy)) list.push_back(next);
        }
    }

    std::mt19937 m_Random;
    int m_Scale = 0;
};

void PrintTo(const Case& c, std::ostream* out) {
    *out << "frame " << c.frame.MinX << ',' << c.frame.MinY << ' ' << c.frame.MaxX << ',' << c.frame.MaxY
         << ::testing::PrintToString(c.list);
}

void ExpectInside(const Case& c, const List& result) {
    const CRect frame(c.frame);
    for (const TPoint& p : result)
        ASSERT_TRUE(frame.IsInside(p.X, p.Y)) << ::testing::PrintToString(c);
}

TEST(ClipByRectProperty, RingsEncloseTheSamePoints) {
    int samples = 0;
    for (unsigned seed = 0; seed < CaseCount && !::testing::Test::HasFailure(); ++seed) {
        Case c(seed, true);
        const List result = c.Clipped(true);
        ExpectInside(c, result);
        ASSERT_LE(result.size(), 4 * c.list.size() + 8) << ::testing::PrintToString(c);
        for (int sample = 0; sample < 8; ++sample) {
            // Off the whole coordinates, so that no point lies on a border.
            const double x = c.Pick(c.frame.MinX, c.frame.MaxX) + 0.37;
            const double y = c.Pick(c.frame.MinY, c.frame.MaxY) + 0.61;
            if (x > c.frame.MaxX || y > c.frame.MaxY) continue;
            if (DistanceTo(c.list, x, y) < (c.exact ? Slack : 0.5 + Slack)) continue;
            ++samples;
            ASSERT_EQ(WindingNumber(result, x, y), WindingNumber(c.list, x, y))
                << "at " << x << ',' << y << ' ' << ::testing::PrintToString(c);
        }
    }
    EXPECT_GT(samples, CaseCount * 2) << "compares nothing";
}

struct Box {
    double minX, minY, maxX, maxY;
};

/// The length of a line inside a box but off its edges, each segment cut by its parameters (Liang and Barsky,
/// 1984).
double LengthInside(const Box& box, const List& line) {
    double sum = 0;
    for (std::size_t i = 1; i < line.size(); ++i) {
        const TPoint &a = line[i - 1], &b = line[i];
        const double dx = b.X - a.X, dy = b.Y - a.Y;
        const bool along = (dx == 0 && (a.X == box.minX || a.X == box.maxX)) ||
                           (dy == 0 && (a.Y == box.minY || a.Y == box.maxY));
        double from = 0, to = along ? 0 : 1;
        for (const auto& [way, room] : {std::pair(-dx, a.X - box.minX), std::pair(dx, box.maxX - a.X),
                                        std::pair(-dy, a.Y - box.minY), std::pair(dy, box.maxY - a.Y)}) {
            if (way == 0 && room < 0) to = 0;
            if (way < 0) from = std::max(from, room / way);
            if (way > 0) to = std::min(to, room / way);
        }
        sum += std::max(0.0, to - from) * Distance(dx, dy);
    }
    return sum;
}

TEST(ClipByRectProperty, LinesKeepTheirLengthInside) {
    int crossing = 0;
    for (unsigned seed = 0; seed < CaseCount && !::testing::Test::HasFailure(); ++seed) {
        const Case c(seed, false);
        const List result = c.Clipped(false);
        ExpectInside(c, result);
        ASSERT_LE(result.size(), 6 * c.list.size()) << ::testing::PrintToString(c);
        if (c.frame.MaxX - c.frame.MinX < 2 || c.frame.MaxY - c.frame.MinY < 2) continue;
        const Box frame{double(c.frame.MinX), double(c.frame.MinY), double(c.frame.MaxX),
                        double(c.frame.MaxY)};
        const Box smaller{frame.minX + 0.5, frame.minY + 0.5, frame.maxX - 0.5, frame.maxY - 0.5};
        const double length = LengthInside(frame, result), most = LengthInside(frame, c.list);
        const CRect rect(c.frame);
        const auto outside = std::count_if(c.list.begin(), c.list.end(),
                                           [&](const TPoint& p) { return !rect.IsInside(p.X, p.Y); });
        // An end outside is cut once for each of its two segments.
        const double slack = Slack * (1 + most * 1e-3),
                     rounding = c.exact ? 0.0 : static_cast<double>(outside);
        ASSERT_LE(length, most + rounding + slack) << ::testing::PrintToString(c);
        ASSERT_GE(length, (c.exact ? most : LengthInside(smaller, c.list)) - rounding - slack)
            << ::testing::PrintToString(c);
        if (outside > 0 && most > 0) ++crossing;
    }
    EXPECT_GT(crossing, CaseCount / 4) << "compares nothing";
}

}  // namespace
}  // namespace zul::testing
