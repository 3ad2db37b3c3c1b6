#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "platform/crt.h"
#include "platform/gdi.h"

namespace {

/// A memory context with a 32-bit picture of a single colour.
class Board {
public:
    Board(int width, int height, std::uint32_t color) : m_Context(::CreateCompatibleDC(nullptr)) {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = -height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        void* bits = nullptr;
        m_Bitmap = ::CreateDIBSection(m_Context, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        m_Previous = ::SelectObject(m_Context, m_Bitmap);
        Pixels = static_cast<std::uint32_t*>(bits);
        m_Width = width;
        m_Height = height;
        for (int i = 0; i < width * height; ++i)
            Pixels[i] = color;
    }
    ~Board() {
        ::SelectObject(m_Context, m_Previous);
        ::DeleteObject(m_Bitmap);
        ::DeleteDC(m_Context);
    }
    Board(const Board&) = delete;
    Board& operator=(const Board&) = delete;

    HDC Get() const { return m_Context; }
    /// One row a string: the lowest hexadecimal digit of each pixel, '.' for white.
    std::vector<std::string> Look() const {
        std::vector<std::string> rows;
        for (int y = 0; y < m_Height; ++y) {
            rows.emplace_back();
            for (int x = 0; x < m_Width; ++x) {
                const std::uint32_t pixel = Pixels[y * m_Width + x] & 0xFFFFFF;
                rows.back() += pixel == 0xFFFFFF ? '.' : "0123456789ABCDEF"[pixel & 15];
            }
        }
        return rows;
    }

    std::uint32_t* Pixels;

private:
    HDC m_Context;
    HBITMAP m_Bitmap;
    HGDIOBJ m_Previous;
    int m_Width, m_Height;
};

TEST(CreateBitmapRows, ArePaddedTo32BitsAtEveryWidth) {
    for (const int width : {1, 8, 16, 17, 31, 32, 33, 48, 49}) {
        const auto words = static_cast<std::size_t>((width + 31) / 32);
        std::vector<std::uint32_t> rows(words * 5);
        for (std::size_t i = 0; i < rows.size(); ++i)
            rows[i] = static_cast<std::uint32_t>(i + 1) * 0x9E3779B9u;
        const HBITMAP bitmap = ::CreateBitmap(width, 5, 1, 1, rows.data());
        ASSERT_NE(bitmap, nullptr);
        const HDC dc = ::CreateCompatibleDC(nullptr);
        const HGDIOBJ previous = ::SelectObject(dc, bitmap);
        for (int y = 0; y < 5; ++y) {
            for (int x = 0; x < width; ++x) {
                const auto* row =
                    reinterpret_cast<const std::uint8_t*>(&rows[static_cast<std::size_t>(y) * words]);
                const bool bit = (row[x / 8] >> (7 - x % 8) & 1) != 0;
                ASSERT_EQ(::GetPixel(dc, x, y), bit ? 0xFFFFFFu : 0u) << width << ": " << x << ", " << y;
            }
        }
        ::SelectObject(dc, previous);
        ::DeleteDC(dc);
        ::DeleteObject(bitmap);
    }
}

TEST(CreateBitmapRows, SizesAndDepthsThatCannotBeAreRefusedUnread) {
    const std::uint32_t word = 0;
    constexpr int most = std::numeric_limits<int>::max();
    EXPECT_EQ(::CreateBitmap(most, most, 1, 1, &word), nullptr);
    EXPECT_EQ(::CreateBitmap(-1, 8, 1, 1, &word), nullptr);
    EXPECT_EQ(::CreateBitmap(8, 8, 1, 7, &word), nullptr);
    EXPECT_EQ(::CreateBitmap(8, 8, 2, 1, &word), nullptr);
    const HDC screen = ::GetDC(nullptr);
    EXPECT_EQ(::CreateCompatibleBitmap(screen, -1, 5), nullptr);
    ::ReleaseDC(nullptr, screen);
}

TEST(SystemColours, FlagIsStripped) {
    for (const int index : {COLOR_WINDOW, COLOR_BTNFACE}) {
        EXPECT_EQ(::GetSysColor(index | SYS_COLOR_INDEX_FLAG), ::GetSysColor(index));
        EXPECT_EQ(::GetSysColorBrush(index | SYS_COLOR_INDEX_FLAG), ::GetSysColorBrush(index));
        EXPECT_NE(::GetSysColor(index), 0u) << "else the lines above say nothing";
    }
}

TEST(SelectObject, TakesPalettes) {
    LOGPALETTE entries{0x300, 1, {{1, 2, 3, 0}}};
    const HPALETTE palette = ::CreatePalette(&entries);
    const HDC dc = ::CreateCompatibleDC(nullptr);
    const HGDIOBJ first = ::SelectObject(dc, palette);
    EXPECT_EQ(first, ::GetStockObject(DEFAULT_PALETTE));
    EXPECT_EQ(::GetCurrentObject(dc, OBJ_PAL), palette);
    EXPECT_EQ(::SelectObject(dc, first), palette);
    ::DeleteDC(dc);
    ::DeleteObject(palette);
}

using Rows = std::vector<std::string>;

TEST(TransparentImage, SourceBeyondItsBitmapDrawsNothing) {
    Board source(3, 2, 0);
    const std::uint32_t pixels[] = {1, 2, 3, 4, 5, 6};
    for (int i = 0; i < 6; ++i)
        source.Pixels[i] = pixels[i];
    constexpr int most = std::numeric_limits<int>::max();
    const struct {
        const char* Name;
        int X, Y, Width, Height, SourceX, SourceY, SourceWidth, SourceHeight;
        Rows Expected;
    } table[] = {
        {"inside", 1, 1, 3, 2, 0, 0, 3, 2, {".....", ".123.", ".4.6.", "....."}},
        {"left and above", 0, 0, 4, 3, -1, -1, 4, 3, {".....", ".123.", ".4.6.", "....."}},
        {"right and below", 1, 1, 4, 3, 1, 0, 4, 3, {".....", ".23..", "..6..", "....."}},
        {"doubled, half of it beyond", 0, 0, 4, 4, -1, 0, 2, 2, {"..11.", "..11.", "..44.", "..44."}},
        {"far beyond", 0, 0, most, most, most, most, most, most, {".....", ".....", ".....", "....."}},
        {"wholly beyond", 0, 0, 3, 2, 3, 0, 3, 2, {".....", ".....", ".....", "....."}},
    };
    for (const auto& row : table) {
        Board target(5, 4, 0xFFFFFF);
        // 0x00BBGGRR: blue is the low byte in memory and the third in a colour.
        EXPECT_TRUE(::TransparentImage(target.Get(), row.X, row.Y, row.Width, row.Height, source.Get(),
                                       row.SourceX, row.SourceY, row.SourceWidth, row.SourceHeight,
                                       0xFF050000))
            << row.Name;
        EXPECT_EQ(target.Look(), row.Expected) << row.Name;
    }
}

TEST(TransparentImage, BadExtentsAndContextsFail) {
    Board board(4, 4, 0xFFFFFF);
    Board source(4, 4, 0);
    const int extents[][4] = {{0, 4, 4, 4}, {4, -4, 4, 4}, {4, 4, -4, 4}, {4, 4, 4, 0}};
    for (const auto& e : extents)
        EXPECT_FALSE(::TransparentImage(board.Get(), 0, 0, e[0], e[1], source.Get(), 0, 0, e[2], e[3], 1));
    EXPECT_FALSE(::TransparentImage(nullptr, 0, 0, 4, 4, source.Get(), 0, 0, 4, 4, 1));
    EXPECT_FALSE(::TransparentImage(board.Get(), 0, 0, 4, 4, nullptr, 0, 0, 4, 4, 1));
    EXPECT_EQ(board.Look(), Rows(4, "...."));
}

TEST(Files, NullNamesDoNotOpen) {
    EXPECT_EQ(zul_wfopen(nullptr, u"rb"), nullptr);
    EXPECT_EQ(zul_wfopen(u"x", nullptr), nullptr);
}

}  // namespace
