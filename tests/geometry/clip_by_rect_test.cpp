#include "geometry_testing.h"
#include "zul/geometry/rect.h"

namespace zul::testing {
namespace {

constexpr TRect Frame = {0, 0, 100, 60};
const List WholeFrame = {{0, 60}, {100, 60}, {100, 0}, {0, 0}};

List Clipped(const List& list, const TRect& frame, bool closed) {
    CPoints result = Points({{12345, 12345}});
    Points(list).ClipByRect(frame.MinX, frame.MinY, frame.MaxX, frame.MaxY, result, closed);
    EXPECT_EQ(Box(result), Box(Points(Read(result))));
    return Read(result);
}

struct TRow {
    const char* what;
    List list, result;
};

void CheckAll(const std::vector<TRow>& rows, const TRect& frame, bool closed) {
    for (const TRow& row : rows)
        EXPECT_EQ(Clipped(row.list, frame, closed), row.result) << row.what;
}

TEST(ClipByRect, OpenLists) {
    CheckAll(
        {
            {"empty", {}, {}},
            {"a point inside", {{5, 5}}, {{5, 5}}},
            {"a point outside", {{-1, 5}}, {}},
            {"wholly inside, repeated points and all", {{5, 5}, {5, 5}, {9, 9}}, {{5, 5}, {5, 5}, {9, 9}}},
            {"along the border", {{0, 0}, {0, 60}, {50, 60}}, {{0, 0}, {0, 60}, {50, 60}}},
            {"right through", {{-10, 30}, {110, 30}}, {{0, 30}, {100, 30}}},
            {"through two corners", {{-100, -60}, {200, 120}}, {{0, 0}, {100, 60}}},
            {"crossing points away from zero", {{-5, 0}, {5, 1}}, {{0, 1}, {5, 1}}},
            {"touches a corner", {{-10, 50}, {10, 70}}, {{0, 60}}},
            {"misses a corner by half a unit", {{-10, 50}, {9, 70}}, {}},
            {"head and tail outside are dropped",
             {{-9, 99}, {-9, 30}, {9, 30}, {9, 99}, {200, 99}},
             {{0, 30}, {9, 30}, {9, 60}}},
            {"out and back over one edge",
             {{50, 50}, {50, 70}, {60, 70}, {60, 50}},
             {{50, 50}, {50, 60}, {60, 60}, {60, 50}}},
            {"out and back in one place", {{50, 50}, {50, 70}, {50, 50}}, {{50, 50}, {50, 60}, {50, 50}}},
            {"around a corner",
             {{90, 30}, {120, 30}, {120, 80}, {90, 80}, {90, 50}},
             {{90, 30}, {100, 30}, {100, 60}, {90, 60}, {90, 50}}},
            {"the long way around outside, the short way along the border",
             {{90, 30}, {120, 30}, {120, -20}, {-20, -20}, {-20, 80}, {90, 80}, {90, 50}},
             {{90, 30}, {100, 30}, {100, 60}, {90, 60}, {90, 50}}},
            {"to the opposite edge by the nearer side",
             {{10, 50}, {10, 70}, {-50, 70}, {-50, -90}, {10, -90}, {10, 1}},
             {{10, 50}, {10, 60}, {0, 60}, {0, 0}, {10, 0}, {10, 1}}},
            {"to the opposite edge by the other side",
             {{90, 50}, {90, 70}, {-50, 70}, {-50, -90}, {90, -90}, {90, 1}},
             {{90, 50}, {90, 60}, {100, 60}, {100, 0}, {90, 0}, {90, 1}}},
            {"outside beside the border only", {{-1, 0}, {-1, 60}, {50, 61}}, {}},
            {"comes in at a vertex on the border", {{-9, 30}, {0, 30}, {20, 31}}, {{0, 30}, {20, 31}}},
            {"from the border outwards", {{0, 30}, {-20, 30}}, {{0, 30}}},
            {"limits of the range", {{-32768, -32768}, {32767, 32767}}, {{0, 0}, {60, 60}}},
        },
        Frame, false);
}

TEST(ClipByRect, Rings) {
    CheckAll(
        {
            {"empty", {}, {}},
            {"a point inside", {{5, 5}}, {{5, 5}}},
            {"a point outside", {{-1, 5}}, {}},
            {"inside", {{5, 5}, {9, 5}, {9, 9}}, {{5, 5}, {9, 5}, {9, 9}}},
            {"inside, the first point repeated", {{5, 5}, {9, 5}, {9, 9}, {5, 5}}, {{5, 5}, {9, 5}, {9, 9}}},
            {"beside it", {{-9, 5}, {-5, 5}, {-5, 9}}, {}},
            {"past a corner, its box overlapping", {{-10, 55}, {4, 70}, {-10, 70}}, {}},
            {"around it clockwise", {{-9, 99}, {200, 99}, {200, -9}, {-9, -9}}, WholeFrame},
            {"around it counter-clockwise",
             {{-9, -9}, {200, -9}, {200, 99}, {-9, 99}},
             {{0, 0}, {100, 0}, {100, 60}, {0, 60}}},
            {"around it in a diamond", {{50, 32000}, {32000, 30}, {50, -32000}, {-32000, 30}}, WholeFrame},
            {"a triangle around it", {{-30000, -1}, {50, 30000}, {30000, -1}}, WholeFrame},
            {"twice around",
             {{-9, 99}, {200, 99}, {200, -9}, {-9, -9}, {-8, 98}, {201, 98}, {201, -8}, {-8, -8}},
             {{0, 60}, {100, 60}, {100, 0}, {0, 0}, {0, 60}, {100, 60}, {100, 0}, {0, 0}}},
            {"around and back again", {{-9, 99}, {200, 99}, {200, -9}, {-9, -9}, {200, -9}, {200, 99}}, {}},
            {"corner cut off",
             {{50, 30}, {50, 90}, {150, 90}, {150, 30}},
             {{50, 30}, {50, 60}, {100, 60}, {100, 30}}},
            {"the same, begun outside",
             {{150, 90}, {150, 30}, {50, 30}, {50, 90}},
             {{100, 30}, {50, 30}, {50, 60}, {100, 60}}},
            {"only an edge of it outside",
             {{10, 10}, {90, 10}, {90, 90}, {10, 90}},
             {{10, 10}, {90, 10}, {90, 60}, {10, 60}}},
            {"all but a notch",
             {{-9, -9}, {-9, 99}, {200, 99}, {200, -9}, {60, -9}, {50, 30}, {40, -9}},
             {{58, 0}, {50, 30}, {42, 0}, {0, 0}, {0, 60}, {100, 60}, {100, 0}}},
            {"a band through",
             {{-9, 20}, {200, 20}, {200, 40}, {-9, 40}},
             {{0, 20}, {100, 20}, {100, 40}, {0, 40}}},
            {"a concave ring in two parts",
             {{-20, 10}, {50, 10}, {50, 20}, {-10, 20}, {-10, 40}, {50, 40}, {50, 50}, {-20, 50}},
             {{0, 10}, {50, 10}, {50, 20}, {0, 20}, {0, 40}, {50, 40}, {50, 50}, {0, 50}}},
            {"a line there and back", {{-9, 30}, {50, 30}}, {{0, 30}, {50, 30}}},
            {"the frame itself", WholeFrame, WholeFrame},
        },
        Frame, true);
}

TEST(ClipByRect, FramesWithoutInside) {
    const List list = {{-10, 30}, {50, 50}, {110, 30}, {50, -50}};
    for (const bool closed : {false, true}) {
        EXPECT_EQ(Clipped(list, {100, 0, 0, 60}, closed), List{});
        EXPECT_EQ(Clipped(list, {0, 60, 100, 0}, closed), List{});
        // No area: what is left lies on the line or the point.
        for (const TRect& flat :
             {TRect{50, -100, 50, 100}, TRect{-100, 30, 100, 30}, TRect{50, 50, 50, 50}}) {
            const List left = Clipped(list, flat, closed);
            EXPECT_FALSE(left.empty());
            for (const TPoint& p : left)
                EXPECT_TRUE(CRect(flat).IsInside(p.X, p.Y));
        }
    }
    EXPECT_EQ(Clipped({{-10, 30}, {110, 30}}, {50, 0, 50, 60}, false), (List{{50, 30}}));
    EXPECT_EQ(Clipped({{50, -10}, {50, 110}}, {50, 0, 50, 60}, false), (List{{50, 0}, {50, 60}}));
}

TEST(ClipByRect, ListMayBeItsOwnResult) {
    CPoints points = Points({{50, 30}, {50, 90}, {150, 90}, {150, 30}});
    points.ClipByRect(0, 0, 100, 60, points, true);
    EXPECT_EQ(Read(points), (List{{50, 30}, {50, 60}, {100, 60}, {100, 30}}));
}

TEST(ClipByRect, WholeRangeAsFrameChangesNothing) {
    const List list = {{-32768, -32768}, {32767, -32768}, {0, 0}, {32767, 32767}, {-32768, 32767}};
    EXPECT_EQ(Clipped(list, {-32768, -32768, 32767, 32767}, true), list);
    EXPECT_EQ(Clipped(list, {-32768, -32768, 32767, 32767}, false), list);
}

// A quadratic way would take hours.
TEST(ClipByRect, MillionCrossingsTakeLinearTimeAndRoom) {
    CPoints zigzag(true);
    for (int i = 0; i < 1000000; ++i) {
        zigzag.Append(static_cast<TCoord>(i % 4 < 2 ? -100 : 200), static_cast<TCoord>(i % 97 - 20));
    }
    CPoints result(true);
    for (const bool closed : {false, true}) {
        zigzag.ClipByRect(0, 0, 100, 60, result, closed);
        EXPECT_GT(result.GetCount(), 500000u);
        EXPECT_LT(result.GetCount(), 3000000u);
    }
}

}  // namespace
}  // namespace zul::testing
