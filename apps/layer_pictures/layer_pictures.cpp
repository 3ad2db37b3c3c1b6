// Makes three pictures for a map into a folder: a raster of a sea floor with its world file, a pattern for
// land and a pin for towns. Everything is drawn with the library.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <string>

#include "zul/canvas/bitmap_canvas.h"
#include "zul/geometry/coordinates.h"
#include "zul/kernel/string.h"
#include "zul/raster/dib_section.h"

namespace {

constexpr std::int32_t kCenterX = 10;  // degrees; the raster spans 70 x 40 about here
constexpr std::int32_t kCenterY = 53;

bool Save(zul::CDibSection& picture, const std::string& path) {
    return picture.SaveToFile(zul::CString(path.c_str()).GetBuffer());
}

/// Metres of an invented sea floor; ridges that lose themselves.
double Height(double x, double y) {
    return std::sin(x * 0.11 + std::sin(y * 0.07)) + 0.6 * std::sin(y * 0.19 - x * 0.05) +
           0.3 * std::sin(x * 0.31 + y * 0.23);
}

/// Deep blue to pale green, lit from the upper left.
std::int32_t ReliefColor(double x, double y) {
    const double height = (Height(x, y) + 1.9) / 3.8;
    const double light = 1.0 + 0.9 * (Height(x, y) - Height(x - 1.0, y - 1.0));
    const auto part = [light](double low, double high, double at) {
        return static_cast<std::int32_t>(std::clamp((low + (high - low) * at) * light, 0.0, 255.0));
    };
    return part(70, 190, height) | part(120, 225, height) << 8 | part(170, 220, height) << 16;
}

bool MakeRelief(const std::string& folder) {
    constexpr std::int32_t kWidth = 210, kHeight = 120;
    zul::CDibSection relief;
    relief.Create(kWidth, kHeight, 24, nullptr);
    {
        zul::CBitmapCanvas canvas(&relief);
        for (std::int32_t y = 0; y < kHeight; ++y) {
            for (std::int32_t x = 0; x < kWidth; ++x)
                canvas.SetPixel(x, y, ReliefColor(x, y));
        }
    }
    const double pixel = 70.0 / kWidth;
    std::ofstream place(folder + "/relief.bpw");
    place << pixel << "\n0\n0\n" << -pixel << '\n';
    place << kCenterX - 35.0 + pixel / 2.0 << '\n' << kCenterY + 20.0 - pixel / 2.0 << '\n';
    return Save(relief, folder + "/relief.bmp") && place.good();
}

bool MakePattern(const std::string& folder) {
    zul::CDibSection pattern;
    pattern.Create(8, 8, 24, nullptr);
    {
        zul::CBitmapCanvas canvas(&pattern);
        canvas.GetBrush().SetColor(0xC8ECF4);  // colours are 0xBBGGRR
        canvas.FillRect(0, 0, 8, 8, nullptr);
        canvas.GetPen().SetColor(0x9CCCDC);
        canvas.Line(0, 7, 8, -1);
        canvas.SetPixel(6, 6, 0x68A088);
        canvas.SetPixel(2, 2, 0x68A088);
    }
    return Save(pattern, folder + "/land.bmp");
}

bool MakePin(const std::string& folder) {
    zul::CDibSection pin;
    pin.Create(15, 15, 24, nullptr);
    {
        zul::CBitmapCanvas canvas(&pin);
        canvas.GetBrush().SetColor(0xFF00FF);  // the corner's colour is left out
        canvas.FillRect(0, 0, 15, 15, nullptr);
        canvas.GetPen().SetColor(0x20206B);
        canvas.GetBrush().SetColor(0x3038D0);
        const zul::TLongPoint star[] = {{7, 0},  {9, 5},  {14, 5}, {10, 9}, {12, 14},
                                        {7, 11}, {2, 14}, {4, 9},  {0, 5},  {5, 5}};
        canvas.GetPen().Validate(&canvas);
        canvas.GetBrush().Validate(&canvas);
        canvas.Polygon(star, 10);
    }
    return Save(pin, folder + "/pin.bmp");
}

}  // namespace

int main(int argc, char** argv) {
    const std::string folder = argc > 1 ? argv[1] : ".";
    return MakeRelief(folder) && MakePattern(folder) && MakePin(folder) ? 0 : 1;
}
