#include <algorithm>
#include <cstddef>

#include "zul/canvas/canvas.h"
#include "zul/tools/device_answers.h"

namespace zul {
namespace {

static_assert(sizeof(TGradVert) == sizeof(TRIVERTEX) && offsetof(TGradVert, Y) == offsetof(TRIVERTEX, y) &&
                  offsetof(TGradVert, Red) == offsetof(TRIVERTEX, Red) &&
                  offsetof(TGradVert, Green) == offsetof(TRIVERTEX, Green) &&
                  offsetof(TGradVert, Blue) == offsetof(TRIVERTEX, Blue) &&
                  offsetof(TGradVert, Alpha) == offsetof(TRIVERTEX, Alpha),
              "vertices reach the device as they are");
static_assert(CGradient::RectHorizontal == static_cast<std::int32_t>(GRADIENT_FILL_RECT_H) &&
                  CGradient::RectVertical == static_cast<std::int32_t>(GRADIENT_FILL_RECT_V) &&
                  CGradient::Triangles == static_cast<std::int32_t>(GRADIENT_FILL_TRIANGLE),
              "modes are the device's");

}  // namespace

void CCanvas::DrawGradient(CGradient* gradient, const std::int32_t* corners, std::int32_t count,
                           CGradient::TMode mode) {
    if (!gradient) gradient = GetGradient();
    if (!gradient || mode < CGradient::RectHorizontal || mode > CGradient::Triangles) return;
    const std::uint32_t each = mode == CGradient::Triangles ? 3 : 2;
    const std::uint32_t vertices = gradient->GetCount();
    const std::uint32_t asked = corners ? static_cast<std::uint32_t>(std::max(count, 0)) : vertices / each;
    const std::uint32_t figures = PrepareGradient(*gradient, corners, asked, each);
    if (figures == 0) return;
    auto* first = static_cast<TRIVERTEX*>(m_Buffer.GetBuffer());
    IsDone(::GradientFill(m_Device, first, vertices, first + vertices, figures, static_cast<ULONG>(mode)),
           this, u"CCanvas::DrawGradient");
}

std::uint32_t CCanvas::PrepareGradient(const CGradient& gradient, const std::int32_t* corners,
                                       std::uint32_t count, std::uint32_t cornersEach) {
    const std::uint32_t vertices = gradient.GetCount();
    const std::uint64_t indices = std::uint64_t{count} * cornersEach;
    if (corners && std::any_of(corners, corners + indices, [vertices](std::int32_t index) {
            return index < 0 || static_cast<std::uint32_t>(index) >= vertices;
        })) {
        RunError(ErrorFailed, u"Out of range error : Index in <zul::CCanvas::DrawGradient>", this);
        return 0;
    }
    const std::uint64_t size = std::uint64_t{vertices} * sizeof(TGradVert) + indices * sizeof(ULONG);
    if (size > UINT32_MAX) return 0;
    if (m_Buffer.GetSize() < size) NeedMemory(m_Buffer.Resize(static_cast<std::uint32_t>(size), false));

    auto* mapped = static_cast<TGradVert*>(m_Buffer.GetBuffer());
    auto* kept = reinterpret_cast<ULONG*>(mapped + vertices);
    std::uint32_t figures = 0;
    for (std::uint64_t i = 0; i < indices; i += cornersEach) {
        bool inFront = true;
        for (std::uint64_t k = i; k < i + cornersEach; ++k) {
            const auto index = corners ? static_cast<ULONG>(corners[k]) : static_cast<ULONG>(k);
            const TGradVert vertex = gradient.GetVertex(index);
            inFront = inFront && IsInFront({vertex.X, vertex.Y}, {vertex.X, vertex.Y});
            kept[figures * cornersEach + (k - i)] = index;
        }
        if (inFront) ++figures;
    }
    for (std::uint32_t i = 0; i < vertices; ++i) {
        mapped[i] = gradient.GetVertex(i);
        PreparePoint(mapped[i].X, mapped[i].Y);
    }
    return figures;
}

}  // namespace zul
