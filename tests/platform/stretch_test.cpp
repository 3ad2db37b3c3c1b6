#include <gtest/gtest.h>

#include <string>

#include "platform/gdi.h"
#include "platform/software/pixel_picks.h"
#include "tests/platform/blit_oracle.h"

namespace {

/// One side of a stretch.
struct Axis {
    int target, targetExtent, source, sourceExtent;
};

std::ostream& operator<<(std::ostream& out, const Axis& axis) {
    return out << axis.target << " (" << axis.targetExtent << ") from " << axis.source << " ("
               << axis.sourceExtent << ")";
}

Axis RandomAxis(Dice& dice, int size) {
    Axis axis{dice(-6, size / 3), dice(1, 2 * size), dice(-6, size / 3), dice(1, 2 * size)};
    if (dice(0, 5) == 0) axis.targetExtent = axis.sourceExtent;
    if (dice(0, 7) == 0) axis.targetExtent = 1;
    if (dice(0, 2) == 0) axis.targetExtent = -axis.targetExtent;
    if (dice(0, 2) == 0) axis.sourceExtent = -axis.sourceExtent;
    return axis;
}

BOOL Stretch(const Board& to, const Board& from, const Axis& across, const Axis& down, DWORD rop3) {
    return StretchBlt(to.Dc(), across.target, down.target, across.targetExtent, down.targetExtent, from.Dc(),
                      across.source, down.source, across.sourceExtent, down.sourceExtent, rop3);
}

BOOL CopyKeyed(const Board& to, const Board& from, const Axis& across, const Axis& down, COLORREF key) {
    return TransparentImage(to.Dc(), across.target, down.target, across.targetExtent, down.targetExtent,
                            from.Dc(), across.source, down.source, across.sourceExtent, down.sourceExtent,
                            key);
}

class StretchLayouts : public testing::TestWithParam<Layout> {};

// Two roads: stretched as it is converted and clipped, or copied first to a board of the target's kind,
// stretched there onto an open board and held against the clip.
TEST_P(StretchLayouts, ConvertsAsCopyingDoesAndKeepsToTheClip) {
    Dice dice(23);
    for (const Layout& source : kLayouts) {
        for (int turn = 0; turn < 60; ++turn) {
            const auto table = NoisyTable(GetParam(), dice.random);
            const bool bottomUp = dice(0, 1) != 0;
            Side to(GetParam(), table, dice(1, 24), dice(1, 12), bottomUp);
            Side open(GetParam(), table, to.board.Width(), to.board.Height(), bottomUp);
            Side from(source, NoisyTable(source, dice.random), dice(1, 24), dice(1, 12), dice(0, 1) != 0);
            Side copied(GetParam(), table, from.board.Width(), from.board.Height());
            to.board.Noise(dice.random);
            from.board.Noise(dice.random);
            std::memcpy(open.board.Memory(), to.board.Memory(), to.board.Bytes());
            std::vector<std::uint32_t> expected = to.board.Picture();
            to.board.ClipSomehow(dice.random);
            BitBlt(copied.board.Dc(), 0, 0, 24, 12, from.board.Dc(), 0, 0, SRCCOPY);
            const Axis across = RandomAxis(dice, 24), down = RandomAxis(dice, 12);
            for (const auto& [target, origin] : {std::pair(&to, &from), std::pair(&open, &copied)}) {
                SetStretchBltMode(target->board.Dc(), turn % 3 + BLACKONWHITE);
                ASSERT_TRUE(
                    Stretch(target->board, origin->board, across, down, turn % 4 ? SRCCOPY : SRCINVERT));
            }
            for (int at = 0; at < static_cast<int>(expected.size()); ++at) {
                const int x = at % to.board.Width(), y = at / to.board.Width();
                if (to.board.Shows(x, y)) expected[static_cast<std::size_t>(at)] = open.board.Raw(x, y);
            }
            ASSERT_EQ(to.board.Picture(), expected) << source << ": " << across << "; " << down;
        }
    }
}

TEST_P(StretchLayouts, KeyedCopyLeavesOutTheKey) {
    Dice dice(31);
    int kept = 0;
    for (const Layout& source : kLayouts) {
        for (int turn = 0; turn < 40; ++turn) {
            Side to(GetParam(), NoisyTable(GetParam(), dice.random), dice(1, 24), dice(1, 12));
            Side from(source, NoisyTable(source, dice.random), dice(1, 24), dice(1, 12));
            to.board.Noise(dice.random);
            from.board.Noise(dice.random);
            if (turn % 3 == 0) to.board.ClipSomehow(dice.random);
            // The key's high byte does not count, nor does a pixel's; many pixels have the key's colour.
            const std::size_t bytes = static_cast<std::size_t>(source.bits) / 8;
            for (std::size_t at = bytes; bytes >= 2 && at + bytes <= from.board.Bytes(); at += bytes) {
                if (dice(0, 2) == 0)
                    std::memcpy(from.board.Memory() + at, from.board.Memory(), bytes < 3 ? 2 : 3);
            }
            const COLORREF key = GetPixel(from.board.Dc(), 0, 0);
            const int left = dice(-3, 9), top = dice(-3, 5), width = dice(1, 24), height = dice(1, 12);
            std::vector<std::uint32_t> expected = to.board.Picture();
            for (int y = 0; y < std::min(from.board.Height(), height); ++y) {
                for (int x = 0; x < std::min(from.board.Width(), width); ++x) {
                    const int toX = x + left, toY = y + top;
                    if (toX < 0 || toY < 0 || toX >= to.board.Width() || toY >= to.board.Height()) continue;
                    const std::uint32_t raw = from.board.Raw(x, y), plain = raw == 0 ? 0u : 0xFFFFFFu;
                    const bool isKey = (from.HasColors() ? ColorOf(from, raw) : plain) == SwapRedBlue(key);
                    kept += isKey ? 1 : 0;
                    if (!isKey && to.board.Shows(toX, toY))
                        expected[static_cast<std::size_t>(toY * to.board.Width() + toX)] =
                            Translated(from, to, raw, true);
                }
            }
            ASSERT_TRUE(CopyKeyed(to.board, from.board, {left, width, 0, width}, {top, height, 0, height},
                                  key | 0xAB000000u));
            ASSERT_EQ(to.board.Picture(), expected) << source << " to " << GetParam();
        }
    }
    EXPECT_GT(kept, 300);
}

INSTANTIATE_TEST_SUITE_P(Formats, StretchLayouts, testing::ValuesIn(kLayouts),
                         [](const auto& layout) { return std::string(layout.param.name); });

/// Rows of pixels with the values 0, 1, 2 ... to the right and 0, 100, 200 ... downwards.
void Number(Board& board) {
    for (int y = 0; y < board.Height(); ++y) {
        for (int x = 0; x < board.Width(); ++x)
            SetPixel(board.Dc(), x, y, SwapRedBlue(static_cast<std::uint32_t>(x + 100 * y)));
    }
}

TEST(Stretch, ExtentsAtTheEndsOf32BitsMapExactly) {
    struct Row {
        Axis axis;
        int at, expected;  ///< -1: target pixel stays
    };
    const Row rows[] = {
        {{-1000000000, 2000000000, 0, 40}, 0, 20},
        {{-1000000000, 2000000000, 0, 40}, 39, 20},
        {{0, kMax, 0, 40}, 39, 0},
        {{kMin, kMax, 0, 40}, 0, -1},
        {{kMin, kMax, 0, 40}, 39, -1},
        {{kMax, kMin, 0, 40}, 0, 39},
        {{0, 40, 0, kMax}, 0, 39},
        {{0, 40, 0, kMax}, 1, -1},
        {{0, kMax, 3, kMax}, 10, 13},
        {{0, kMin, 20, kMin}, 0, 20},
        {{0, kMin, 20, kMin}, 1, -1},
        {{kMax, kMin, kMax, kMin}, 7, 7},
        {{0, kMax, 0, kMin}, 0, -1},
        {{0, 40, kMax, kMin}, 0, 0},
        {{0, 40, kMax, kMin}, 1, -1},
        {{kMax, kMin, kMax, kMax}, 0, -1},
        {{kMin, kMax, kMin, kMax}, 5, -1},
        {{-1, kMax, kMax, kMin}, 5, 33},
    };
    Board from(kLayouts[7], 40, 1), to(kLayouts[7], 40, 1);
    Number(from);
    SetStretchBltMode(to.Dc(), COLORONCOLOR);
    for (const Row& row : rows) {
        to.Wipe(0xFF);
        EXPECT_TRUE(Stretch(to, from, row.axis, {0, 2, 0, 1}, SRCCOPY));
        const std::uint32_t expected =
            row.expected < 0 ? 0xFFFFFFFFu : static_cast<std::uint32_t>(row.expected);
        EXPECT_EQ(to.Raw(row.at, 0), expected) << row.axis << " at " << row.at;
    }
}

TEST(Stretch, PlannedRowsHoldThePixelsThatWerePicked) {
    constexpr decltype(&device::GatherPixels<1>) kSingly[] = {
        device::GatherPixels<1>, device::GatherPixels<2>, device::GatherPixels<3>, device::GatherPixels<4>};
    Dice dice(37);
    std::vector<device::PickStep> steps;
    for (int turn = 0; turn < 20000; ++turn) {
        const std::size_t size = static_cast<std::size_t>(turn % 4) + 1;
        const int spanCount = dice(1, 60), count = dice(1, 130), most = dice(0, 3), repeats = dice(1, 5);
        // Some walk back, some stand still, some leave pixels out; many follow one another evenly.
        std::vector<std::int32_t> picks{dice(0, spanCount - 1)};
        while (picks.size() < static_cast<std::size_t>(count)) {
            const bool moves = most > 1 || picks.size() % static_cast<std::size_t>(repeats) == 0;
            const int step = moves ? dice(turn % 3 == 0 ? -most : most / 2, most) : 0;
            picks.push_back(std::min(std::max(picks.back() + step, 0), spanCount - 1));
        }
        const auto bytes = [size](int pixels) { return size * static_cast<std::size_t>(pixels); };
        std::vector<std::uint8_t> span(bytes(spanCount)), expected(bytes(count)), got(bytes(count));
        for (std::uint8_t& byte : span)
            byte = static_cast<std::uint8_t>(dice(0, 255));
        kSingly[size - 1](span.data(), picks.data(), count, expected.data());
        device::PixelPicks planned;
        planned.Plan(size, spanCount, picks.data(), count, dice(1, 50), steps);
        planned.Gather(span.data(), 0, got.data());
        ASSERT_EQ(got, expected) << size << " bytes a pixel, " << count << " of " << spanCount;
    }
}

TEST(Stretch, RowsTooWideForBuffersFail) {
    // 64 million pixels in 8 MB, which would take a buffer of 256 MB as 32-bit pixels.
    Board wide(kLayouts[0], 1 << 26, 1), small(kLayouts[7], 4, 1);
    small.Wipe(0x33);
    const auto before = small.Picture();
    EXPECT_FALSE(StretchBlt(small.Dc(), 0, 0, 4, 1, wide.Dc(), 0, 0, 1 << 26, 1, SRCCOPY));
    EXPECT_EQ(GetLastError(), ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_FALSE(StretchBlt(wide.Dc(), 0, 0, 1 << 26, 1, small.Dc(), 0, 0, 4, 1, SRCCOPY));
    EXPECT_EQ(small.Picture(), before);
    EXPECT_TRUE(StretchBlt(small.Dc(), 0, 0, 4, 1, wide.Dc(), (1 << 26) - 2, 0, 2, 1, SRCCOPY));
    EXPECT_EQ(small.Raw(0, 0), 0u);
}

TEST(Stretch, EmptyExtentsDrawNothing) {
    Board to(kLayouts[7], 8, 8), from(kLayouts[7], 8, 8);
    from.Wipe(0x77);
    const int extents[][4] = {{0, 3, 3, 3}, {3, 0, 3, 3}, {3, 3, 0, 3}, {3, 3, 3, 0}};
    for (const auto& e : extents) {
        EXPECT_TRUE(Stretch(to, from, {0, e[0], 0, e[2]}, {0, e[1], 0, e[3]}, SRCCOPY));
        EXPECT_FALSE(CopyKeyed(to, from, {0, e[0], 0, e[2]}, {0, e[1], 0, e[3]}, 0));
    }
    EXPECT_FALSE(CopyKeyed(to, from, {4, -3, 0, 3}, {4, 3, 0, 3}, 0));
    EXPECT_FALSE(CopyKeyed(to, from, {4, 3, 3, 3}, {4, 3, 3, kMin}, 0));
    EXPECT_EQ(to.Picture(), std::vector<std::uint32_t>(64));
}

}  // namespace
