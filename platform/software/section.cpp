#include "platform/software/section.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <optional>

#include "platform/dib_header.h"
#include "platform/software/color.h"

namespace device {
namespace {

/// The layout that a section's header asks for; none when the device has no such layout.
std::optional<Format> FormatOfHeader(const BITMAPINFO& info) {
    const BITMAPINFOHEADER& header = info.bmiHeader;
    const std::optional<Format> plain = FormatOfDepth(header.biBitCount);
    if (header.biCompression == BI_RGB) {
        return plain == Format::Rgb565 ? Format::Rgb555 : plain;
    }
    if (header.biCompression != BI_BITFIELDS) return std::nullopt;
    std::array<std::uint32_t, 3> masks;
    std::memcpy(masks.data(), reinterpret_cast<const std::uint8_t*>(&info) + sizeof(BITMAPINFOHEADER),
                sizeof masks);
    return FormatOfMasks(header.biBitCount, masks);
}

/// A header's colours: those it says it has, padded with black to the depth's number.
ColorTable ReadColors(const BITMAPINFO& info) {
    ColorTable table;
    const std::int64_t full = dib::FullColorCount(info.bmiHeader.biBitCount);
    const auto stored = static_cast<std::size_t>(std::min(dib::ColorCount(info.bmiHeader), full));
    table.count = static_cast<std::int32_t>(full);
    const std::uint8_t* next = reinterpret_cast<const std::uint8_t*>(&info) + sizeof(BITMAPINFOHEADER);
    for (std::size_t i = 0; i < stored; ++i, next += sizeof(RGBQUAD)) {
        RGBQUAD quad;
        std::memcpy(&quad, next, sizeof quad);
        table.colors[i] = RGB(quad.rgbRed, quad.rgbGreen, quad.rgbBlue);
    }
    return table;
}

}  // namespace

std::unique_ptr<Bitmap> MakeBitmap(std::int32_t width, std::int32_t height, Format format, bool bottomUp) {
    if (BitmapBytes(width, height, format) == 0) return Fail(ERROR_INVALID_PARAMETER), nullptr;
    auto bitmap = MakeObject<Bitmap>();
    if (bitmap != nullptr) bitmap->surface = MakeSurface(bitmap->pixels, width, height, format, bottomUp);
    if (bitmap == nullptr || bitmap->surface.top == nullptr) return Fail(ERROR_NOT_ENOUGH_MEMORY), nullptr;
    if (format == Format::Indexed4 || format == Format::Indexed8) {
        bitmap->surface.table = &DeviceColors(format);
    }
    return bitmap;
}

bool OwnTable(Bitmap& bitmap, const ColorTable& table) {
    std::unique_ptr<ColorTable> own(new (std::nothrow) ColorTable(table));
    if (own == nullptr) return false;
    bitmap.table = std::move(own);
    bitmap.surface.table = bitmap.table.get();
    return true;
}

std::optional<Format> FormatOfMasks(int bitsPixel, const std::array<std::uint32_t, 3>& masks) {
    struct Layout {
        int bits;
        std::uint32_t red, green, blue;
        Format format;
    };
    static constexpr Layout layouts[] = {
        {16, 0x7C00, 0x03E0, 0x001F, Format::Rgb555},
        {16, 0xF800, 0x07E0, 0x001F, Format::Rgb565},
        {32, 0xFF0000, 0x00FF00, 0x0000FF, Format::Bgrx32},
    };
    for (const Layout& layout : layouts) {
        if (bitsPixel == layout.bits && masks[0] == layout.red && masks[1] == layout.green &&
            masks[2] == layout.blue) {
            return layout.format;
        }
    }
    return std::nullopt;
}

std::unique_ptr<Bitmap> MakeSection(const BITMAPINFO* info) {
    if (info == nullptr || !dib::IsSectionHeader(info->bmiHeader))
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    const BITMAPINFOHEADER& header = info->bmiHeader;
    const std::optional<Format> format = FormatOfHeader(*info);
    if (!format) return Fail(ERROR_INVALID_PARAMETER), nullptr;
    const bool bottomUp = header.biHeight > 0;
    auto bitmap =
        MakeBitmap(header.biWidth, bottomUp ? header.biHeight : -header.biHeight, *format, bottomUp);
    if (bitmap == nullptr) return nullptr;
    bitmap->section = true;
    if (header.biBitCount <= dib::kDeepestIndexed && !OwnTable(*bitmap, ReadColors(*info))) {
        return Fail(ERROR_NOT_ENOUGH_MEMORY), nullptr;
    }
    return bitmap;
}

}  // namespace device
