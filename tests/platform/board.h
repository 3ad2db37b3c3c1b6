/// \file
/// A bitmap to draw on in tests, whose pixels are read and written without the device's help.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <ostream>
#include <random>
#include <vector>

#include "platform/gdi.h"
#include "platform/software/context.h"

constexpr int kMin = std::numeric_limits<int>::min(), kMax = std::numeric_limits<int>::max();

/// A pixel layout under test.
struct Layout {
    const char* name;
    int bits;
    bool section;  ///< a DIB section; else a device-dependent bitmap
    bool fields565 = false;
};

inline std::ostream& operator<<(std::ostream& out, const Layout& layout) {
    return out << layout.name;
}

constexpr Layout kLayouts[] = {
    {"Mono", 1, false},   {"MonoSection", 1, true},   {"Indexed4", 4, true}, {"Indexed8", 8, true},
    {"Rgb555", 16, true}, {"Rgb565", 16, true, true}, {"Bgr24", 24, true},   {"Bgrx32", 32, true},
};

/// A section's header with room for the largest colour table.
struct SectionInfo {
    BITMAPINFOHEADER header{};
    std::uint32_t colors[256] = {};  ///< 0x00RRGGBB; or three masks

    SectionInfo(int width, int height, int bits) {
        header.biSize = sizeof header;
        header.biWidth = width;
        header.biHeight = height;
        header.biPlanes = 1;
        header.biBitCount = static_cast<WORD>(bits);
    }
    const BITMAPINFO* Info() const { return reinterpret_cast<const BITMAPINFO*>(this); }
};

inline int Between(std::mt19937& random, int low, int high) {
    return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
}

/// A memory context with a bitmap of one layout selected.
class Board {
public:
    /// Indexed sections get \p table, 0x00RRGGBB, padded with black, or a spread of colours when it is empty.
    Board(const Layout& layout, int width, int height, bool bottomUp = false,
          const std::vector<std::uint32_t>& table = {})
        : m_Bits(layout.bits), m_Width(width), m_Height(height), m_BottomUp(bottomUp && layout.section) {
        m_Dc = CreateCompatibleDC(nullptr);
        if (layout.section) {
            SectionInfo info(width, bottomUp ? height : -height, layout.bits);
            const std::uint32_t count = layout.bits <= 8 ? 1u << layout.bits : 0;
            for (std::uint32_t i = 0; i < count; ++i)
                if (table.empty()) info.colors[i] = (i * 0x3D0B57u + 0x102030u) & 0xFFFFFFu;
            for (std::size_t i = 0; i < table.size(); ++i)
                info.colors[i] = table[i];
            if (layout.fields565) {
                info.header.biCompression = BI_BITFIELDS;
                info.colors[0] = 0xF800;
                info.colors[1] = 0x07E0;
                info.colors[2] = 0x001F;
            }
            void* memory = nullptr;
            m_Bitmap = CreateDIBSection(nullptr, info.Info(), DIB_RGB_COLORS, &memory, nullptr, 0);
            m_Memory = static_cast<std::uint8_t*>(memory);
        } else {
            m_Bitmap = CreateBitmap(width, height, 1, static_cast<UINT>(layout.bits), nullptr);
        }
        SelectObject(m_Dc, m_Bitmap);
        if (!layout.section) m_Memory = device::FindContext(m_Dc)->surface.top;
    }
    ~Board() {
        DeleteDC(m_Dc);
        DeleteObject(m_Bitmap);
        DeleteObject(m_Clip);
    }
    Board(const Board&) = delete;
    Board& operator=(const Board&) = delete;

    HDC Dc() const { return m_Dc; }
    HBITMAP Handle() const { return m_Bitmap; }
    int Width() const { return m_Width; }
    int Height() const { return m_Height; }
    std::uint8_t* Memory() const { return m_Memory; }
    std::size_t Stride() const { return static_cast<std::size_t>((m_Width * m_Bits + 31) / 32 * 4); }
    std::size_t Bytes() const { return Stride() * static_cast<std::size_t>(m_Height); }
    std::uint32_t Mask() const { return m_Bits == 32 ? 0xFFFFFFFFu : (1u << m_Bits) - 1; }

    /// The stored pixel, assembled bit by bit for the depths below a byte.
    std::uint32_t Raw(int x, int y) const {
        const std::uint8_t* row = RowOf(y);
        std::uint32_t pixel = 0;
        if (m_Bits < 8) {
            for (int bit = 0; bit < m_Bits; ++bit) {
                const int place = x * m_Bits + bit;
                pixel = pixel << 1 | (row[place / 8] >> (7 - place % 8) & 1u);
            }
            return pixel;
        }
        for (int i = m_Bits / 8 - 1; i >= 0; --i)
            pixel = pixel << 8 | row[x * (m_Bits / 8) + i];
        return pixel;
    }

    /// All pixels from the top row on.
    std::vector<std::uint32_t> Picture() const {
        std::vector<std::uint32_t> picture;
        for (int y = 0; y < m_Height; ++y) {
            for (int x = 0; x < m_Width; ++x)
                picture.push_back(Raw(x, y));
        }
        return picture;
    }

    /// Clips the context to some boxes, which it keeps.
    void ClipSomehow(std::mt19937& random) {
        DeleteObject(m_Clip);
        m_Clip = CreateRectRgn(0, 0, 0, 0);
        for (int n = Between(random, 0, 9); n > 0; --n) {
            const int left = Between(random, -9, m_Width), top = Between(random, -9, m_Height);
            const HRGN box = CreateRectRgn(left, top, left + Between(random, 0, m_Width),
                                           top + Between(random, 0, m_Height));
            CombineRgn(m_Clip, m_Clip, box, RGN_XOR);
            DeleteObject(box);
        }
        SelectClipRgn(m_Dc, m_Clip);
    }
    /// Whether the clip lets a pixel be drawn.
    bool Shows(int x, int y) const { return m_Clip == nullptr || PtInRegion(m_Clip, x, y) != FALSE; }

    /// Fills the memory, row padding included, with noise.
    void Noise(std::mt19937& random) {
        for (std::size_t i = 0; i < Bytes(); ++i)
            m_Memory[i] = static_cast<std::uint8_t>(random());
    }
    void Wipe(std::uint8_t byte = 0) const { std::memset(m_Memory, byte, Bytes()); }

private:
    std::uint8_t* RowOf(int y) const {
        return m_Memory + Stride() * static_cast<std::size_t>(m_BottomUp ? m_Height - 1 - y : y);
    }

    HDC m_Dc = nullptr;
    HBITMAP m_Bitmap = nullptr;
    HRGN m_Clip = nullptr;
    std::uint8_t* m_Memory = nullptr;
    int m_Bits, m_Width, m_Height;
    bool m_BottomUp;
};
