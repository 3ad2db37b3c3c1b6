#include <gtest/gtest.h>

#include <string>

#include "platform/gdi.h"
#include "tests/platform/board.h"

namespace {

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
        if (y + 1 < board.Height()) text += ' ';
    }
    return text;
}

struct EdgeCase {
    RECT rect;
    UINT edge, flags;
    bool succeeds;
    const char* picture;  ///< 8 x 6, row by row
};

/// Pictures as measured on the platform.
const EdgeCase kEdges[] = {
    {{1, 1, 7, 5}, 1, BF_RECT, true, "........ .LLLLLD. .L....D. .L....D. .DDDDDD. ........"},
    {{1, 1, 7, 5}, 2, BF_RECT, true, "........ .SSSSSH. .S....H. .S....H. .HHHHHH. ........"},
    {{1, 1, 7, 5}, 4, BF_RECT, true, "........ .HHHHHS. .H....S. .H....S. .SSSSSS. ........"},
    {{1, 1, 7, 5}, 8, BF_RECT, true, "........ .DDDDDL. .D....L. .D....L. .LLLLLL. ........"},
    {{1, 0, 7, 6}, 5, BF_RECT, true, ".LLLLLD. .LHHHSD. .LH..SD. .LH..SD. .LSSSSD. .DDDDDD."},
    {{1, 0, 7, 6}, 6, BF_RECT, true, ".SSSSSH. .SHHHSH. .SH..SH. .SH..SH. .SSSSSH. .HHHHHH."},
    {{1, 0, 7, 6}, 9, BF_RECT, true, ".LLLLLD. .LDDDLD. .LD..LD. .LD..LD. .LLLLLD. .DDDDDD."},
    {{1, 0, 7, 6}, 10, BF_RECT, true, ".SSSSSH. .SDDDLH. .SD..LH. .SD..LH. .SLLLLH. .HHHHHH."},
    // Sides that are left out leave room for the inner ring.
    {{1, 0, 7, 6}, 5, BF_LEFT, true, ".LH..... .LH..... .LH..... .LH..... .LH..... .LH....."},
    {{1, 1, 7, 5}, 5, BF_TOP, true, "........ .LLLLLL. .HHHHHH. ........ ........ ........"},
    {{1, 1, 7, 5}, 5, BF_BOTTOM, true, "........ ........ ........ .SSSSSS. .DDDDDD. ........"},
    {{1, 0, 7, 6}, 5, BF_LEFT | BF_TOP, true, ".LLLLLL. .LHHHHH. .LH..... .LH..... .LH..... .LH....."},
    {{1, 0, 7, 6}, 5, BF_TOP | BF_RIGHT, true, ".LLLLLD. .HHHHSD. .....SD. .....SD. .....SD. .....SD."},
    {{1, 0, 7, 6}, 5, BF_LEFT | BF_BOTTOM, true, ".LH..... .LH..... .LH..... .LH..... .LSSSSS. .DDDDDD."},
    {{1, 0, 7, 6}, 5, BF_RIGHT | BF_BOTTOM, true, ".....SD. .....SD. .....SD. .....SD. .SSSSSD. .DDDDDD."},
    // Rectangles too small for two rings, and inverted ones: the sides run backwards.
    {{1, 1, 2, 2}, 5, BF_RECT, true, "..S..... .D...... S.H..... ........ ........ ........"},
    {{1, 1, 3, 3}, 5, BF_RECT, true, "........ .LD..... .DD..... ........ ........ ........"},
    {{1, 1, 2, 5}, 5, BF_RECT, true, "........ .D...... SDH..... SDS..... .D...... ........"},
    {{3, 3, 3, 3}, 5, BF_RECT, true, "........ ...SS... ........ .S..H... .S.HH... ........"},
    {{6, 5, 3, 2}, 1, BF_RECT, true, "........ ....DDD. ........ ..D...L. ..D...L. ..D.LLL."},
    // Nothing asked for, and rings that would be raised and sunken at once.
    {{1, 1, 7, 5}, 0, BF_RECT, true, "........ ........ ........ ........ ........ ........"},
    {{1, 1, 7, 5}, 5, 0, true, "........ ........ ........ ........ ........ ........"},
    {{1, 1, 7, 5}, 3, BF_RECT, false, "........ ........ ........ ........ ........ ........"},
    {{1, 1, 7, 5}, 7, BF_RECT, false, "........ ........ ........ ........ ........ ........"},
    {{1, 1, 7, 5}, 12, BF_RECT, false, "........ ........ ........ ........ ........ ........"},
    {{1, 1, 7, 5}, 14, BF_RECT, false, "........ .SSSSSH. .S....H. .S....H. .HHHHHH. ........"},
    // Sides far outside, and of any length.
    {{kMin, kMin, kMax, kMax}, 10, BF_RECT, true, "........ ........ ........ ........ ........ ........"},
    {{2, kMin, kMax, kMax}, 10, BF_RECT, true, "..SD.... ..SD.... ..SD.... ..SD.... ..SD.... ..SD...."},
    {{kMin, kMin, 5, 3}, 5, BF_RECT, true, "...SD... SSSSD... DDDDD... ........ ........ ........"},
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
        const HRGN exposed = CreateRectRgn(0, 0, 1, 1);
        EXPECT_TRUE(ScrollDC(board.Dc(), row.dx, row.dy, &row.scroll, &row.clip, exposed, &update));
        for (int i = 0; i < 72; ++i) {
            const std::int64_t x = i % 12, y = i / 12, u = x - row.dx, v = y - row.dy;
            const auto moves = [&](std::int64_t px, std::int64_t py) {
                return px >= 0 && py >= 0 && px < 12 && py < 6 && inside(row.clip, px, py) &&
                       inside(row.scroll, px, py);
            };
            EXPECT_EQ(PtInRegion(exposed, i % 12, i / 12) != 0, moves(x, y) && !moves(u, v)) << i;
        }
        DeleteObject(exposed);
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
