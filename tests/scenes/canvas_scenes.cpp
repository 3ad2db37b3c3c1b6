#include <cstdlib>

#include "tests/scenes/kinds.h"
#include "tests/scenes/tools.h"
#include "zul/canvas/canvas.h"
#include "zul/scaler/projective_scaler.h"

namespace scenes {
namespace {

constexpr int kUnit = 10;  ///< map units a pixel

void SetUp(zul::CScaler& scaler) {
    const zul::TSize screen{CBoard::Width, CBoard::Height};
    scaler.InitScaler({0, 0, CBoard::Width * kUnit, CBoard::Height * kUnit}, screen, screen, 40.0, 1.0,
                      0.001);
}

zul::TPoint SomeMapPoint(CRandom& random, int reach) {
    const POINT point = SomePoint(random, reach);
    const int x = static_cast<int>(point.x) * kUnit + random.In(0, 9);
    const int y = static_cast<int>(point.y) * kUnit + random.In(0, 9);
    return zul::WrapToPoint(x, y);
}

void SomePen(zul::CPen& pen, CRandom& random) {
    static constexpr zul::CPen::TPenType types[] = {zul::CPen::PenNone, zul::CPen::PenSolid,
                                                    zul::CPen::PenDashed, zul::CPen::PenExtended};
    const auto type = types[random.In(0, 3)];
    const int style = random.In(0, 42);
    const int width = random.OneIn(3) ? random.In(2, 9) : 1;
    const auto color = static_cast<std::int32_t>(random.Color());
    const int endType = random.In(0, 3), dashLength = random.In(1, 12);
    pen.Create(type, style, width, color, endType, dashLength, static_cast<std::int32_t>(random.Color()));
    pen.SetScaled(random.OneIn(6));
}

void SomeCanvasTools(zul::CCanvas& canvas, zul::CBitmap& pattern, CRandom& random) {
    static constexpr zul::CBrush::TBrushType types[] = {zul::CBrush::BrushNone, zul::CBrush::BrushSolid,
                                                        zul::CBrush::BrushSolid, zul::CBrush::BrushPattern};
    SomePen(canvas.GetPen(), random);
    zul::CBrush& brush = canvas.GetBrush();
    const auto type = types[random.In(0, 3)];
    brush.Create(type, static_cast<std::int32_t>(random.Color()), 0);
    brush.SetPattern(&pattern);
    const int originX = random.In(-9, 9);
    brush.SetOrigin(originX, random.In(-9, 9));
    zul::CBackground& background = canvas.GetBackground();
    background.SetColor(static_cast<std::int32_t>(random.Color()));
    background.SetMode(random.OneIn(2) ? zul::CBackground::ModeOpaque : zul::CBackground::ModeTransparent);
    background.SetRop(random.OneIn(3) ? zul::CBackground::RopXor : zul::CBackground::RopCopy);
    canvas.SetTextColor(static_cast<std::int32_t>(random.Color()));
}

void Figure(zul::CCanvas& canvas, CRandom& random) {
    const zul::TPoint a = SomeMapPoint(random, 60);
    const zul::TPoint b = SomeMapPoint(random, 60);
    zul::CPoints points(false);
    const int count = random.In(2, 9);
    const int reach = random.OneIn(6) ? 3000 : 70;
    for (int i = 0; i < count; ++i) {
        const zul::TPoint point = SomeMapPoint(random, reach);
        points.Append(point.X, point.Y);
    }
    const auto rop = static_cast<zul::CBitmap::TRop>(
        random.In(zul::CBitmap::RopPatternInvert, zul::CBitmap::RopWhiteness));
    // A rectangle of a single pixel is nothing there.
    std::int32_t aX = a.X, aY = a.Y, bX = b.X, bY = b.Y;
    canvas.PreparePoint(aX, aY);
    canvas.PreparePoint(bX, bY);
    const bool tiny = std::abs(std::int64_t{aX} - bX) < 3 && std::abs(std::int64_t{aY} - bY) < 3;
    switch (random.In(0, 12)) {
        case 0:
            canvas.Line(a.X, a.Y, b.X, b.Y);
            break;
        case 1:
            canvas.Polyline(&points);
            break;
        case 2:
        case 3:
            canvas.Polygon(&points);
            break;
        case 4:
            if (!tiny) canvas.Rectangle(a.X, a.Y, b.X, b.Y);
            break;
        case 5:
            canvas.Circle(a.X, a.Y, random.In(0, 300));
            break;
        case 6:
            canvas.FillRect(a.X, a.Y, b.X, b.Y, nullptr);
            break;
        case 7:
            canvas.PatBlt(a.X, a.Y, b.X, b.Y, rop);
            break;
        case 8:
            canvas.XorLine({a.X, a.Y}, {b.X, b.Y}, true);
            break;
        case 9:
            if (!tiny) canvas.XorRectangle({a.X, a.Y}, {b.X, b.Y}, rop == zul::CBitmap::RopBlackness, true);
            break;
        case 10:
            canvas.XorEllipse({a.X, a.Y}, {b.X, b.Y}, true);
            break;
        case 11:
            canvas.DrawEdge(a.X / kUnit, a.Y / kUnit, b.X / kUnit, b.Y / kUnit, zul::CCanvas::EdgeSunken,
                            zul::CCanvas::SideAll);
            break;
        default:
            canvas.XorPolygon(&points, true, true);
            break;
    }
}

/// Somewhere on the map, so that a good part of it lies behind the viewer.
void SetUpPerspective(zul::CProjectiveScaler& scaler, CRandom& random) {
    SetUp(scaler);
    const int x = random.In(0, CBoard::Width * kUnit), y = random.In(0, CBoard::Height * kUnit);
    const int height = random.In(5, 60) * kUnit;
    scaler.SetVisibleBox(x, y, x + height * CBoard::Width / CBoard::Height, y + height, true);
    scaler.SetHorizonFraction(random.In(0, 3) / 5.0);
    scaler.SetSlopeDepth(height * random.In(1, 10));
    if (!random.OneIn(3)) scaler.SetRotationAngle(random.In(0, 3599) / 10.0);
}

void DrawFigures(CBoard& board, CRandom& random, zul::CScaler& scaler) {
    std::uint32_t rows[8];
    for (std::uint32_t& row : rows)
        row = random.Bits();
    zul::CBitmap pattern;
    pattern.Create(8, 8, 1, rows);
    zul::CCanvas canvas;
    canvas.AttachToDevice(board.Get());
    canvas.SetScaler(&scaler);
    canvas.SetListClipping(random.OneIn(2));
    for (int rest = random.In(1, 4); rest != 0; --rest) {
        SomeCanvasTools(canvas, pattern, random);
        Figure(canvas, random);
    }
    canvas.Release();
}

}  // namespace

void DrawCanvas(CBoard& board, CRandom& random) {
    zul::CScaler scaler;
    SetUp(scaler);
    DrawFigures(board, random, scaler);
}
void DrawTurnedCanvas(CBoard& board, CRandom& random) {
    zul::CScaler scaler;
    SetUp(scaler);
    scaler.SetRotationAngle(random.In(0, 3599) / 10.0);
    DrawFigures(board, random, scaler);
}
void DrawPerspective(CBoard& board, CRandom& random) {
    zul::CProjectiveScaler scaler;
    SetUpPerspective(scaler, random);
    DrawFigures(board, random, scaler);
}

}  // namespace scenes
