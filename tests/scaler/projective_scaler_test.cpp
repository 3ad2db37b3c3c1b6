#include "zul/scaler/projective_scaler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "stored_scaler.h"
#include "zul/kernel/message.h"

namespace zul {
namespace {

/// From the screen below the horizon to the trapezoid, by Heckbert's closed form for a square and four
/// corners (Fundamentals of Texture Mapping and Image Warping, 1989): another road than the library's.
class COracle {
public:
    explicit COracle(CProjectiveScaler& scaler) {
        scaler.GetScreenSize(m_Width, m_Height);
        m_Horizon = std::round(scaler.GetHorizonY());
        TLongPoint p[4];  // near left, far left, far right, near right: (0,0) (0,1) (1,1) (1,0)
        scaler.GetMapCorners(p);
        const double dx1 = 1.0 * p[3].X - p[2].X, dx2 = 1.0 * p[1].X - p[2].X;
        const double dy1 = 1.0 * p[3].Y - p[2].Y, dy2 = 1.0 * p[1].Y - p[2].Y;
        const double sx = 1.0 * p[0].X - p[3].X + p[2].X - p[1].X;
        const double sy = 1.0 * p[0].Y - p[3].Y + p[2].Y - p[1].Y;
        const double area = dx1 * dy2 - dx2 * dy1;
        const double g = (sx * dy2 - dx2 * sy) / area, h = (dx1 * sy - sx * dy1) / area;
        const double x = p[0].X, y = p[0].Y;
        m_Square = {p[3].X - x + g * p[3].X,
                    p[1].X - x + h * p[1].X,
                    x,
                    p[3].Y - y + g * p[3].Y,
                    p[1].Y - y + h * p[1].Y,
                    y,
                    g,
                    h,
                    1.0};
    }

    TDoublePoint ToMap(double x, double y) const {
        const double u = x / m_Width, v = (m_Height - y) / (m_Height - m_Horizon);
        return {m_Square.X(u, v) / m_Square.Weight(u, v), m_Square.Y(u, v) / m_Square.Weight(u, v)};
    }

    std::int32_t m_Width = 0, m_Height = 0;
    double m_Horizon = 0.0;

private:
    TProjection m_Square{};
};

class ProjectiveScaler : public testing::Test {
protected:
    std::int32_t Pick(std::int32_t low, std::int32_t high) {
        return std::uniform_int_distribution<std::int32_t>(low, high)(random);
    }
    void ShowSomething(CProjectiveScaler& scaler) {
        const TSize screen{Pick(100, 2000), Pick(100, 2000)};
        scaler.InitScaler({-30000, -30000, 30000, 30000}, screen, screen, 38.0, 1.0, 0.0001);
        scaler.SetHorizonFraction(Pick(0, 3) / 5.0);
        const std::int32_t x = Pick(-3000, 3000), y = Pick(-6000, 2000), height = Pick(40, 2500);
        scaler.SetVisibleBox(x, y, x + height * screen.Width / screen.Height, y + height, true);
        scaler.SetSlopeDepth(height * Pick(10, 40) / 10);
        if (Pick(0, 2) != 0) scaler.SetRotationAngle(Pick(-3600, 3600) / 10.0);
    }
    std::mt19937 random{20261121};
};

TEST_F(ProjectiveScaler, MapsByTheFourCornersThereAndBack) {
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE(testing::Message() << "round " << round);
        CProjectiveScaler scaler;
        ShowSomething(scaler);
        const COracle oracle(scaler);
        for (int i = 0; i < 100; ++i) {
            const TLongPoint pixel{Pick(0, oracle.m_Width),
                                   Pick(static_cast<int>(oracle.m_Horizon), oracle.m_Height)};
            const TDoublePoint ground = oracle.ToMap(pixel.X, pixel.Y);
            TLongPoint map = pixel;
            scaler.ScreenToMapL(map.X, map.Y);
            ASSERT_NEAR(map.X, ground.X, 0.5 + 1e-6);
            ASSERT_NEAR(map.Y, ground.Y, 0.5 + 1e-6);
            TPoint narrow;
            scaler.ScreenToMapEx(pixel.X, pixel.Y, narrow.X, narrow.Y);
            ASSERT_EQ(narrow, (TPoint{SaturateToCoord(map.X), SaturateToCoord(map.Y)}));
            TLongPoint list[1] = {pixel};
            scaler.ScreenToMap(list, 1);
            ASSERT_EQ(list[0], map);

            // Back on the screen it is at most half a pixel from where it should be.
            TLongPoint screen;
            scaler.MapToScreen(map.X, map.Y, screen.X, screen.Y);
            const TDoublePoint back = oracle.ToMap(screen.X, screen.Y);
            const TDoublePoint beside = oracle.ToMap(screen.X + 1, screen.Y);
            const TDoublePoint above = oracle.ToMap(screen.X, screen.Y - 1);
            ASSERT_LE(std::abs(back.X - map.X),
                      0.52 * (std::abs(beside.X - back.X) + std::abs(above.X - back.X)));
            ASSERT_LE(std::abs(back.Y - map.Y),
                      0.52 * (std::abs(beside.Y - back.Y) + std::abs(above.Y - back.Y)));
            if (map != TLongPoint{narrow.X, narrow.Y}) continue;
            std::int32_t count = 1;
            scaler.MapToScreen(list, &narrow, count);
            ASSERT_EQ(list[0], screen);
            scaler.MapToScreenEx(list, &narrow, count);
            const std::int32_t beyond = std::abs(screen.X) - std::abs(list[0].X);
            ASSERT_TRUE(beyond == 0 || beyond == 1) << "truncated";
        }
        TLongRect query{};
        scaler.GetQueryRect(query, 5);
        const TRect& frame = scaler.GetExtVisible();
        TLongPoint corners[4];
        scaler.GetMapCorners(corners);
        for (const auto [x, y] : corners) {
            ASSERT_TRUE(x >= query.MinX && x <= query.MaxX && y >= query.MinY && y <= query.MaxY);
            const TPoint held{SaturateToCoord(x), SaturateToCoord(y)};
            ASSERT_TRUE(held.X >= frame.MinX && held.X <= frame.MaxX && held.Y >= frame.MinY &&
                        held.Y <= frame.MaxY);
        }
    }
}

TEST_F(ProjectiveScaler, ListsWithoutRoomForCutsLeaveOutWhatLiesBehindAndNothingElse) {
    for (int round = 0; round < 300; ++round) {
        CProjectiveScaler scaler;
        ShowSomething(scaler);
        std::vector<TPoint> points(static_cast<std::size_t>(Pick(2, 30)));
        for (TPoint& point : points)
            point = WrapToPoint(Pick(-32768, 32767), Pick(-32768, 32767));
        std::vector<TLongPoint> expected, mapped(2 * points.size() + 1, {7, 7});
        for (const TPoint& point : points) {
            TLongPoint pixel;
            scaler.MapToScreen(point.X, point.Y, pixel.X, pixel.Y);
            if (scaler.IsInFront(point.X, point.Y) && (expected.empty() || expected.back() != pixel))
                expected.push_back(pixel);
        }
        auto count = static_cast<std::int32_t>(points.size());
        ASSERT_EQ(scaler.GetFigureRoom(count), 2 * count);
        scaler.MapFigure(mapped.data(), points.data(), count, true);
        ASSERT_EQ(mapped.back(), (TLongPoint{7, 7})) << "written beyond the room";
        count = static_cast<std::int32_t>(points.size());
        scaler.MapToScreenTrunc(mapped.data(), points.data(), count);
        mapped.resize(static_cast<std::size_t>(count));
        ASSERT_EQ(mapped, expected) << "round " << round;
        TLongPoint a{points[0].X, points[0].Y}, b{points[1].X, points[1].Y};
        const bool isInFrontA = scaler.IsInFront(a.X, a.Y);
        ASSERT_EQ(scaler.CutSegment(a, b), isInFrontA || scaler.IsInFront(points[1].X, points[1].Y));
        ASSERT_TRUE(!isInFrontA || a == (TLongPoint{points[0].X, points[0].Y}));
    }
}

/// A map of 2000 x 1000 on 200 x 100 pixels; the box in view is (400, 100, 800, 300), half a pixel a unit.
class ProjectiveView : public testing::Test {
protected:
    ProjectiveView() {
        scaler.InitScaler({0, 0, 2000, 1000}, {200, 100}, {200, 100}, 40.0, 1.0, 0.02);
        scaler.Zoom(400, 100, 800, 300, true);
    }
    void ExpectCorners(const TLongPoint (&expected)[4]) {
        TLongPoint corners[4];
        scaler.GetMapCorners(corners);
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(corners[i], expected[i]) << i;
    }
    CProjectiveScaler scaler;
};

TEST_F(ProjectiveView, TrapezoidReachesOutFromTheVisibleBox) {
    ExpectCorners({{400, 100}, {-200, 900}, {1400, 900}, {800, 100}});
    scaler.SetSlopeDepth(200);  // one box height
    EXPECT_EQ(scaler.GetDepthFactor(), 1.5);
    ExpectCorners({{400, 100}, {-200, 600}, {1400, 600}, {800, 100}});
    scaler.SetSlopeDepth(5000);
    EXPECT_EQ(scaler.GetDepthFactor(), 10.0);
    scaler.SetSlopeDepth(400);
    EXPECT_EQ(scaler.GetDepthFactor(), 2.0);
    scaler.SetRotationAngle(90.0);  // clockwise about (600, 200)
    EXPECT_EQ(scaler.GetRotationAngle(), 0.0);
    ExpectCorners({{499, 400}, {1100, 1000}, {1100, -600}, {499, 0}});  // rounded as points turn
    TPoint nearPoint, farPoint;
    scaler.GetViewLine(nearPoint, farPoint);
    EXPECT_EQ(nearPoint, (TPoint{499, 200}));
    EXPECT_EQ(farPoint, (TPoint{1100, 200}));

    scaler.SetRotationAngle(0.0);
    scaler.SetVisibleBox(-30000, 20000, -25000, 22500, false);  // far corners beyond 16 bits stay straight
    ExpectCorners({{-30000, 20000}, {-37500, 27500}, {-17500, 27500}, {-25000, 20000}});
    EXPECT_EQ(scaler.GetExtVisible().MinX, MinCoord);
}

TEST_F(ProjectiveView, DepthOfReviewIsThatBeyondTheBox) {
    scaler.SetReviewDepth(300, nullptr);  // from (600, 100), a third of it high
    ExpectCorners({{500, 100}, {200, 500}, {1000, 500}, {700, 100}});
    const TPoint viewer{900, 50};
    scaler.SetReviewDepth(600, &viewer);
    ExpectCorners({{700, 50}, {100, 850}, {1700, 850}, {1100, 50}});
}

// The steps of navigation are walked at random elsewhere; these are what else changes a view.
TEST_F(ProjectiveView, TransformFollowsWhateverChangesTheView) {
    using TOperation = void (*)(CProjectiveScaler&);
    const TOperation operations[] = {
        [](CProjectiveScaler& s) { s.SetBaseScale(); },
        [](CProjectiveScaler& s) { s.SetMinScale(500.0); },
        [](CProjectiveScaler& s) { s.SetMapBounds(-300, -200, 700, 900); },
        [](CProjectiveScaler& s) {
            CScaler flat;
            flat.InitScaler({0, 0, 90, 90}, {90, 90}, {90, 90}, 40.0, 1.0, 0.0);
            s.ApplyScaler(&flat);
        },
        [](CProjectiveScaler& s) {
            TLongRect box{100, 200, 300, 400};
            CMessage m(10078, CMessage::FromPointer(&box));
            s.DoMessage(&m);
        },
    };
    int number = 0;
    for (const TOperation operation : operations) {
        SCOPED_TRACE(number++);
        operation(scaler);
        TLongPoint corners[4];
        scaler.GetMapCorners(corners);
        scaler.InitPerspective(nullptr);
        ExpectCorners(corners);
    }
}

TEST_F(ProjectiveView, LabelsStayOutOfTheUpperPart) {
    EXPECT_FALSE(scaler.IsDepthVisible(24));
    EXPECT_TRUE(scaler.IsDepthVisible(25));
    scaler.SetInscriptionClippingFraction(0.5);
    EXPECT_TRUE(scaler.IsDepthVisible(25)) << "with the next perspective";
    scaler.InitPerspective(nullptr);
    EXPECT_FALSE(scaler.IsDepthVisible(49));
    EXPECT_TRUE(CProjectiveScaler().IsDepthVisible(0));
}

TEST_F(ProjectiveView, QueryMarginIsThatOfTheFarEdge) {
    TLongRect rect{400, 100, 800, 300};
    scaler.PrepareQueryRect(rect, 0);
    EXPECT_EQ(rect, (TLongRect{-200, 100, 1400, 900}));
    rect = {400, 100, 800, 300};
    scaler.PrepareQueryRect(rect, 10);  // 4 times 800 units on 100 rows: 32 units a pixel
    EXPECT_EQ(rect, (TLongRect{-520, -220, 1720, 1220}));
}

TEST_F(ProjectiveView, PointsWithoutAnImageStayAsTheyWere) {
    const TPoint corners[] = {{0, 0}, {-300, 300}, {400, 300}, {100, 0}};  // 1 to 7: none at y = -50
    scaler.InitPerspective(corners);
    TLongPoint point{-77, 88};
    scaler.MapToScreen(12, -50, point.X, point.Y);
    EXPECT_EQ(point, (TLongPoint{-77, 88}));
    const TPoint in[] = {{12, -50}, {0, 0}};
    TLongPoint out[2] = {};
    std::int32_t count = 2;
    scaler.MapToScreen(out, in, count);
    EXPECT_EQ(out[0], (TLongPoint{12, -50}));
    EXPECT_EQ(out[1], (TLongPoint{0, 100}));
    EXPECT_FALSE(scaler.IsInFront(12, -50));
    scaler.MapToScreen(-30000, 30000, point.X, point.Y);
    const TLongPoint before = point;
    const TPoint onALine[] = {{0, 0}, {1, 1}, {2, 2}, {3, 0}};
    scaler.InitPerspective(onALine);
    scaler.MapToScreen(-30000, 30000, point.X, point.Y);
    EXPECT_EQ(point, before) << "changes nothing";
    TCoord x = 0, y = 0;
    scaler.ScreenToMap(INT32_MIN, INT32_MAX, x, y);  // any answer, but no overflow
    scaler.SetHorizonFraction(std::nan(""));
    EXPECT_EQ(scaler.GetHorizonFraction(), 0.0);
}

TEST(ProjectiveScalerWithoutScreen, MapsNothing) {
    CProjectiveScaler scaler;
    TLongPoint point{3, 4};
    scaler.MapToScreen(9, 9, point.X, point.Y);
    scaler.ScreenToMapL(point.X, point.Y);
    EXPECT_EQ(point, (TLongPoint{3, 4}));
    const TPoint in[] = {{1, 2}, {3, 4}};
    TLongPoint out[4] = {};
    for (std::int32_t given : {2, 0, -5}) {
        std::int32_t count = given;
        scaler.MapToScreenTrunc(out, in, count);
        EXPECT_EQ(count, 0);
        scaler.MapFigure(nullptr, in, count, true);
        EXPECT_EQ(count, 0);
    }
    scaler.SetSlopeDepth(100);
    scaler.SetReviewDepth(100, nullptr);
    scaler.InitScaler({0, 0, 0, 0}, {100, 100}, {100, 100}, 40.0, 0.0, 0.0);
    scaler.SetSlopeDepth(0);
    EXPECT_EQ(scaler.GetDepthFactor(), 1.5);
}

}  // namespace
}  // namespace zul
