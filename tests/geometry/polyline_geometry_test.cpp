#include <limits>

#include "geometry_testing.h"

namespace zul::testing {
namespace {

TEST(PolylineGeometry, SideOfADirectedLine) {
    const struct {
        TPoint a, b, p;
        int side;
    } rows[] = {
        {{0, 0}, {10, 0}, {5, 5}, -1},
        {{0, 0}, {10, 0}, {5, -5}, 1},
        {{0, 0}, {10, 0}, {20, 0}, 0},
        {{10, 0}, {0, 0}, {5, 5}, 1},
        {{-32768, -32768}, {32767, 32767}, {32766, 32767}, -1},  // one unit off at full stretch
        {{-32768, -32768}, {32767, 32766}, {-1, -1}, -1},
        {{3, 3}, {3, 3}, {9, 1}, 0},
    };
    for (const auto& r : rows) {
        EXPECT_EQ(static_cast<int>(CPoints::DotToLine(r.a.X, r.a.Y, r.b.X, r.b.Y, r.p.X, r.p.Y)), r.side);
    }
}

TEST(PolylineGeometry, VerticalLinesHaveNoParameters) {
    double k = 7, b = 8;
    EXPECT_FALSE(CPoints::LineParams(3, 0, 3, 9, k, b));
    EXPECT_EQ(k, 7);
    EXPECT_EQ(b, 8);
    EXPECT_TRUE(CPoints::LineParams(INT32_MIN, 0, INT32_MAX, 0, k, b));
    EXPECT_EQ(k, 0);
    EXPECT_TRUE(CPoints::LineParams(TDoublePoint{0.5, 1}, TDoublePoint{1, 3}, k, b));
    EXPECT_EQ(k, 4);
    EXPECT_EQ(b, -1);
}

TEST(PolylineGeometry, CrossingWithACoordinateLineIsRounded) {
    const struct {
        TPoint a, b;
        TCoord c;
        bool byY;
        TCoord result;
    } rows[] = {
        {{0, 0}, {10, 10}, 4, false, 4},
        {{0, 0}, {10, 5}, 3, false, 2},    // 1.5
        {{0, 0}, {10, -5}, 3, false, -2},  // -1.5
        {{0, 0}, {5, 10}, 3, true, 2},
        {{3, 7}, {9, 7}, 100, true, 3},  // parallel: the first point's coordinate
        {{3, 7}, {3, 9}, 100, false, 7},
        {{-32768, -32768}, {32767, 32767}, 32767, true, 32767},
        {{-32768, 32767}, {32767, -32768}, -32768, true, 32767},
        {{0, 0}, {1, 100}, 1000, false, -31072},  // 100000 wraps
    };
    for (const auto& r : rows)
        EXPECT_EQ(CPoints::FindInters(r.a, r.b, r.c, r.byY), r.result);
}

TEST(PolylineGeometry, CrossingOfTwoLines) {
    const struct {
        TPoint a1, a2, b1, b2;
        bool meets;
        TPoint at;
    } rows[] = {
        {{0, 0}, {10, 10}, {0, 10}, {10, 0}, true, {5, 5}},
        {{0, 0}, {1, 0}, {100, 7}, {100, 9}, true, {100, 0}},  // lines, not segments
        {{4, 1}, {4, 2}, {0, 0}, {10, 5}, true, {4, 2}},
        {{4, 1}, {4, 2}, {5, 0}, {5, 5}, false, {9, 9}},
        {{4, 1}, {4, 2}, {4, 7}, {4, 9}, false, {9, 9}},
        {{0, 0}, {10, 0}, {0, 5}, {10, 5}, true, {32767, 0}},  // parallel: infinity cut to the range, no
                                                               // number to 0
        {{0, 0}, {10, 10}, {5, 5}, {20, 20}, true, {0, 0}},
    };
    for (const auto& r : rows) {
        TPoint at = {9, 9};
        EXPECT_EQ(CPoints::FindInters(r.a1, r.a2, r.b1, r.b2, at), r.meets);
        EXPECT_EQ(at, r.at);
    }
}

TEST(PolylineGeometry, OffsetGoesToTheSameSideWhicheverWayTheSegmentRuns) {
    const struct {
        TPoint a, b;
        double distance;
        TPoint outA, outB;
    } rows[] = {
        {{0, 0}, {10, 0}, 5, {0, -5}, {10, -5}},
        {{10, 0}, {0, 0}, 5, {10, -5}, {0, -5}},
        {{0, 0}, {10, 10}, 5, {4, -4}, {14, 6}},
        {{10, 10}, {0, 0}, 5, {14, 6}, {4, -4}},
        {{0, 0}, {0, 10}, 5, {5, 0}, {5, 10}},
        {{7, 8}, {7, 8}, 5, {7, 8}, {7, 8}},
        {{0, -32768}, {10, -32768}, 5, {0, 32763}, {10, 32763}},  // wraps
        {{0, 0}, {10, 0}, std::numeric_limits<double>::quiet_NaN(), {0, 0}, {10, 0}},
    };
    for (const auto& r : rows) {
        TPoint a = r.a, b = r.b;
        CPoints::OffsetLine(a, b, r.distance, b, a);  // the outputs may be the inputs
        EXPECT_EQ(b, r.outA);
        EXPECT_EQ(a, r.outB);
    }
}

TEST(PolylineGeometry, PointAtADistance) {
    const struct {
        TPoint a, b;
        double distance;
        TPoint at;
    } rows[] = {
        {{0, 0}, {30, 40}, 10, {6, 8}},
        {{0, 0}, {-30, -40}, 2.5, {-2, -2}},  // -1.5 away from zero
        {{5, 6}, {5, 6}, 10, {5, 6}},
        {{0, 0}, {1, 0}, -4, {-4, 0}},
    };
    for (const auto& r : rows) {
        TPoint at = {};
        CPoints::OffsetPoint(r.a, r.b, r.distance, at.X, at.Y);
        EXPECT_EQ(at, r.at);
    }
}

TEST(PolylineGeometry, ClipByLineKeepsTheLeft) {
    const struct {
        List list;
        TPoint a, b;
        List kept;
    } rows[] = {
        {{{0, 0}, {10, 0}}, {5, -1}, {5, 1}, {{0, 0}, {5, 0}}},
        {{{10, 0}, {0, 0}}, {5, -1}, {5, 1}, {{5, 0}, {0, 0}}},
        {{{0, 0}, {10, 0}}, {5, 1}, {5, -1}, {{5, 0}, {10, 0}}},
        // Through a point on the line: no crossing is added.
        {{{0, 0}, {5, 0}, {10, 0}, {5, 3}, {0, 0}}, {5, -1}, {5, 1}, {{0, 0}, {5, 0}, {5, 3}, {0, 0}}},
        // A vertical segment meets a sloping line.
        {{{4, 10}, {4, -10}}, {0, 0}, {8, 4}, {{4, 10}, {4, 2}}},
        {{{0, 5}, {10, 0}}, {0, 0}, {10, 10}, {{0, 5}, {3, 3}}},
        {{{6, 0}}, {5, -1}, {5, 1}, {}},
        {{{4, 0}}, {5, -1}, {5, 1}, {{4, 0}}},
        {{}, {5, -1}, {5, 1}, {}},
    };
    for (const auto& r : rows) {
        CPoints out(true);
        CPoints::ClipByLine(r.list.data(), static_cast<std::uint32_t>(r.list.size()), r.a, r.b, out);
        EXPECT_EQ(Read(out), r.kept);
    }
    CPoints grown = Points({{0, 0}, {10, 0}});
    CPoints::ClipByLine(grown.GetPoints(), 2, {5, -1}, {5, 1}, grown);
    EXPECT_EQ(Read(grown), (List{{0, 0}, {10, 0}, {0, 0}, {5, 0}}));
    CPoints::ClipByLine(nullptr, 3, {5, -1}, {5, 1}, grown);
    EXPECT_EQ(grown.GetCount(), 4u);
}

}  // namespace
}  // namespace zul::testing
