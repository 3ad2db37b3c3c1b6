#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "stored_scaler.h"
#include "zul/geometry/point.h"
#include "zul/kernel/numeric.h"

namespace zul {
namespace {

constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();

TEST(ScalerMapping, PointsRoundHalfAwayFromZero) {
    struct TRow {
        double k;
        std::int32_t left, bottom;
        TLongPoint map, screen;
    };
    const TRow rows[] = {
        {2.0, 100, 500, {101, 499}, {2, 2}},
        {2.0, 100, 500, {99, 501}, {-2, -2}},
        {0.5, 0, 0, {3, -3}, {2, 2}},
        {0.5, 0, 0, {-3, 3}, {-2, -2}},
        {0.5, 0, 0, {1, 1}, {1, -1}},
        {0.49, 0, 0, {1, 1}, {0, 0}},
        {1.0, kMin, kMax, {kMax, kMin}, {kMax, kMax}},
        {1.0, kMax, kMin, {kMin, kMax}, {kMin, kMin}},
        {1e-9, kMin, kMax, {kMax, kMin}, {4, 4}},
    };
    for (const TRow& row : rows) {
        CScaler scaler;
        SetMapping(scaler, row.k, row.left, row.bottom);
        TLongPoint screen{};
        scaler.MapToScreen(row.map.X, row.map.Y, screen.X, screen.Y);
        EXPECT_EQ(screen.X, row.screen.X) << "k " << row.k << " x " << row.map.X;
        EXPECT_EQ(screen.Y, row.screen.Y) << "k " << row.k << " y " << row.map.Y;
    }
}

TEST(ScalerMapping, LengthsRoundHalfAwayFromZeroBothWays) {
    CScaler scaler;
    SetMapping(scaler, 0.5, 1000, -1000);
    EXPECT_EQ(scaler.MapToScreen(3), 2);
    EXPECT_EQ(scaler.MapToScreen(-3), -2);
    EXPECT_EQ(scaler.ScreenToMap(3), 6);
    EXPECT_EQ(scaler.ScreenToMap(kMax), kMax);
    SetMapping(scaler, 2.0, 0, 0);
    EXPECT_EQ(scaler.ScreenToMap(3), 2);
    EXPECT_EQ(scaler.ScreenToMap(-3), -2);
    EXPECT_EQ(scaler.MapToScreen(kMin), kMin);
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

TEST(ScalerMapping, TruncLeavesOutRepeatedPixelsOnly) {
    CScaler scaler;
    SetMapping(scaler, 1.0, 0, 10);
    const TPoint in[] = {{5, 5}, {5, 5}, {6, 5}, {5, 5}};
    TLongPoint out[4];
    std::int32_t count = 4;
    scaler.MapToScreenTrunc(out, in, count);
    ASSERT_EQ(count, 3);
    EXPECT_EQ(out[0], (TLongPoint{5, 5}));
    EXPECT_EQ(out[1], (TLongPoint{6, 5}));
    EXPECT_EQ(out[2], (TLongPoint{5, 5}));
}

TEST(ScalerMapping, ListsWithoutPointsAreLeftAlone) {
    CScaler scaler;
    SetMapping(scaler, 2.0, 100, 500);
    TPoint in[1] = {{1, 1}};
    TLongPoint out[1] = {{7, 8}};
    for (const std::int32_t empty : {0, -1, kMin}) {
        std::int32_t count = empty;
        scaler.MapToScreenTrunc(out, in, count);
        EXPECT_EQ(count, 0);
        count = empty;
        scaler.MapToScreen(out, in, count);
        scaler.MapToScreenEx(out, in, count);
        scaler.ScreenToMap(out, empty);
        scaler.ScreenToMapEx(out, empty);
        EXPECT_EQ(count, empty);
    }
    std::int32_t count = 1;
    scaler.MapToScreen(out, nullptr, count);
    scaler.MapToScreenEx(nullptr, in, count);
    scaler.ScreenToMap(nullptr, 1);
    scaler.ScreenToMapEx(static_cast<TLongPoint*>(nullptr), 1);
    scaler.MapToScreenTrunc(nullptr, in, count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(out[0], (TLongPoint{7, 8}));
}

TEST(ScalerMapping, ListsEqualSinglePoints) {
    constexpr double kFactors[] = {1.0, -0.5,   0.0371, 65536.5,
                                   1e9, 1e-320, 1e300,  std::numeric_limits<double>::infinity()};
    std::mt19937 random(7);
    const auto noise = [&random] { return WrapToCoord(static_cast<int>(random())); };
    for (int round = 0; round < 200; ++round) {
        CScaler scaler;
        SetMapping(scaler, kFactors[random() % std::size(kFactors)], noise(), noise());
        std::vector<TPoint> in(random() % 30 + 1);
        for (TPoint& point : in)
            point = {noise(), noise()};
        std::vector<TLongPoint> out(in.size());
        auto count = static_cast<std::int32_t>(in.size());
        scaler.MapToScreen(out.data(), in.data(), count);
        for (std::size_t i = 0; i < in.size(); ++i) {
            TLongPoint single{};
            scaler.MapToScreen(in[i].X, in[i].Y, single.X, single.Y);
            ASSERT_EQ(out[i], single) << "round " << round << " point " << i;
            scaler.ScreenToMap(&out[i], 1);
            scaler.ScreenToMapL(single.X, single.Y);
            ASSERT_EQ(out[i], single) << "round " << round << " point " << i;
        }
    }
}

// Up to half a pixel is lost on the way to the screen and half a unit on the way back.
TEST(ScalerMapping, ScreenAndBackReturnsWithinHalfAPixel) {
    for (const double k : {0.01, 0.3, 0.5, 1.0, 1.7, 40.0}) {
        CScaler scaler;
        SetMapping(scaler, k, -300, 20000);
        const double slack = 0.5 / k + 0.5;
        for (std::int32_t v = -30000; v <= 30000; v += 997) {
            std::int32_t sx = 0, sy = 0;
            scaler.MapToScreen(v, -v, sx, sy);
            std::int32_t x = sx, y = sy;
            scaler.ScreenToMapL(x, y);
            EXPECT_LE(std::abs(x - v), slack) << "k " << k;
            EXPECT_LE(std::abs(y + v), slack) << "k " << k;
            TCoord shortX = 0, shortY = 0;
            scaler.ScreenToMap(sx, sy, shortX, shortY);
            EXPECT_EQ(shortX, WrapToCoord(x));
            EXPECT_EQ(shortY, WrapToCoord(y));
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
    TCoord x = 0, y = 0;
    scaler.ScreenToMapEx(screen.X, screen.Y, x, y);
    EXPECT_EQ(x, 600);
    EXPECT_EQ(y, 500);
    scaler.ScreenToMapEx(screen.X, screen.Y);
    EXPECT_EQ(screen, (TLongPoint{600, 500}));
    scaler.MapToScreen(600, 500, screen.X, screen.Y);
    EXPECT_EQ(screen, (TLongPoint{110, 50})) << "the plain form must not turn";
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

// Not set up, or set up with nonsense: finite values, and nothing that a sanitizer objects to.
TEST(ScalerMapping, FactorsWithoutMeaningStayDefined) {
    constexpr double kInf = std::numeric_limits<double>::infinity();
    for (const double k : {0.0, -0.0, kInf, -kInf, std::numeric_limits<double>::quiet_NaN(), 1e308, 5e-324}) {
        CScaler scaler;
        SetMapping(scaler, k, 100, kMin);
        scaler.SetRotationAngle(k == 0.0 ? kInf : 30.0);
        SetMapping(scaler, k, 100, kMin);
        const TPoint in[] = {{100, 0}, {-5, 7}, {MaxCoord, MinCoord}, {3, 4}, {3, 4}};
        TLongPoint out[5];
        std::int32_t count = 5;
        scaler.MapToScreen(out, in, count);
        if (std::isfinite(k)) {
            EXPECT_EQ(out[0].X, 0);
        }
        scaler.MapToScreenEx(out, in, count);
        scaler.ScreenToMapEx(out, count);
        scaler.ScreenToMap(out, count);
        scaler.MapToScreenTrunc(out, in, count);
        TCoord x = 0, y = 0;
        scaler.ScreenToMap(kMax, kMin, x, y);
        scaler.ScreenToMapEx(kMin, kMax, x, y);
        scaler.MapToScreenEx(MinCoord, MaxCoord, out[0].X, out[0].Y);
        EXPECT_EQ(scaler.MapToScreen(0), 0);
    }
    CScaler fresh;
    EXPECT_EQ(fresh.MapToScreen(12345), 0);
    EXPECT_EQ(fresh.ScreenToMap(0), 0);
    EXPECT_EQ(fresh.ScreenToMap(7), kMax);
    EXPECT_EQ(fresh.ScreenToMap(-7), kMin);
}

}  // namespace
}  // namespace zul
