#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "platform/gdi.h"
#include "tests/platform/board.h"

namespace {

constexpr int kMin = std::numeric_limits<int>::min(), kMax = std::numeric_limits<int>::max();

/// A letter for each colour of an edge: L light, H highlight, S shadow, D dark shadow, '.' untouched.
std::string Letters(const Board& board) {
    std::string text;
    for (int y = 0; y < board.Height(); ++y) {
        for (int x = 0; x < board.Width(); ++x) {
            char letter = '?';
            const COLORREF color = GetPixel(board.Dc(), x, y);
            if (color == RGB(1, 2, 3)) letter = '.';
            if (color == GetSysColor(COLOR_3DLIGHT)) letter = 'L';
            if (color == GetSysColor(COLOR_BTNHIGHLIGHT)) letter = 'H';
            if (color == GetSysColor(COLOR_BTNSHADOW)) letter = 'S';
            if (color == GetSysColor(COLOR_3DDKSHADOW)) letter = 'D';
            text += letter;
        }
        text += '\n';
    }
    return text;
}

struct EdgeCase {
    RECT rect;
    UINT edge, flags;
    bool succeeds;
    const char* picture;  ///< 8 x 6
};

/// Pictures as measured on the platform.
const EdgeCase kEdges[] = {
    {{1, 1, 7, 5},
     BDR_RAISEDOUTER,
     BF_RECT,
     true,
     "........\n.LLLLLD.\n.L....D.\n.L....D.\n.DDDDDD.\n........\n"},
    {{1, 1, 7, 5},
     BDR_SUNKENOUTER,
     BF_RECT,
     true,
     "........\n.SSSSSH.\n.S....H.\n.S....H.\n.HHHHHH.\n........\n"},
    {{1, 1, 7, 5},
     BDR_RAISEDINNER,
     BF_RECT,
     true,
     "........\n.HHHHHS.\n.H....S.\n.H....S.\n.SSSSSS.\n........\n"},
    {{1, 1, 7, 5},
     BDR_SUNKENINNER,
     BF_RECT,
     true,
     "........\n.DDDDDL.\n.D....L.\n.D....L.\n.LLLLLL.\n........\n"},
    {{1, 0, 7, 6}, 5, BF_RECT, true, ".LLLLLD.\n.LHHHSD.\n.LH..SD.\n.LH..SD.\n.LSSSSD.\n.DDDDDD.\n"},
    {{1, 0, 7, 6}, 6, BF_RECT, true, ".SSSSSH.\n.SHHHSH.\n.SH..SH.\n.SH..SH.\n.SSSSSH.\n.HHHHHH.\n"},
    {{1, 0, 7, 6}, 9, BF_RECT, true, ".LLLLLD.\n.LDDDLD.\n.LD..LD.\n.LD..LD.\n.LLLLLD.\n.DDDDDD.\n"},
    {{1, 0, 7, 6}, 10, BF_RECT, true, ".SSSSSH.\n.SDDDLH.\n.SD..LH.\n.SD..LH.\n.SLLLLH.\n.HHHHHH.\n"},
    // Sides that are left out leave room for the inner ring.
    {{1, 0, 7, 6}, 5, BF_LEFT, true, ".LH.....\n.LH.....\n.LH.....\n.LH.....\n.LH.....\n.LH.....\n"},
    {{1, 1, 7, 5}, 5, BF_TOP, true, "........\n.LLLLLL.\n.HHHHHH.\n........\n........\n........\n"},
    {{1, 1, 7, 5}, 5, BF_BOTTOM, true, "........\n........\n........\n.SSSSSS.\n.DDDDDD.\n........\n"},
    {{1, 0, 7, 6}, 5, BF_LEFT | BF_TOP, true, ".LLLLLL.\n.LHHHHH.\n.LH.....\n.LH.....\n.LH.....\n.LH.....\n"},
    {{1, 0, 7, 6},
     5,
     BF_TOP | BF_RIGHT,
     true,
     ".LLLLLD.\n.HHHHSD.\n.....SD.\n.....SD.\n.....SD.\n.....SD.\n"},
    {{1, 0, 7, 6},
     5,
     BF_LEFT | BF_BOTTOM,
     true,
     ".LH.....\n.LH.....\n.LH.....\n.LH.....\n.LSSSSS.\n.DDDDDD.\n"},
    {{1, 0, 7, 6},
     5,
     BF_RIGHT | BF_BOTTOM,
     true,
     ".....SD.\n.....SD.\n.....SD.\n.....SD.\n.SSSSSD.\n.DDDDDD.\n"},
    // Rectangles too small for two rings, and inverted ones: the sides run backwards.
    {{1, 1, 2, 2}, 5, BF_RECT, true, "..S.....\n.D......\nS.H.....\n........\n........\n........\n"},
    {{1, 1, 3, 3}, 5, BF_RECT, true, "........\n.LD.....\n.DD.....\n........\n........\n........\n"},
    {{1, 1, 2, 5}, 5, BF_RECT, true, "........\n.D......\nSDH.....\nSDS.....\n.D......\n........\n"},
    {{3, 3, 3, 3}, 5, BF_RECT, true, "........\n...SS...\n........\n.S..H...\n.S.HH...\n........\n"},
    {{6, 5, 3, 2}, 1, BF_RECT, true, "........\n....DDD.\n........\n..D...L.\n..D...L.\n..D.LLL.\n"},
    // Nothing asked for, and rings that would be raised and sunken at once.
    {{1, 1, 7, 5}, 0, BF_RECT, true, "........\n........\n........\n........\n........\n........\n"},
    {{1, 1, 7, 5}, 5, 0, true, "........\n........\n........\n........\n........\n........\n"},
    {{1, 1, 7, 5}, 3, BF_RECT, false, "........\n........\n........\n........\n........\n........\n"},
    {{1, 1, 7, 5}, 7, BF_RECT, false, "........\n........\n........\n........\n........\n........\n"},
    {{1, 1, 7, 5}, 12, BF_RECT, false, "........\n........\n........\n........\n........\n........\n"},
    {{1, 1, 7, 5}, 14, BF_RECT, false, "........\n.SSSSSH.\n.S....H.\n.S....H.\n.HHHHHH.\n........\n"},
    // Sides far outside, and of any length.
    {{kMin, kMin, kMax, kMax},
     10,
     BF_RECT,
     true,
     "........\n........\n........\n........\n........\n........\n"},
    {{2, kMin, kMax, kMax},
     10,
     BF_RECT,
     true,
     "..SD....\n..SD....\n..SD....\n..SD....\n..SD....\n..SD....\n"},
    {{kMin, kMin, 5, 3}, 5, BF_RECT, true, "...SD...\nSSSSD...\nDDDDD...\n........\n........\n........\n"},
};

TEST(Edge, LooksAsMeasuredOnThePlatform) {
    for (const EdgeCase& row : kEdges) {
        Board board(kLayouts[7], 8, 6);
        for (int i = 0; i < 48; ++i)
            SetPixel(board.Dc(), i % 8, i / 8, RGB(1, 2, 3));
        // An edge covers, whatever the context would do to lines.
        SetROP2(board.Dc(), R2_XORPEN);
        RECT rect = row.rect;
        EXPECT_EQ(DrawEdge(board.Dc(), &rect, row.edge, row.flags) != FALSE, row.succeeds) << row.edge;
        EXPECT_EQ(Letters(board), row.picture)
            << "edge " << row.edge << " flags " << row.flags << " " << row.rect.left << "," << row.rect.top
            << " " << row.rect.right << "," << row.rect.bottom;
        EXPECT_EQ(std::memcmp(&rect, &row.rect, sizeof rect), 0);
    }
}

struct ScrollCase {
    int dx, dy;
    RECT scroll, clip, update;
};

TEST(Scroll, MovesWithinTheClipAndReportsWhatCameIntoView) {
    const ScrollCase rows[] = {
        {2, 1, {2, 1, 8, 5}, {2, 1, 8, 5}, {2, 1, 8, 5}},
        {-2, 0, {2, 1, 8, 5}, {2, 1, 8, 5}, {6, 1, 8, 5}},
        {0, 3, {2, 1, 8, 5}, {2, 1, 8, 5}, {2, 1, 8, 4}},
        {0, -3, {2, 1, 8, 5}, {2, 1, 8, 5}, {2, 2, 8, 5}},
        {2, 1, {2, 1, 8, 5}, {3, 2, 10, 6}, {3, 2, 8, 5}},
        {-4, -3, {2, 1, 8, 5}, {0, 0, 12, 6}, {2, 1, 8, 5}},
        {0, 0, {2, 1, 8, 5}, {2, 1, 8, 5}, {0, 0, 0, 0}},
        {10, 0, {2, 1, 8, 5}, {2, 1, 8, 5}, {2, 1, 8, 5}},
        {3, -2, {-50, -50, 500, 500}, {-50, -50, 500, 500}, {0, 0, 12, 6}},
        {2, 1, {100, 100, 110, 110}, {100, 100, 110, 110}, {0, 0, 0, 0}},
        {2, 1, {8, 5, 2, 1}, {8, 5, 2, 1}, {0, 0, 0, 0}},
        {kMax, kMin, {kMin, kMin, kMax, kMax}, {kMin, kMin, kMax, kMax}, {0, 0, 12, 6}},
        {1, 0, {kMin, kMin, kMax, kMax}, {kMin, kMin, kMax, kMax}, {0, 0, 1, 6}},
    };
    for (const ScrollCase& row : rows) {
        Board board(kLayouts[7], 12, 6);
        for (int i = 0; i < 72; ++i)
            SetPixel(board.Dc(), i % 12, i / 12, RGB(i, i / 12, 7));
        auto expected = board.Picture();
        const auto inside = [](const RECT& rect, std::int64_t x, std::int64_t y) {
            return x >= rect.left && x < rect.right && y >= rect.top && y < rect.bottom;
        };
        const auto before = expected;
        for (int i = 0; i < 72; ++i) {
            const std::int64_t x = i % 12, y = i / 12, u = x - row.dx, v = y - row.dy;
            if (u < 0 || v < 0 || u >= 12 || v >= 6 || !inside(row.clip, x, y) || !inside(row.scroll, u, v))
                continue;
            if (!inside(row.clip, u, v)) continue;
            expected[static_cast<std::size_t>(i)] = before[static_cast<std::size_t>(v * 12 + u)];
        }
        RECT update{9, 9, 9, 9};
        EXPECT_TRUE(ScrollDC(board.Dc(), row.dx, row.dy, &row.scroll, &row.clip, nullptr, &update));
        EXPECT_EQ(board.Picture(), expected) << row.dx << "," << row.dy << " scroll " << row.scroll.left;
        EXPECT_EQ(std::memcmp(&update, &row.update, sizeof update), 0)
            << row.dx << "," << row.dy << ": " << update.left << "," << update.top << " " << update.right
            << "," << update.bottom;
    }
}

TEST(Scroll, WithoutRectanglesTheWholeSurfaceMoves) {
    Board board(kLayouts[7], 4, 3);
    for (int i = 0; i < 12; ++i)
        SetPixel(board.Dc(), i % 4, i / 4, static_cast<COLORREF>(i + 1) << 16);
    EXPECT_TRUE(ScrollDC(board.Dc(), 1, 1, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(board.Picture(), (std::vector<std::uint32_t>{1, 2, 3, 4, 5, 1, 2, 3, 9, 5, 6, 7}));
}

}  // namespace
