#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "platform/gdi.h"

namespace {

HRGN RegionOf(const std::vector<RECT>& rects) {
    if (rects.empty()) return CreateRectRgn(0, 0, 0, 0);
    const auto size = static_cast<DWORD>(rects.size() * sizeof(RECT));
    std::vector<char> data(sizeof(RGNDATAHEADER) + size);
    const RGNDATAHEADER header{sizeof header, RDH_RECTANGLES, static_cast<DWORD>(rects.size()), size, {}};
    std::memcpy(data.data(), &header, sizeof header);
    std::memcpy(data.data() + sizeof header, rects.data(), size);
    return ExtCreateRegion(nullptr, static_cast<DWORD>(data.size()),
                           reinterpret_cast<const RGNDATA*>(data.data()));
}

/// A memory context with a 32-bit picture of its own.
class CScratchPicture {
public:
    /// Of a single colour, given as it is stored.
    CScratchPicture(int width, int height, std::uint32_t color)
        : m_Context(CreateCompatibleDC(nullptr)), m_Width(width), m_Height(height) {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = -height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        void* pixels = nullptr;
        m_Bitmap = CreateDIBSection(m_Context, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
        if (m_Bitmap == nullptr) return;
        m_Previous = SelectObject(m_Context, m_Bitmap);
        m_Pixels = static_cast<std::uint32_t*>(pixels);
        std::fill_n(m_Pixels, static_cast<std::size_t>(width) * static_cast<std::size_t>(height), color);
    }
    ~CScratchPicture() {
        if (m_Previous != nullptr) SelectObject(m_Context, m_Previous);
        if (m_Bitmap != nullptr) DeleteObject(m_Bitmap);
        if (m_Context != nullptr) DeleteDC(m_Context);
    }
    CScratchPicture(const CScratchPicture&) = delete;
    CScratchPicture& operator=(const CScratchPicture&) = delete;

    /// Null when there was no memory for the picture.
    HDC Get() const { return m_Previous != nullptr ? m_Context : nullptr; }

    /// The pixels of another colour than \p key, with the picture's corner at (\p left, \p top). The caller
    /// deletes it.
    HRGN MakeRegion(std::uint32_t key, int left, int top) const {
        GdiFlush();
        std::vector<RECT> runs;
        for (int y = 0; y < m_Height; ++y) {
            const std::uint32_t* const row =
                m_Pixels + static_cast<std::size_t>(y) * static_cast<std::size_t>(m_Width);
            const auto shows = [=](int x) { return (row[x] & 0xFFFFFF) != key; };
            for (int x = 0; x < m_Width;) {
                const int start = x;
                while (x < m_Width && shows(x) == shows(start))
                    ++x;
                if (shows(start)) runs.push_back({left + start, top + y, left + x, top + y + 1});
            }
        }
        return RegionOf(runs);
    }

private:
    HDC m_Context;
    int m_Width, m_Height;
    HBITMAP m_Bitmap = nullptr;
    HGDIOBJ m_Previous = nullptr;
    std::uint32_t* m_Pixels = nullptr;
};

LONG EndOf(int start, int extent) {
    return static_cast<LONG>(
        std::min<std::int64_t>(std::int64_t{start} + extent, std::numeric_limits<LONG>::max()));
}

}  // namespace

/// The system's own call compares the key after it has changed the colours into the target's, mixes the
/// pixels that shrinking drops into others, and invents pixels where the source block reaches beyond its
/// bitmap. So the block is stretched over a picture that is all key, and what then shows is copied with one
/// clipped call.
BOOL TransparentImage(HDC dc, int x, int y, int width, int height, HDC source, int sx, int sy,
                      int sourceWidth, int sourceHeight, COLORREF key) {
    if (width <= 0 || height <= 0 || sourceWidth <= 0 || sourceHeight <= 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    RECT seen;
    if (GetObjectType(source) == 0 || GetClipBox(dc, &seen) == ERROR) return FALSE;
    const int left = std::max<int>(seen.left, x), top = std::max<int>(seen.top, y);
    const LONG right = std::min(seen.right, EndOf(x, width)),
               bottom = std::min(seen.bottom, EndOf(y, height));
    if (left >= right || top >= bottom) return TRUE;
    const int seenWidth = static_cast<int>(right) - left, seenHeight = static_cast<int>(bottom) - top;

    const std::uint32_t stored = RGB(GetBValue(key), GetGValue(key), GetRValue(key));
    const CScratchPicture picture(seenWidth, seenHeight, stored);
    const HDC scratch = picture.Get();
    if (scratch == nullptr) return FALSE;
    SetTextColor(scratch, GetTextColor(dc));
    SetBkColor(scratch, GetBkColor(dc));
    SetStretchBltMode(scratch, COLORONCOLOR);
    if (!StretchBlt(scratch, x - left, y - top, width, height, source, sx, sy, sourceWidth, sourceHeight,
                    SRCCOPY)) {
        return FALSE;
    }
    const HRGN shown = picture.MakeRegion(stored, left, top);
    if (shown == nullptr) return FALSE;
    const int saved = SaveDC(dc);
    const BOOL done = ExtSelectClipRgn(dc, shown, RGN_AND) != ERROR &&
                      BitBlt(dc, left, top, seenWidth, seenHeight, scratch, 0, 0, SRCCOPY);
    RestoreDC(dc, saved);
    DeleteObject(shown);
    return done;
}
