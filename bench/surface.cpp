#include "bench/surface.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>

namespace zulbench {
namespace {

constexpr std::uint32_t kColorBits = 0xFFFFFF;

bool HasNear(const Picture& picture, std::int32_t x, std::int32_t y, std::uint32_t color) {
    for (std::int32_t row = std::max(y - 1, 0); row <= std::min(y + 1, picture.height - 1); ++row) {
        const std::uint32_t* pixels =
            picture.pixels.data() + static_cast<std::ptrdiff_t>(row) * picture.width;
        for (std::int32_t column = std::max(x - 1, 0); column <= std::min(x + 1, picture.width - 1);
             ++column) {
            if (pixels[column] == color) return true;
        }
    }
    return false;
}

std::int64_t CountStrays(const Picture& from, const Picture& to) {
    std::int64_t strays = 0;
    auto pixel = from.pixels.begin();
    for (std::int32_t y = 0; y < from.height; ++y) {
        for (std::int32_t x = 0; x < from.width; ++x, ++pixel)
            strays += *pixel != 0 && !HasNear(to, x, y, *pixel);
    }
    return strays;
}

std::int64_t CountInk(const Picture& picture) {
    return static_cast<std::int64_t>(picture.pixels.size()) -
           std::count(picture.pixels.begin(), picture.pixels.end(), 0u);
}

/// The five bits from \p shift on as eight.
std::uint32_t Widen(std::uint32_t pixel, int shift) {
    const std::uint32_t level = pixel >> shift & 31u;
    return level << 3 | level >> 2;
}

}  // namespace

double Strays(const Picture& a, const Picture& b) {
    const std::int64_t ink = CountInk(a) + CountInk(b);
    if (ink == 0 || a.width != b.width || a.height != b.height) return 1.0;
    return static_cast<double>(CountStrays(a, b) + CountStrays(b, a)) / static_cast<double>(ink);
}

double InkDifference(const Picture& a, const Picture& b) {
    const std::int64_t more = std::max(CountInk(a), CountInk(b));
    if (more == 0) return 1.0;
    return static_cast<double>(more - std::min(CountInk(a), CountInk(b))) / static_cast<double>(more);
}

double Unlike(const Picture& a, const Picture& b) {
    if (a.pixels.empty() || a.width != b.width || a.height != b.height) return 1.0;
    std::size_t unlike = 0;
    for (std::size_t i = 0; i < a.pixels.size(); ++i)
        unlike += a.pixels[i] != b.pixels[i];
    return static_cast<double>(unlike) / static_cast<double>(a.pixels.size());
}

Surface::Surface(std::int32_t width, std::int32_t height, WORD bits)
    : m_Width(width), m_Height(height), m_Bits(bits) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;  // the top row first
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = bits;
    info.bmiHeader.biCompression = BI_RGB;
    m_Section = ::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &m_Pixels, nullptr, 0);
    if (!m_Section) throw std::runtime_error("there is no memory for a picture");
    m_Bitmap.AttachHandle(m_Section);
    m_Canvas.CreateMemoryCanvas();
    m_Canvas.AssignBitmap(&m_Bitmap);
    m_Canvas.GetBackground().SetMode(zul::CBackground::ModeTransparent);
}

Surface::~Surface() {
    // The canvas lets go of the pixels before they are deleted.
    m_Canvas.Release(true);
    m_Bitmap.Clear();
    ::DeleteObject(m_Section);
}

Picture Surface::GetPicture() const {
    ::GdiFlush();
    Picture picture{m_Width, m_Height, {}};
    picture.pixels.resize(static_cast<std::size_t>(m_Width) * static_cast<std::size_t>(m_Height));
    auto out = picture.pixels.begin();
    if (m_Bits == 32) {
        for (const std::uint32_t* pixel = GetPixels(); out != picture.pixels.end(); ++out)
            *out = *pixel++ & kColorBits;
        return picture;
    }
    const std::int32_t gap = m_Width % 2;  // rows take whole 32 bits
    const auto* pixel = static_cast<const std::uint16_t*>(m_Pixels);
    for (std::int32_t y = 0; y < m_Height; ++y, pixel += gap) {
        for (std::int32_t x = 0; x < m_Width; ++x, ++pixel)
            *out++ = Widen(*pixel, 10) << 16 | Widen(*pixel, 5) << 8 | Widen(*pixel, 0);
    }
    return picture;
}

COLORREF ColorOf(std::uint32_t number) {
    const std::uint32_t levels = number % 0x7FFF + 1;
    return Widen(levels, 0) | Widen(levels, 5) << 8 | Widen(levels, 10) << 16;
}

}  // namespace zulbench
