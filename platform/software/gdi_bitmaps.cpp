/// \file
/// Making pens, brushes and bitmaps.

#include <algorithm>
#include <atomic>
#include <cstring>
#include <limits>

#include "platform/software/context_object.h"
#include "platform/software/section.h"
#include "platform/software/trace.h"

using namespace device;

namespace {

/// A pattern of more pixels would need more memory, once prepared for a surface, than any picture.
constexpr std::int64_t kMaxPatternPixels = std::int64_t{1} << 24;

HBITMAP PublishBitmap(std::unique_ptr<Bitmap> bitmap) {
    return static_cast<HBITMAP>(Publish(std::move(bitmap)));
}

/// Copies a bitmap's pixels, rows from the top, into a pattern.
bool CopyPattern(Pattern& pattern, const Bitmap& bitmap) {
    static std::atomic<std::uint64_t> serial{0};
    const Surface& from = bitmap.surface;
    if (std::int64_t{from.width} * from.height > kMaxPatternPixels) return false;
    pattern.surface = MakeSurface(pattern.bits, from.width, from.height, from.format, false);
    if (pattern.surface.top == nullptr) return false;
    const auto row = static_cast<std::size_t>(RowBytes(from.width, from.format));
    for (std::int32_t y = 0; y < from.height; ++y)
        std::memcpy(pattern.surface.Row(y), from.Row(y), row);
    pattern.ownColors = from.format != Format::Mono || from.table != nullptr;
    if (from.table != nullptr) {
        pattern.table = *from.table;
        pattern.surface.table = &pattern.table;
    }
    pattern.serial = serial.fetch_add(1, std::memory_order_relaxed) + 1;
    return true;
}

HBITMAP DefaultBitmapHandle() {
    return static_cast<HBITMAP>(DefaultBitmap()->handle);
}

}  // namespace

HPEN CreatePen(int style, int width, COLORREF color) {
    Trace("CreatePen", style, width, color);
    auto pen = MakeObject<Pen>();
    if (pen == nullptr) return Fail(ERROR_NOT_ENOUGH_MEMORY);
    if (style == PS_NULL) {
        pen->style = PS_NULL;
        pen->description = {static_cast<UINT>(PS_NULL), {1, 0}, 0};
        return static_cast<HPEN>(Publish(std::move(pen)));
    }
    // Styles that the device does not have are solid; so is a wide dash, though it still calls itself one.
    const bool dash = style == PS_DASH;
    const auto size = static_cast<std::int32_t>(
        std::min<std::int64_t>(std::abs(std::int64_t{width}), std::numeric_limits<std::int32_t>::max()));
    pen->width = std::max(size, 1);
    pen->style = dash && pen->width == 1 ? PS_DASH : PS_SOLID;
    pen->color = color;
    pen->description = {static_cast<UINT>(dash ? PS_DASH : PS_SOLID), {size, 0}, color};
    return static_cast<HPEN>(Publish(std::move(pen)));
}

HBRUSH CreateSolidBrush(COLORREF color) {
    Trace("CreateSolidBrush", color);
    auto brush = MakeObject<Brush>();
    if (brush != nullptr) brush->color = color;
    return static_cast<HBRUSH>(Publish(std::move(brush)));
}

HBRUSH CreatePatternBrush(HBITMAP handle) {
    Trace("CreatePatternBrush", handle);
    const auto* bitmap = Find<Bitmap>(handle);
    if (bitmap == nullptr) return Fail(ERROR_INVALID_HANDLE);
    auto brush = MakeObject<Brush>();
    if (brush == nullptr || !CopyPattern(brush->pattern, *bitmap)) return Fail(ERROR_NOT_ENOUGH_MEMORY);
    brush->style = BS_PATTERN;
    brush->hatch = reinterpret_cast<std::uintptr_t>(handle);
    return static_cast<HBRUSH>(Publish(std::move(brush)));
}

HBITMAP CreateBitmap(int width, int height, UINT planes, UINT bitsPixel, const void* bits) {
    Trace("CreateBitmap", width, height, planes, bitsPixel, bits);
    const std::optional<Format> format = FormatOfDepth(bitsPixel);
    if (planes != 1 || !format) return Fail(ERROR_INVALID_PARAMETER);
    if (width == 0 || height == 0) return DefaultBitmapHandle();
    auto bitmap = MakeBitmap(width, height, *format, false);
    if (bitmap == nullptr) return nullptr;
    if (bits != nullptr) {
        std::memcpy(bitmap->pixels.get(), bits,
                    static_cast<std::size_t>(BitmapBytes(width, height, *format)));
    }
    return PublishBitmap(std::move(bitmap));
}

HBITMAP CreateCompatibleBitmap(HDC dc, int width, int height) {
    Trace("CreateCompatibleBitmap", dc, width, height);
    const ContextObject* context = FindContextObject(dc);
    if (context == nullptr) return nullptr;
    if (width == 0 || height == 0) return DefaultBitmapHandle();
    const Surface& model = context->state.surface;
    auto bitmap = MakeBitmap(width, height, model.format, false);
    if (bitmap == nullptr) return nullptr;
    // Like a selected section the new bitmap is one, with the same colours.
    bitmap->section = context->IsMemory() && static_cast<Bitmap*>(context->selected[OBJ_BITMAP])->section;
    if (model.table != nullptr && !OwnTable(*bitmap, *model.table)) return Fail(ERROR_NOT_ENOUGH_MEMORY);
    return PublishBitmap(std::move(bitmap));
}

HBITMAP CreateDIBSection(HDC dc, const BITMAPINFO* info, UINT usage, void** bits, HANDLE section,
                         DWORD offset) {
    Trace("CreateDIBSection", dc, info, usage, bits, section, offset);
    if (bits != nullptr) *bits = nullptr;
    // The context would serve palette indices only; which one is given does not matter.
    if (usage != DIB_RGB_COLORS || section != nullptr) return Fail(ERROR_INVALID_PARAMETER);
    auto bitmap = MakeSection(info);
    if (bitmap == nullptr) return nullptr;
    std::uint8_t* const pixels = bitmap->pixels.get();
    const HBITMAP handle = PublishBitmap(std::move(bitmap));
    if (handle != nullptr && bits != nullptr) *bits = pixels;
    return handle;
}

BOOL GdiFlush() {
    Trace("GdiFlush");
    return TRUE;
}
