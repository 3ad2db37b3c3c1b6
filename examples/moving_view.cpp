// Shows a town four times in one BMP file: all of it, near, turned, and in perspective. Faults go to an error
// handler of the program's own.
#include <cstdio>

#include "zul/canvas/bitmap_canvas.h"
#include "zul/kernel/client.h"
#include "zul/raster/dib_section.h"
#include "zul/scaler/projective_scaler.h"

namespace {

constexpr std::int32_t kWidth = 320, kHeight = 220, kGap = 4;  // pixels

/// A frame goes on when one of its figures has a fault; this tells how many had.
struct CFaultCounter : zul::CErrorHandler {
    void OnError(const zul::TErrorReport& report) override {
        ++Count;
        std::printf("fault %d: %s\n", report.Type, report.Text.GetBufferAnsi());
    }
    int Count = 0;
};

void DrawTown(zul::CScaler& view, zul::CCanvas& sheet, std::int32_t column, std::int32_t row) {
    zul::CBitmap picture;
    picture.CreateCompatible(kWidth, kHeight, nullptr);
    zul::CBitmapCanvas canvas(&picture);
    canvas.GetBrush().SetColor(0xD0ECE0);  // colours are 0xBBGGRR
    canvas.FillRect(0, 0, kWidth, kHeight, nullptr);
    canvas.SetScaler(&view);
    zul::CPoints river(false);
    for (const zul::TPoint& p : {zul::TPoint{-200, 250}, {250, 300}, {500, 480}, {1000, 520}, {1300, 800}})
        river.Append(p.X, p.Y);
    canvas.GetPen().Create(zul::CPen::PenSolid, 0, 40, 0xE0B070, 0, 5, 0);
    canvas.GetPen().SetScaled(true);  // 40 metres wide at every scale
    canvas.Polyline(&river);

    canvas.GetPen().Create(zul::CPen::PenSolid, 0, 1, 0x404868, 0, 5, 0);
    for (std::int32_t x = 40; x < 1000; x += 120) {
        for (std::int32_t y = 560; y < 960; y += 100) {
            const zul::TPoint walls[] = {{0, 0}, {70, 0}, {70, 55}, {0, 55}};
            zul::CPoints house(false);
            house.SetPoints(walls, 4);
            house.Move(x, y);
            canvas.GetBrush().SetColor(y % 40 == 0 ? 0x6078D8 : 0x90A8E8);
            canvas.Polygon(&house);
        }
    }
    const std::int32_t left = column * (kWidth + kGap), top = row * (kHeight + kGap);
    sheet.BitBlt(left, top, kWidth, kHeight, &canvas, 0, 0, zul::CBitmap::RopSourceCopy);
}

}  // namespace

int main() {
    CFaultCounter faults;
    const zul::CErrorHandlerScope scope(&faults);
    zul::CDibSection sheet;
    sheet.Create(2 * kWidth + kGap, 2 * kHeight + kGap, 24, nullptr);
    {
        zul::CBitmapCanvas canvas(&sheet);
        const zul::TLongRect bounds{0, 0, 1000, 1000};  // map units, of one metre
        zul::CScaler flat;
        flat.InitScaler(bounds, {kWidth, kHeight}, {kWidth, kHeight}, 38.0, 1.0, 0.0);
        DrawTown(flat, canvas, 0, 0);
        flat.Zoom(350, 400, 750, 700, true);
        DrawTown(flat, canvas, 1, 0);
        flat.SetRotationAngle(35.0);
        DrawTown(flat, canvas, 0, 1);
        zul::CProjectiveScaler deep;
        deep.InitScaler(bounds, {kWidth, kHeight}, {kWidth, kHeight}, 38.0, 1.0, 0.0);
        deep.SetVisibleBox(300, 400, 700, 675, true);
        deep.SetHorizonFraction(0.1);
        deep.SetSlopeDepth(550);
        DrawTown(deep, canvas, 1, 1);
    }
    zul::CPoints far(false);
    far.Append(30000, 0);
    far.Move(30000, 0);  // beyond what 16 bits can tell: reported
    return sheet.SaveToFile(u"moving_view.bmp") && faults.Count > 0 ? 0 : 1;
}
