#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "stored_scaler.h"
#include "zul/geometry/point.h"
#include "zul/kernel/numeric.h"

namespace zul {
namespace {

constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();

TEST(ScalerMapping, PointsRoundHalfAwayFromZero) {
    const auto mapped = [](double k, std::int32_t left, std::int32_t bottom, TLongPoint map) {
        CScaler scaler;
        SetMapping(scaler, k, left, bottom);
        TLongPoint screen{};
        scaler.MapToScreen(map.X, map.Y, screen.X, screen.Y);
        return screen;
    };
    EXPECT_EQ(mapped(2.0, 100, 500, {99, 501}), (TLongPoint{-2, -2}));
    EXPECT_EQ(mapped(0.5, 0, 0, {3, -3}), (TLongPoint{2, 2}));
    EXPECT_EQ(mapped(0.5, 0, 0, {1, 1}), (TLongPoint{1, -1}));
    EXPECT_EQ(mapped(0.49, 0, 0, {1, 1}), (TLongPoint{0, 0}));
    EXPECT_EQ(mapped(1.0, kMin, kMax, {kMax, kMin}), (TLongPoint{kMax, kMax}));
    EXPECT_EQ(mapped(1e-9, kMin, kMax, {kMax, kMin}), (TLongPoint{4, 4}));
}

TEST(ScalerMapping, LengthsRoundHalfAwayFromZeroBothWays) {
    CScaler scaler;
    SetMapping(scaler, 0.5, 1000, -1000);
    EXPECT_EQ(scaler.MapToScreen(3), 2);
    EXPECT_EQ(scaler.MapToScreen(-3), -2);
    EXPECT_EQ(scaler.ScreenToMap(kMax), kMax);
    SetMapping(scaler, 2.0, 0, 0);
    EXPECT_EQ(scaler.ScreenToMap(3), 2);
    EXPECT_EQ(scaler.ScreenToMap(-3), -2);
}

TEST(ScalerMapping, TurnedListsTruncateWhereOthersRound) {
    CScaler scaler;
    SetMapping(scaler, 0.5, 0, 0);
    const TPoint in[] = {{3, -3}};
    TLongPoint out[1];
    std::int32_t count = 1;
    scaler.MapToScreen(out, in, count);
    EXPECT_EQ(out[0], (TLongPoint{2, 2}));
    scaler.MapToScreenEx(out, in, count);
    EXPECT_EQ(out[0], (TLongPoint{1, 1}));
    scaler.MapToScreenEx(3, -3, out[0].X, out[0].Y);
    EXPECT_EQ(out[0], (TLongPoint{2, 2}));
    EXPECT_EQ(count, 1);
}

// Up to half a pixel is lost on the way to the screen and half a unit on the way back.
TEST(ScalerMapping, ListsEqualSinglePointsAndReturnWithinHalfAPixel) {
    for (const double k : {0.01, 0.3, 0.5, 1.0, 1.7, 40.0}) {
        CScaler scaler;
        SetMapping(scaler, k, -300, 20000);
        const double slack = 0.5 / k + 0.5;
        for (std::int32_t v = -30000; v <= 30000; v += 997) {
            const TPoint in = WrapToPoint(v, -v);
            TLongPoint screen{}, listed{};
            std::int32_t count = 1;
            scaler.MapToScreen(v, -v, screen.X, screen.Y);
            scaler.MapToScreen(&listed, &in, count);
            EXPECT_EQ(listed, screen);
            TPoint narrow{};
            scaler.ScreenToMap(screen.X, screen.Y, narrow.X, narrow.Y);
            scaler.ScreenToMapL(screen.X, screen.Y);
            EXPECT_LE(std::abs(screen.X - v), slack) << "k " << k;
            EXPECT_LE(std::abs(screen.Y + v), slack) << "k " << k;
            EXPECT_EQ(narrow, WrapToPoint(screen.X, screen.Y));
            scaler.ScreenToMap(&listed, 1);
            EXPECT_EQ(listed, screen);
        }
    }
}

/// 200 x 100 pixels over -500..1500 x 0..1000, so k is 0.1 and the pivot of a turned view (500, 500).
void InitTurned(CScaler& scaler, double degrees) {
    scaler.InitScaler({0, 0, 1000, 1000}, {200, 100}, {400, 200}, 40.0, 2.0, 0.0);
    scaler.SetRotationAngle(degrees);
}

TEST(ScalerMapping, SinglePointsAreTurnedAboutThePivotOnMapSide) {
    CScaler scaler;
    InitTurned(scaler, 90.0);
    TLongPoint screen{};
    scaler.MapToScreenEx(600, 500, screen.X, screen.Y);  // turned to (500, 600)
    EXPECT_EQ(screen, (TLongPoint{100, 40}));
    scaler.ScreenToMapEx(screen.X, screen.Y);
    EXPECT_EQ(screen, (TLongPoint{600, 500}));
}

TEST(ScalerMapping, ScreenListsAreTurnedBeforeScaling) {
    CScaler scaler;
    InitTurned(scaler, 90.0);
    // The pixel (100, 40) by -90 degrees about (500, 500) is (39, 900): -460 - 0.5 + 500 is truncated. The
    // low 16 bits of 65636 are 100.
    TLongPoint points[] = {{100, 40}, {65636, 40}};
    scaler.ScreenToMapEx(points, 2);
    const TLongPoint expected{-500 + 390, 1000 - 9000};
    EXPECT_EQ(points[0], expected);
    EXPECT_EQ(points[1], expected);
}

TEST(ScalerMapping, TurnedListsWrapTo16BitsAndTurnAtZeroToo) {
    CScaler scaler;
    SetMapping(scaler, 1.0, 0, 0);
    scaler.CenterMap(5, 5);  // pivot
    SetMapping(scaler, 1.0, 0, 0);
    const TPoint in[] = {{2, 2}, {MaxCoord, 0}};
    TLongPoint out[2];
    std::int32_t count = 2;
    scaler.MapToScreenEx(out, in, count);
    // A turn by 0 degrees truncates -3 - 0.5 + 5 to 1.
    EXPECT_EQ(out[0], (TLongPoint{1, -1}));

    InitTurned(scaler, 45.0);
    scaler.MapToScreenEx(out, in, count);
    TCoord x = MaxCoord, y = 0;
    CPoint::Rotate(x, y, 500, 500, 45.0);  // beyond 16 bits, wraps
    EXPECT_EQ(out[1], (TLongPoint{ToLong((x + 500) * 0.1), ToLong((1000 - y) * 0.1)}));
}

TEST(ScalerMapping, LengthsOfAScalerThatIsNotSetUpSaturate) {
    EXPECT_EQ(CScaler().ScreenToMap(0), 0);
    EXPECT_EQ(CScaler().ScreenToMap(-7), kMin);
}

}  // namespace
}  // namespace zul
