#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "platform/gdi.h"
#include "platform/software/fill_rows.h"
#include "tests/platform/blit_oracle.h"

namespace {

TEST(Fill, LongRowsHoldThePixelAndNothingBesideThem) {
    Dice dice(29);
    std::uint8_t block[device::kFillBlock];
    for (int turn = 0; turn < 4000; ++turn) {
        const std::size_t size = static_cast<std::size_t>(turn % 4) + 1;
        const auto bytes = (device::kFillBlock + size - 1) / size * size + size * std::size_t(dice(0, 200));
        const std::size_t stride = bytes + std::size_t(dice(0, 9)), from = std::size_t(dice(1, 70));
        const int rows = dice(0, 3);
        for (std::size_t i = 0; i < sizeof block; ++i)
            block[i] = i < size ? static_cast<std::uint8_t>(dice(1, 255)) : block[i - size];
        std::vector<std::uint8_t> expected(from + 3 * stride + 100);
        std::vector<std::uint8_t> memory[2] = {expected, expected};
        for (int row = 0; row < rows; ++row)
            for (std::size_t i = 0; i < bytes; ++i)
                expected[from + stride * std::size_t(row) + i] = block[i % size];
        const auto step = static_cast<std::ptrdiff_t>(stride);
        device::FillRows({memory[0].data() + from, step, bytes, rows}, block, size);
        device::FillRowsPlainly({memory[1].data() + from, step, bytes, rows}, block, size);
        for (const auto& got : memory)
            ASSERT_EQ(got, expected) << size << " bytes a pixel, " << bytes << " from " << from;
    }
}

TEST(Fill, MonoPatternsFollowOriginAndColoursAtOnce) {
    const std::uint8_t bits[] = {0xA0, 0, 0, 0};  // 101
    const HBITMAP bitmap = CreateBitmap(3, 1, 1, 1, bits);
    const HBRUSH brush = CreatePatternBrush(bitmap);
    const RECT all{0, 0, 6, 1};
    for (const Layout& layout : kLayouts) {
        Board board(layout, 6, 1, false, {0xFF0000, 0x0000FF});
        const COLORREF colors[] = {RGB(0, 0, 255), RGB(255, 0, 0)};
        for (int step = 0; step < 30; ++step) {
            SetBrushOrgEx(board.Dc(), step / 2 - 5, 0, nullptr);
            // One of them at a time.
            const COLORREF text = colors[step / 2 % 2], background = colors[(step + 1) / 2 % 2];
            SetTextColor(board.Dc(), text);
            SetBkColor(board.Dc(), background);
            ASSERT_TRUE(FillRect(board.Dc(), &all, brush));
            for (int x = 0; x < 6; ++x) {
                const bool one = (x - step / 2 + 35) % 3 != 1;
                // One-bit bitmaps without colours take the pattern's bits as they are.
                const COLORREF plain = one ? 0xFFFFFF : 0, shown = one ? background : text;
                EXPECT_EQ(GetPixel(board.Dc(), x, 0), layout.section ? shown : plain) << layout << step;
            }
        }
    }
    DeleteObject(brush);
    DeleteObject(bitmap);
}

TEST(Fill, ATallNarrowPatternTakesNoGigabytes) {
    constexpr int kHeight = 1 << 20;
    const HBITMAP bitmap = CreateBitmap(1, kHeight, 1, 32, nullptr);
    const HBRUSH brush = CreatePatternBrush(bitmap);
    const Board board(kLayouts[7], 300, 2);
    board.Wipe(0xFF);
    const RECT all{0, 0, 300, 2};
    ASSERT_TRUE(FillRect(board.Dc(), &all, brush));
    EXPECT_EQ(board.Picture(), std::vector<std::uint32_t>(600, 0));
    EXPECT_LE(device::FindContext(board.Dc())->prepared.capacity, std::size_t{kHeight} * 16);
    DeleteObject(brush);
    DeleteObject(bitmap);
}

TEST(Fill, OneBitTargetsDitherSolidBrushes) {
    // Rows of the picture of a grey and of a green on a fresh 8 x 8 one-bit bitmap, as the platform draws it.
    const struct {
        COLORREF color;
        int originX;
        const char* firstRow;
        int lit;
    } rows[] = {
        {RGB(128, 128, 128), 0, "01010101", 32}, {RGB(128, 128, 128), 1, "10101010", 32},
        {RGB(0, 255, 0), 0, "01010101", 38},     {RGB(0, 255, 255), 0, "01010101", 45},
        {RGB(6, 0, 0), 0, "00000000", 0},        {RGB(7, 0, 0), 0, "00000000", 1},
        {RGB(255, 255, 0), 0, "01110111", 57},   {RGB(253, 253, 253), 0, "01111111", 63},
        {RGB(254, 254, 254), 0, "11111111", 64}, {RGB(0, 0, 0), 0, "00000000", 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.color);
        Board board(kLayouts[0], 8, 8);
        SetBrushOrgEx(board.Dc(), row.originX, 0, nullptr);
        const HBRUSH brush = CreateSolidBrush(row.color);
        const RECT all{0, 0, 8, 8};
        FillRect(board.Dc(), &all, brush);
        DeleteObject(brush);
        const std::vector<std::uint32_t> picture = board.Picture();
        std::string first;
        for (int x = 0; x < 8; ++x)
            first += board.Raw(x, 0) != 0 ? '1' : '0';
        EXPECT_EQ(first, row.firstRow);
        EXPECT_EQ(std::count(picture.begin(), picture.end(), 1u), row.lit);
    }
}

TEST(Fill, PatternsOfAnotherLayoutAreConvertedAsThePlatformDoes) {
    std::vector<std::uint32_t> greys;
    for (std::uint32_t i = 0; i < 256; ++i)
        greys.push_back(i * 0x010101);
    const Layout &mono = kLayouts[0], &monoSection = kLayouts[1], &indexed8 = kLayouts[3],
                 &bgrx = kLayouts[7];
    const struct {
        const char* what;
        const Layout &pattern, &target;
        std::vector<std::uint32_t> table;
        std::uint32_t color;  ///< 0x00RRGGBB of every pattern pixel
        int x, y;
        std::uint32_t pixel;
    } rows[] = {
        {"256 greys by the middle of a level", bgrx, indexed8, greys, 0xFFFFFF, 0, 0, 252},
        {"15-bit colour too", kLayouts[4], indexed8, greys, 0x848484, 0, 0, 132},
        {"white is dithered", bgrx, mono, {}, 0xFFFFFF, 0, 0, 0},
        {"but for one pixel of the cell", bgrx, mono, {}, 0xFFFFFF, 0, 8, 1},
        {"grey on its threshold", bgrx, mono, {}, 0x808080, 1, 0, 1},
        {"inverted table", bgrx, monoSection, {0xFFFFFF, 0}, 0x808080, 1, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Board pattern(row.pattern, 32, 32), target(row.target, 32, 32, false, row.table);
        for (int i = 0; i < 32 * 32; ++i) {
            SetPixel(pattern.Dc(), i % 32, i / 32,
                     RGB(row.color >> 16 & 0xFF, row.color >> 8 & 0xFF, row.color & 0xFF));
        }
        const HBRUSH brush = CreatePatternBrush(pattern.Handle());
        const RECT all{0, 0, 32, 32};
        FillRect(target.Dc(), &all, brush);
        DeleteObject(brush);
        EXPECT_EQ(target.Raw(row.x, row.y), row.pixel);
    }
}

/// The pixel that a solid tool puts on one-bit and indexed surfaces, by colour and background colour.
TEST(Fill, ColoursOfSurfacesWithATable) {
    const std::vector<std::uint32_t> redBlue{0xFF0000, 0x0000FF}, blackWhite{0x000000, 0xFFFFFF};
    const struct {
        const char* what;
        const Layout& layout;
        std::vector<std::uint32_t> table;
        COLORREF background, color;
        std::uint32_t brush, plotted;
    } rows[] = {
        {"white is itself", kLayouts[1], blackWhite, 0, 0xFFFFFF, 1, 1},
        {"not the background", kLayouts[1], blackWhite, 0xFFFFFF, 0xFEFEFE, 0, 1},
        {"the background", kLayouts[1], blackWhite, 0x808080, 0x808080, 1, 1},
        {"entry 0", kLayouts[1], redBlue, 0xFFFFFF, RGB(255, 0, 0), 0, 0},
        {"other colour", kLayouts[1], redBlue, RGB(0, 255, 255), RGB(255, 255, 0), 0, 0},
        {"first of equals", kLayouts[3], {0, 0x404040, 0x808080}, 0xFFFFFF, 0x606060, 1, 1},
        {"high byte dropped", kLayouts[7], {}, 0, 0x02030201, 0x010203, 0x010203},
        {"palette entry", kLayouts[7], {}, 0, 0x0100000F, 0xFFFF00, 0xFFFF00},
        {"palette entry past the end", kLayouts[7], {}, 0, 0x01000014, 0, 0},
        {"green has six", kLayouts[5], {}, 0, RGB(4, 6, 12), 0x0021, 0x0021},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Board board(row.layout, 2, 1, false, row.table);
        board.Wipe(0xFF);
        SetBkColor(board.Dc(), row.background);
        const HBRUSH brush = CreateSolidBrush(row.color);
        const RECT first{0, 0, 1, 1};
        FillRect(board.Dc(), &first, brush);
        DeleteObject(brush);
        SetPixel(board.Dc(), 1, 0, row.color);
        EXPECT_EQ(board.Raw(0, 0), row.brush);
        EXPECT_EQ(board.Raw(1, 0), row.plotted);
    }
}

TEST(Fill, BrushesOfFillRect) {
    const HBRUSH stale = CreateSolidBrush(0);
    DeleteObject(stale);
    const auto value = [](std::uintptr_t number) { return reinterpret_cast<HBRUSH>(number); };
    const auto shown = [](COLORREF color) {
        return static_cast<std::uint32_t>(RGB(GetBValue(color), GetGValue(color), GetRValue(color)));
    };
    const struct {
        const char* what;
        HBRUSH brush;
        int result;
        std::uint32_t pixel;
    } rows[] = {
        {"null: the selected one", nullptr, TRUE, 0x808080},
        {"first system colour", value(1), TRUE, shown(GetSysColor(0))},
        {"window", value(COLOR_WINDOW + 1), TRUE, shown(GetSysColor(COLOR_WINDOW))},
        {"last system colour", value(31), TRUE, shown(GetSysColor(30))},
        {"no system colour", value(32), FALSE, 0xEEEEEEEE},
        {"stale", stale, FALSE, 0xEEEEEEEE},
        {"a pen", reinterpret_cast<HBRUSH>(GetStockObject(BLACK_PEN)), FALSE, 0xEEEEEEEE},
        {"hollow", static_cast<HBRUSH>(GetStockObject(NULL_BRUSH)), TRUE, 0xEEEEEEEE},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Board board(kLayouts[7], 3, 1);
        board.Wipe(0xEE);
        SelectObject(board.Dc(), GetStockObject(GRAY_BRUSH));
        SetROP2(board.Dc(), R2_XORPEN);  // not for fills
        const RECT rect{1, 0, 2, 1};
        EXPECT_EQ(FillRect(board.Dc(), &rect, row.brush), row.result);
        EXPECT_EQ(board.Raw(1, 0), row.pixel);
        EXPECT_EQ(board.Raw(0, 0), 0xEEEEEEEEu);
    }
    Board board(kLayouts[7], 3, 1);
    EXPECT_FALSE(FillRect(board.Dc(), nullptr, nullptr));
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE | SYS_COLOR_INDEX_FLAG), GetSysColor(COLOR_BTNFACE));
    EXPECT_EQ(GetSysColorBrush(COLOR_BTNFACE | SYS_COLOR_INDEX_FLAG), GetSysColorBrush(COLOR_BTNFACE));
    for (const int index : {-1, 31, 0x10000}) {
        EXPECT_EQ(GetSysColor(index), 0u);
        EXPECT_EQ(GetSysColorBrush(index), nullptr);
    }
}

TEST(Pixels, PlottingFollowsTheOperationAndTellsTheColour) {
    Board board(kLayouts[7], 3, 3);
    EXPECT_EQ(SetPixel(board.Dc(), 1, 1, RGB(9, 8, 7)), RGB(9, 8, 7));
    EXPECT_EQ(GetPixel(board.Dc(), 1, 1), RGB(9, 8, 7));
    SetROP2(board.Dc(), R2_XORPEN);
    SetPixel(board.Dc(), 1, 1, RGB(9, 8, 7));
    EXPECT_EQ(GetPixel(board.Dc(), 1, 1), 0u);
    for (const auto& [x, y] : {std::pair{-1, 0}, {0, -1}, {3, 0}, {0, 3}, {kMin, kMin}, {kMax, kMax}}) {
        EXPECT_EQ(SetPixel(board.Dc(), x, y, RGB(1, 2, 3)), RGB(1, 2, 3)) << x << ' ' << y;
        EXPECT_EQ(GetPixel(board.Dc(), x, y), CLR_INVALID) << x << ' ' << y;
    }
    const std::vector<std::uint32_t> picture = board.Picture();
    EXPECT_EQ(std::count(picture.begin(), picture.end(), 0u), 9);
}

}  // namespace
