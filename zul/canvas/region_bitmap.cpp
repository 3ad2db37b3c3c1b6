/// \file
/// The region of a bitmap's pixels.

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <vector>

#include "zul/canvas/bitmap_canvas.h"
#include "zul/canvas/region.h"
#include "zul/tools/device_guards.h"

namespace zul {
namespace {

/// The pixels of a device as colours, read a block of rows at a time, so that large bitmaps take little room.
class CColorRows {
public:
    /// Throws std::bad_alloc.
    CColorRows(HDC source, std::int32_t width, std::int32_t height)
        : m_Source(source),
          m_Width(width),
          m_BlockRows(std::clamp(BlockPixels / width, 1, height)),
          m_Section(MakeSection(m_Target, width, m_BlockRows, m_Pixels)),
          m_Selection(m_Target.GetHandle(), m_Section.Get()) {
        NeedMemory(::GetCurrentObject(m_Target.GetHandle(), OBJ_BITMAP) == m_Section.Get());
    }

    /// Of row \p y as 0x00RRGGBB with whatever in the highest byte. Rows are asked for in order.
    const std::uint32_t* Row(std::int32_t y) {
        const std::int32_t within = y % m_BlockRows;
        if (within == 0) {
            NeedMemory(::BitBlt(m_Target.GetHandle(), 0, 0, m_Width, m_BlockRows, m_Source, 0, y, SRCCOPY) ||
                       ::GetLastError() != ERROR_NOT_ENOUGH_MEMORY);
            ::GdiFlush();
        }
        return m_Pixels + std::ptrdiff_t{within} * m_Width;
    }

private:
    static constexpr std::int32_t BlockPixels = 1 << 16;

    static HBITMAP MakeSection(CCanvas& target, std::int32_t width, std::int32_t rows,
                               const std::uint32_t*& pixels) {
        target.CreateMemoryCanvas();
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = -rows;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        void* memory = nullptr;
        const HBITMAP section =
            ::CreateDIBSection(target.GetHandle(), &info, DIB_RGB_COLORS, &memory, nullptr, 0);
        pixels = static_cast<const std::uint32_t*>(memory);
        return section;
    }

    HDC m_Source;
    std::int32_t m_Width, m_BlockRows;
    const std::uint32_t* m_Pixels = nullptr;
    CCanvas m_Target;
    CMadeHandle<HBITMAP> m_Section;
    CSelection m_Selection;
};

/// Rectangles behind the header that makes them a region.
class CRegionData {
public:
    CRegionData() : m_Records(HeaderRecords) {}

    void Add(const RECT& rect) { m_Records.push_back(rect); }
    /// Null when they are too many.
    HRGN MakeRegion() {
        const std::size_t count = m_Records.size() - HeaderRecords;
        const std::size_t bytes = m_Records.size() * sizeof(RECT);
        if (bytes > std::numeric_limits<std::int32_t>::max()) return nullptr;
        const RGNDATAHEADER header{sizeof header,
                                   RDH_RECTANGLES,
                                   static_cast<DWORD>(count),
                                   static_cast<DWORD>(count * sizeof(RECT)),
                                   {}};
        std::memcpy(m_Records.data(), &header, sizeof header);
        return ::ExtCreateRegion(nullptr, static_cast<DWORD>(bytes),
                                 reinterpret_cast<const RGNDATA*>(m_Records.data()));
    }

private:
    static_assert(sizeof(RGNDATAHEADER) % sizeof(RECT) == 0,
                  "the header takes the place of whole rectangles");
    static constexpr std::size_t HeaderRecords = sizeof(RGNDATAHEADER) / sizeof(RECT);

    std::vector<RECT> m_Records;
};

/// Adds the runs of a row that have another colour than \p key.
template <class IsKey>
void AddRuns(CRegionData& data, std::int32_t width, std::int32_t y, IsKey&& isKey) {
    for (std::int32_t x = 0; x < width;) {
        const std::int32_t start = x;
        while (x < width && !isKey(x))
            ++x;
        if (start < x) data.Add({start, y, x, y + 1});
        while (x < width && isKey(x))
            ++x;
    }
}

}  // namespace

void CRegion::Create(CBitmap* bitmap, std::int32_t color, CCanvas* canvas, TCombine combine) {
    const HBITMAP handle = bitmap ? bitmap->GetHandle() : nullptr;
    BITMAP description{};
    if (!handle || ::GetObjectW(handle, sizeof description, &description) == 0) return;
    CBitmapCanvas source(bitmap);
    if (::GetCurrentObject(source.GetHandle(), OBJ_BITMAP) != handle) return;

    CColorRows rows(source.GetHandle(), description.bmWidth, description.bmHeight);
    const auto wanted = static_cast<COLORREF>(color);
    const COLORREF key = RGB(GetBValue(wanted), GetGValue(wanted), GetRValue(wanted));
    const bool isColor = wanted <= 0xFFFFFF;
    CRegionData data;
    for (std::int32_t y = 0; y < description.bmHeight; ++y) {
        const std::uint32_t* const row = rows.Row(y);
        AddRuns(data, description.bmWidth, y,
                [=](std::int32_t x) { return isColor && (row[x] & 0xFFFFFF) == key; });
    }
    Adopt(data.MakeRegion(), canvas, combine);
}

}  // namespace zul
