// Point lists that leave the visible rectangle, with list clipping on and off.
#include <gtest/gtest.h>

#include <random>

#include "tests/canvas/canvas_testing.h"
#include "zul/geometry/points.h"

namespace {

using namespace zultest;
using zul::CCanvas;
using zul::TPoint;

zul::CPoints List(const std::vector<TPoint>& points) {
    zul::CPoints list(true);
    for (const TPoint& point : points)
        list.Append(point.X, point.Y);
    return list;
}

/// Whether each black pixel of one picture has one of the other at most a pixel away, or lies on the border.
bool LinesFollow(const Picture& picture, const Picture& other) {
    const std::size_t size = picture.size();
    const auto isNear = [&other](std::size_t x, std::size_t y) {
        for (std::size_t i = 0; i < 9; ++i)
            if (other[y + i / 3 - 1][x + i % 3 - 1] == '#') return true;
        return false;
    };
    for (std::size_t y = 1; y + 1 < size; ++y)
        for (std::size_t x = 1; x + 1 < size; ++x)
            if (picture[y][x] == '#' && !isNear(x, y)) return false;
    return true;
}

/// 40 x 40 pixels over the map (0, 0)-(400, 400); the visible rectangle is (-50, -50)-(450, 450).
class ListClipping : public testing::Test {
protected:
    ListClipping() : m_Surface(40, 40) {
        SetUpSquare(m_Scaler, 40, 10);
        m_Surface.Canvas.SetScaler(&m_Scaler);
        m_Surface.Canvas.GetBrush().SetColor(Red);
    }

    /// Arguments of the last Polyline or Polygon without the device; empty when there was none.
    std::vector<std::int64_t> Drawn(zul::CPoints list, bool closed) {
        device::Recorder recorder;
        if (closed) {
            m_Surface.Canvas.Polygon(&list);
        } else {
            m_Surface.Canvas.Polyline(&list);
        }
        const device::RecordedCall* call = recorder.Last(closed ? "Polygon" : "Polyline");
        if (!call) return {};
        return {call->arguments.begin() + 1, call->arguments.end()};
    }

    zul::CScaler m_Scaler;
    Surface m_Surface;
};

using Numbers = std::vector<std::int64_t>;

TEST_F(ListClipping, InsideListsAreDrawnAsTheyAreEitherWay) {
    const zul::TRect frame = m_Scaler.GetExtVisible();
    ASSERT_EQ(frame.MinX, -50);
    ASSERT_EQ(frame.MaxY, 450);
    for (const bool clipping : {true, false}) {
        m_Surface.Canvas.SetListClipping(clipping);
        EXPECT_EQ(Drawn(List({{-50, 450}, {450, -50}}), false), (Numbers{2, -5, -5, 45, 45})) << clipping;
    }
}

TEST_F(ListClipping, LeavingListsAreCutOrDrawnWhole) {
    const std::vector<TPoint> leaving = {{200, 200}, {1000, 200}};
    EXPECT_EQ(Drawn(List(leaving), false), (Numbers{2, 20, 20, 45, 20}));
    m_Surface.Canvas.SetListClipping(false);
    EXPECT_EQ(Drawn(List(leaving), false), (Numbers{2, 20, 20, 100, 20}));
}

TEST_F(ListClipping, MissingListsAreLeftOutEitherWay) {
    for (const bool clipping : {true, false}) {
        m_Surface.Canvas.SetListClipping(clipping);
        for (const bool closed : {true, false}) {
            EXPECT_EQ(Drawn(List({{451, 0}, {500, 10}, {500, 300}}), closed), Numbers{})
                << clipping << closed;
            EXPECT_EQ(Drawn(List({{0, -51}, {10, -60}, {300, -900}}), closed), Numbers{})
                << clipping << closed;
        }
    }
}

TEST_F(ListClipping, ADiagonalPastTheCornerIsTheDeadSpotOfTheBoxTest) {
    // Its box meets the rectangle, the line itself does not.
    const std::vector<TPoint> past = {{440, 1000}, {1000, 440}};
    EXPECT_EQ(Drawn(List(past), false), Numbers{});
    m_Surface.Canvas.SetListClipping(false);
    EXPECT_EQ(Drawn(List(past), false), (Numbers{2, 44, -60, 100, -4}));
}

TEST_F(ListClipping, BothWaysShowTheSameLines) {
    m_Surface.Canvas.GetBrush().SetType(zul::CBrush::BrushNone);
    std::mt19937 random(20240607);
    std::uniform_int_distribution<int> coordinate(-1200, 1600);
    for (int round = 0; round < 1000; ++round) {
        const bool closed = round % 2 == 0;
        std::vector<TPoint> points(static_cast<std::size_t>(2 + round % 7));
        for (TPoint& point : points) {
            point.X = static_cast<zul::TCoord>(coordinate(random));
            point.Y = static_cast<zul::TCoord>(coordinate(random));
        }
        Picture pictures[2];
        for (const bool clipping : {true, false}) {
            m_Surface.Wipe();
            m_Surface.Canvas.SetListClipping(clipping);
            zul::CPoints list = List(points);
            if (closed) {
                m_Surface.Canvas.Polygon(&list);
            } else {
                m_Surface.Canvas.Polyline(&list);
            }
            pictures[clipping] = m_Surface.Look();
        }
        // A cut point comes down on a whole pixel, so the line may run up to half a pixel beside.
        EXPECT_TRUE(LinesFollow(pictures[0], pictures[1]) && LinesFollow(pictures[1], pictures[0]))
            << "round " << round;
    }
}

TEST_F(ListClipping, RotatedViewAsksTheTurnedRectangle) {
    m_Scaler.SetVisibleBox(100, 100, 300, 300, true);
    m_Scaler.SetRotationAngle(45.0);
    const zul::TRect frame = m_Scaler.GetExtVisible();
    ASSERT_LT(frame.MinX, 60) << "the turned box reaches beyond the box";
    for (const bool clipping : {true, false}) {
        m_Surface.Canvas.SetListClipping(clipping);
        m_Surface.Wipe();
        // On the left of the unturned box, but visible once turned.
        zul::CPoints list = List({{70, 190}, {95, 190}, {95, 210}, {70, 210}});
        m_Surface.Canvas.Polygon(&list);
        EXPECT_NE(m_Surface.Look(), m_Surface.Blank()) << clipping;
    }
}

TEST_F(ListClipping, ViewsAtTheEndOfTheCoordinatesWork) {
    zul::CScaler scaler;
    scaler.InitScaler({-32768, -32768, 32767, 32767}, {40, 40}, {40, 40}, 40.0, 1.0, 0.001);
    m_Surface.Canvas.SetScaler(&scaler);
    for (const bool clipping : {true, false}) {
        m_Surface.Canvas.SetListClipping(clipping);
        m_Surface.Wipe();
        zul::CPoints list = List({{-32768, -32768}, {32767, -32768}, {32767, 32767}, {-32768, 32767}});
        m_Surface.Canvas.Polygon(&list);
        EXPECT_EQ(m_Surface.Canvas.GetPixel(20, 20), Red) << clipping;
    }
}

}  // namespace
