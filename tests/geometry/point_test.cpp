#include "zul/geometry/point.h"

#include <cmath>
#include <limits>

#include "geometry_testing.h"
#include "zul/geometry/angle.h"

namespace zul::testing {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

/// What an operation on bare coordinates makes of a point; it must report `text` that often.
template <class Operation>
TPoint Made(TPoint p, std::size_t reports, const char* text, Operation operation) {
    Reports made;
    operation(p.X, p.Y);
    EXPECT_EQ(made.Get(), std::vector<std::string>(reports, text));
    return p;
}

TEST(Point, RecordsOnlyRealChangesAndEveryClear) {
    CPoint point(3, 4);
    EXPECT_EQ(Recorded([&] { point.SetValue(3, 4), point.SetX(3), point.SetY(4); }), 0u);
    EXPECT_EQ(Recorded([&] { point.SetX(5), point.SetY(6), point.SetValue(CPoint(7, 8)); }), 3u);
    EXPECT_EQ(Stored(point), (std::vector<std::uint8_t>{7, 0, 8, 0}));
    EXPECT_EQ(Recorded([&] { point.Clear(), point.Clear(); }), 2u);
}

TEST(Point, ReadsBackAndKeepsWhatAShortStreamDoesNotDeliver) {
    CPoint written(-300, 513);
    CheckCutShort(written, CPoint(11, 12));
}

TEST(Point, MoveWrapsAfterReportingEachOverflow) {
    const auto moved = [](TPoint from, std::int32_t dx, std::int32_t dy, std::size_t reports) {
        return Made(from, reports, "5 Exceeds TCoord limits: Point::Move",
                    [=](TCoord& x, TCoord& y) { CPoint::Move(x, y, dx, dy); });
    };
    EXPECT_EQ(moved({1, 2}, 10, -20, 0), (TPoint{11, -18}));
    EXPECT_EQ(moved({-32768, -32768}, -1, -1, 2), (TPoint{32767, 32767}));
    EXPECT_EQ(moved({0, 0}, INT32_MAX, INT32_MIN, 2), (TPoint{-1, 0}));
}

TEST(Point, ScaleRoundsBySignOfTheWholeValue) {
    const auto scaled = [](TPoint from, TCoord cx, double kx, double ky, std::size_t reports) {
        return Made(from, reports, "5 Exceeds TCoord limits: Point::Scale",
                    [=](TCoord& x, TCoord& y) { CPoint::Scale(x, y, cx, 0, kx, ky); });
    };
    EXPECT_EQ(scaled({-3, 3}, 0, 0.5, 0.5, 0), (TPoint{-2, 2}));
    // -3.5 lies left of a centre whose sum is positive: 10 - 3.5 = 6.5 rounds up.
    EXPECT_EQ(scaled({3, 0}, 10, 0.5, 1.0, 0), (TPoint{7, 0}));
    EXPECT_EQ(scaled({20000, 0}, 0, 2.0, 1.0, 1), (TPoint{-25536, 0}));
    // The added half itself leaves the range.
    EXPECT_EQ(scaled({32767, -32768}, 0, 1.0, 1.0, 2), (TPoint{32767, -32768}));
    EXPECT_EQ(scaled({0, 1}, 0, NaN, Infinity, 1), (TPoint{0, 32767}));
}

TEST(Point, ReportThatThrowsStopsMoveBeforeBothAndScaleBetweenThem) {
    CThrowingErrorHandler handler;
    const CErrorHandlerScope scope(&handler);
    TPoint p = {10, 20000};
    EXPECT_THROW(CPoint::Move(p.X, p.Y, 1, 20000), CRunError);
    EXPECT_EQ(p, (TPoint{10, 20000}));
    EXPECT_THROW(CPoint::Scale(p.X, p.Y, 0, 0, 3.0, 3.0), CRunError);
    EXPECT_EQ(p, (TPoint{30, 20000}));
}

TEST(Point, RotateTurnsCounterClockwiseAndNeverReports) {
    const auto turned = [](TPoint from, TPoint centre, double degrees) {
        return Made(from, 0, "",
                    [=](TCoord& x, TCoord& y) { CPoint::Rotate(x, y, centre.X, centre.Y, degrees); });
    };
    EXPECT_EQ(turned({10, 0}, {0, 0}, 90), (TPoint{0, 10}));
    EXPECT_EQ(turned({12, 5}, {2, 5}, 180), (TPoint{-8, 5}));
    EXPECT_EQ(turned({4, 0}, {0, 0}, 30), (TPoint{3, 2}));
    EXPECT_EQ(turned({32000, 32000}, {0, 0}, 45), (TPoint{0, -20281}));  // 45255 wraps
    EXPECT_EQ(turned({5, 6}, {1, 1}, NaN), (TPoint{0, 0}));
}

TEST(Point, RotateExHalvesBeforeTheCentreIsAddedAndKeepsLowBits) {
    const auto turned = [](TPoint p, TCoord cx, double cosine) {
        CPoint::RotateEx(p.X, p.Y, cx, 0, 0.0, cosine);
        return p;
    };
    // -0.5 + (-0.5 + 3) truncates to 2, though the sum 2.5 alone would round to 3.
    EXPECT_EQ(turned({4, 0}, 3, -0.5), (TPoint{2, 0}));
    EXPECT_EQ(turned({3, 0}, 3, 1.0), (TPoint{3, 0}));  // an offset of zero counts as positive
    EXPECT_EQ(turned({1, 1}, 0, 100000.0), (TPoint{-31072, -31072}));
    EXPECT_EQ(turned({1, -1}, 0, 1e300), (TPoint{-1, 0}));  // cut to the limits of 32 bits first
}

TEST(Point, BoundsAreCheckedAwayFromTheOrigin) {
    EXPECT_FALSE(CPoint::CheckPointBounds(-32000, 0, 800, 0));
    EXPECT_TRUE(CPoint::CheckPointBounds(32000, -1, 767, 32767));
    EXPECT_FALSE(CPoint::CheckPointBounds(32000, 0, 768, 0));
    EXPECT_TRUE(CPoint::CheckPointBounds(-5, 5, INT32_MIN, 0));
}

TEST(Angle, NormalisesAsFarAsItSays) {
    EXPECT_EQ(CAngle::GetAngle360(-90), 270);
    EXPECT_EQ(CAngle::GetAngle360(-1e-20), 360);
    EXPECT_EQ(CAngle::GetAngle180(180), 180);
    EXPECT_EQ(CAngle::GetAngle180(600), 240);
    EXPECT_EQ(CAngle::GetAngle180(-200), -200);
    EXPECT_DOUBLE_EQ(CAngle::RadianToDegree(CAngle::DegreeToRadian(-123.0)), -123.0);
}

TEST(Angle, OffsetMirrorsTheSecondComponent) {
    const auto offset = [](double a, double b, double length) {
        std::vector<std::int32_t> out(3, 77);
        CAngle::FindDxDy(a, b, length, out[0], out[1], &out[2]);
        return out;
    };
    using Row = std::vector<std::int32_t>;
    EXPECT_EQ(offset(-3, -4, 2.5), (Row{-2, 2, 5}));  // -1.5 and 2 away from zero
    EXPECT_EQ(offset(0, 0, 10), (Row{0, 0, 0}));
    EXPECT_EQ(offset(1e200, 0, 10), (Row{0, 0, INT32_MAX}));  // the square overflows to infinity
    EXPECT_EQ(offset(1, 0, 1e12), (Row{INT32_MAX, 0, 1}));
    double outA = 0, outB = 0, outLength = 0;
    CAngle::FindDxDy(1.0, -2.0, 1.0, outA, outB, &outLength);
    EXPECT_DOUBLE_EQ(outB, 2 / std::sqrt(5.0));
    EXPECT_EQ(outLength, 2.0);  // rounded all the same
}

TEST(Angle, ArrowWingsStandAtTheTip) {
    const auto check = [](TLongPoint from, TLongPoint tip, double length, bool mirror, TLongPoint wingA,
                          TLongPoint wingB) {
        TLongPoint a = {}, b = {};
        CAngle::FindDxDy(from.X, from.Y, tip.X, tip.Y, length, a.X, a.Y, b.X, b.Y, 30, mirror);
        EXPECT_EQ(a, wingA) << a.X << " " << a.Y;
        EXPECT_EQ(b, wingB) << b.X << " " << b.Y;
    };
    check({0, 0}, {100, 0}, 100, true, {187, 50}, {187, -50});
    // The other way round 3.14 - 0.5236 turns the wing a little less than pi would.
    check({1000, 0}, {0, 0}, 1000, true, {-865, 501}, {-865, -501});
    check({0, 0}, {0, -100}, 100, true, {50, -187}, {-50, -187});
    check({7, 7}, {7, 7}, 100, true, {7, 7}, {7, 7});
    check({INT32_MIN, INT32_MIN}, {INT32_MAX, INT32_MAX}, 100, true, {INT32_MIN + 25, INT32_MIN + 96},
          {INT32_MIN + 96, INT32_MIN + 25});
}

}  // namespace
}  // namespace zul::testing
