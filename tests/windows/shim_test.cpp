#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

#include "platform/crt.h"
#include "platform/gdi.h"

namespace {

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

TEST(TransparentImage, BadExtentsAndContextsFailAndFarOnesDrawNothing) {
    const HDC target = ::CreateCompatibleDC(nullptr), source = ::CreateCompatibleDC(nullptr);
    const std::uint32_t black = 0;
    const HBITMAP bitmaps[] = {::CreateBitmap(1, 1, 1, 32, &black), ::CreateBitmap(1, 1, 1, 32, &black)};
    ::SelectObject(target, bitmaps[0]);
    ::SelectObject(source, bitmaps[1]);
    ::SetPixel(source, 0, 0, 0xFFFFFF);
    const int extents[][4] = {{0, 4, 4, 4}, {4, -4, 4, 4}, {4, 4, -4, 4}, {4, 4, 4, 0}};
    for (const auto& e : extents)
        EXPECT_FALSE(::TransparentImage(target, 0, 0, e[0], e[1], source, 0, 0, e[2], e[3], 1));
    EXPECT_FALSE(::TransparentImage(nullptr, 0, 0, 1, 1, source, 0, 0, 1, 1, 1));
    EXPECT_FALSE(::TransparentImage(target, 0, 0, 1, 1, nullptr, 0, 0, 1, 1, 1));
    constexpr int most = std::numeric_limits<int>::max();
    EXPECT_TRUE(::TransparentImage(target, 0, 0, most, most, source, most, most, most, most, 1));
    EXPECT_EQ(::GetPixel(target, 0, 0), 0u);
    EXPECT_TRUE(::TransparentImage(target, 0, 0, 1, 1, source, 0, 0, 1, 1, 0xFF000001));
    EXPECT_EQ(::GetPixel(target, 0, 0), 0xFFFFFFu);
    ::DeleteDC(target);
    ::DeleteDC(source);
    for (const HBITMAP bitmap : bitmaps)
        ::DeleteObject(bitmap);
}

TEST(Files, NullNamesDoNotOpen) {
    EXPECT_EQ(zul_wfopen(nullptr, u"rb"), nullptr);
    EXPECT_EQ(zul_wfopen(u"x", nullptr), nullptr);
}

}  // namespace
