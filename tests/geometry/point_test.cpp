#include "zul/geometry/point.h"

#include <cmath>
#include <limits>

#include "geometry_testing.h"
#include "zul/geometry/angle.h"
#include "zul/geometry/rect.h"

namespace zul::testing {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
const std::vector<std::string> Silence;

TEST(Point, SettersRecordOnlyRealChanges) {
    CPoint point(3, 4);
    const CPoint same(3, 4);
    EXPECT_EQ(Recorded([&] { point.SetValue(3, 4); }), 0u);
    EXPECT_EQ(Recorded([&] { point.SetValue(same); }), 0u);
    EXPECT_EQ(Recorded([&] { point.SetX(3); }), 0u);
    EXPECT_EQ(Recorded([&] { point.SetX(5); }), 1u);
    EXPECT_EQ(Recorded([&] { point.SetY(6); }), 1u);
    EXPECT_EQ(Recorded([&] { point.SetValue(7, 8); }), 1u);
    EXPECT_EQ(point.GetX(), 7);
    EXPECT_EQ(point.GetY(), 8);
}

TEST(Point, ClearIsAChangeEvenAtTheOrigin) {
    CPoint point(0, 0);
    EXPECT_EQ(Recorded([&] { point.Clear(); }), 1u);
}

TEST(Point, IsItsOwnBoundingBox) {
    CPoint point(-7, 9);
    CRect box(1, 2, 3, 4);
    EXPECT_TRUE(point.GetMbr(box));
    EXPECT_TRUE(box.IsEqual(-7, 9, -7, 9));
}

TEST(Point, MoveWrapsAfterReportingEachOverflow) {
    struct {
        TPoint from;
        std::int32_t dx, dy;
        TPoint to;
        std::size_t reports;
    } const rows[] = {
        {{1, 2}, 10, -20, {11, -18}, 0},
        {{32767, 0}, 0, 0, {32767, 0}, 0},
        {{32767, 0}, 1, 0, {-32768, 0}, 1},
        {{-32768, -32768}, -1, -1, {32767, 32767}, 2},
        {{0, 0}, INT32_MAX, INT32_MIN, {-1, 0}, 2},
    };
    for (const auto& row : rows) {
        Reports reports;
        TPoint p = row.from;
        CPoint::Move(p.X, p.Y, row.dx, row.dy);
        EXPECT_EQ(p, row.to);
        EXPECT_EQ(reports.Get(),
                  std::vector<std::string>(row.reports, "5 Exceeds TCoord limits: Point::Move"));
    }
}

TEST(Point, MoveThatThrowsChangesNothing) {
    CThrowingErrorHandler handler;
    const CErrorHandlerScope scope(&handler);
    TPoint p = {5, 32767};
    EXPECT_THROW(CPoint::Move(p.X, p.Y, 1, 1), CRunError);
    EXPECT_EQ(p, (TPoint{5, 32767}));
}

TEST(Point, ScaleRoundsBySignOfTheWholeValue) {
    struct {
        TPoint from, centre;
        double kx, ky;
        TPoint to;
        std::size_t reports;
    } const rows[] = {
        {{-3, 3}, {0, 0}, 0.5, 0.5, {-2, 2}, 0},
        {{1, -1}, {0, 0}, 0.0, 0.0, {0, 0}, 0},
        // -3.5 lies left of a centre whose sum is positive: 10 - 3.5 = 6.5 rounds up.
        {{3, 0}, {10, 0}, 0.5, 1.0, {7, 0}, 0},
        {{20000, 0}, {0, 0}, 2.0, 1.0, {-25536, 0}, 1},
        {{32767, -32768}, {0, 0}, 1.0, 1.0, {32767, -32768}, 2},  // the added half itself leaves the range
        {{0, 1}, {0, 0}, NaN, Infinity, {0, 32767}, 1},
    };
    for (const auto& row : rows) {
        Reports reports;
        TPoint p = row.from;
        CPoint::Scale(p.X, p.Y, row.centre.X, row.centre.Y, row.kx, row.ky);
        EXPECT_EQ(p, row.to);
        EXPECT_EQ(reports.Get(),
                  std::vector<std::string>(row.reports, "5 Exceeds TCoord limits: Point::Scale"));
    }
}

TEST(Point, ScaleStoresXBeforeItReportsY) {
    CThrowingErrorHandler handler;
    const CErrorHandlerScope scope(&handler);
    TPoint p = {10, 20000};
    EXPECT_THROW(CPoint::Scale(p.X, p.Y, 0, 0, 3.0, 3.0), CRunError);
    EXPECT_EQ(p, (TPoint{30, 20000}));
}

TEST(Point, RotateTurnsCounterClockwiseAndNeverReports) {
    struct {
        TPoint from, centre;
        double degrees;
        TPoint to;
    } const rows[] = {
        {{10, 0}, {0, 0}, 90, {0, 10}},  {{10, 0}, {0, 0}, -90, {0, -10}},
        {{12, 5}, {2, 5}, 180, {-8, 5}}, {{4, 0}, {0, 0}, 30, {3, 2}},
        {{3, 0}, {1, 1}, 0, {3, 0}},     {{32000, 32000}, {0, 0}, 45, {0, -20281}},  // 45255 wraps
        {{5, 6}, {1, 1}, NaN, {0, 0}},
    };
    for (const auto& row : rows) {
        Reports reports;
        TPoint p = row.from;
        CPoint::Rotate(p.X, p.Y, row.centre.X, row.centre.Y, row.degrees);
        EXPECT_EQ(p, row.to) << row.degrees;
        EXPECT_EQ(reports.Get(), Silence);
    }
}

TEST(Point, RotateChoosesTheHalfBeforeTheCentreIsAdded) {
    // The offset -0.5 turned by nothing: -0.5 + (-0.5 + 3) truncates to 2, though the sum 2.5 alone would
    // round to 3.
    TPoint p = {4, 0};
    CPoint::RotateEx(p.X, p.Y, 3, 0, 0.0, -0.5);
    EXPECT_EQ(p, (TPoint{2, 0}));
}

TEST(Point, RotateExKeepsTheLow16BitsOfA32BitResult) {
    TPoint p = {1, 1};
    CPoint::RotateEx(p.X, p.Y, 0, 0, 0.0, 100000.0);
    EXPECT_EQ(p, (TPoint{-31072, -31072}));
    p = {1, -1};
    CPoint::RotateEx(p.X, p.Y, 0, 0, 0.0, 1e300);
    EXPECT_EQ(p, (TPoint{-1, 0}));  // cut to the limits of 32 bits first
}

TEST(Point, BoundsAreCheckedAwayFromTheOrigin) {
    struct {
        TPoint at;
        std::int32_t dx, dy;
        bool inside;
    } const rows[] = {
        {{-32000, 0}, 800, 0, false}, {{-32000, 0}, 768, 0, true},   {{32000, 0}, 767, 0, true},
        {{32000, 0}, 768, 0, false},  {{0, -1}, 0, 32767, true},     {{0, -1}, 0, 32768, false},
        {{0, 0}, 32768, 0, false},    {{5, 5}, INT32_MAX, 0, false}, {{-5, 5}, INT32_MIN, 0, true},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(CPoint::CheckPointBounds(row.at.X, row.at.Y, row.dx, row.dy), row.inside)
            << row.at.X << " " << row.at.Y << " " << row.dx << " " << row.dy;
    }
}

TEST(Point, ReadsBackAndKeepsWhatAShortStreamDoesNotDeliver) {
    CMemoryStream stream;
    CPoint written(-300, 513);
    EXPECT_TRUE(written.ObjectToBuffer(&stream));
    ASSERT_EQ(stream.GetSize(), 4u);
    EXPECT_EQ(stream.GetBuffer()[2], 0x01);
    EXPECT_EQ(stream.GetBuffer()[3], 0x02);
    for (std::size_t size = 0; size <= 4; ++size) {
        CMemoryStream cut(stream.GetBuffer(), size);
        CPoint read(11, 12);
        EXPECT_EQ(Recorded([&] { EXPECT_TRUE(read.ObjectFromBuffer(&cut)); }), 0u);
        EXPECT_EQ(read.GetX(), size >= 2 ? -300 : 11);
        EXPECT_EQ(read.GetY(), size >= 4 ? 513 : 12);
    }
}

TEST(Point, FactoryMakesTheOrigin) {
    CFactory<CPoint> factory;
    alignas(std::max_align_t) unsigned char place[sizeof(CPoint)];
    auto* point = static_cast<CPoint*>(factory.CreateInstance(place));
    EXPECT_EQ(point->GetX(), 0);
    EXPECT_EQ(point->GetY(), 0);
    point->~CPoint();
}

TEST(Angle, NormalisesToOneTurn) {
    const double rows[][2] = {{-90, 270}, {720, 0}, {0, 0}, {359.5, 359.5}, {-720.25, 359.75}, {-1e-20, 360}};
    for (const auto& row : rows)
        EXPECT_EQ(CAngle::GetAngle360(row[0]), row[1]) << row[0];
}

TEST(Angle, HalfTurnFormTakesOffAtMostOneTurn) {
    const double rows[][2] = {{270, -90}, {180, 180}, {180.5, -179.5}, {-200, -200}, {600, 240}};
    for (const auto& row : rows)
        EXPECT_EQ(CAngle::GetAngle180(row[0]), row[1]) << row[0];
}

TEST(Angle, ConvertsWithTheMultiplicationFirst) {
    EXPECT_EQ(CAngle::DegreeToRadian(45.0), 45.0 * 3.141592653589793 / 180.0);
    EXPECT_DOUBLE_EQ(CAngle::RadianToDegree(CAngle::DegreeToRadian(-123.0)), -123.0);
}

TEST(Angle, OffsetMirrorsTheSecondComponent) {
    struct {
        double a, b, length;
        std::int32_t outA, outB, outLength;
    } const rows[] = {
        {3, 4, 10, 6, -8, 5},          {-3, -4, 2.5, -2, 2, 5},          // -1.5 and 2 away from zero
        {0, 0, 10, 0, 0, 0},           {1e200, 0, 10, 0, 0, INT32_MAX},  // the square overflows to infinity
        {1, 0, 1e12, INT32_MAX, 0, 1}, {NaN, 1, 1, 0, 0, 0},
    };
    for (const auto& row : rows) {
        std::int32_t outA = 77, outB = 77, outLength = 77;
        CAngle::FindDxDy(row.a, row.b, row.length, outA, outB, &outLength);
        EXPECT_EQ(outA, row.outA) << row.a;
        EXPECT_EQ(outB, row.outB) << row.a;
        EXPECT_EQ(outLength, row.outLength) << row.a;
    }
    double outA = 0, outB = 0, outLength = 0;
    CAngle::FindDxDy(1.0, -2.0, 1.0, outA, outB, &outLength);
    EXPECT_DOUBLE_EQ(outA, 1 / std::sqrt(5.0));
    EXPECT_DOUBLE_EQ(outB, 2 / std::sqrt(5.0));
    EXPECT_EQ(outLength, 2.0);  // rounded all the same
}

TEST(Angle, ArrowWingsStandAtTheTip) {
    struct {
        TLongPoint from, tip;
        bool mirror;
        TLongPoint a, b;
    } const rows[] = {
        {{0, 0}, {100, 0}, true, {187, 50}, {187, -50}},
        {{0, 0}, {100, 0}, false, {187, 50}, {187, 50}},
        // The other way round the constant 3.14 shows: 3.14 - 0.5236 turns the wing a little less than pi
        // would.
        {{1000, 0}, {0, 0}, true, {-865, 501}, {-865, -501}},
        {{0, 0}, {0, 100}, true, {-50, 187}, {50, 187}},
        {{0, 0}, {0, -100}, true, {50, -187}, {-50, -187}},
        {{7, 7}, {7, 7}, true, {7, 7}, {7, 7}},
        {{INT32_MIN, INT32_MIN},
         {INT32_MAX, INT32_MAX},
         true,
         {INT32_MIN + 25, INT32_MIN + 96},
         {INT32_MIN + 96, INT32_MIN + 25}},
    };
    for (const auto& row : rows) {
        const double length = row.from.X == 1000 ? 1000 : 100;
        TLongPoint a = {}, b = {};
        CAngle::FindDxDy(row.from.X, row.from.Y, row.tip.X, row.tip.Y, length, a.X, a.Y, b.X, b.Y, 30,
                         row.mirror);
        EXPECT_EQ(a, row.a) << a.X << " " << a.Y;
        EXPECT_EQ(b, row.b) << b.X << " " << b.Y;
    }
}

}  // namespace
}  // namespace zul::testing
