/// \file
/// Block transfers and scrolling: the platform's calls.

#include <exception>
#include <utility>
#include <vector>

#include "platform/software/blit.h"
#include "platform/software/context_object.h"
#include "platform/software/extent.h"
#include "platform/software/trace.h"

using namespace device;

namespace {

PixelSet Within(const PixelSet& set, const RECT* limit) {
    return limit == nullptr ? set : Intersection(set, PixelSet(BoxOf(*limit)));
}

/// Lets a context draw in fewer places until it goes.
class NarrowedClip {
public:
    NarrowedClip(Context& context, std::vector<Box> boxes)
        : m_Context(context), m_Before(std::move(context.visible)) {
        context.SetVisible(std::move(boxes));
    }
    ~NarrowedClip() { m_Context.SetVisible(std::move(m_Before)); }
    NarrowedClip(const NarrowedClip&) = delete;
    NarrowedClip& operator=(const NarrowedClip&) = delete;

private:
    Context& m_Context;
    std::vector<Box> m_Before;
};

/// Runs a transfer, which answers false or throws when memory is short; \returns what the call returns.
template <class Work>
BOOL Transfer(Work&& work) {
    try {
        if (work()) return TRUE;
    } catch (const std::exception&) {
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
    Region* const update = Find<Region>(updateRegion);
    if (updateRegion != nullptr && update == nullptr) return Fail(ERROR_INVALID_HANDLE);
    return Transfer([&] {
        const PixelSet limits = Within(PixelSet(context->visible), clip);
        const PixelSet moved = Within(limits, scroll);
        PixelSet shifted = moved;
        shifted.Move(dx, dy);
        const PixelSet arrived = Intersection(shifted, limits);
        PixelSet exposed = Difference(moved, arrived);
        {
            const NarrowedClip narrowed(*context, arrived.Boxes());
            CopyPixels(*context, arrived.Bounds(), *context, dx, dy, Rop3::FromCode(SRCCOPY));
        }
        if (updateRect != nullptr) *updateRect = RectOf(exposed.Bounds());
        if (update != nullptr) update->pixels = std::move(exposed);
        return true;
    });
}
