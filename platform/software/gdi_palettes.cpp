/// \file
/// Palettes: making, reading, selecting and realising them.

#include <algorithm>
#include <exception>

#include "platform/software/color.h"
#include "platform/software/context_object.h"
#include "platform/software/convert.h"
#include "platform/software/section.h"
#include "platform/software/trace.h"

namespace device {

namespace {

/// How many of \p count entries from \p start on a palette has.
UINT EntriesThere(const Palette& palette, UINT start, UINT count) {
    const auto size = static_cast<UINT>(palette.entries.size());
    return start < size ? std::min(count, size - start) : 0;
}

/// Puts a palette's colours over the first ones of a table; \returns how many there was room for.
std::uint32_t Overwrite(ColorTable& table, const Palette& palette) {
    const auto count =
        std::min(static_cast<std::uint32_t>(table.count), static_cast<std::uint32_t>(palette.entries.size()));
    for (std::uint32_t i = 0; i < count; ++i)
        table.colors[i] = palette.ColorAt(i);
    ++table.stamp;
    return count;
}

}  // namespace

std::uint32_t ContextObject::Realize() {
    const Format format = state.surface.format;
    auto& bitmap = *static_cast<Bitmap*>(selected[OBJ_BITMAP]);
    // One-bit bitmaps of a device of more colours are masks, and stay black and white.
    const bool mask = format == Format::Mono && device->settings.bitsPerPixel != 1;
    if (!IsIndexed(format) || (IsMemory() && (bitmap.stock || bitmap.section || mask))) return 0;
    const ColorTable* shown = ColorsOf(state.surface);
    ColorTable table = shown != nullptr ? *shown : BlackAndWhite();
    const std::uint32_t count = Overwrite(table, *state.palette);
    if (count == 0) return 0;
    if (IsMemory()) {
        if (!OwnTable(bitmap, table)) return static_cast<std::uint32_t>(Fail(ERROR_NOT_ENOUGH_MEMORY));
    } else {
        device->colors = table;
        device->surface.table = &device->colors;
    }
    state.SetSurface(IsMemory() ? bitmap.surface : device->surface);
    return count;
}

}  // namespace device

using namespace device;

HPALETTE CreatePalette(const LOGPALETTE* description) {
    Trace("CreatePalette", description);
    if (description == nullptr) return Fail(ERROR_INVALID_PARAMETER);
    auto palette = MakeObject<Palette>();
    try {
        if (palette != nullptr) {
            const PALETTEENTRY* const first = description->palPalEntry;
            palette->entries.assign(first, first + description->palNumEntries);
        }
    } catch (const std::exception&) {
        palette = nullptr;
    }
    return static_cast<HPALETTE>(Publish(std::move(palette)));
}

HPALETTE SelectPalette(HDC dc, HPALETTE handle, BOOL background) {
    Trace("SelectPalette", dc, handle, background);
    ContextObject* context = FindContextObject(dc);
    if (context == nullptr) return nullptr;
    Palette* palette = Find<Palette>(handle);
    if (palette == nullptr) return Fail(ERROR_INVALID_HANDLE);
    return static_cast<HPALETTE>(context->Replace(palette));
}

UINT RealizePalette(HDC dc) {
    Trace("RealizePalette", dc);
    ContextObject* context = FindContextObject(dc);
    return context == nullptr ? 0 : context->Realize();
}

UINT GetPaletteEntries(HPALETTE handle, UINT start, UINT count, PALETTEENTRY* entries) {
    Trace("GetPaletteEntries", handle, start, count, entries);
    const Palette* palette = Find<Palette>(handle);
    if (palette == nullptr) return static_cast<UINT>(Fail(ERROR_INVALID_HANDLE));
    if (count == 0) return static_cast<UINT>(palette->entries.size());
    const UINT there = EntriesThere(*palette, start, count);
    if (entries != nullptr && there != 0) std::copy_n(palette->entries.begin() + start, there, entries);
    return there;
}

UINT SetPaletteEntries(HPALETTE handle, UINT start, UINT count, const PALETTEENTRY* entries) {
    Trace("SetPaletteEntries", handle, start, count, entries);
    Palette* palette = Find<Palette>(handle);
    if (palette == nullptr) return static_cast<UINT>(Fail(ERROR_INVALID_HANDLE));
    if (palette->stock || entries == nullptr) return 0;
    const UINT there = EntriesThere(*palette, start, count);
    std::copy_n(entries, there,
                palette->entries.begin() + std::min<std::size_t>(start, palette->entries.size()));
    return there;
}

UINT GetNearestPaletteIndex(HPALETTE handle, COLORREF color) {
    Trace("GetNearestPaletteIndex", handle, color);
    const Palette* palette = Find<Palette>(handle);
    if (palette == nullptr) return static_cast<UINT>(Fail(ERROR_INVALID_HANDLE));
    const auto& entries = palette->entries;
    const auto nearest =
        std::min_element(entries.begin(), entries.end(), [color](const auto& a, const auto& b) {
            const auto distance = [color](const PALETTEENTRY& entry) {
                return ColorDistance(RGB(entry.peRed, entry.peGreen, entry.peBlue), color);
            };
            return distance(a) < distance(b);
        });
    return nearest == entries.end() ? 0 : static_cast<UINT>(nearest - entries.begin());
}

COLORREF GetNearestColor(HDC dc, COLORREF color) {
    Trace("GetNearestColor", dc, color);
    const Context* context = FindContext(dc);
    return context == nullptr ? CLR_INVALID : ColorFromPixel(*context, NearestPixel(*context, color));
}
