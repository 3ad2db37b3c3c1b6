#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "platform/gdi.h"
#include "tests/platform/blit_oracle.h"

namespace {

/// The ternary code whose result is that of a binary operation on pattern and destination.
DWORD TernaryCode(int rop2) {
    const DWORD table = static_cast<DWORD>(rop2 - 1);
    const DWORD low = (table & 3) * 5, high = (table >> 2 & 3) * 5;
    return (high << 4 | low) << 16;
}

/// Fills odd boxes on noise and holds every pixel, and the row padding, against the expectation.
void CheckFills(const Layout& layout, HBRUSH brush, const TestBrush& expected, unsigned seed) {
    Dice dice(seed);
    for (int i = 0; i < 120; ++i) {
        const int rop2 = i % 16 + 1;
        Board board(layout, dice(1, 150), dice(1, 5), dice(0, 1) != 0);
        board.Noise(dice.random);
        SelectObject(board.Dc(), brush);
        SetBrushOrgEx(board.Dc(), expected.originX, expected.originY, nullptr);
        int left = dice(-3, board.Width() - 1), right = dice(left + 1, board.Width() + 3);
        int top = dice(-2, board.Height() - 1), bottom = dice(top + 1, board.Height() + 2);
        if (i % 5 == 0) left = 0, right = board.Width();
        const std::vector<std::uint32_t> before = board.Picture();
        const auto padding = Padding(board, layout.bits);
        const DWORD rop3 = TernaryCode(rop2);
        ASSERT_TRUE(PatBlt(board.Dc(), left, top, right - left, bottom - top, rop3));
        for (int y = 0; y < board.Height(); ++y) {
            for (int x = 0; x < board.Width(); ++x) {
                const std::uint32_t old = before[static_cast<std::size_t>(y * board.Width() + x)];
                const bool inside = x >= left && x < right && y >= top && y < bottom;
                ASSERT_EQ(board.Raw(x, y),
                          inside ? Rop3Bits(rop3 >> 16, expected.At(x, y), 0, old, board.Mask()) : old)
                    << layout << " rop2 " << rop2 << " seed " << seed << " case " << i << " at " << x << ", "
                    << y << " of " << board.Width() << " x " << board.Height() << ", box " << left << ' '
                    << top << ' ' << right << ' ' << bottom;
            }
        }
        ASSERT_EQ(Padding(board, layout.bits), padding);
    }
}

TEST(Fill, SolidBrushesUnderAllOperations) {
    for (const Layout& layout : kLayouts) {
        // Colours that every layout can show: those of the pixels it stores.
        for (const std::uint32_t pixel : {0u, 1u, 0x6u, 0x5A5A5A5Au, 0x345678u, 0xFFFFFFFFu}) {
            const Board board(layout, 1, 1);
            std::memcpy(board.Memory(), &pixel, 4);
            if (layout.bits < 8) *board.Memory() = static_cast<std::uint8_t>(pixel << (8 - layout.bits));
            if (layout.bits == 16 && !layout.fields565) board.Memory()[1] &= 0x7F;
            if (layout.bits == 32) board.Memory()[3] = 0;
            TestBrush expected;
            expected.pixels[0] = board.Raw(0, 0);
            const HBRUSH brush = CreateSolidBrush(GetPixel(board.Dc(), 0, 0));
            CheckFills(layout, brush, expected, pixel + 1);
            DeleteObject(brush);
            if (testing::Test::HasFatalFailure()) return;
        }
    }
}

TEST(Fill, PatternsOfTheirOwnColoursUnderAllOperations) {
    for (const Layout& layout : kLayouts) {
        if (!layout.section || layout.bits == 1) continue;
        for (const auto& [width, height] : {std::pair{1, 1}, {8, 8}, {3, 2}, {40, 5}, {33, 1}}) {
            std::mt19937 random(static_cast<unsigned>(width));
            Board pattern(layout, width, height);
            pattern.Noise(random);
            const TestBrush expected{width, height, -5, 1000003, pattern.Picture()};
            const HBRUSH brush = CreatePatternBrush(pattern.Handle());
            CheckFills(layout, brush, expected, static_cast<unsigned>(width));
            DeleteObject(brush);
            if (testing::Test::HasFatalFailure()) return;
        }
    }
}

TEST(Fill, MonoPatternsTakeTextAndBackgroundColour) {
    const std::uint8_t bits[] = {0xA0, 0, 0, 0, 0x60, 0, 0, 0};  // 101, 011
    const HBITMAP bitmap = CreateBitmap(3, 2, 1, 1, bits);
    const HBRUSH brush = CreatePatternBrush(bitmap);
    for (const Layout& layout : kLayouts) {
        SCOPED_TRACE(layout);
        Board board(layout, 6, 2, false, {0xFF0000, 0x0000FF});
        const RECT all{0, 0, 6, 2};
        const COLORREF text = RGB(0, 0, 255), background = RGB(255, 0, 0);
        SetTextColor(board.Dc(), text);
        SetBkColor(board.Dc(), background);
        SetBkMode(board.Dc(), TRANSPARENT);
        // One-bit bitmaps without colours take the pattern's bits as they are.
        const bool plain = !layout.section;
        const COLORREF one = plain ? 0xFFFFFF : background, zero = plain ? 0 : text;
        const char* rows[] = {"101", "011"};
        // A new origin and new colours hold at once, without selecting anything again.
        for (int origin = -5; origin < 10; ++origin) {
            SetBrushOrgEx(board.Dc(), origin, 0, nullptr);
            ASSERT_TRUE(FillRect(board.Dc(), &all, brush));
            for (int i = 0; i < 12; ++i) {
                const int x = i % 6, y = i / 6;
                EXPECT_EQ(GetPixel(board.Dc(), x, y), rows[y][(x - origin + 30) % 3] == '1' ? one : zero)
                    << x << ',' << y << " from " << origin;
            }
        }
        SetTextColor(board.Dc(), background);
        ASSERT_TRUE(FillRect(board.Dc(), &all, brush));
        EXPECT_EQ(GetPixel(board.Dc(), 1, 0), plain ? 0 : background);
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
        {"black too", bgrx, indexed8, greys, 0x000000, 0, 0, 4},
        {"15-bit colour too", kLayouts[4], indexed8, greys, 0x848484, 0, 0, 132},
        {"white is dithered", bgrx, mono, {}, 0xFFFFFF, 0, 0, 0},
        {"but for one pixel of the cell", bgrx, mono, {}, 0xFFFFFF, 0, 8, 1},
        {"and again a cell further", bgrx, mono, {}, 0xFFFFFF, 16, 16, 0},
        {"grey below its threshold", bgrx, mono, {}, 0x7F7F7F, 1, 0, 0},
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
        {"black is itself", kLayouts[1], blackWhite, 0, 0, 0, 0},
        {"not the background", kLayouts[1], blackWhite, 0xFFFFFF, 0xFEFEFE, 0, 1},
        {"not a dark background", kLayouts[1], blackWhite, 0, 0x101010, 1, 0},
        {"the background", kLayouts[1], blackWhite, 0x808080, 0x808080, 1, 1},
        {"entry 0", kLayouts[1], redBlue, 0xFFFFFF, RGB(255, 0, 0), 0, 0},
        {"entry 1", kLayouts[1], redBlue, 0xFFFFFF, RGB(0, 0, 255), 1, 1},
        {"other colour", kLayouts[1], redBlue, RGB(0, 255, 255), RGB(255, 255, 0), 0, 0},
        {"nearest", kLayouts[3], {0, 0x404040, 0x808080}, 0xFFFFFF, 0x7F7F7F, 2, 2},
        {"first of equals", kLayouts[3], {0, 0x404040, 0x808080}, 0xFFFFFF, 0x606060, 1, 1},
        {"high byte dropped", kLayouts[7], {}, 0, 0x02030201, 0x010203, 0x010203},
        {"palette entry", kLayouts[7], {}, 0, 0x0100000F, 0xFFFF00, 0xFFFF00},
        {"palette entry past the end", kLayouts[7], {}, 0, 0x01000014, 0, 0},
        {"cut to five bits", kLayouts[4], {}, 0, RGB(4, 6, 12), 0x0001, 0x0001},
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

TEST(Fill, ExtentsMayBeNegativeEmptyOrHuge) {
    const struct {
        int x, width, from, to;  ///< columns from <= x < to are filled
    } rows[] = {
        {8, -5, 4, 9},      {3, 5, 3, 8},       {3, 0, 0, 0},        {-5, 100, 0, 10},
        {0, -1, 0, 1},      {9, -100, 0, 10},   {-1, -5, 0, 0},      {10, 5, 0, 0},
        {kMin, kMax, 0, 0}, {kMin, kMin, 0, 0}, {kMax, kMin, 0, 10}, {kMax, kMax, 0, 0},
        {5, kMax, 5, 10},   {5, kMin, 0, 6},    {-kMax, kMax, 0, 0}, {-kMax + 1, kMax, 0, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.x << " + " << row.width);
        for (const bool vertical : {false, true}) {
            Board board(kLayouts[7], vertical ? 1 : 10, vertical ? 10 : 1);
            ASSERT_TRUE(vertical ? PatBlt(board.Dc(), 0, row.x, 1, row.width, WHITENESS)
                                 : PatBlt(board.Dc(), row.x, 0, row.width, 1, WHITENESS));
            for (int at = 0; at < 10; ++at) {
                EXPECT_EQ(board.Picture()[static_cast<std::size_t>(at)] != 0, at >= row.from && at < row.to)
                    << at;
            }
        }
    }
}

TEST(Fill, InvertedRectanglesAndEdgesOf32Bits) {
    const struct {
        LONG left, right, from, to;
    } rows[] = {{8, 3, 4, 9}, {3, 8, 3, 8}, {5, 5, 0, 0}, {kMin, kMax, 0, 10}, {kMax, kMin, 0, 10}};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.left << ".." << row.right);
        Board board(kLayouts[7], 10, 1);
        const RECT rect{row.left, 0, row.right, 1};
        EXPECT_TRUE(FillRect(board.Dc(), &rect, nullptr));  // the selected brush: white
        for (int x = 0; x < 10; ++x)
            EXPECT_EQ(board.Raw(x, 0) != 0, x >= row.from && x < row.to) << x;
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

TEST(Fill, PatBltTakesEveryOperationWithoutASource) {
    const std::uint32_t pattern = 0x123456, old = 0xF0E1D2C3;
    for (DWORD table = 0; table < 256; ++table) {
        bool needsSource = false;
        for (DWORD row = 0; row < 8; ++row)
            needsSource |= (table >> row & 1) != (table >> (row ^ 2) & 1);
        Board board(kLayouts[7], 1, 1);
        std::memcpy(board.Memory(), &old, 4);
        const HBRUSH brush = CreateSolidBrush(RGB(0x12, 0x34, 0x56));
        SelectObject(board.Dc(), brush);
        DeleteObject(brush);
        EXPECT_EQ(PatBlt(board.Dc(), 0, 0, 1, 1, table << 16) != FALSE, !needsSource) << table;
        EXPECT_EQ(board.Raw(0, 0), needsSource ? old : Rop3Bits(table, pattern, 0, old, board.Mask()))
            << table;
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

TEST(Pixels, ReadingWidensEveryLayout) {
    const struct {
        const Layout& layout;
        std::uint32_t raw;
        COLORREF color;
    } rows[] = {
        {kLayouts[0], 0x80, 0xFFFFFF},       {kLayouts[4], 0x8410, 0x840008},
        {kLayouts[4], 0x7FFF, 0xFFFFFF},     {kLayouts[5], 0x8410, 0x848284},
        {kLayouts[5], 0x1234, 0xA54510},     {kLayouts[6], 0x123456, 0x563412},
        {kLayouts[7], 0xFF123456, 0x563412},
    };
    for (const auto& row : rows) {
        Board board(row.layout, 2, 1);
        std::memcpy(board.Memory(), &row.raw, 4);
        EXPECT_EQ(GetPixel(board.Dc(), 0, 0), row.color) << row.layout;
    }
}

}  // namespace
