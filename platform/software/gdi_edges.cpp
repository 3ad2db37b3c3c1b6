/// \file
/// Three-dimensional edges of rectangles.

#include "platform/software/color.h"
#include "platform/software/context.h"
#include "platform/software/extent.h"
#include "platform/software/trace.h"

using namespace device;

namespace {

/// System colours of one ring of an edge.
struct Ring {
    UINT bit;
    int leftTop, rightBottom;
};
constexpr Ring kRings[] = {
    {BDR_RAISEDOUTER, COLOR_3DLIGHT, COLOR_3DDKSHADOW},
    {BDR_SUNKENOUTER, COLOR_BTNSHADOW, COLOR_BTNHIGHLIGHT},
    {BDR_RAISEDINNER, COLOR_BTNHIGHLIGHT, COLOR_BTNSHADOW},
    {BDR_SUNKENINNER, COLOR_3DDKSHADOW, COLOR_3DLIGHT},
};

struct Sides {
    std::int64_t left, top, right, bottom;
};

/// One ring on the sides that \p flags name: right and bottom go over the ends of left and top. Sides of an
/// inverted rectangle run backwards, as the signed extents say.
void PutRing(const Context& context, const Ring& ring, const Sides& at, UINT flags) {
    const auto put = [&](int color, const Box& box) {
        const Surface& surface = context.surface;
        const std::uint32_t pixel = PixelFromColor(context, SystemColor(color));
        PutBox(MakeSolidInk(surface, MakeMix(R2_COPYPEN, pixel, surface.format)), context.clip, box);
    };
    const std::int64_t width = at.right - at.left, height = at.bottom - at.top;
    if ((flags & BF_LEFT) != 0) put(ring.leftTop, ExtentBox(at.left, at.top, 1, height));
    if ((flags & BF_TOP) != 0) put(ring.leftTop, ExtentBox(at.left, at.top, width, 1));
    if ((flags & BF_RIGHT) != 0) put(ring.rightBottom, ExtentBox(at.right - 1, at.top, 1, height));
    if ((flags & BF_BOTTOM) != 0) put(ring.rightBottom, ExtentBox(at.left, at.bottom - 1, width, 1));
}

}  // namespace

BOOL DrawEdge(HDC dc, RECT* rect, UINT edge, UINT flags) {
    Trace("DrawEdge", dc, rect, edge, flags);
    const Context* context = FindContext(dc);
    if (context == nullptr) return FALSE;
    if (rect == nullptr) return Fail(ERROR_INVALID_PARAMETER);
    constexpr UINT outer = BDR_RAISEDOUTER | BDR_SUNKENOUTER, inner = BDR_RAISEDINNER | BDR_SUNKENINNER;
    // Raised and sunken exclude each other; a ring that is both is not drawn, nor what lies inside it.
    if ((edge & outer) == outer) return FALSE;
    const bool innerFails = (edge & inner) == inner;
    if (innerFails) edge &= outer;
    Sides at{rect->left, rect->top, rect->right, rect->bottom};
    for (const Ring& ring : kRings) {
        if ((edge & ring.bit) == 0) continue;
        PutRing(*context, ring, at, flags);
        if ((flags & BF_LEFT) != 0) ++at.left;
        if ((flags & BF_TOP) != 0) ++at.top;
        if ((flags & BF_RIGHT) != 0) --at.right;
        if ((flags & BF_BOTTOM) != 0) --at.bottom;
    }
    return innerFails ? FALSE : TRUE;
}
