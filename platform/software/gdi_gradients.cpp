/// \file
/// The call that fills with gradients.

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "platform/software/coverage.h"
#include "platform/software/gradient_ink.h"
#include "platform/software/polygon.h"
#include "platform/software/trace.h"

using namespace device;

namespace {

/// Vertices, and what is made of them.
struct Mesh {
    const TRIVERTEX* vertices;
    ULONG vertexCount;
    const void* corners;
    ULONG count;

    /// Record \p index of the mesh: the numbers of a rectangle's or of a triangle's corners.
    template <std::size_t Corners>
    std::array<ULONG, Corners> Numbers(ULONG index) const {
        std::array<ULONG, Corners> numbers;
        std::memcpy(numbers.data(), static_cast<const ULONG*>(corners) + std::size_t{index} * Corners,
                    sizeof numbers);
        return numbers;
    }
    template <std::size_t Corners>
    bool IsWhole() const {
        for (ULONG i = 0; i < count; ++i) {
            for (const ULONG number : Numbers<Corners>(i))
                if (number >= vertexCount) return false;
        }
        return true;
    }
};

void FillBoxes(Context& context, const Mesh& mesh, bool vertical) {
    for (ULONG i = 0; i < mesh.count; ++i) {
        const auto numbers = mesh.Numbers<2>(i);
        const TRIVERTEX &a = mesh.vertices[numbers[0]], &b = mesh.vertices[numbers[1]];
        const Box box{std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
        if (!box.IsEmpty()) PutBox(GradientInk(context, a, b, vertical), context.clip, box);
    }
}

/// \returns whether every triangle has an area.
bool FillTriangles(Context& context, const Mesh& mesh) {
    bool solid = true;
    RunExtents extents;
    for (ULONG i = 0; i < mesh.count; ++i) {
        const auto numbers = mesh.Numbers<3>(i);
        const TRIVERTEX &a = mesh.vertices[numbers[0]], &b = mesh.vertices[numbers[1]],
                        &c = mesh.vertices[numbers[2]];
        if (IsFlat(a, b, c)) {
            solid = false;
            continue;
        }
        const GradientInk ink(context, a, b, c);
        const POINT corners[] = {{a.x, a.y}, {b.x, b.y}, {c.x, c.y}};
        FillTarget target(ink, context.clip, nullptr);
        extents.Find(corners, 3);
        FillPolygon(target, corners, 3, extents);
    }
    return solid;
}

}  // namespace

BOOL GradientFill(HDC dc, TRIVERTEX* vertices, ULONG vertexCount, void* corners, ULONG count, ULONG mode) {
    Trace("GradientFill", dc, vertices, vertexCount, corners, count, mode);
    return OnContext(dc, [&](Context& context) {
        if (vertices == nullptr || vertexCount == 0 || corners == nullptr || count == 0 ||
            mode > GRADIENT_FILL_TRIANGLE) {
            SetError(ERROR_INVALID_PARAMETER);
            return false;
        }
        const Mesh mesh{vertices, vertexCount, corners, count};
        if (mode == GRADIENT_FILL_TRIANGLE) return mesh.IsWhole<3>() && FillTriangles(context, mesh);
        if (!mesh.IsWhole<2>()) return false;
        FillBoxes(context, mesh, mode == GRADIENT_FILL_RECT_V);
        return true;
    });
}
