#include <cmath>
#include <limits>
#include <random>

#include "geometry_testing.h"

namespace zul::testing {
namespace {

/// Points that now and then share a coordinate, lie close together or at the ends of the 16 bits.
class Points16 {
public:
    TPoint operator()() { return {Coord(), Coord()}; }

private:
    TCoord Coord() {
        const int kind = static_cast<int>(m_Random() % 4);
        if (kind == 0) return static_cast<TCoord>(m_Random() % 2 ? MaxCoord : MinCoord);
        const int span = kind == 1 ? 5 : kind == 2 ? 1000 : 65535;
        return static_cast<TCoord>(static_cast<int>(m_Random() % (static_cast<unsigned>(span) + 1)) -
                                   (span + 1) / 2);
    }
    std::mt19937 m_Random{2024};
};

std::int64_t Cross(TPoint a, TPoint b, TPoint p) {
    return std::int64_t{b.X - a.X} * (p.Y - a.Y) - std::int64_t{b.Y - a.Y} * (p.X - a.X);
}

/// Whether `rounded` is numerator / denominator to within half a unit and a `slack` in percent, where that
/// quotient fits 16 bits at all.
bool IsRounded(TCoord rounded, std::int64_t numerator, std::int64_t denominator, int slack) {
    const std::int64_t d = std::abs(denominator);
    if (std::abs(numerator) > d * 32767) return true;
    return std::abs(rounded * denominator - numerator) * 100 <= d * (50 + slack);
}

/// A ratio of whole numbers, rounded exactly, halves away from zero, to the low 16 bits.
TCoord RoundedRatio(std::int64_t numerator, std::int64_t denominator) {
    if (denominator < 0) return RoundedRatio(-numerator, -denominator);
    const std::int64_t size = (2 * std::abs(numerator) + denominator) / (2 * denominator);
    return WrapToCoord(numerator < 0 ? -size : size);
}

TDoublePoint Wide(TPoint p) {
    return {static_cast<double>(p.X), static_cast<double>(p.Y)};
}

TEST(PolylineGeometry, VerticalLinesHaveNoParameters) {
    double k = 7, b = 8;
    EXPECT_FALSE(CPoints::LineParams(3, 0, 3, 9, k, b));
    EXPECT_TRUE(k == 7 && b == 8);
    EXPECT_TRUE(CPoints::LineParams(INT32_MIN, 0, INT32_MAX, 0, k, b));
    EXPECT_EQ(k, 0);
    EXPECT_TRUE(CPoints::LineParams(TDoublePoint{0.5, 1}, TDoublePoint{1, 3}, k, b));
    EXPECT_TRUE(k == 4 && b == -1);
}

TEST(PolylineGeometry, CrossingsAreTheExactOnesRounded) {
    Points16 points;
    for (int i = 0; i < 50000; ++i) {
        const TPoint a = points(), b = points(), p = points(), q = points();
        SCOPED_TRACE(::testing::PrintToString(List{a, b, p, q}));
        const std::int64_t dx = b.X - a.X, dy = b.Y - a.Y, ex = q.X - p.X, ey = q.Y - p.Y;
        ASSERT_EQ(CPoints::FindInters(a, b, p.X, false),
                  dx == 0 ? a.Y : RoundedRatio(a.Y * dx + (p.X - a.X) * dy, dx));
        ASSERT_EQ(CPoints::FindInters(a, b, p.Y, true),
                  dy == 0 ? a.X : RoundedRatio(a.X * dy + (p.Y - a.Y) * dx, dy));

        TPoint at = {}, wide = {};
        const bool meets = CPoints::FindInters(a, b, p, q, at);
        ASSERT_EQ(meets, dx != 0 || ex != 0);
        ASSERT_EQ(CPoints::FindInters(Wide(a), Wide(b), Wide(p), Wide(q), wide), meets);
        ASSERT_EQ(at, wide);
        const std::int64_t across = dx * ey - dy * ex;
        if (across == 0) continue;
        const std::int64_t part = Cross(p, q, a);  // the crossing is a + (b - a) * part / across
        ASSERT_TRUE(IsRounded(at.X, a.X * across + dx * part, across, 5)) << at.X;
        // Where the crossing wraps in x, its y is still the one of the true x.
        ASSERT_TRUE(IsRounded(at.Y, a.Y * across + dy * part, across, 5)) << at.Y;
    }
}

TEST(PolylineGeometry, CrossingOfLinesBetweenWholeCoordinates) {
    const double inf = std::numeric_limits<double>::infinity();
    const struct {
        TDoublePoint a1, a2, b1, b2;
        bool meets;
        TPoint at;
    } rows[] = {
        {{0.25, 0}, {1.25, 1}, {0, 4.25}, {1, 3.25}, true, {2, 2}},    // at (2.25, 2)
        {{-0.5, 3}, {-0.5, 9}, {0, -1.6}, {1, -1.6}, true, {-1, -2}},  // x -0.5: away from zero
        {{0, 0.1}, {2, 0.5}, {7.4, 0}, {7.4, 1}, true, {7, 2}},        // y 1.58 at the unrounded x
        {{7.5, 0}, {7.5, 1}, {7.6, 0}, {7.6, 5}, false, {9, 9}},
        {{0, 0}, {1e9, 1}, {3e4, -1e9}, {3e4, 1e9}, true, {30000, 0}},
        {{0, 0}, {1, 1}, {0, 5}, {1, 6}, true, {32767, 32767}},  // parallel: cut at the ends
        {{inf, 0}, {inf, 1}, {0, 5}, {1, 6}, true, {32767, 32767}},
        {{-inf, 0}, {inf, 1}, {0, 5}, {1, 6}, true, {0, 0}},  // no number is 0
    };
    for (const auto& row : rows) {
        TPoint at = {9, 9};
        EXPECT_EQ(CPoints::FindInters(row.a1, row.a2, row.b1, row.b2, at), row.meets);
        EXPECT_EQ(at, row.at);
    }
    TDoublePoint exact = {};
    TPoint rounded = {};
    EXPECT_TRUE(CPoints::FindInters(TDoublePoint{0, 0.5}, TDoublePoint{1, 1.5}, -1, 1, exact));
    EXPECT_TRUE(exact.X == 0.25 && exact.Y == 0.75);
    EXPECT_TRUE(CPoints::FindInters(TDoublePoint{0, 0.5}, TDoublePoint{1, 1.5}, -1, 1, rounded));
    EXPECT_EQ(rounded, (TPoint{0, 1}));
    EXPECT_FALSE(CPoints::FindInters(TDoublePoint{0.5, 0.5}, TDoublePoint{0.5, 1.5}, -1, 1, exact));
}

TEST(PolylineGeometry, OffsetsLieAtTheirDistance) {
    Points16 points;
    for (int i = 0; i < 50000; ++i) {
        const TPoint a = points(), b = points();
        const double distance = (i % 200 - 100) * 1.3;
        SCOPED_TRACE(::testing::PrintToString(List{a, b}) + " by " + std::to_string(distance));
        const double dx = b.X - a.X, dy = b.Y - a.Y, length = std::hypot(dx, dy);
        TPoint outA = {}, outB = {}, on = {};
        CPoints::OffsetLine(a, b, distance, outA, outB);
        CPoints::OffsetPoint(a, b, distance, on.X, on.Y);
        if (length == 0) {
            ASSERT_TRUE(outA == a && outB == b && on == a);
            continue;
        }
        const TPoint moved = WrapToPoint(outA.X - a.X, outA.Y - a.Y);
        ASSERT_EQ(moved, WrapToPoint(outB.X - b.X, outB.Y - b.Y));
        const double side = dx < 0 ? -1 : 1;  // on the right of its way unless it runs to the left
        const double slack = 0.71 + std::abs(distance) * 0.0016;  // 3.14 is not quite pi
        ASSERT_NEAR((moved.X * dy - moved.Y * dx) / length * side, distance, slack);
        ASSERT_NEAR((moved.X * dx + moved.Y * dy) / length, 0, slack);

        // Divided last: a way of whole length ends exactly on a half where it should.
        const long double exactLength =
            std::hypot(static_cast<long double>(dx), static_cast<long double>(dy));
        ASSERT_EQ(on.X, RoundToCoord(static_cast<double>(a.X + distance * dx / exactLength)));
        ASSERT_EQ(on.Y, RoundToCoord(static_cast<double>(a.Y + distance * dy / exactLength)));
    }
}

TEST(PolylineGeometry, OffsetGoesToTheSameSideWhicheverWayTheSegmentRuns) {
    const auto check = [](TPoint a, TPoint b, double distance, TPoint outA, TPoint outB) {
        CPoints::OffsetLine(a, b, distance, b, a);  // the outputs may be the inputs
        EXPECT_EQ(b, outA);
        EXPECT_EQ(a, outB);
    };
    check({0, 0}, {10, 10}, 5, {4, -4}, {14, 6});
    check({10, 10}, {0, 0}, 5, {14, 6}, {4, -4});
    check({0, 0}, {0, 10}, 5, {5, 0}, {5, 10});
    check({7, 8}, {7, 8}, 5, {7, 8}, {7, 8});
    check({0, -32768}, {10, -32768}, 5, {0, 32763}, {10, 32763});     // wraps
    check({10000, 0}, {0, 0}, 10000, {9984, -10000}, {-16, -10000});  // 3.14 is a little less than pi
    check({0, 0}, {10, 0}, std::numeric_limits<double>::quiet_NaN(), {0, 0}, {10, 0});
}

TEST(PolylineGeometry, ClipByLineAddsACrossingWhereTheSideChanges) {
    Points16 points;
    for (int i = 0; i < 20000; ++i) {
        const TPoint a = points(), b = points();
        List list(8);
        std::generate(list.begin(), list.end(), points);
        SCOPED_TRACE(::testing::PrintToString(a) + ::testing::PrintToString(b) +
                     ::testing::PrintToString(list));
        CPoints clipped(true);
        CPoints::ClipByLine(list.data(), 8, a, b, clipped);
        const List out = Read(clipped);
        std::size_t next = 0;
        for (std::size_t j = 0; j < list.size(); ++j) {
            const std::int64_t now = Cross(a, b, list[j]);
            const std::int64_t before = j == 0 ? 0 : Cross(a, b, list[j - 1]);
            if ((now < 0 && before > 0) || (now > 0 && before < 0)) {
                ASSERT_LT(next, out.size());
                const TPoint p = list[j - 1];
                ASSERT_TRUE(IsRounded(out[next].X, p.X * (before - now) + (list[j].X - p.X) * before,
                                      before - now, 5));
                ASSERT_TRUE(IsRounded(out[next].Y, p.Y * (before - now) + (list[j].Y - p.Y) * before,
                                      before - now, 5));
                ++next;
            }
            if (now >= 0) {
                ASSERT_LT(next, out.size());
                ASSERT_EQ(out[next++], list[j]);
            }
        }
        ASSERT_EQ(next, out.size());
    }
}

}  // namespace
}  // namespace zul::testing
