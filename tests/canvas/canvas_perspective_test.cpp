// Figures that reach behind the viewer of a perspective view.
#include <gtest/gtest.h>

#include <random>

#include "tests/canvas/canvas_testing.h"
#include "zul/scaler/projective_scaler.h"

namespace {

using namespace zultest;

constexpr int kSize = 60;

class Perspective : public testing::TestWithParam<double> {
protected:
    Perspective() : m_Surface(kSize, kSize) {
        m_Scaler.InitScaler({-20000, -20000, 20000, 20000}, {kSize, kSize}, {kSize, kSize}, 40.0, 1.0, 0.001);
        m_Scaler.SetVisibleBox(-300, 200, 300, 800, true);
        m_Scaler.SetHorizonFraction(0.2);
        m_Scaler.SetRotationAngle(GetParam());
        m_Surface.Canvas.SetScaler(&m_Scaler);
        m_Surface.Canvas.GetBrush().SetColor(Red);
        m_Surface.Canvas.GetPen().SetColor(Red);
    }
    bool IsOn(const zul::TRect& area, int x, int y) {
        std::int32_t mapX = x, mapY = y;
        m_Scaler.ScreenToMapL(mapX, mapY);
        return mapX >= area.MinX && mapX <= area.MaxX && mapY >= area.MinY && mapY <= area.MaxY;
    }
    /// Pixels below the horizon must show what lies there, unless an edge passes within two pixels.
    void ExpectFilled(const zul::TRect& area) {
        const Picture picture = m_Surface.Look();
        for (int y = kSize / 5 + 2; y + 2 < kSize; ++y) {
            for (int x = 2; x + 2 < kSize; ++x) {
                int around = 0;
                for (int i = 0; i < 25; ++i)
                    around += IsOn(area, x + i / 5 - 2, y + i % 5 - 2);
                if (around % 25 != 0) continue;
                const char seen = picture[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
                ASSERT_EQ(seen == 'r', around == 25) << x << ", " << y;
            }
        }
    }

    zul::CProjectiveScaler m_Scaler;
    Surface m_Surface;
};

TEST_P(Perspective, AreasFillTheirGroundWhateverLiesBehindTheViewer) {
    std::mt19937 random(20261121);
    m_Surface.Canvas.GetPen().SetType(zul::CPen::PenNone);
    for (int round = 0; round < 40; ++round) {
        SCOPED_TRACE(round);
        const int reach = round % 2 == 0 ? 32000 : 3000;
        std::uniform_int_distribution<int> low(-reach, -200), size(700, 3 * reach / 2);
        zul::TRect area{};
        area.MinX = zul::SaturateToCoord(low(random));
        area.MinY = zul::SaturateToCoord(low(random));
        area.MaxX = zul::SaturateToCoord(area.MinX + size(random));
        area.MaxY = zul::SaturateToCoord(area.MinY + size(random));
        m_Surface.Canvas.SetListClipping(round % 4 < 2);
        m_Surface.Wipe();
        zul::CPoints list = List(
            {{area.MinX, area.MinY}, {area.MaxX, area.MinY}, {area.MaxX, area.MaxY}, {area.MinX, area.MaxY}});
        m_Surface.Canvas.Polygon(&list);
        ExpectFilled(area);
        if (HasFatalFailure()) return;
    }
}

TEST_P(Perspective, NothingBehindTheViewerIsThrownOverTheHorizon) {
    zul::TLongPoint back[2];
    zul::TPoint eye, far;
    m_Scaler.GetViewLine(eye, far);
    for (int i = 0; i < 2; ++i)  // twice and four times the view's length behind the viewer
        back[i] = {eye.X - (far.X - eye.X) * 2 * (i + 1), eye.Y - (far.Y - eye.Y) * 2 * (i + 1)};
    zul::CCanvas& canvas = m_Surface.Canvas;
    zul::CPoints list = List({zul::WrapToPoint(back[0].X, back[0].Y), zul::WrapToPoint(back[1].X, back[1].Y),
                              zul::WrapToPoint(back[0].X + 90, back[1].Y)});
    canvas.SetListClipping(false);
    canvas.Polygon(&list);
    canvas.Polyline(&list);
    canvas.XorPolygon(&list, true, true);
    canvas.Line(back[0].X, back[0].Y, back[1].X, back[1].Y);
    canvas.XorLine(back[0], back[1], true);
    canvas.XorSector(back[0], {eye.X, eye.Y}, back[1], true);
    canvas.Rectangle(eye.X, eye.Y, back[0].X, back[0].Y);
    canvas.Ellipse(eye.X, eye.Y, back[0].X, back[0].Y);
    canvas.Circle(back[0].X, back[0].Y, 3000);
    canvas.FillRect(eye.X, eye.Y, back[0].X, back[0].Y, nullptr);
    canvas.PatBlt(eye.X, eye.Y, back[0].X, back[0].Y, zul::CBitmap::RopBlackness);
    canvas.XorRectangle({eye.X, eye.Y}, back[0], true, true);
    canvas.XorEllipse({eye.X, eye.Y}, back[0], true);
    EXPECT_EQ(m_Surface.Look(), m_Surface.Blank());

    canvas.Line(far.X, far.Y, back[1].X, back[1].Y);  // straight down the middle
    Picture expected = m_Surface.Blank();
    for (std::size_t y = kSize / 5; y < kSize; ++y)
        expected[y][kSize / 2] = 'r';
    EXPECT_EQ(m_Surface.Look(), expected);
}

INSTANTIATE_TEST_SUITE_P(Turned, Perspective, testing::Values(0.0, 90.0, 180.0, 33.0));

}  // namespace
