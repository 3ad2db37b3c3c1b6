#include <algorithm>
#include <vector>

#include "tests/scenes/kinds.h"
#include "tests/scenes/tools.h"

namespace scenes {
namespace {

// The system reckons colours in 32 bits: rectangles keep within 65537 pixels a side, triangles within 2^15.
constexpr int kRectReach = 30000, kTriangleReach = 15000;

TRIVERTEX SomeVertex(CRandom& random, int reach) {
    const POINT point = SomePoint(random, reach);
    TRIVERTEX vertex{point.x, point.y, 0, 0, 0, 0};
    for (COLOR16* channel : {&vertex.Red, &vertex.Green, &vertex.Blue, &vertex.Alpha})
        *channel = static_cast<COLOR16>(random.OneIn(5) ? random.In(0, 1) * 0xFFFF : random.In(0, 0xFFFF));
    return vertex;
}

}  // namespace

void DrawGradients(CBoard& board, CRandom& random) {
    const HDC dc = board.Get();
    for (int rest = random.In(1, 3); rest != 0; --rest) {
        const POINT corner = SomePoint(random, 40);
        if (random.OneIn(3)) ::ExcludeClipRect(dc, corner.x, corner.y, corner.x + 30, corner.y + 30);
        const auto mode = static_cast<ULONG>(random.In(0, 2));
        const int each = mode == GRADIENT_FILL_TRIANGLE ? 3 : 2;
        const int reach = std::min(SomeReach(random), each == 3 ? kTriangleReach : kRectReach);
        std::vector<TRIVERTEX> vertices;
        for (int count = random.In(each, 7); count != 0; --count)
            vertices.push_back(SomeVertex(random, reach));
        const int figures = random.In(1, 3);
        std::vector<ULONG> mesh(static_cast<std::size_t>(figures * each));
        // Now and then a number that no vertex has.
        const int last = static_cast<int>(vertices.size()) - (random.OneIn(12) ? 0 : 1);
        for (ULONG& number : mesh)
            number = static_cast<ULONG>(random.In(0, last));
        ::GradientFill(dc, vertices.data(), static_cast<ULONG>(vertices.size()), mesh.data(),
                       static_cast<ULONG>(figures), mode);
    }
    ::SelectClipRgn(dc, nullptr);
}

}  // namespace scenes
