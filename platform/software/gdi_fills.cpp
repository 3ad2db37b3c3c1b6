/// \file
/// Boxes and single pixels: the calls that need no figure.

#include "platform/software/blit.h"
#include "platform/software/color.h"
#include "platform/software/context_object.h"
#include "platform/software/extent.h"
#include "platform/software/trace.h"

using namespace device;

namespace {

/// The brush that a caller of FillRect means: its own, the selected one, or a system colour plus one.
const Brush* FillBrush(const Context& context, HBRUSH handle) {
    if (handle == nullptr) return context.brush;
    const auto value = reinterpret_cast<std::uintptr_t>(handle);
    if (value <= static_cast<std::uintptr_t>(kSystemColors)) return SystemBrush(static_cast<int>(value) - 1);
    return Find<Brush>(handle);
}

bool IsInside(const Clip& clip, std::int32_t x, std::int32_t y) {
    bool inside = false;
    ForVisibleBoxes(clip, ExtentBox(x, y, 1, 1), [&inside](const Box&) { inside = true; });
    return inside;
}

}  // namespace

int FillRect(HDC dc, const RECT* rect, HBRUSH handle) {
    Trace("FillRect", dc, rect, handle);
    Context* context = FindContext(dc);
    if (context == nullptr) return FALSE;
    if (rect == nullptr) return Fail(ERROR_INVALID_PARAMETER);
    const Brush* brush = FillBrush(*context, handle);
    if (brush == nullptr) return Fail(ERROR_INVALID_HANDLE);
    const Box box = ExtentBox(rect->left, rect->top, std::int64_t{rect->right} - rect->left,
                              std::int64_t{rect->bottom} - rect->top);
    if (brush->style != BS_NULL) PutBox(BrushInk(*context, *brush, R2_COPYPEN), context->clip, box);
    return TRUE;
}

BOOL PatBlt(HDC dc, int x, int y, int width, int height, DWORD rop3) {
    Trace("PatBlt", dc, x, y, width, height, rop3);
    Context* context = FindContext(dc);
    if (context == nullptr) return FALSE;
    const Rop3 rop = Rop3::FromCode(rop3);
    if (rop.UsesSource()) return Fail(ERROR_INVALID_PARAMETER);
    PaintPixels(*context, ExtentBox(x, y, width, height), rop);
    return TRUE;
}

COLORREF GetPixel(HDC dc, int x, int y) {
    Trace("GetPixel", dc, x, y);
    const Context* context = FindContext(dc);
    if (context == nullptr || !IsInside(context->clip, x, y)) return CLR_INVALID;
    return ColorFromPixel(*context, LoadPixel(context->surface, x, y));
}

COLORREF SetPixel(HDC dc, int x, int y, COLORREF color) {
    Trace("SetPixel", dc, x, y, color);
    const Context* context = FindContext(dc);
    if (context == nullptr) return CLR_INVALID;
    const Surface& surface = context->surface;
    const std::uint32_t pixel = NearestPixel(*context, color);
    const Box box = ExtentBox(x, y, 1, 1);
    PutBox(MakeSolidInk(surface, MakeMix(context->rop2, pixel, surface.format)), context->clip, box);
    // Callers that plot off the surface are told the colour too.
    return ColorFromPixel(*context, pixel);
}
