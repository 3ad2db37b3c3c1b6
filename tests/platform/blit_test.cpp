#include <gtest/gtest.h>

#include <string>

#include "platform/gdi.h"
#include "tests/platform/blit_oracle.h"

namespace {

struct Blit {
    int x, y, width, height, sx, sy;
};

std::ostream& operator<<(std::ostream& out, const Blit& b) {
    return out << b.x << "," << b.y << " " << b.width << "x" << b.height << " from " << b.sx << "," << b.sy;
}

bool Covers(int start, int extent, int at) {
    const std::int64_t first = extent < 0 ? std::int64_t{start} + extent + 1 : start;
    const std::int64_t size = extent < 0 ? -std::int64_t{extent} : extent;
    return at >= first && at < first + size;
}

std::vector<std::uint32_t> Expected(const Side& to, const Side& from, const Blit& b, unsigned rop,
                                    const TestBrush& brush) {
    const std::vector<std::uint32_t> source = from.board.Picture();
    std::vector<std::uint32_t> picture = to.board.Picture();
    for (int y = 0; y < to.board.Height(); ++y) {
        for (int x = 0; x < to.board.Width(); ++x) {
            const std::int64_t u = std::int64_t{x} - b.x + b.sx, v = std::int64_t{y} - b.y + b.sy;
            if (!Covers(b.x, b.width, x) || !Covers(b.y, b.height, y) || !to.board.Shows(x, y)) continue;
            const bool there = u >= 0 && v >= 0 && u < from.board.Width() && v < from.board.Height();
            // Operations without a source cover the whole box.
            if (!there && ((rop ^ rop >> 2) & 0x33) != 0) continue;
            const std::uint32_t raw =
                there ? source[static_cast<std::size_t>(v * from.board.Width() + u)] : 0;
            std::uint32_t& pixel = picture[static_cast<std::size_t>(y * to.board.Width() + x)];
            pixel = Rop3Bits(rop, brush.At(x, y), Translated(from, to, raw), pixel, to.board.Mask());
        }
    }
    return picture;
}

void CheckBlit(Side& to, const Side& from, const Blit& b, unsigned rop, const TestBrush& brush) {
    const auto expected = Expected(to, from, b, rop, brush);
    const auto padding = Padding(to.board, to.layout.bits);
    ASSERT_TRUE(BitBlt(to.board.Dc(), b.x, b.y, b.width, b.height, from.board.Dc(), b.sx, b.sy, rop << 16));
    ASSERT_EQ(to.board.Picture(), expected)
        << from.layout << " to " << to.layout << ", rop " << rop << ": " << b;
    ASSERT_EQ(Padding(to.board, to.layout.bits), padding) << to.layout << ": " << b;
}

Blit RandomBlit(Dice& dice) {
    Blit b{dice(-10, 30), dice(-5, 12), dice(0, 45), dice(0, 15), dice(-10, 30), dice(-5, 12)};
    if (dice(0, 3) == 0) b.width = -b.width;
    if (dice(0, 3) == 0) b.height = -b.height;
    return b;
}

class BlitLayouts : public testing::TestWithParam<Layout> {};

TEST_P(BlitLayouts, EveryOperationFollowsItsTruthTable) {
    Dice dice(7);
    const Layout& layout = GetParam();
    const auto table = NoisyTable(layout, dice.random);
    for (unsigned rop = 0; rop < 256; ++rop) {
        for (int turn = 0; turn < 6; ++turn) {
            const bool whole = turn >= 4;  // rows without a gap between them
            const int width = whole ? 32 : dice(1, 40), height = dice(1, 12);
            Side to(layout, table, width, height, dice(0, 1) != 0);
            Side from(layout, table, whole ? width : dice(1, 40), whole ? height : dice(1, 12),
                      dice(0, 1) != 0);
            to.board.Noise(dice.random);
            from.board.Noise(dice.random);
            const HDC dc = to.board.Dc();
            // Black and white text colours, and a table's own colours, map to themselves at every depth.
            const std::uint32_t last = to.board.Mask() & 0xFFFFFFu;
            TestBrush expected;
            HBRUSH brush = nullptr;
            if (turn % 2 == 0 || !to.HasColors()) {
                SetTextColor(dc, 0x000000);
                SetBkColor(dc, 0xFFFFFF);
                if (to.HasColors()) {
                    SetTextColor(dc, SwapRedBlue(layout.bits <= 8 ? table[0] : 0x000000u));
                    SetBkColor(dc, SwapRedBlue(layout.bits <= 8 ? table[last] : 0xFFFFFFu));
                }
                Board pattern(kLayouts[0], dice(1, 9), dice(1, 9));
                pattern.Noise(dice.random);
                expected = {pattern.Width(), pattern.Height(), dice(-50, 50), dice(-50, 50),
                            pattern.Picture()};
                for (std::uint32_t& pixel : expected.pixels)
                    pixel *= layout.bits == 16 && !layout.fields565 ? 0x7FFF : last;
                brush = CreatePatternBrush(pattern.Handle());
            } else {
                const std::uint32_t color = layout.bits <= 8 ? table[last / 2] : 0xFF00FFu;
                expected.pixels = {PixelFor(to, color)};
                brush = CreateSolidBrush(SwapRedBlue(color));
            }
            SelectObject(dc, brush);
            SetBrushOrgEx(dc, expected.originX, expected.originY, nullptr);
            const Blit blit = whole ? Blit{0, 0, width, height, 0, turn - 4} : RandomBlit(dice);
            ASSERT_NO_FATAL_FAILURE(CheckBlit(to, from, blit, rop, expected));
            DeleteObject(brush);
        }
    }
}

TEST_P(BlitLayouts, EveryFormatConvertsToThisOne) {
    Dice dice(11);
    for (const Layout& source : kLayouts) {
        for (int turn = 0; turn < 40; ++turn) {
            Side to(GetParam(), NoisyTable(GetParam(), dice.random), dice(1, 40), dice(1, 12),
                    dice(0, 1) != 0);
            const bool sameTable = turn % 4 == 0 && source.bits == GetParam().bits && source.section;
            Side from(source, sameTable ? to.table : NoisyTable(source, dice.random), dice(1, 40),
                      dice(1, 12));
            to.board.Noise(dice.random);
            from.board.Noise(dice.random);
            if (turn % 2 == 0) to.board.ClipSomehow(dice.random);
            SetTextColor(to.board.Dc(), static_cast<COLORREF>(dice(0, 0xFFFFFF)));
            SetBkColor(to.board.Dc(), static_cast<COLORREF>(dice(0, 0xFFFFFF)));
            // A background that occurs in the source, so that one-bit targets get both pixels.
            if (source.bits == 32) from.board.Memory()[3] = 0;
            SetBkColor(from.board.Dc(), GetPixel(from.board.Dc(), 0, 0));
            const unsigned rop = turn % 3 == 0 ? 0x66 : 0xCC;
            ASSERT_NO_FATAL_FAILURE(CheckBlit(to, from, RandomBlit(dice), rop, TestBrush()));
        }
    }
}

TEST_P(BlitLayouts, OverlappingTransfersReadTheOldPixels) {
    Dice dice(13);
    const auto table = NoisyTable(GetParam(), dice.random);
    for (int turn = 0; turn < 300; ++turn) {
        Side side(GetParam(), table, dice(8, 40), dice(4, 12), dice(0, 1) != 0);
        side.board.Noise(dice.random);
        if (turn % 2 == 0) side.board.ClipSomehow(dice.random);
        Blit b{dice(0, 8), dice(0, 3), dice(1, 40), dice(1, 12), 0, 0};
        b.sx = b.x + dice(-9, 9);
        b.sy = b.y + dice(-2, 2);
        ASSERT_NO_FATAL_FAILURE(CheckBlit(side, side, b, turn % 3 == 0 ? 0x66 : 0xCC, TestBrush()));
    }
}

TEST_P(BlitLayouts, WholeRowsMoveUpAndDown) {
    Dice dice(14);
    const auto table = NoisyTable(GetParam(), dice.random);
    for (const int dy : {0, 1, -1, 3, -3, 11, -12}) {
        for (const int turn : {0, 1, 2, 3}) {
            // Rows without padding, which follow one another in memory.
            Side to(GetParam(), table, 32, 12, turn % 2 != 0), from(GetParam(), table, 32, 12, turn / 2 != 0);
            to.board.Noise(dice.random);
            from.board.Noise(dice.random);
            const Blit b{0, std::max(dy, 0), 32, 12, 0, std::max(-dy, 0)};
            ASSERT_NO_FATAL_FAILURE(CheckBlit(to, from, b, 0xCC, TestBrush()));
            ASSERT_NO_FATAL_FAILURE(CheckBlit(to, to, b, 0xCC, TestBrush()));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, BlitLayouts, testing::ValuesIn(kLayouts),
                         [](const auto& layout) { return std::string(layout.param.name); });

TEST(Blit, CoordinatesAtTheEndsOf32Bits) {
    const Blit cases[] = {
        {0, 0, kMax, kMax, 0, 0},       {kMin, kMin, kMax, kMax, 0, 0}, {kMax, kMax, kMax, kMax, kMax, kMax},
        {kMin, 0, kMin, kMin, kMin, 0}, {5, 5, kMin, kMin, 5, 5},       {0, 0, kMin, kMin, kMax, kMax},
        {kMax, 3, kMin, 9, kMax, 3},    {kMin, 3, kMax, 9, kMin, 3},    {-1, -1, kMax, kMax, kMin, kMin},
        {0, 0, 10, 10, kMin, kMax},     {kMin, kMin, kMin, kMin, 0, 0}, {2, 2, kMax, kMax, -3, -3},
    };
    Dice dice(19);
    for (const Layout& layout : kLayouts) {
        const auto table = NoisyTable(layout, dice.random);
        for (const Blit& b : cases) {
            Side to(layout, table, 11, 9), from(layout, table, 13, 7);
            to.board.Noise(dice.random);
            from.board.Noise(dice.random);
            ASSERT_NO_FATAL_FAILURE(CheckBlit(to, from, b, 0x66, TestBrush()));
        }
    }
}

TEST(Blit, OperationsWithoutASourceIgnoreIt) {
    Board board(kLayouts[7], 6, 4);
    Board small(kLayouts[7], 1, 1);
    const HDC stale = CreateCompatibleDC(nullptr);
    DeleteDC(stale);
    for (const HDC source : {HDC{nullptr}, stale, small.Dc()}) {
        board.Wipe(0x5A);
        EXPECT_TRUE(BitBlt(board.Dc(), 4, 2, -3, -2, source, 0, 0, WHITENESS));
        for (int i = 0; i < 24; ++i)
            EXPECT_EQ(board.Raw(i % 6, i / 6) == 0xFFFFFFFFu,
                      i % 6 >= 2 && i % 6 <= 4 && (i / 6 + 1) / 2 == 1);
        EXPECT_TRUE(StretchBlt(board.Dc(), 0, 0, 1, 1, source, 0, 0, 0, 0, BLACKNESS));
        EXPECT_EQ(board.Raw(0, 0), 0u);
    }
}

TEST(Blit, BadHandlesFailAndDrawNothing) {
    Board board(kLayouts[7], 6, 4);
    board.Wipe(0x5A);
    const auto before = board.Picture();
    const HDC dc = board.Dc(), stale = CreateCompatibleDC(nullptr);
    DeleteDC(stale);
    RECT rect{0, 0, 5, 4};
    for (const HDC bad : {HDC{nullptr}, stale, reinterpret_cast<HDC>(board.Handle())}) {
        EXPECT_FALSE(BitBlt(dc, 0, 0, 2, 2, bad, 0, 0, SRCCOPY));
        EXPECT_FALSE(BitBlt(bad, 0, 0, 2, 2, dc, 0, 0, SRCCOPY));
        EXPECT_FALSE(BitBlt(bad, 0, 0, 2, 2, nullptr, 0, 0, WHITENESS));
        EXPECT_FALSE(StretchBlt(dc, 0, 0, 2, 2, bad, 0, 0, 1, 1, SRCCOPY));
        EXPECT_FALSE(StretchBlt(bad, 0, 0, 2, 2, dc, 0, 0, 1, 1, SRCCOPY));
        EXPECT_FALSE(TransparentImage(dc, 0, 0, 2, 2, bad, 0, 0, 1, 1, 0));
        EXPECT_FALSE(TransparentImage(bad, 0, 0, 2, 2, dc, 0, 0, 1, 1, 0));
        EXPECT_FALSE(DrawEdge(bad, &rect, BDR_RAISEDOUTER, BF_RECT));
        EXPECT_FALSE(ScrollDC(bad, 1, 1, &rect, &rect, nullptr, nullptr));
    }
    EXPECT_FALSE(DrawEdge(dc, nullptr, BDR_RAISEDOUTER, BF_RECT));
    EXPECT_FALSE(ScrollDC(dc, 1, 1, &rect, &rect, reinterpret_cast<HRGN>(board.Handle()), nullptr));
    EXPECT_EQ(board.Picture(), before);
}

}  // namespace
