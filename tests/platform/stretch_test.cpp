#include <gtest/gtest.h>

#include <string>

#include "platform/gdi.h"
#include "platform/software/pixel_picks.h"
#include "tests/platform/blit_oracle.h"

namespace {

/// One side of a stretch, and which source pixels a target pixel gets by walking every source step.
struct Axis {
    int target, targetExtent, source, sourceExtent;

    /// Target pixels by which a mirrored side with missing sources moves: those that the missing ones at its
    /// start fill, less those that the missing ones at its end touch.
    int Slide(int limit) const {
        if ((targetExtent < 0) == (sourceExtent < 0)) return 0;
        const int d = std::abs(targetExtent), s = std::abs(sourceExtent);
        int first = 0, last = 0, slide = 0;
        for (int i = 0, kept = 0; i < s; ++i) {
            const int pixel = sourceExtent < 0 ? source - i : source + i;
            const bool missing = pixel < 0 || pixel >= limit;
            kept += missing ? 0 : 1;
            (kept == 0 ? first : last) += missing ? 1 : 0;
        }
        if (sourceExtent < 0 && first == 1 && last == 0) return 0;
        for (int k = 0; k < d; ++k)
            slide += ((k + 1) * s <= first * d ? 1 : 0) - (k * s < last * d ? 1 : 0);
        return slide;
    }

    /// In the order of the walk from the anchors; without those that lie outside 0 .. limit - 1.
    std::vector<int> SourcesOf(int at, int limit) const {
        const int d = std::abs(targetExtent), s = std::abs(sourceExtent);
        const int place = targetExtent < 0 ? target - at : at - target, k = place + Slide(limit);
        std::vector<int> found;
        if (place < 0 || place >= d || k < 0 || k >= d) return found;
        for (int i = 0; i < s; ++i) {
            // Centres: step i of s lies at (2 i + 1) d / 2 s target pixels, step k of d likewise; a centre on
            // a border belongs to the lower side.
            const bool hit = d >= s ? ((2 * k + 1) * s + 2 * d - 1) / (2 * d) - 1 == i
                                    : ((2 * i + 1) * d + 2 * s - 1) / (2 * s) - 1 == k;
            const bool lost = d == 1 && s > 1 && i == s - 1 && targetExtent > 0 && sourceExtent > 0;
            const int pixel = sourceExtent < 0 ? source - i : source + i;
            if (hit && !lost && pixel >= 0 && pixel < limit) found.push_back(pixel);
        }
        return found;
    }
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

/// Calls `mix(pixel, columns, rows)` for each target pixel that has sources.
template <class Mix>
std::vector<std::uint32_t> Stretched(const Side& to, const Side& from, const Axis& across, const Axis& down,
                                     Mix&& mix) {
    auto picture = to.board.Picture();
    for (int y = 0; y < to.board.Height(); ++y) {
        const auto rows = down.SourcesOf(y, from.board.Height());
        for (int x = 0; x < to.board.Width() && !rows.empty(); ++x) {
            const auto columns = across.SourcesOf(x, from.board.Width());
            if (columns.empty() || !to.board.Shows(x, y)) continue;
            mix(picture[static_cast<std::size_t>(y * to.board.Width() + x)], columns, rows);
        }
    }
    return picture;
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

void CheckStretch(Side& to, const Side& from, const Axis& across, const Axis& down, int mode, unsigned rop) {
    const auto source = from.board.Picture();
    const auto at = [&](int x, int y) {
        return Translated(from, to, source[static_cast<std::size_t>(y * from.board.Width() + x)]);
    };
    const auto expected =
        Stretched(to, from, across, down, [&](std::uint32_t& pixel, const auto& columns, const auto& rows) {
            std::uint32_t folded = at(columns.back(), rows.front());
            for (const int v : rows) {
                for (const int u : columns) {
                    if (mode == BLACKONWHITE) folded &= at(u, v);
                    if (mode == WHITEONBLACK) folded |= at(u, v);
                }
            }
            pixel = Rop3Bits(rop, 0, folded, pixel, to.board.Mask());
        });
    SetStretchBltMode(to.board.Dc(), mode);
    ASSERT_TRUE(Stretch(to.board, from.board, across, down, rop << 16));
    ASSERT_EQ(to.board.Picture(), expected)
        << from.layout << " to " << to.layout << ", mode " << mode << ": " << across << "; " << down;
}

class StretchLayouts : public testing::TestWithParam<Layout> {};

TEST_P(StretchLayouts, EachTargetPixelGetsItsSources) {
    Dice dice(23);
    for (const Layout& source : kLayouts) {
        for (int turn = 0; turn < 60; ++turn) {
            Side to(GetParam(), NoisyTable(GetParam(), dice.random), dice(1, 24), dice(1, 12),
                    dice(0, 1) != 0);
            Side from(source, NoisyTable(source, dice.random), dice(1, 24), dice(1, 12), dice(0, 1) != 0);
            to.board.Noise(dice.random);
            from.board.Noise(dice.random);
            if (turn % 2 == 0) to.board.ClipSomehow(dice.random);
            const int mode = turn % 3 + BLACKONWHITE;
            ASSERT_NO_FATAL_FAILURE(CheckStretch(to, from, RandomAxis(dice, 24), RandomAxis(dice, 12), mode,
                                                 turn % 4 == 0 ? 0x66 : 0xCC));
        }
    }
}

TEST_P(StretchLayouts, WithinOneBitmapTheOldPixelsAreRead) {
    Dice dice(29);
    for (int turn = 0; turn < 200; ++turn) {
        Side side(GetParam(), NoisyTable(GetParam(), dice.random), 24, 12, dice(0, 1) != 0);
        side.board.Noise(dice.random);
        ASSERT_NO_FATAL_FAILURE(
            CheckStretch(side, side, RandomAxis(dice, 24), RandomAxis(dice, 12), COLORONCOLOR, 0xCC));
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
            Axis across = RandomAxis(dice, 24), down = RandomAxis(dice, 12);
            if (turn % 2 == 0) {
                across = {dice(-3, 9), dice(1, 24), dice(-3, 9), 0};
                across.sourceExtent = across.targetExtent;
            }
            for (Axis* axis : {&across, &down}) {
                axis->targetExtent = std::abs(axis->targetExtent);
                axis->sourceExtent = std::abs(axis->sourceExtent);
            }
            // The key's high byte does not count, nor does a pixel's; many pixels have the key's colour.
            const std::size_t bytes = static_cast<std::size_t>(source.bits) / 8;
            for (std::size_t at = bytes; bytes >= 2 && at + bytes <= from.board.Bytes(); at += bytes) {
                if (dice(0, 2) == 0)
                    std::memcpy(from.board.Memory() + at, from.board.Memory(), bytes < 3 ? 2 : 3);
            }
            const COLORREF key = GetPixel(from.board.Dc(), 0, 0);
            const auto expected = Stretched(
                to, from, across, down, [&](std::uint32_t& pixel, const auto& columns, const auto& rows) {
                    const std::uint32_t raw = from.board.Raw(columns.back(), rows.front());
                    const std::uint32_t blackOrWhite = raw == 0 ? 0u : 0xFFFFFFu;
                    const bool isKey =
                        (from.HasColors() ? ColorOf(from, raw) : blackOrWhite) == SwapRedBlue(key);
                    if (!isKey) pixel = Translated(from, to, raw, true);
                    kept += isKey ? 1 : 0;
                });
            ASSERT_TRUE(CopyKeyed(to.board, from.board, across, down, key | 0xAB000000u));
            ASSERT_EQ(to.board.Picture(), expected)
                << source << " to " << GetParam() << ": " << across << "; " << down;
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
