#include "fuzz/frame/bitmap_use.h"

#include <algorithm>

#include "fuzz/frame/fuzzing.h"
#include "platform/dib_header.h"
#include "zul/canvas/canvas.h"
#include "zul/canvas/region.h"
#include "zul/kernel/stream.h"
#include "zul/raster/dib_section.h"

namespace fuzz {
namespace {

constexpr int kSide = 20;
constexpr std::int64_t kDrawnPixels = 1 << 15;

void Ask(zul::CBitmap& bitmap) {
    bitmap.IsValid();
    bitmap.GetBits();
    bitmap.GetDIBSize();
    bitmap.GetImageSize();
    bitmap.GetRowSize();
    bitmap.GetColorUsed();
    bitmap.GetPaletteEntries();
    bitmap.GetPaletteEntriesCount();
    bitmap.GetPaletteSize();
    bitmap.GetBitmapMaskColor();
    bitmap.GetPreferredSize();
}

void Draw(zul::CBitmap& bitmap, std::int32_t width, std::int32_t height) {
    zul::CBitmap surface;
    surface.Create(kSide, kSide, 32, nullptr);
    zul::CCanvas canvas;
    canvas.CreateMemoryCanvas();
    canvas.AssignBitmap(&surface);
    bitmap.DoPaint(&canvas, nullptr);
    bitmap.BitBlt(&canvas, -3, 2, width, height, 1, -1, zul::CBitmap::RopSourceInvert);
    bitmap.BitBlt(&surface, 0, 0, width, height, 2, 3, zul::CBitmap::RopPatternInvert);
    bitmap.StretchBlt(&canvas, 0, 0, kSide, kSide, 0, 0, width, height, zul::CBitmap::RopSourceCopy);
    bitmap.Transparent(&canvas, 3, 3, 9, 9, 0, 0, width, height, bitmap.GetBitmapMaskColor());
    delete bitmap.ExtractBitmap(1, 1, kSide, kSide);
    delete bitmap.Stretch(7, 5);

    zul::CRegion region;
    region.Create(&bitmap, bitmap.GetBitmapMaskColor(), &canvas, zul::CRegion::CombineOr);
    canvas.GetBrush().SetType(zul::CBrush::BrushPattern);
    canvas.GetBrush().SetPattern(&bitmap);
    canvas.Rectangle(0, 0, kSide, kSide);
    canvas.GetBrush().SetPattern(nullptr);
    bitmap.Fill(0x123456);
    canvas.AssignBitmap(nullptr);
}

/// Pixel by pixel, at places that may be outside.
void Address(zul::CDibSection& section) {
    for (const std::int32_t place : {0, 1, 7, 30, 1000, INT32_MAX, INT32_MIN, -1})
        section.SetPixel(place, place / 2, ~section.GetPixel(place / 3, place));
    section.GetDIBBits();
    section.ExtractBitsFromHandle(nullptr);
}

}  // namespace

bool IsSlow(const std::uint8_t* image, std::size_t size) {
    if (size < dib::kHeaderSize) return false;
    const std::int64_t rows = dib::Absolute(dib::RowsSize(dib::ReadHeader(image)));
    return rows > 1 << 22 && rows <= dib::kSizeLimit;
}

void UseBitmap(zul::CBitmap& bitmap) {
    Ask(bitmap);
    std::int32_t width, height;
    bitmap.GetSize(width, height);
    BITMAP made{};
    ::GetObjectW(bitmap.GetHandle(), sizeof made, &made);
    const std::int64_t pixels =
        std::max(dib::Absolute(std::int64_t{width} * height), std::int64_t{made.bmWidth} * made.bmHeight);
    if (pixels > kDrawnPixels) return;
    Draw(bitmap, width, height);
    if (auto* const section = dynamic_cast<zul::CDibSection*>(&bitmap)) Address(*section);
    bitmap.SaveToFile((Scratch().Directory() / "saved").u16string().c_str());
    zul::CMemoryStream stream;
    bitmap.ObjectToBuffer(&stream);
    stream.SetPosition(0);
    bitmap.ObjectFromBuffer(&stream);
    Ask(bitmap);
}

}  // namespace fuzz
