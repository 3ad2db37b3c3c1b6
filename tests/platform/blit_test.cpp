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

/// Copies a block, or inverts by it, and expects pixel by pixel what this puts down.
void CheckBlit(Side& to, const Side& from, const Blit& b, bool inverts) {
    const std::vector<std::uint32_t> source = from.board.Picture();
    std::vector<std::uint32_t> expected = to.board.Picture();
    for (int y = 0; y < to.board.Height(); ++y) {
        for (int x = 0; x < to.board.Width(); ++x) {
            const std::int64_t u = std::int64_t{x} - b.x + b.sx, v = std::int64_t{y} - b.y + b.sy;
            if (!Covers(b.x, b.width, x) || !Covers(b.y, b.height, y) || !to.board.Shows(x, y)) continue;
            if (u < 0 || v < 0 || u >= from.board.Width() || v >= from.board.Height()) continue;
            const std::uint32_t raw = source[static_cast<std::size_t>(v * from.board.Width() + u)];
            std::uint32_t& pixel = expected[static_cast<std::size_t>(y * to.board.Width() + x)];
            pixel = (Translated(from, to, raw) ^ (inverts ? pixel : 0)) & to.board.Mask();
        }
    }
    const auto padding = Padding(to.board, to.layout.bits);
    ASSERT_TRUE(BitBlt(to.board.Dc(), b.x, b.y, b.width, b.height, from.board.Dc(), b.sx, b.sy,
                       inverts ? SRCINVERT : SRCCOPY));
    ASSERT_EQ(to.board.Picture(), expected) << from.layout << " to " << to.layout << ": " << b;
    ASSERT_EQ(Padding(to.board, to.layout.bits), padding) << to.layout << ": " << b;
}

Blit RandomBlit(Dice& dice) {
    Blit b{dice(-10, 30), dice(-5, 12), dice(0, 45), dice(0, 15), dice(-10, 30), dice(-5, 12)};
    if (dice(0, 3) == 0) b.width = -b.width;
    if (dice(0, 3) == 0) b.height = -b.height;
    return b;
}

class BlitLayouts : public testing::TestWithParam<Layout> {};

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
            ASSERT_NO_FATAL_FAILURE(CheckBlit(to, from, RandomBlit(dice), turn % 3 == 0));
        }
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
            ASSERT_NO_FATAL_FAILURE(CheckBlit(to, from, b, false));
            ASSERT_NO_FATAL_FAILURE(CheckBlit(to, to, b, false));
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
            ASSERT_NO_FATAL_FAILURE(CheckBlit(to, from, b, true));
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

}  // namespace
