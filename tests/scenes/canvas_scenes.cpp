#include "tests/scenes/kinds.h"
#include "tests/scenes/tools.h"
#include "zul/canvas/canvas.h"

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

void SomeCanvasTools(zul::CCanvas& canvas, CRandom& random) {
    static constexpr zul::CPen::TPenType types[] = {zul::CPen::PenNone, zul::CPen::PenSolid,
                                                    zul::CPen::PenDashed};
    zul::CPen& pen = canvas.GetPen();
    const int type = random.In(0, 2);
    const int width = random.OneIn(3) ? random.In(2, 9) : 1;
    pen.Create(types[type], 0, width, static_cast<std::int32_t>(random.Color()), 0, 5, 0);
    zul::CBrush& brush = canvas.GetBrush();
    const bool none = random.OneIn(3);
    brush.Create(none ? zul::CBrush::BrushNone : zul::CBrush::BrushSolid,
                 static_cast<std::int32_t>(random.Color()), 0);
    zul::CBackground& background = canvas.GetBackground();
    background.SetColor(static_cast<std::int32_t>(random.Color()));
    background.SetMode(random.OneIn(2) ? zul::CBackground::ModeOpaque : zul::CBackground::ModeTransparent);
    background.SetRop(random.OneIn(3) ? zul::CBackground::RopXor : zul::CBackground::RopCopy);
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
    switch (random.In(0, 9)) {
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
            canvas.Rectangle(a.X, a.Y, b.X, b.Y);
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
        default:
            canvas.XorPolygon(&points, true, true);
            break;
    }
}

void DrawFigures(CBoard& board, CRandom& random, double degrees) {
    zul::CScaler scaler;
    SetUp(scaler);
    scaler.SetRotationAngle(degrees);
    zul::CCanvas canvas;
    canvas.AttachToDevice(board.Get());
    canvas.SetScaler(&scaler);
    canvas.SetListClipping(random.OneIn(2));
    for (int rest = random.In(1, 4); rest != 0; --rest) {
        SomeCanvasTools(canvas, random);
        Figure(canvas, random);
    }
    canvas.Release();
}

}  // namespace

void DrawCanvas(CBoard& board, CRandom& random) {
    DrawFigures(board, random, 0);
}
void DrawTurnedCanvas(CBoard& board, CRandom& random) {
    const double degrees = random.In(0, 3599) / 10.0;
    DrawFigures(board, random, degrees);
}

}  // namespace scenes
