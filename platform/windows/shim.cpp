/// \file
/// Stands between the library and the system's calls that differ from what `platform/gdi.h` promises.
///
/// A call into a system library goes through a pointer, `__imp_` and the call's name. The linker is told to wrap
/// those pointers: the library's references meet ours, and `__real_` still reaches the system's.
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>

#include "platform/gdi.h"

extern "C" {
extern decltype(&CreateBitmap) __real___imp_CreateBitmap;
extern decltype(&GetSysColor) __real___imp_GetSysColor;
extern decltype(&GetSysColorBrush) __real___imp_GetSysColorBrush;
extern decltype(&SelectObject) __real___imp_SelectObject;
}

namespace {

/// The library hands over rows padded to 32 bits, the system reads rows padded to 16.
HBITMAP WINAPI CreateBitmapOfLongRows(int width, int height, UINT planes, UINT bitsPixel, const void* bits) {
    const auto create = [=](const void* rows) {
        return __real___imp_CreateBitmap(width, height, planes, bitsPixel, rows);
    };
    // What the system refuses, or makes its own one-pixel bitmap of, it need not read.
    if (bits == nullptr || width <= 0 || height <= 0 || planes != 1 || bitsPixel > 32) return create(nullptr);
    const std::uint64_t rowBits = std::uint64_t{bitsPixel} * static_cast<std::uint32_t>(width);
    const std::uint64_t given = (rowBits + 31) / 32 * 4;
    const std::uint64_t taken = (rowBits + 15) / 16 * 2;
    if (given == taken) return create(bits);
    const std::uint64_t size = taken * static_cast<std::uint32_t>(height);
    const std::unique_ptr<std::uint8_t[]> packed(
        size <= std::numeric_limits<std::int32_t>::max() ? new (std::nothrow) std::uint8_t[size] : nullptr);
    if (packed == nullptr) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    const auto* from = static_cast<const std::uint8_t*>(bits);
    std::uint8_t* to = packed.get();
    for (int row = 0; row < height; ++row, from += given, to += taken)
        std::memcpy(to, from, taken);
    return create(packed.get());
}

DWORD WINAPI GetSysColorUnflagged(int index) {
    return __real___imp_GetSysColor(index & ~SYS_COLOR_INDEX_FLAG);
}

HBRUSH WINAPI GetSysColorBrushUnflagged(int index) {
    return __real___imp_GetSysColorBrush(index & ~SYS_COLOR_INDEX_FLAG);
}

/// The system selects palettes with a call of their own.
HGDIOBJ WINAPI SelectObjectOrPalette(HDC dc, HGDIOBJ object) {
    if (GetObjectType(object) == OBJ_PAL) return SelectPalette(dc, static_cast<HPALETTE>(object), FALSE);
    return __real___imp_SelectObject(dc, object);
}

}  // namespace

extern "C" {
decltype(&CreateBitmap) __wrap___imp_CreateBitmap = &CreateBitmapOfLongRows;
decltype(&GetSysColor) __wrap___imp_GetSysColor = &GetSysColorUnflagged;
decltype(&GetSysColorBrush) __wrap___imp_GetSysColorBrush = &GetSysColorBrushUnflagged;
decltype(&SelectObject) __wrap___imp_SelectObject = &SelectObjectOrPalette;
}
