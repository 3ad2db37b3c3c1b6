#include "zul/geometry/rect.h"

#include "geometry_testing.h"
#include "zul/geometry/point.h"
#include "zul/kernel/message.h"

namespace zul::testing {
namespace {

using Bounds = std::vector<std::int32_t>;  // MinX, MinY, MaxX, MaxY; a failure prints them

Bounds BoundsOf(const CRect& r) {
    TCoord minX, minY, maxX, maxY;
    r.GetValue(minX, minY, maxX, maxY);
    return {minX, minY, maxX, maxY};
}

/// What an operation makes of a rectangle.
template <class Operation>
Bounds Made(CRect rect, Operation operation) {
    operation(rect);
    return BoundsOf(rect);
}

TEST(Rect, SettersRecordOnlyRealChanges) {
    CRect rect(5, 5, 1, 1);
    EXPECT_EQ(Recorded([&] { rect.SetValue(5, 5, 1, 1, true), rect.SetMaxY(1); }), 0u);
    EXPECT_EQ(BoundsOf(rect), (Bounds{5, 5, 1, 1})) << "equal values are not normalised";
    EXPECT_EQ(Recorded([&] { rect.SetMinX(0), rect.SetMinY(1), rect.SetMaxX(2), rect.SetMaxY(3); }), 4u);
    EXPECT_EQ(BoundsOf(rect), (Bounds{0, 1, 2, 3}));
    EXPECT_EQ(Recorded([&] { rect.SetValue(9, 8, 7, 6, true); }), 1u);
    EXPECT_EQ(BoundsOf(rect), (Bounds{7, 6, 9, 8}));
    EXPECT_EQ(Recorded([&] { rect.Clear(), rect.Clear(); }), 2u);
}

TEST(Rect, AreaAndCentreDoNotOverflow) {
    TCoord x = 0, y = 0;
    CRect(-32768, -32768, 32767, 32767).GetCenterPoint(x, y);
    EXPECT_EQ((TPoint{x, y}), (TPoint{-1, -1}));
    EXPECT_EQ(CRect(32767, -32768, -32768, 32767).GetArea(), -65535LL * 65535);
}

TEST(Rect, LongBoundsAreCutOnOneSideOnly) {
    CRect rect(0, 0, 0, 0);
    const TLongRect wide = {-40000, -40000, 40000, 40000};
    EXPECT_EQ(Recorded([&] { rect.SetValue(wide), rect.SetValue(wide); }), 2u);
    EXPECT_EQ(BoundsOf(rect), (Bounds{-32768, -32768, 32767, 32767}));
    rect.SetValue(TLongRect{40000, 32768, -40000, -32769});
    EXPECT_EQ(BoundsOf(rect), (Bounds{-25536, -32768, 25536, 32767}));
    EXPECT_EQ(BoundsOf(CRect(wide)), (Bounds{25536, 25536, -25536, -25536})) << "construction wraps";
}

TEST(Rect, AnalizePointNumbersTheZonesClockwise) {
    const CRect rect(0, 0, 10, 20);
    const int rows[][3] = {{-1, 21, 1}, {0, 21, 2},  {10, 21, 2}, {11, 21, 3}, {11, 20, 4},
                           {11, 0, 4},  {11, -1, 5}, {10, -1, 6}, {-1, -1, 7}, {-1, 0, 8},
                           {-1, 20, 8}, {0, 0, 10},  {10, 20, 10}};
    for (const auto& [x, y, zone] : rows) {
        EXPECT_EQ(static_cast<int>(rect.AnalizePoint(WrapToCoord(x), WrapToCoord(y))), zone) << x << "," << y;
        EXPECT_EQ(rect.IsInside(WrapToCoord(x), WrapToCoord(y)), zone == 10);
    }
    EXPECT_TRUE(CRect::IsBelong(10, -5, 0, 5, 10, 5));
    EXPECT_FALSE(CRect::IsBelong(10, 5, 0, -5, 11, 0));
}

TEST(Rect, RelationsOfTwoRectangles) {
    const auto check = [](const CRect& a, const CRect& b, bool inside, bool strictly, bool insideOf,
                          bool intersect, bool touch) {
        SCOPED_TRACE(::testing::PrintToString(BoundsOf(a)) + ::testing::PrintToString(BoundsOf(b)));
        EXPECT_EQ(a.IsInside(&b, true), inside);
        EXPECT_EQ(a.IsInside(&b, false), strictly);
        EXPECT_EQ(a.IsInsideOf(&b, true), insideOf);
        EXPECT_EQ(a.IsInsideOf(b.GetMinX(), b.GetMinY(), b.GetMaxX(), b.GetMaxY(), true), insideOf);
        EXPECT_EQ(a.IsIntersect(&b), intersect);
        EXPECT_EQ(b.IsIntersect(&a), intersect);
        EXPECT_EQ(a.IsTouch(&b), touch);
    };
    const CRect rect(0, 0, 10, 10);
    check(rect, CRect(2, 2, 8, 8), true, true, false, true, false);
    check(rect, CRect(0, 2, 8, 8), true, false, false, true, true);
    check(CRect(2, 2, 8, 8), rect, false, false, true, true, false);
    check(rect, CRect(10, 10, 20, 20), false, false, false, true, true);
    check(rect, CRect(11, 2, 20, 8), false, false, false, false, false);
    check(rect, CRect(12, -9, 15, 0), false, false, false, false, true);
    // One coordinate in common is enough to touch.
    check(CRect(0, 0, 1, 1), CRect(1, 50, 9, 60), false, false, false, false, true);
}

TEST(Rect, NullRectangleIsNoRectangle) {
    CRect rect(1, 2, 3, 4);
    EXPECT_FALSE(rect.IsEqual(nullptr) || rect.IsInside(nullptr, true) || rect.IsInsideOf(nullptr, true) ||
                 rect.IsIntersect(nullptr) || rect.IsTouch(nullptr));
    EXPECT_EQ(Recorded([&] { rect.Intersect(nullptr), rect.Unite(nullptr); }), 0u);
}

TEST(Rect, InflateIsCutOutwardsAndTurnsInsideOutInwards) {
    const auto inflated = [](const CRect& rect, std::int32_t dx, std::int32_t dy, bool fits) {
        EXPECT_EQ(rect.CheckCoordBounds(dx, dy), fits);
        return Made(rect, [=](CRect& r) { r.Inflate(dx, dy); });
    };
    EXPECT_EQ(inflated({-32760, 0, 32760, 0}, 10, 10, false), (Bounds{-32768, -10, 32767, 10}));
    EXPECT_EQ(inflated({0, 0, 4, 4}, -3, -1, true), (Bounds{3, 1, 1, 3}));  // inside out, not collapsed
    EXPECT_EQ(inflated({0, 0, 0, 0}, 0, INT32_MAX, false), (Bounds{0, -32768, 0, 32767}));
    // An inverted span collapses to its middle; a height of -1 is not yet below -2.
    EXPECT_EQ(inflated({10, 9, -1, 8}, -1, -1, true), (Bounds{4, 10, 4, 7}));
}

TEST(Rect, IntersectAndUniteRecordOnlyWhatChanges) {
    const auto check = [](const CRect& other, const Bounds& common, const Bounds& both) {
        const Bounds old = {0, 0, 10, 10};
        CRect first(0, 0, 10, 10), second(0, 0, 10, 10);
        EXPECT_EQ(Recorded([&] { first.Intersect(&other); }), common == old ? 0u : 1u);
        EXPECT_EQ(Recorded([&] { second.Unite(&other); }), both == old ? 0u : 1u);
        EXPECT_EQ(BoundsOf(first), common);
        EXPECT_EQ(BoundsOf(second), both);
    };
    check({20, 20, 30, 30}, {0, 0, 10, 10}, {0, 0, 30, 30});  // nothing in common
    check({5, -5, 30, 6}, {5, 0, 10, 6}, {0, -5, 30, 10});
    check({2, 2, 3, 3}, {2, 2, 3, 3}, {0, 0, 10, 10});
    check({10, 10, 12, 12}, {10, 10, 10, 10}, {0, 0, 12, 12});
}

TEST(Rect, MoveAndScaleGoCornerByCorner) {
    const auto move = [](CRect& rect) { rect.Move(1, 1); };
    const auto scale = [](CRect& rect) { rect.Scale(0, 0, -1.0, 0.5); };
    EXPECT_EQ(Made({1, 2, 5, 10}, scale), (Bounds{-1, 1, -5, 5}));
    {
        Reports reports;
        EXPECT_EQ(Made({0, 0, 32767, 5}, move), (Bounds{1, 1, -32768, 6}));
        EXPECT_EQ(reports.Get(), std::vector<std::string>{"5 Exceeds TCoord limits: Point::Move"});
    }
    // A report that throws leaves both corners where they were.
    CThrowingErrorHandler handler;
    const CErrorHandlerScope scope(&handler);
    CRect rect(0, 0, 32767, 5);
    EXPECT_EQ(Recorded([&] { EXPECT_THROW(move(rect), CRunError); }), 0u);
    EXPECT_EQ(Recorded([&] { EXPECT_THROW(rect.Scale(5, 0, 2.0, 1.0), CRunError); }), 0u);
    EXPECT_EQ(BoundsOf(rect), (Bounds{0, 0, 32767, 5}));
}

TEST(Rect, RotateNeverMakesItNarrower) {
    const auto turned = [](const CRect& rect, TCoord centre, double degrees) {
        return Made(rect, [=](CRect& r) { r.Rotate(centre, centre, degrees); });
    };
    EXPECT_EQ(turned({0, 0, 10, 10}, 5, 45), (Bounds{-2, -2, 12, 12}));
    // Turned upright its width 10 is widened about the middle to one more than the old width.
    EXPECT_EQ(turned({0, 0, 100, 10}, 0, 90), (Bounds{-55, 0, 46, 100}));
    EXPECT_EQ(turned({0, 0, 101, 10}, 0, 90), (Bounds{-56, 0, 46, 101}));
    EXPECT_EQ(turned({10, 10, 0, 0}, 0, 0), (Bounds{0, 0, 10, 10}));
    CRect square(0, 0, 10, 10);
    EXPECT_EQ(Recorded([&] { square.Rotate(0, 0, 0); }), 0u);
}

TEST(Rect, FindTakesTheFirstCornerInReach) {
    const int rows[][4] = {{0, 0, 0, 0},   {1, 19, 1, 1}, {11, 21, 1, 2},   {10, 0, 0, 3},
                           {5, 10, 10, 0}, {2, 0, 1, -1}, {0, 0, 40000, -1}};  // the last reach wraps
    for (const auto& [x, y, tolerance, expected] : rows) {
        std::int32_t corner = -1;
        EXPECT_EQ(CRect(0, 0, 10, 20).Find(WrapToCoord(x), WrapToCoord(y), corner, tolerance), expected >= 0);
        EXPECT_EQ(corner, expected) << x << "," << y;
    }
}

TEST(Rect, HotPointsReplaceTheList) {
    CPoints points = Points({{99, 99}});
    CRect(-3, 0, 10, 20).GetHotPoints(points);
    EXPECT_EQ(Read(points),
              (List{{-3, 0}, {-3, 10}, {-3, 20}, {3, 20}, {10, 20}, {10, 10}, {10, 0}, {3, 0}}));
}

TEST(Rect, ProportionalBoxGrowsAboutItsMiddle) {
    const auto fitted = [](std::int32_t w, std::int32_t h, Bounds box) {
        CRect::GetProportional(w, h, box[0], box[1], box[2], box[3]);
        return box;
    };
    EXPECT_EQ(fitted(2, 1, {0, 0, 100, 100}), (Bounds{-50, 0, 150, 100}));
    EXPECT_EQ(fitted(1, 2, {0, 0, 100, 100}), (Bounds{0, -50, 100, 150}));
    EXPECT_EQ(fitted(3, 2, {0, 0, 10, 11}), (Bounds{-4, 0, 13, 11}));     // 17: 3 to the right, 4 to the left
    EXPECT_EQ(fitted(0, 0, {0, 0, 100, 100}), (Bounds{0, 50, 100, 50}));  // no ratio: no height
    // Whatever the numbers, nothing that a sanitizer objects to.
    const std::int32_t hostile[] = {INT32_MIN, -1, 0, 1, INT32_MAX};
    for (const std::int32_t w : hostile) {
        for (const std::int32_t h : hostile) {
            for (const std::int32_t low : hostile)
                fitted(w, h, {low, w, h, low});
        }
    }
}

TEST(Rect, AnswersItsMessagesAndNoOthers) {
    CRect rect(1, 2, 3, 4);
    TRect box = {};
    CMessage getMbr(u"getmbr", CMessage::FromPointer(&box));
    EXPECT_TRUE(rect.DoMessage(&getMbr));
    EXPECT_EQ(BoundsOf(CRect(box)), (Bounds{1, 2, 3, 4}));
    CMessage noAddress(u"GetMbr", 0);
    CMessage noCanvas(u"Draw", 0);
    CMessage foreign(u"Paint", CMessage::FromPointer(&box));
    CMessage coded(10080, 1);
    for (CMessage* message : {&noAddress, &noCanvas, &foreign, &coded, static_cast<CMessage*>(nullptr)})
        EXPECT_FALSE(rect.DoMessage(message));
    EXPECT_FALSE(rect.DoPaint(nullptr, nullptr));
}

TEST(Rect, BoxesOfFiguresArriveInEitherRecord) {
    CRect rect(1, 2, 3, 4), copy(0, 0, 0, 0);
    copy.SetValue(rect);
    CPoint point(5, 6);
    const CPoints points = Points({{7, 8}, {9, -1}});
    TRect box{};
    CRect read(0, 0, 0, 0);
    EXPECT_TRUE(copy.GetMbr(box) && copy.GetMbr(read));
    EXPECT_EQ(BoundsOf(CRect(box)), (Bounds{1, 2, 3, 4}));
    EXPECT_EQ(BoundsOf(read), (Bounds{1, 2, 3, 4}));
    EXPECT_TRUE(point.GetMbr(box) && point.GetMbr(read));
    EXPECT_EQ(BoundsOf(CRect(box)), (Bounds{5, 6, 5, 6}));
    EXPECT_EQ(BoundsOf(read), (Bounds{5, 6, 5, 6}));
    EXPECT_TRUE(points.GetMbr(read));
    EXPECT_EQ(BoundsOf(read), (Bounds{7, -1, 9, 8}));
    CString text(u"kept");
    EXPECT_FALSE(rect.ToString(text, nullptr) || point.ToString(text, nullptr));
    EXPECT_EQ(text, CString(u"kept"));
}

TEST(Rect, ReadsBackAndKeepsWhatAShortStreamDoesNotDeliver) {
    CRect written(-1, 300, -32768, 32767);
    CheckCutShort(written, CRect(5, 6, 7, 8));
}

}  // namespace
}  // namespace zul::testing
