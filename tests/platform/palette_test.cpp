#include <gtest/gtest.h>

#include "platform/gdi.h"
#include "platform/software/display.h"
#include "tests/platform/board.h"

namespace {

constexpr COLORREF kFirst = 0x123456, kSecond = 0x654321;

HPALETTE TwoColours() {
    const std::uint32_t description[] = {0x00020300, kFirst, kSecond};
    return CreatePalette(reinterpret_cast<const LOGPALETTE*>(description));
}

TEST(Palettes, RealisedOnesColourSurfacesThatHaveNoColoursOfTheirOwn) {
    const struct {
        Layout layout;
        int displayBits;
        UINT realised;
    } rows[] = {
        {{"8 bits", 8, false}, 32, 2}, {{"4 bits", 4, false}, 32, 2},      {{"a mask", 1, false}, 32, 0},
        {{"1 bit", 1, false}, 1, 2},   {{"8-bit section", 8, true}, 8, 0}, {{"true colour", 24, false}, 8, 0},
    };
    const device::DisplaySettings before = device::GetDisplay();
    for (const auto& row : rows) {
        ASSERT_TRUE(device::SetDisplay({8, 8, row.displayBits}));
        const Board board(row.layout, 2, 1);
        const HPALETTE palette = TwoColours();
        const COLORREF black = GetPixel(board.Dc(), 0, 0);
        SelectPalette(board.Dc(), palette, FALSE);
        EXPECT_EQ(GetPixel(board.Dc(), 0, 0), black) << row.layout << ": selecting is not enough";
        EXPECT_EQ(RealizePalette(board.Dc()), row.realised) << row.layout;
        EXPECT_EQ(GetPixel(board.Dc(), 0, 0), row.realised != 0 ? kFirst : black) << row.layout;
        EXPECT_EQ(SetPixel(board.Dc(), 1, 0, kSecond + 1) == kSecond, row.realised != 0) << row.layout;
        EXPECT_EQ(GetNearestColor(board.Dc(), kSecond + 1) == kSecond, row.realised != 0) << row.layout;
        EXPECT_EQ(GetNearestPaletteIndex(palette, kFirst + 1), 0u);
        EXPECT_EQ(GetNearestPaletteIndex(palette, kSecond - 1), 1u);
        DeleteObject(palette);
    }
    EXPECT_EQ(GetNearestColor(nullptr, 0), CLR_INVALID);
    ASSERT_TRUE(device::SetDisplay({8, 8, 8}));
    const HDC drawing = GetDC(nullptr), realising = GetDC(nullptr);
    EXPECT_NE(SetPixel(drawing, 0, 0, kSecond), kSecond);
    SelectPalette(realising, TwoColours(), FALSE);
    EXPECT_EQ(RealizePalette(realising), 2u);
    EXPECT_EQ(SetPixel(drawing, 0, 0, kSecond), kSecond)
        << "one display, though the colour was looked up before";
    DeleteObject(GetCurrentObject(realising, OBJ_PAL));
    ReleaseDC(nullptr, realising);
    ReleaseDC(nullptr, drawing);
    device::SetDisplay(before);
}

TEST(Palettes, EntriesAreReachedWithinTheirBounds) {
    const UINT rows[][3] = {{0, 1, 1}, {0, 9, 2},          {1, UINT32_MAX, 1},
                            {2, 1, 0}, {UINT32_MAX, 2, 0}, {5, 0, 2}};
    const HPALETTE palette = TwoColours();
    for (const auto& [start, count, there] : rows) {
        PALETTEENTRY entries[9] = {};
        EXPECT_EQ(GetPaletteEntries(palette, start, count, entries), there) << start;
        EXPECT_EQ(SetPaletteEntries(palette, start, count, entries), count == 0 ? 0 : there) << start;
    }
    DeleteObject(palette);
    EXPECT_EQ(GetPaletteEntries(palette, 0, 0, nullptr) + GetNearestPaletteIndex(palette, 0), 0u) << "stale";
}

}  // namespace
