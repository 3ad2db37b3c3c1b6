#include <limits>

#include "geometry_testing.h"

namespace zul::testing {
namespace {

TEST(PolylineGeometry, SideOfADirectedLine) {
    const auto side = [](TPoint a, TPoint b, TPoint p) {
        return static_cast<int>(CPoints::DotToLine(a.X, a.Y, b.X, b.Y, p.X, p.Y));
    };
    EXPECT_EQ(side({0, 0}, {10, 0}, {5, 5}), -1);
    EXPECT_EQ(side({0, 0}, {10, 0}, {5, -5}), 1);
    EXPECT_EQ(side({0, 0}, {10, 0}, {20, 0}), 0);
    EXPECT_EQ(side({-32768, -32768}, {32767, 32767}, {32766, 32767}), -1);  // a unit off at full stretch
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

TEST(PolylineGeometry, CrossingWithACoordinateLineIsRounded) {
    const auto at = [](TPoint a, TPoint b, TCoord c, bool byY) { return CPoints::FindInters(a, b, c, byY); };
    EXPECT_EQ(at({0, 0}, {10, 5}, 3, false), 2);    // 1.5
    EXPECT_EQ(at({0, 0}, {10, -5}, 3, false), -2);  // -1.5
    EXPECT_EQ(at({3, 7}, {9, 7}, 100, true), 3);    // parallel: the first point's coordinate
    EXPECT_EQ(at({-32768, 32767}, {32767, -32768}, -32768, true), 32767);
    EXPECT_EQ(at({0, 0}, {1, 100}, 1000, false), -31072);  // 100000 wraps
}

TEST(PolylineGeometry, CrossingOfTwoLines) {
    const auto check = [](TPoint a1, TPoint a2, TPoint b1, TPoint b2, bool meets, TPoint expected) {
        TPoint at = {9, 9};
        EXPECT_EQ(CPoints::FindInters(a1, a2, b1, b2, at), meets);
        EXPECT_EQ(at, expected);
    };
    check({0, 0}, {10, 10}, {0, 10}, {10, 0}, true, {5, 5});
    check({0, 0}, {1, 0}, {100, 7}, {100, 9}, true, {100, 0});  // lines, not segments
    check({4, 1}, {4, 2}, {0, 0}, {10, 5}, true, {4, 2});
    check({4, 1}, {4, 2}, {4, 7}, {4, 9}, false, {9, 9});
    check({0, 0}, {10, 0}, {0, 5}, {10, 5}, true, {32767, 0});  // infinity is cut, no number is 0
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

TEST(PolylineGeometry, PointAtADistance) {
    const auto at = [](TPoint a, TPoint b, double distance) {
        TPoint out = {};
        CPoints::OffsetPoint(a, b, distance, out.X, out.Y);
        return out;
    };
    EXPECT_EQ(at({0, 0}, {30, 40}, 10), (TPoint{6, 8}));
    EXPECT_EQ(at({0, 0}, {-30, -40}, 2.5), (TPoint{-2, -2}));  // -1.5 away from zero
    EXPECT_EQ(at({5, 6}, {5, 6}, 10), (TPoint{5, 6}));
}

TEST(PolylineGeometry, ClipByLineKeepsTheLeft) {
    const auto kept = [](const List& list, TPoint a, TPoint b) {
        CPoints out(true);
        CPoints::ClipByLine(list.data(), static_cast<std::uint32_t>(list.size()), a, b, out);
        return Read(out);
    };
    EXPECT_EQ(kept({{0, 0}, {10, 0}}, {5, -1}, {5, 1}), (List{{0, 0}, {5, 0}}));
    EXPECT_EQ(kept({{0, 0}, {10, 0}}, {5, 1}, {5, -1}), (List{{5, 0}, {10, 0}}));
    // Through a point on the line: no crossing is added.
    EXPECT_EQ(kept({{0, 0}, {5, 0}, {10, 0}, {5, 3}, {0, 0}}, {5, -1}, {5, 1}),
              (List{{0, 0}, {5, 0}, {5, 3}, {0, 0}}));
    // A vertical segment meets a sloping line.
    EXPECT_EQ(kept({{4, 10}, {4, -10}}, {0, 0}, {8, 4}), (List{{4, 10}, {4, 2}}));
    EXPECT_EQ(kept({}, {5, -1}, {5, 1}), List{});
    CPoints grown = Points({{0, 0}, {10, 0}});
    CPoints::ClipByLine(grown.GetPoints(), 2, {5, -1}, {5, 1}, grown);
    CPoints::ClipByLine(nullptr, 3, {5, -1}, {5, 1}, grown);
    EXPECT_EQ(Read(grown), (List{{0, 0}, {10, 0}, {0, 0}, {5, 0}}));
}

}  // namespace
}  // namespace zul::testing
