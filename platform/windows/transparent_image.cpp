#include <cstdint>

#include "platform/gdi.h"

namespace {

/// A memory context with a 32-bit picture of its own.
class CScratchPicture {
public:
    CScratchPicture(int width, int height) : m_Context(CreateCompatibleDC(nullptr)) {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        void* pixels = nullptr;
        m_Bitmap = CreateDIBSection(m_Context, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
        m_Previous = m_Bitmap != nullptr ? SelectObject(m_Context, m_Bitmap) : nullptr;
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

private:
    HDC m_Context;
    HBITMAP m_Bitmap = nullptr;
    HGDIOBJ m_Previous = nullptr;
};

/// Whether the block lies within the bitmap that \p source shows. A context without a bitmap bounds nothing.
bool IsInside(HDC source, int x, int y, int width, int height) {
    BITMAP description{};
    const HGDIOBJ bitmap =
        GetObjectType(source) == OBJ_MEMDC ? GetCurrentObject(source, OBJ_BITMAP) : nullptr;
    if (bitmap == nullptr || GetObjectW(bitmap, sizeof description, &description) == 0) return true;
    return x >= 0 && y >= 0 && std::int64_t{x} + width <= description.bmWidth &&
           std::int64_t{y} + height <= description.bmHeight;
}

void FillWith(HDC dc, int width, int height, COLORREF color) {
    const HBRUSH brush = CreateSolidBrush(color);
    const RECT all{0, 0, width, height};
    FillRect(dc, &all, brush);
    DeleteObject(brush);
}

}  // namespace

/// The system draws pixels of its own making where the source block reaches beyond the bitmap. There the
/// block is completed with the key, which draws nothing, and the mapping of the whole block stays what it is.
BOOL TransparentImage(HDC dc, int x, int y, int width, int height, HDC source, int sx, int sy,
                      int sourceWidth, int sourceHeight, COLORREF key) {
    if (width <= 0 || height <= 0 || sourceWidth <= 0 || sourceHeight <= 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    const COLORREF color = key & 0xFFFFFF;  // a key with anything above its three channels matches nothing
    const auto draw = [&](HDC from, int left, int top) {
        return TransparentBlt(dc, x, y, width, height, from, left, top, sourceWidth, sourceHeight, color);
    };
    if (IsInside(source, sx, sy, sourceWidth, sourceHeight)) return draw(source, sx, sy);

    const CScratchPicture whole(sourceWidth, sourceHeight);
    if (whole.Get() == nullptr) return FALSE;
    FillWith(whole.Get(), sourceWidth, sourceHeight, color);
    SetTextColor(whole.Get(), GetTextColor(dc));
    SetBkColor(whole.Get(), GetBkColor(dc));
    if (!BitBlt(whole.Get(), 0, 0, sourceWidth, sourceHeight, source, sx, sy, SRCCOPY)) return FALSE;
    return draw(whole.Get(), 0, 0);
}
