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

/// What random scenes leave out: results, one edge of each lot, and sides at the ends of 32 bits.
const EdgeCase kEdges[] = {
    {{1, 0, 7, 6}, 5, BF_RECT, true, ".LLLLLD. .LHHHSD. .LH..SD. .LH..SD. .LSSSSD. .DDDDDD."},
    {{1, 0, 7, 6}, 10, BF_LEFT | BF_TOP, true, ".SSSSSS. .SDDDDD. .SD..... .SD..... .SD..... .SD....."},
    {{6, 5, 3, 2}, 1, BF_RECT, true, "........ ....DDD. ........ ..D...L. ..D...L. ..D.LLL."},
    // Rings that would be raised and sunken at once.
    {{1, 1, 7, 5}, 7, BF_RECT, false, "........ ........ ........ ........ ........ ........"},
    {{1, 1, 7, 5}, 14, BF_RECT, false, "........ .SSSSSH. .S....H. .S....H. .HHHHHH. ........"},
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

TEST(Scroll, ReportsWhatCameIntoView) {
    const struct {
        int dx, dy;
        RECT scroll, clip, update;
    } rows[] = {
        {2, 1, {2, 1, 8, 5}, {3, 2, 10, 6}, {3, 2, 8, 5}},
        {-4, -3, {2, 1, 8, 5}, {0, 0, 12, 6}, {2, 1, 8, 5}},
        {0, 0, {2, 1, 8, 5}, {2, 1, 8, 5}, {0, 0, 0, 0}},
        {10, 0, {2, 1, 8, 5}, {2, 1, 8, 5}, {2, 1, 8, 5}},
        {2, 1, {100, 100, 110, 110}, {100, 100, 110, 110}, {0, 0, 0, 0}},
        {2, 1, {8, 5, 2, 1}, {8, 5, 2, 1}, {0, 0, 0, 0}},
        {kMax, kMin, {kMin, kMin, kMax, kMax}, {kMin, kMin, kMax, kMax}, {0, 0, 12, 6}},
        {1, 0, {kMin, kMin, kMax, kMax}, {kMin, kMin, kMax, kMax}, {0, 0, 1, 6}},
    };
    for (const auto& row : rows) {
        const Board board(kLayouts[7], 12, 6);
        RECT update{9, 9, 9, 9};
        EXPECT_TRUE(ScrollDC(board.Dc(), row.dx, row.dy, &row.scroll, &row.clip, nullptr, &update));
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
