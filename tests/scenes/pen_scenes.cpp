#include <cstdlib>

#include "tests/scenes/kinds.h"
#include "tests/scenes/tools.h"
#include "zul/canvas/canvas.h"

namespace scenes {
namespace {

void SomePen(zul::CPen& pen, CRandom& random) {
    // One in six is plain: endings belong to those too.
    const auto type = random.OneIn(6) ? zul::CPen::PenSolid : zul::CPen::PenExtended;
    const int style = random.In(0, zul::CPen::GetExtendedStylesCount() - 1);
    const int width = random.OneIn(2) ? random.In(2, 9) : 1;
    const auto color = static_cast<std::int32_t>(random.Color());
    int endType = random.In(0, 63);
    if (random.OneIn(2)) {
        endType |= random.In(0, 15) << 16;
        endType |= random.In(0, 90) << 24;
    }
    const int dashLength = random.OneIn(8) ? random.In(-2, 80) : random.In(1, 20);
    pen.Create(type, style, width, color, endType, dashLength, static_cast<std::int32_t>(random.Color()));
    pen.SetScaled(random.OneIn(4));
}

void Figure(zul::CCanvas& canvas, CRandom& random) {
    std::vector<zul::TPoint> points;
    for (const POINT& point : SomePoints(random, 2, 12, {15, 15}))
        points.push_back(zul::WrapToPoint(point.x, point.y));
    const auto count = static_cast<std::int32_t>(points.size());
    const zul::TPoint a = points[0], b = points[1];
    zul::CPoints list(false);
    list.SetPoints(points.data(), static_cast<std::uint32_t>(count));
    switch (random.In(0, 6)) {
        case 0:
            canvas.Line(a.X, a.Y, b.X, b.Y);
            break;
        case 1:
            // Of a rectangle of one pixel the system draws nothing.
            if (std::abs(a.X - b.X) > 2) canvas.Rectangle(a.X, a.Y, b.X, b.Y);
            break;
        case 2:
            canvas.Polyline(points.data(), count);
            break;
        case 3:
            canvas.Polygon(points.data(), count);
            break;
        case 4:
            canvas.Polygon(&list);
            break;
        default:
            canvas.Polyline(&list);
            break;
    }
}

}  // namespace

void DrawPens(CBoard& board, CRandom& random) {
    const zul::TSize screen{CBoard::Width, CBoard::Height};
    static constexpr double metresInUnit[] = {0.4, 1.0, 2.3};
    zul::CScaler scaler;
    scaler.InitScaler({0, 0, CBoard::Width, CBoard::Height}, screen, screen, 40.0,
                      metresInUnit[random.In(0, 2)], 0.001);
    if (random.OneIn(3)) scaler.SetRotationAngle(random.In(0, 3599) / 10.0);
    zul::CCanvas canvas;
    canvas.AttachToDevice(board.Get());
    canvas.SetScaler(&scaler);
    canvas.SetListClipping(random.OneIn(2));
    for (int rest = random.In(1, 3); rest != 0; --rest) {
        SomePen(canvas.GetPen(), random);
        const auto fill = static_cast<std::int32_t>(random.Color());
        canvas.GetBrush().Create(random.OneIn(2) ? zul::CBrush::BrushNone : zul::CBrush::BrushSolid, fill, 0);
        canvas.GetBackground().SetRop(random.OneIn(4) ? zul::CBackground::RopXor : zul::CBackground::RopCopy);
        Figure(canvas, random);
    }
    canvas.Release();
}

}  // namespace scenes
