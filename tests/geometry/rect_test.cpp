#include "zul/geometry/rect.h"

#include <limits>

#include "geometry_testing.h"
#include "zul/kernel/message.h"

namespace zul::testing {
namespace {

/// A rectangle's bounds, so that a table row is one line and a failure prints them.
struct B {
    int minX, minY, maxX, maxY;
    bool operator==(const B& o) const {
        return minX == o.minX && minY == o.minY && maxX == o.maxX && maxY == o.maxY;
    }
};

void PrintTo(const B& b, std::ostream* out) {
    *out << "(" << b.minX << "," << b.minY << "," << b.maxX << "," << b.maxY << ")";
}

B BoundsOf(const CRect& r) {
    return {r.GetMinX(), r.GetMinY(), r.GetMaxX(), r.GetMaxY()};
}

CRect Make(const B& b) {
    return CRect(WrapToCoord(b.minX), WrapToCoord(b.minY), WrapToCoord(b.maxX), WrapToCoord(b.maxY));
}

TEST(Rect, SettersRecordOnlyRealChanges) {
    CRect rect(1, 2, 3, 4);
    const CRect same(1, 2, 3, 4);
    EXPECT_EQ(Recorded([&] { rect.SetValue(1, 2, 3, 4, true); }), 0u);
    EXPECT_EQ(Recorded([&] { rect.SetValue(same); }), 0u);
    EXPECT_EQ(Recorded([&] { rect.SetMaxY(4); }), 0u);
    EXPECT_EQ(Recorded([&] { rect.SetMinX(0), rect.SetMinY(1), rect.SetMaxX(2), rect.SetMaxY(3); }), 4u);
    EXPECT_EQ(BoundsOf(rect), (B{0, 1, 2, 3}));
    EXPECT_EQ(Recorded([&] { rect.SetValue(9, 8, 7, 6, true); }), 1u);
    EXPECT_EQ(BoundsOf(rect), (B{7, 6, 9, 8}));
    EXPECT_EQ(Recorded([&] { rect.Clear(), rect.Clear(); }), 2u);
}

TEST(Rect, EqualInvertedValuesAreNotNormalised) {
    CRect rect(5, 5, 1, 1);
    rect.SetValue(5, 5, 1, 1, true);
    EXPECT_EQ(BoundsOf(rect), (B{5, 5, 1, 1}));
}

TEST(Rect, LongBoundsAreCutOnOneSideOnly) {
    CRect rect(0, 0, 0, 0);
    const TLongRect rows[][2] = {
        {{-40000, -40000, 40000, 40000}, {-32768, -32768, 32767, 32767}},
        {{40000, 32768, -40000, -32769}, {-25536, -32768, 25536, 32767}},
        {{INT32_MIN, INT32_MAX, INT32_MIN, INT32_MAX}, {-32768, -1, 0, 32767}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Recorded([&] { rect.SetValue(row[0]), rect.SetValue(row[0]); }), 2u);
        EXPECT_EQ(BoundsOf(rect), (B{row[1].MinX, row[1].MinY, row[1].MaxX, row[1].MaxY}));
    }
    EXPECT_EQ(BoundsOf(CRect(rows[0][0])), (B{25536, 25536, -25536, -25536}));  // construction wraps
}

TEST(Rect, MeasuresWithoutOverflow) {
    const CRect whole(-32768, -32768, 32767, 32767);
    EXPECT_EQ(whole.GetWidth(), 65535);
    EXPECT_EQ(whole.GetArea(), 65535LL * 65535);
    EXPECT_EQ(CRect(0, 0, -10, 5).GetArea(), -50);
    TCoord x = 0, y = 0;
    whole.GetCenterPoint(x, y);
    EXPECT_EQ(x, -1);
    EXPECT_EQ(y, -1);
}

TEST(Rect, AnalizePointNumbersTheZonesClockwise) {
    const CRect rect(0, 0, 10, 20);
    const struct {
        TCoord x, y;
        int zone;
    } rows[] = {
        {-1, 21, 1}, {0, 21, 2},   {10, 21, 2}, {11, 21, 3}, {11, 20, 4},    {11, 0, 4},
        {11, -1, 5}, {10, -1, 6},  {0, -1, 6},  {-1, -1, 7}, {-1, 0, 8},     {-1, 20, 8},
        {0, 0, 10},  {10, 20, 10}, {5, 5, 10},  {0, 20, 10}, {-32768, 5, 8}, {32767, 32767, 3},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(static_cast<int>(rect.AnalizePoint(row.x, row.y)), row.zone) << row.x << "," << row.y;
        EXPECT_EQ(rect.IsInside(row.x, row.y), row.zone == 10);
    }
}

TEST(Rect, RelationsOfTwoRectangles) {
    // inside, inside untouched, inside-of, intersect, touch
    const struct {
        B a, b;
        bool inside, strictly, insideOf, intersect, touch;
    } rows[] = {
        {{0, 0, 10, 10}, {2, 2, 8, 8}, true, true, false, true, false},
        {{0, 0, 10, 10}, {0, 2, 8, 8}, true, false, false, true, true},
        {{2, 2, 8, 8}, {0, 0, 10, 10}, false, false, true, true, false},
        {{0, 0, 10, 10}, {0, 0, 10, 10}, true, false, true, true, true},
        {{0, 0, 10, 10}, {10, 10, 20, 20}, false, false, false, true, true},
        {{0, 0, 10, 10}, {11, 0, 20, 10}, false, false, false, false, true},
        {{0, 0, 1, 1}, {1, 50, 9, 60}, false, false, false, false, true},  // one coordinate in common is
                                                                           // enough
        {{0, 0, 10, 10}, {3, 12, 5, 15}, false, false, false, false, false},
    };
    for (const auto& row : rows) {
        const CRect a = Make(row.a);
        const CRect b = Make(row.b);
        SCOPED_TRACE(::testing::PrintToString(row.a) + ::testing::PrintToString(row.b));
        EXPECT_EQ(a.IsInside(&b, true), row.inside);
        EXPECT_EQ(a.IsInside(&b, false), row.strictly);
        EXPECT_EQ(a.IsInsideOf(&b, true), row.insideOf);
        EXPECT_EQ(a.IsInsideOf(b.GetMinX(), b.GetMinY(), b.GetMaxX(), b.GetMaxY(), true), row.insideOf);
        EXPECT_EQ(a.IsIntersect(&b), row.intersect);
        EXPECT_EQ(b.IsIntersect(&a), row.intersect);
        EXPECT_EQ(a.IsTouch(&b), row.touch);
        EXPECT_EQ(b.IsTouch(&a), row.touch);
    }
}

TEST(Rect, NullRectangleIsNoRectangle) {
    CRect rect(1, 2, 3, 4);
    EXPECT_FALSE(rect.IsEqual(nullptr) || rect.IsInside(nullptr, true) || rect.IsInsideOf(nullptr, true) ||
                 rect.IsIntersect(nullptr) || rect.IsTouch(nullptr));
    EXPECT_EQ(Recorded([&] { rect.Intersect(nullptr), rect.Unite(nullptr); }), 0u);
    EXPECT_EQ(BoundsOf(rect), (B{1, 2, 3, 4}));
}

TEST(Rect, BelongTakesCornersInAnyOrder) {
    EXPECT_TRUE(CRect::IsBelong(10, -5, 0, 5, 10, 5));
    EXPECT_TRUE(CRect::IsBelong(0, 5, 10, -5, 0, -5));
    EXPECT_FALSE(CRect::IsBelong(10, 5, 0, -5, 11, 0));
}

TEST(Rect, InflateIsCutOutwardsAndTurnsInsideOutInwards) {
    const struct {
        B rect;
        std::int32_t dx, dy;
        B result;
        bool fits;
    } rows[] = {
        {{0, 0, 4, 4}, 2, 1, {-2, -1, 6, 5}, true},
        {{-32760, 0, 32760, 0}, 10, 10, {-32768, -10, 32767, 10}, false},
        {{0, 0, 4, 4}, -3, 0, {3, 0, 1, 4}, true},  // inside out, not collapsed
        {{0, 0, 4, 4}, -1, -2, {1, 2, 3, 2}, true},
        {{0, 0, 0, 0}, INT32_MAX, INT32_MAX, {-32768, -32768, 32767, 32767}, false},
    };
    for (const auto& row : rows) {
        CRect rect = Make(row.rect);
        EXPECT_EQ(rect.CheckCoordBounds(row.dx, row.dy), row.fits);
        EXPECT_EQ(Recorded([&] { rect.Inflate(row.dx, row.dy); }), 1u);
        EXPECT_EQ(BoundsOf(rect), row.result);
    }
}

TEST(Rect, DeflatedInvertedRectangleCollapsesToItsMiddle) {
    CRect rect(10, 9, -1, 8);
    rect.Inflate(-1, -1);
    EXPECT_EQ(BoundsOf(rect), (B{4, 10, 4, 7}));  // a height of -1 is not yet below -2
}

TEST(Rect, IntersectAndUniteRecordOnlyWhatChanges) {
    const struct {
        B rect, other, common, both;
        std::uint64_t commonRecords, bothRecords;
    } rows[] = {
        {{0, 0, 10, 10}, {20, 20, 30, 30}, {0, 0, 10, 10}, {0, 0, 30, 30}, 0, 1},
        {{0, 0, 10, 10}, {5, 5, 30, 30}, {5, 5, 10, 10}, {0, 0, 30, 30}, 1, 1},
        {{0, 0, 10, 10}, {-5, -5, 30, 30}, {0, 0, 10, 10}, {-5, -5, 30, 30}, 0, 1},
        {{0, 0, 10, 10}, {2, 2, 3, 3}, {2, 2, 3, 3}, {0, 0, 10, 10}, 1, 0},
        {{0, 0, 10, 10}, {10, 10, 12, 12}, {10, 10, 10, 10}, {0, 0, 12, 12}, 1, 1},
        {{0, 0, 0, 0}, {5, 5, 9, 9}, {0, 0, 0, 0}, {0, 0, 9, 9}, 0, 1},
    };
    for (const auto& row : rows) {
        const CRect other = Make(row.other);
        CRect common = Make(row.rect);
        CRect both = Make(row.rect);
        EXPECT_EQ(Recorded([&] { common.Intersect(&other); }), row.commonRecords);
        EXPECT_EQ(Recorded([&] { both.Unite(&other); }), row.bothRecords);
        EXPECT_EQ(BoundsOf(common), row.common);
        EXPECT_EQ(BoundsOf(both), row.both);
    }
}

TEST(Rect, MoveAndScaleGoCornerByCorner) {
    Reports reports;
    CRect rect(0, 0, 32767, 5);
    EXPECT_EQ(Recorded([&] { rect.Move(1, 1); }), 1u);
    EXPECT_EQ(BoundsOf(rect), (B{1, 1, -32768, 6}));
    CRect mirrored(1, 2, 5, 10);
    mirrored.Scale(0, 0, -1.0, 0.5);
    EXPECT_EQ(BoundsOf(mirrored), (B{-1, 1, -5, 5}));
    EXPECT_EQ(reports.Get(), std::vector<std::string>{"5 Exceeds TCoord limits: Point::Move"});
}

TEST(Rect, RotateNeverMakesItNarrower) {
    const struct {
        B rect;
        TPoint centre;
        double degrees;
        B result;
    } rows[] = {
        {{0, 0, 10, 10}, {0, 0}, 0, {0, 0, 10, 10}},
        {{0, 0, 10, 10}, {0, 0}, 90, {-10, 0, 0, 10}},
        {{0, 0, 10, 10}, {5, 5}, 45, {-2, -2, 12, 12}},
        // Height 10, width 100: turned upright its width 10 is widened about the middle to 100 + 1.
        {{0, 0, 100, 10}, {0, 0}, 90, {-55, 0, 46, 100}},
        {{0, 0, 101, 10}, {0, 0}, 90, {-56, 0, 46, 101}},
        {{10, 10, 0, 0}, {0, 0}, 0, {0, 0, 10, 10}},
    };
    for (const auto& row : rows) {
        CRect rect = Make(row.rect);
        rect.Rotate(row.centre.X, row.centre.Y, row.degrees);
        EXPECT_EQ(BoundsOf(rect), row.result) << row.degrees;
    }
    CRect square(0, 0, 10, 10);
    EXPECT_EQ(Recorded([&] { square.Rotate(0, 0, 0); }), 0u);
}

TEST(Rect, FindTakesTheFirstCornerInReach) {
    const CRect rect(0, 0, 10, 20);
    const struct {
        TCoord x, y;
        std::int32_t tolerance, corner;
    } rows[] = {
        {0, 0, 0, 0},  {1, 19, 1, 1},  {11, 21, 1, 2},    {10, 0, 0, 3}, {5, 10, 10, 0},
        {2, 0, 1, -1}, {0, 0, -1, -1}, {0, 0, 40000, -1},  // a reach past 32767 wraps and finds nothing
    };
    for (const auto& row : rows) {
        std::int32_t corner = -1;
        EXPECT_EQ(rect.Find(row.x, row.y, corner, row.tolerance), row.corner >= 0) << row.x << "," << row.y;
        EXPECT_EQ(corner, row.corner);
    }
}

TEST(Rect, HotPointsReplaceTheList) {
    CPoints points = Points({{99, 99}});
    CRect(-3, 0, 10, 20).GetHotPoints(points);
    EXPECT_EQ(Read(points),
              (List{{-3, 0}, {-3, 10}, {-3, 20}, {3, 20}, {10, 20}, {10, 10}, {10, 0}, {3, 0}}));
    EXPECT_EQ(Box(points), (std::vector<int>{-3, 0, 10, 20}));
}

TEST(Rect, ProportionalBoxGrowsAboutItsMiddle) {
    const struct {
        std::int32_t w, h;
        TLongRect box, result;
    } rows[] = {
        {2, 1, {0, 0, 100, 100}, {-50, 0, 150, 100}},
        {1, 2, {0, 0, 100, 100}, {0, -50, 100, 150}},
        {1, 1, {0, 0, 100, 100}, {0, 0, 100, 100}},
        {3, 2, {0, 0, 10, 11}, {-4, 0, 13, 11}},     // 16.5 + 0.5 makes 17: 3 to the right, 4 to the left
        {0, 0, {0, 0, 100, 100}, {0, 50, 100, 50}},  // no ratio: no height
    };
    for (const auto& row : rows) {
        TLongRect box = row.box;
        CRect::GetProportional(row.w, row.h, box.MinX, box.MinY, box.MaxX, box.MaxY);
        EXPECT_TRUE(box.MinX == row.result.MinX && box.MinY == row.result.MinY &&
                    box.MaxX == row.result.MaxX && box.MaxY == row.result.MaxY)
            << row.w << ":" << row.h << " gives " << box.MinX << "," << box.MinY << "," << box.MaxX << ","
            << box.MaxY;
    }
    // Whatever the numbers, no trap.
    const std::int32_t hostile[] = {INT32_MIN, -1, 0, 1, INT32_MAX};
    for (const std::int32_t w : hostile)
        for (const std::int32_t h : hostile)
            for (const std::int32_t low : hostile)
                for (const std::int32_t high : hostile) {
                    TLongRect box = {low, high, high, low};
                    CRect::GetProportional(w, h, box.MinX, box.MinY, box.MaxX, box.MaxY);
                }
}

TEST(Rect, AnswersItsMessagesAndNoOthers) {
    CRect rect(1, 2, 3, 4);
    TRect box = {};
    CMessage getMbr(u"getmbr", CMessage::FromPointer(&box));
    EXPECT_TRUE(rect.DoMessage(&getMbr));
    EXPECT_EQ(BoundsOf(CRect(box)), (B{1, 2, 3, 4}));
    CMessage noAddress(u"GetMbr", 0);
    CMessage noCanvas(u"Draw", 0);
    CMessage foreign(u"Paint", CMessage::FromPointer(&box));
    CMessage coded(10080, 1);
    EXPECT_FALSE(rect.DoMessage(&noAddress) || rect.DoMessage(&noCanvas) || rect.DoMessage(&foreign) ||
                 rect.DoMessage(&coded) || rect.DoMessage(nullptr) || rect.DoPaint(nullptr, nullptr));
}

TEST(Rect, ReadsBackAndKeepsWhatAShortStreamDoesNotDeliver) {
    CMemoryStream stream;
    CRect written(-1, 300, -32768, 32767);
    EXPECT_TRUE(written.ObjectToBuffer(&stream));
    ASSERT_EQ(stream.GetSize(), written.GetPreferredSize());
    for (std::size_t size = 0; size <= 8; ++size) {
        CMemoryStream cut(stream.GetBuffer(), size);
        CRect read(5, 6, 7, 8);
        EXPECT_EQ(Recorded([&] { EXPECT_TRUE(read.ObjectFromBuffer(&cut)); }), 0u);
        EXPECT_EQ(BoundsOf(read), (B{size >= 2 ? -1 : 5, size >= 4 ? 300 : 6, size >= 6 ? -32768 : 7,
                                     size >= 8 ? 32767 : 8}));
    }
}

}  // namespace
}  // namespace zul::testing
