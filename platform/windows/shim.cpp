/// \file
/// Stands between the library and the system's calls that differ from what `platform/gdi.h` promises.
///
/// A call into a system library goes through a pointer, `__imp_` and the call's name. The linker is told to
/// wrap those pointers: the library's references meet ours, and `__real_` still reaches the system's.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>

#include "platform/dib_header.h"

extern "C" {
extern decltype(&CreateBitmap) __real___imp_CreateBitmap;
extern decltype(&CreateCompatibleBitmap) __real___imp_CreateCompatibleBitmap;
extern decltype(&GetSysColor) __real___imp_GetSysColor;
extern decltype(&GetSysColorBrush) __real___imp_GetSysColorBrush;
extern decltype(&OffsetRgn) __real___imp_OffsetRgn;
extern decltype(&SelectObject) __real___imp_SelectObject;
}

namespace {

/// The system takes negative sizes for positive ones and rounds odd depths up; both are refused here.
bool IsSize(int width, int height) {
    return width >= 0 && height >= 0;
}
HBITMAP Refuse(DWORD error) {
    SetLastError(error);
    return nullptr;
}

/// Rows padded to 32 bits, as the library hands them over, become the system's, padded to 16. Null when there
/// is no memory for them.
std::unique_ptr<std::uint8_t[]> Repack(const void* bits, std::uint64_t given, std::uint64_t taken, int rows) {
    const std::uint64_t size = taken * static_cast<std::uint32_t>(rows);
    if (size > std::numeric_limits<std::int32_t>::max()) return nullptr;
    std::unique_ptr<std::uint8_t[]> packed(new (std::nothrow) std::uint8_t[size]);
    const auto* from = static_cast<const std::uint8_t*>(bits);
    std::uint8_t* to = packed.get();
    for (int row = 0; to != nullptr && row < rows; ++row, from += given, to += taken)
        std::memcpy(to, from, taken);
    return packed;
}

HBITMAP WINAPI CreateBitmapOfLongRows(int width, int height, UINT planes, UINT bitsPixel, const void* bits) {
    if (!IsSize(width, height) || planes != 1 || !dib::IsDepth(bitsPixel))
        return Refuse(ERROR_INVALID_PARAMETER);
    const std::uint64_t rowBits = std::uint64_t{bitsPixel} * static_cast<std::uint32_t>(width);
    const auto given = static_cast<std::uint64_t>(dib::RowSize(width, bitsPixel));
    const std::uint64_t taken = (rowBits + 15) / 16 * 2;
    if (bits == nullptr || given == taken) {
        return __real___imp_CreateBitmap(width, height, planes, bitsPixel, bits);
    }
    const auto packed = Repack(bits, given, taken, height);
    if (packed == nullptr) return Refuse(ERROR_NOT_ENOUGH_MEMORY);
    return __real___imp_CreateBitmap(width, height, planes, bitsPixel, packed.get());
}

HBITMAP WINAPI CreateCompatibleBitmapOfSize(HDC dc, int width, int height) {
    if (!IsSize(width, height)) return Refuse(ERROR_INVALID_PARAMETER);
    return __real___imp_CreateCompatibleBitmap(dc, width, height);
}

DWORD WINAPI GetSysColorUnflagged(int index) {
    return __real___imp_GetSysColor(index & ~SYS_COLOR_INDEX_FLAG);
}

HBRUSH WINAPI GetSysColorBrushUnflagged(int index) {
    return __real___imp_GetSysColorBrush(index & ~SYS_COLOR_INDEX_FLAG);
}

int CutTo32Bits(std::int64_t value) {
    using TLimits = std::numeric_limits<std::int32_t>;
    return static_cast<int>(std::clamp<std::int64_t>(value, TLimits::min(), TLimits::max()));
}

/// The system wraps around what leaves 32 bits; here that is taken off before the rest is moved.
int WINAPI OffsetRgnWithin32Bits(HRGN region, int dx, int dy) {
    constexpr std::int64_t low = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t high = std::numeric_limits<std::int32_t>::max();
    const RECT stay{CutTo32Bits(low - dx), CutTo32Bits(low - dy), CutTo32Bits(high - dx),
                    CutTo32Bits(high - dy)};
    RECT box{};
    if (GetRgnBox(region, &box) == ERROR) return ERROR;
    if (box.left < stay.left || box.top < stay.top || box.right > stay.right || box.bottom > stay.bottom) {
        const HRGN staying = CreateRectRgnIndirect(&stay);
        const int kind = CombineRgn(region, region, staying, RGN_AND);
        DeleteObject(staying);
        if (kind == ERROR) return ERROR;
    }
    return __real___imp_OffsetRgn(region, dx, dy);
}

/// The system selects palettes with a call of their own.
HGDIOBJ WINAPI SelectObjectOrPalette(HDC dc, HGDIOBJ object) {
    if (GetObjectType(object) == OBJ_PAL) return SelectPalette(dc, static_cast<HPALETTE>(object), FALSE);
    return __real___imp_SelectObject(dc, object);
}

}  // namespace

extern "C" {
decltype(&CreateBitmap) __wrap___imp_CreateBitmap = &CreateBitmapOfLongRows;
decltype(&CreateCompatibleBitmap) __wrap___imp_CreateCompatibleBitmap = &CreateCompatibleBitmapOfSize;
decltype(&GetSysColor) __wrap___imp_GetSysColor = &GetSysColorUnflagged;
decltype(&GetSysColorBrush) __wrap___imp_GetSysColorBrush = &GetSysColorBrushUnflagged;
decltype(&OffsetRgn) __wrap___imp_OffsetRgn = &OffsetRgnWithin32Bits;
decltype(&SelectObject) __wrap___imp_SelectObject = &SelectObjectOrPalette;
}
