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
            {"wholly inside, repeated points and all", {{5, 5}, {5, 5}, {9, 9}}, {{5, 5}, {5, 5}, {9, 9}}},
            {"crossing points away from zero", {{-5, 0}, {5, 1}}, {{0, 1}, {5, 1}}},
            {"misses a corner by half a unit", {{-10, 50}, {9, 70}}, {}},
            {"head and tail outside are dropped",
             {{-9, 99}, {-9, 30}, {9, 30}, {9, 99}, {200, 99}},
             {{0, 30}, {9, 30}, {9, 60}}},
            {"the long way around outside, the short way along the border",
             {{90, 30}, {120, 30}, {120, -20}, {-20, -20}, {-20, 80}, {90, 80}, {90, 50}},
             {{90, 30}, {100, 30}, {100, 60}, {90, 60}, {90, 50}}},
            {"to the opposite edge by the nearer side",
             {{10, 50}, {10, 70}, {-50, 70}, {-50, -90}, {10, -90}, {10, 1}},
             {{10, 50}, {10, 60}, {0, 60}, {0, 0}, {10, 0}, {10, 1}}},
        },
        Frame, false);
}

TEST(ClipByRect, Rings) {
    CheckAll(
        {
            {"inside, the first point repeated", {{5, 5}, {9, 5}, {9, 9}, {5, 5}}, {{5, 5}, {9, 5}, {9, 9}}},
            {"around it clockwise", {{-9, 99}, {200, 99}, {200, -9}, {-9, -9}}, WholeFrame},
            {"around it in a diamond", {{50, 32000}, {32000, 30}, {50, -32000}, {-32000, 30}}, WholeFrame},
            {"twice around",
             {{-9, 99}, {200, 99}, {200, -9}, {-9, -9}, {-8, 98}, {201, 98}, {201, -8}, {-8, -8}},
             {{0, 60}, {100, 60}, {100, 0}, {0, 0}, {0, 60}, {100, 60}, {100, 0}, {0, 0}}},
            {"around and back again", {{-9, 99}, {200, 99}, {200, -9}, {-9, -9}, {200, -9}, {200, 99}}, {}},
            {"corner cut off",
             {{50, 30}, {50, 90}, {150, 90}, {150, 30}},
             {{50, 30}, {50, 60}, {100, 60}, {100, 30}}},
            {"all but a notch",
             {{-9, -9}, {-9, 99}, {200, 99}, {200, -9}, {60, -9}, {50, 30}, {40, -9}},
             {{58, 0}, {50, 30}, {42, 0}, {0, 0}, {0, 60}, {100, 60}, {100, 0}}},
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
    EXPECT_EQ(Clipped({{50, -10}, {50, 110}}, {50, 0, 50, 60}, false), (List{{50, 0}, {50, 60}}));
}

TEST(ClipByRect, ListMayBeItsOwnResult) {
    CPoints points = Points({{50, 30}, {50, 90}, {150, 90}, {150, 30}});
    points.ClipByRect(0, 0, 100, 60, points, true);
    EXPECT_EQ(Read(points), (List{{50, 30}, {50, 60}, {100, 60}, {100, 30}}));
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
