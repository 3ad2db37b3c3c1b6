/// \file
/// A picture in memory to draw on, and how alike two pictures are.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/gdi.h"
#include "zul/canvas/canvas.h"
#include "zul/raster/bitmap.h"

namespace zulbench {

/// The size of every row's picture.
constexpr std::int32_t kWidth = 800;
constexpr std::int32_t kHeight = 600;

/// Pixels as 0x00RRGGBB, rows from top to bottom.
struct Picture {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<std::uint32_t> pixels;
};

/// The share of what is drawn (not black) in either picture that has none of its colour within one pixel in
/// the other. All when there is nothing drawn in both, or the sizes differ.
double Strays(const Picture& a, const Picture& b);
/// How far the numbers of drawn pixels are apart, as a share of the greater one.
double InkDifference(const Picture& a, const Picture& b);
/// The share of pixels that are not the same.
double Unlike(const Picture& a, const Picture& b);

/// A section of the device, black at first, with a canvas that draws on it.
class Surface {
public:
    /// \param bits  a pixel: 32, or 16 (five for each colour)
    /// \throws std::runtime_error when there is no memory
    explicit Surface(std::int32_t width = kWidth, std::int32_t height = kHeight, WORD bits = 32);
    ~Surface();
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;

    zul::CCanvas& GetCanvas() { return m_Canvas; }
    HDC GetDevice() const { return m_Canvas.GetHandle(); }
    /// Of a surface of 32 bits a pixel; rows from top to bottom without gaps.
    std::uint32_t* GetPixels() const { return static_cast<std::uint32_t*>(m_Pixels); }
    std::int32_t GetWidth() const { return m_Width; }
    std::int32_t GetHeight() const { return m_Height; }
    Picture GetPicture() const;

private:
    std::int32_t m_Width;
    std::int32_t m_Height;
    WORD m_Bits;
    void* m_Pixels = nullptr;
    HBITMAP m_Section = nullptr;
    zul::CBitmap m_Bitmap;
    zul::CCanvas m_Canvas;
};

/// A colour that 16 bits a pixel hold as well, red in the low byte, never black.
COLORREF ColorOf(std::uint32_t number);

}  // namespace zulbench
