// Point lists that leave the visible rectangle, with list clipping on and off.
#include <gtest/gtest.h>

#include <random>

#include "tests/canvas/canvas_testing.h"

namespace {

using namespace zultest;
using zul::CCanvas;
using zul::TPoint;

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

    void Draw(zul::CPoints list, bool closed) {
        if (closed) {
            m_Surface.Canvas.Polygon(&list);
        } else {
            m_Surface.Canvas.Polyline(&list);
        }
    }

    zul::CScaler m_Scaler;
    Surface m_Surface;
};

TEST_F(ListClipping, ListsAreCutDrawnOrLeftOut) {
    struct Row {
        const char* name;
        std::vector<TPoint> points;
        Numbers clipped, whole;  ///< what reaches the device with clipping on and off
    };
    const Row rows[] = {
        {"up to the border", {{-50, 450}, {450, -50}}, {2, -5, -5, 45, 45}, {2, -5, -5, 45, 45}},
        {"leaving", {{200, 200}, {1000, 200}}, {2, 20, 20, 45, 20}, {2, 20, 20, 100, 20}},
        {"its box meets, itself misses", {{440, 1000}, {1000, 440}}, {}, {2, 44, -60, 100, -4}},
        {"right", {{451, 0}, {500, 300}}, {}, {}},
        {"left", {{-51, 0}, {-500, 300}}, {}, {}},
        {"above", {{0, 451}, {300, 900}}, {}, {}},
        {"below", {{0, -51}, {300, -900}}, {}, {}},
    };
    for (const Row& row : rows) {
        for (const bool clipping : {true, false}) {
            m_Surface.Canvas.SetListClipping(clipping);
            device::Recorder recorder;
            Draw(List(row.points), false);
            EXPECT_EQ(Last(recorder, "Polyline"), clipping ? row.clipped : row.whole) << row.name;
        }
    }
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
            Draw(List(points), closed);
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
        Draw(List({{70, 190}, {95, 190}, {95, 210}, {70, 210}}), true);
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
        Draw(List({{-32768, -32768}, {32767, -32768}, {32767, 32767}, {-32768, 32767}}), true);
        EXPECT_EQ(m_Surface.Canvas.GetPixel(20, 20), Red) << clipping;
    }
}

}  // namespace
