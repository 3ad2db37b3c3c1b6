/// \file
/// Block transfers and scrolling: the platform's calls.

#include <new>

#include "platform/software/blit.h"
#include "platform/software/extent.h"
#include "platform/software/trace.h"

using namespace device;

namespace {

/// The smallest box around what \p whole has outside \p part.
Box BoxAroundRest(const Box& whole, const Box& part) {
    const Box common = Intersect(whole, part);
    if (common.IsEmpty()) return whole;
    const bool full = common.left == whole.left && common.right == whole.right;
    const bool tall = common.top == whole.top && common.bottom == whole.bottom;
    Box rest = whole;
    if (full && tall) return {};
    if (full && common.top == whole.top) rest.top = common.bottom;
    if (full && common.bottom == whole.bottom) rest.bottom = common.top;
    if (tall && common.left == whole.left) rest.left = common.right;
    if (tall && common.right == whole.right) rest.right = common.left;
    return rest;
}

Box BoxOf(const RECT& rect) {
    return {rect.left, rect.top, rect.right, rect.bottom};
}

/// Runs a transfer, which answers false or throws when memory is short; \returns what the call returns.
template <class Work>
BOOL Transfer(Work&& work) {
    try {
        if (work()) return TRUE;
    } catch (const std::bad_alloc&) {
    }
    return Fail(ERROR_NOT_ENOUGH_MEMORY);
}

/// Paints \p box when the operation needs no source, which then may be anything; otherwise runs
/// `copy(target, source, operation)`.
template <class Copy>
BOOL TransferBlock(HDC dc, const Box& box, HDC source, DWORD rop3, Copy&& copy) {
    Context* target = FindContext(dc);
    if (target == nullptr) return FALSE;
    const Rop3 rop = Rop3::FromCode(rop3);
    if (!rop.UsesSource()) {
        PaintPixels(*target, box, rop);
        return TRUE;
    }
    const Context* from = FindContext(source);
    if (from == nullptr) return FALSE;
    return Transfer([&] { return copy(*target, *from, rop); });
}

}  // namespace

BOOL BitBlt(HDC dc, int x, int y, int width, int height, HDC source, int sx, int sy, DWORD rop3) {
    Trace("BitBlt", dc, x, y, width, height, source, sx, sy, rop3);
    const Box box = ExtentBox(x, y, width, height);
    return TransferBlock(dc, box, source, rop3, [&](Context& target, const Context& from, Rop3 rop) {
        CopyPixels(target, box, from, std::int64_t{x} - sx, std::int64_t{y} - sy, rop);
        return true;
    });
}

BOOL StretchBlt(HDC dc, int x, int y, int width, int height, HDC source, int sx, int sy, int sourceWidth,
                int sourceHeight, DWORD rop3) {
    Trace("StretchBlt", dc, x, y, width, height, source, sx, sy, sourceWidth, sourceHeight, rop3);
    const Box box = ExtentBox(x, y, width, height);
    return TransferBlock(dc, box, source, rop3, [&](Context& target, const Context& from, Rop3 rop) {
        if (width == 0 || height == 0 || sourceWidth == 0 || sourceHeight == 0) return true;
        if (width == sourceWidth && height == sourceHeight) {
            CopyPixels(target, box, from, std::int64_t{x} - sx, std::int64_t{y} - sy, rop);
            return true;
        }
        const StretchAxis columns(x, width, sx, sourceWidth, from.surface.width);
        const StretchAxis rows(y, height, sy, sourceHeight, from.surface.height);
        return StretchPixels(target, columns, rows, from, rop);
    });
}

BOOL TransparentImage(HDC dc, int x, int y, int width, int height, HDC source, int sx, int sy,
                      int sourceWidth, int sourceHeight, COLORREF key) {
    Trace("TransparentImage", dc, x, y, width, height, source, sx, sy, sourceWidth, sourceHeight, key);
    Context* target = FindContext(dc);
    if (target == nullptr) return FALSE;
    const Context* from = FindContext(source);
    if (from == nullptr) return FALSE;
    if (width <= 0 || height <= 0 || sourceWidth <= 0 || sourceHeight <= 0) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    const StretchAxis columns(x, width, sx, sourceWidth, from->surface.width);
    const StretchAxis rows(y, height, sy, sourceHeight, from->surface.height);
    return Transfer([&] { return KeyPixels(*target, columns, rows, *from, key); });
}

BOOL ScrollDC(HDC dc, int dx, int dy, const RECT* scroll, const RECT* clip, HRGN updateRegion,
              RECT* updateRect) {
    Trace("ScrollDC", dc, dx, dy, scroll, clip, updateRegion, updateRect);
    Context* context = FindContext(dc);
    if (context == nullptr) return FALSE;
    // There are no regions that a handle could name.
    if (updateRegion != nullptr) return Fail(ERROR_INVALID_HANDLE);
    const Box limits = clip != nullptr ? Intersect(BoxOf(*clip), context->clip.bounds) : context->clip.bounds;
    const Box moved = scroll != nullptr ? Intersect(BoxOf(*scroll), limits) : limits;
    const Box shifted =
        ExtentBox(std::int64_t{moved.left} + dx, std::int64_t{moved.top} + dy,
                  std::int64_t{moved.right} - moved.left, std::int64_t{moved.bottom} - moved.top);
    const Box arrived = Intersect(shifted, limits);
    const bool moves = !moved.IsEmpty() && !arrived.IsEmpty();
    const bool done = Transfer([&] {
        if (moves) CopyPixels(*context, arrived, *context, dx, dy, Rop3::FromCode(SRCCOPY));
        return true;
    });
    if (!done) return FALSE;
    const Box update = moved.IsEmpty() ? Box{} : BoxAroundRest(moved, arrived);
    if (updateRect != nullptr) *updateRect = {update.left, update.top, update.right, update.bottom};
    return TRUE;
}
