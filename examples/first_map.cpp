// Draws a lake with an island and a road round it, and writes the picture as a PPM file.
#include <cstdio>

#include "platform/gdi.h"
#include "zul/canvas/canvas.h"
#include "zul/geometry/points.h"
#include "zul/scaler/scaler.h"

int main(int argc, char** argv) {
    const int width = 320, height = 200;

    // The map: 1600 x 1000 units of one metre. The scaler fits it to the picture.
    zul::CScaler scaler;
    zul::TLongRect bounds{0, 0, 1600, 1000};
    scaler.InitScaler(bounds, {width, height}, {width, height}, 38.0, 1.0, 0.0);

    // The device: a 32-bit picture in memory, selected into a canvas.
    zul::CBitmap picture;
    picture.CreateCompatible(width, height, nullptr);
    zul::CCanvas canvas;
    canvas.CreateMemoryCanvas();
    canvas.AssignBitmap(&picture);
    canvas.SetScaler(&scaler);

    canvas.GetBrush().SetColor(0xD8F0E8);  // colours are 0xBBGGRR
    canvas.FillRect(0, 0, 1600, 1000, nullptr);

    zul::CPoints shore(false);
    for (const zul::TPoint& p : {zul::TPoint{200, 500}, {500, 850}, {1100, 800}, {1400, 400}, {900, 150}})
        shore.Append(p.X, p.Y);
    canvas.GetPen().SetColor(0xA06020);
    canvas.GetBrush().SetColor(0xF0D0A0);
    canvas.Polygon(&shore);

    canvas.GetBrush().SetColor(0xA0D8B0);
    canvas.Circle(850, 500, 120);

    canvas.GetPen().Create(zul::CPen::PenSolid, 0, 15, 0x4060E0, 0, 5, 0);
    canvas.GetPen().SetScaled(true);  // 15 metres wide at every scale
    canvas.Line(60, 60, 60, 940);
    canvas.LineTo(1540, 940);

    std::FILE* file = std::fopen(argc > 1 ? argv[1] : "first_map.ppm", "wb");
    if (file == nullptr) return 1;
    std::fprintf(file, "P6 %d %d 255\n", width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const std::uint32_t color = canvas.GetPixel(x, y);
            const unsigned char rgb[3] = {GetRValue(color), GetGValue(color), GetBValue(color)};
            std::fwrite(rgb, 1, sizeof rgb, file);
        }
    }
    std::fclose(file);
    canvas.AssignBitmap(nullptr);
    return 0;
}
