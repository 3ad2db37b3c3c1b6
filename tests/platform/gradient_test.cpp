#include <gtest/gtest.h>

#include "platform/gdi.h"
#include "tests/platform/board.h"

namespace {

TEST(Gradients, ReachFromEndToEndAndRefuseWhatIsNoMesh) {
    TRIVERTEX v[] = {{kMin, kMin, 0, 0, 0, 0},
                     {kMax, kMin, 0, 0, 0, 0},
                     {0, kMax, 0xFFFF, 0, 0, 0},
                     {kMax, kMax, 0xFFFF, 0, 0, 0}};
    ULONG triangle[] = {0, 1, 2}, box[] = {0, 3}, oneBad[] = {0, 1, 2, 0, 1, 4}, far[] = {0, UINT32_MAX, 2};
    const struct {
        TRIVERTEX* vertices;
        ULONG count, *mesh, figures, mode;
        bool drawn;
    } rows[] = {{v, 4, box, 1, 0, true},      {v, 4, box, 1, 1, true},       {v, 4, triangle, 1, 2, true},
                {v, 4, oneBad, 2, 2, false},  {v, 4, far, 1, 2, false},      {v, 4, far, 1, 0, false},
                {v, 3, box, 1, 1, false},     {v, 0, box, 1, 0, false},      {v, 4, box, 0, 0, false},
                {v, 4, nullptr, 1, 0, false}, {v, 4, triangle, 1, 3, false}, {nullptr, 4, box, 1, 0, false}};
    for (const auto& row : rows) {
        const Board board(kLayouts[7], 2, 2);
        EXPECT_EQ(GradientFill(board.Dc(), row.vertices, row.count, row.mesh, row.figures, row.mode),
                  row.drawn);
        EXPECT_EQ(board.Raw(0, 0), row.drawn ? 0x7F0000u : 0u) << &row - rows << ": the middle of all";
    }
}

}  // namespace
