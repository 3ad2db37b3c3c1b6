// A piece of an application that called the device itself, and the same piece moved over: both draw the same
// pixels, and the settings in the old file come along. docs/porting.md tells why each line is as it is.
#include <cstdio>

#include "platform/gdi.h"
#include "zul/canvas/bitmap_canvas.h"
#include "zul/kernel/stream.h"

namespace {

void DrawRoadBefore(HDC dc, const POINT* metres, int count) {
    POINT pixels[16];
    for (int i = 0; i < count; ++i)
        pixels[i] = {metres[i].x / 5, 200 - metres[i].y / 5};
    const HPEN pen = CreatePen(PS_SOLID, 3, RGB(0xE0, 0x60, 0x40));
    const HGDIOBJ former = SelectObject(dc, pen);
    Polyline(dc, pixels, count);
    SelectObject(dc, former);
    DeleteObject(pen);
}

void DrawRoadAfter(HDC dc, zul::CScaler& view, zul::CPoints& metres) {
    zul::CCanvas canvas;
    canvas.AttachToDevice(dc);
    canvas.SetScaler(&view);
    canvas.GetPen().Create(zul::CPen::PenSolid, 0, 3, RGB(0xE0, 0x60, 0x40), 0, 5, 0);
    canvas.Polyline(&metres);
}

struct SavedPen {
    std::int32_t width;
    COLORREF color;
};

bool SaveBefore(const char* path, const SavedPen& pen) {
    std::FILE* file = std::fopen(path, "wb");
    if (file == nullptr) return false;
    const bool written = std::fwrite(&pen, sizeof pen, 1, file) == 1;
    return std::fclose(file) == 0 && written;
}

bool TakeOver(const char16_t* before, const char16_t* after, zul::CPen& pen) {
    zul::CFileStream old(before, u"rb");
    std::int32_t width = 0, color = 0;
    if (!old.Read(&width, sizeof width) || !old.Read(&color, sizeof color)) return false;
    pen.Create(zul::CPen::PenSolid, 0, width, color, 0, 5, 0);
    zul::CFileStream file(after, u"wb");
    return pen.ObjectToBuffer(&file) && file.Close();
}

bool IsSamePicture(zul::CCanvas& a, zul::CCanvas& b) {
    for (int y = 0; y < 200; ++y) {
        for (int x = 0; x < 320; ++x) {
            if (a.GetPixel(x, y) != b.GetPixel(x, y)) return false;
        }
    }
    return true;
}

}  // namespace

int main() {
    zul::CBitmap pictures[2];
    for (zul::CBitmap& picture : pictures)
        picture.CreateCompatible(320, 200, nullptr);
    zul::CBitmapCanvas before(&pictures[0]), after(&pictures[1]);
    const POINT road[] = {{50, 50}, {400, 700}, {900, 650}, {1500, 200}};
    DrawRoadBefore(before.GetHandle(), road, 4);

    zul::CScaler view;
    view.InitScaler({0, 0, 1600, 1000}, {320, 200}, {320, 200}, 38.0, 1.0, 0.0);
    zul::CPoints list(false);
    for (const POINT& p : road)
        list.Append(static_cast<zul::TCoord>(p.x), static_cast<zul::TCoord>(p.y));
    DrawRoadAfter(after.GetHandle(), view, list);
    const bool drawn = IsSamePicture(before, after) && after.GetPixel(80, 60) == RGB(0xE0, 0x60, 0x40);

    zul::CPen pen, stored;
    if (!SaveBefore("pen.old", {3, RGB(0xE0, 0x60, 0x40)}) || !TakeOver(u"pen.old", u"pen.new", pen))
        return 1;
    zul::CFileStream file(u"pen.new", u"rb");
    if (!stored.ObjectFromBuffer(&file) || !stored.IsEqualSettings(&pen)) return 1;
    std::puts(drawn ? "the same picture and the same pen" : "another picture");
    return drawn ? 0 : 1;
}
