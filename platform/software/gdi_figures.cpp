// The line and figure calls: what is asked for, turned into strokes and fills.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>

#include "platform/gdi.h"
#include "platform/software/context.h"
#include "platform/software/coverage.h"
#include "platform/software/ellipse.h"
#include "platform/software/polygon.h"
#include "platform/software/thin_line.h"
#include "platform/software/trace.h"
#include "platform/software/wide_line.h"

namespace device {
namespace {

/// The selected pen's part of a figure. What a wide pen covers is found at once, so that the fill can leave
/// it out; nothing is put before Put().
class PenStroke {
public:
    PenStroke(const Context& context, const Path* paths, std::size_t count)
        : m_Context(context), m_Paths(paths), m_Count(count) {
        if (!IsWide()) return;
        Box reach;
        for (const Path& path : *this) {
            const Box next = WideReach(context.clip.bounds, path, context.pen->width);
            if (next.IsEmpty()) continue;
            reach = reach.IsEmpty()
                        ? next
                        : Box{std::min(reach.left, next.left), std::min(reach.top, next.top),
                              std::max(reach.right, next.right), std::max(reach.bottom, next.bottom)};
        }
        Mask().Begin(reach);
        for (const Path& path : *this)
            CoverPath(Mask(), path, context.pen->width);
    }
    ~PenStroke() {
        if (IsWide()) Mask().Clear();
    }
    PenStroke(const PenStroke&) = delete;
    PenStroke& operator=(const PenStroke&) = delete;

    /// What a wide pen covers; null for a narrow one, which draws over the fill.
    const Coverage* Covered() const { return IsWide() ? &Mask() : nullptr; }

    void Put() const {
        const Pen& pen = *m_Context.pen;
        if (pen.style == PS_NULL) return;
        const Ink ink = PenInk(m_Context);
        if (IsWide()) {
            Mask().Put(ink, m_Context.clip);
        } else if (pen.style == PS_DASH) {
            const Ink gap =
                m_Context.backgroundMode == OPAQUE ? GapInk(m_Context) : MakeEmptyInk(m_Context.surface);
            for (const Path& path : *this)
                StrokeDashed(ink, gap, m_Context.clip, path);
        } else {
            for (const Path& path : *this)
                StrokeThin(ink, m_Context.clip, path);
        }
    }

private:
    bool IsWide() const { return m_Context.pen->style != PS_NULL && m_Context.pen->width > 1; }
    const Path* begin() const { return m_Paths; }
    const Path* end() const { return m_Paths + m_Count; }

    static Coverage& Mask() {
        static thread_local Coverage mask;
        return mask;
    }

    const Context& m_Context;
    const Path* m_Paths;
    std::size_t m_Count;
};

void DrawLines(const Context& context, const POINT* points, int count) {
    const Path path{points, count, false, 0, nullptr};
    PenStroke(context, &path, 1).Put();
}

/// \p fill(target) puts a figure's inside with the selected brush, then the pen follows its outline.
template <class Fill>
void DrawFigure(Context& context, const Path* paths, std::size_t count, Fill&& fill) {
    const PenStroke stroke(context, paths, count);
    if (context.brush->style != BS_NULL) {
        const Ink ink = BrushInk(context, *context.brush, context.rop2);
        FillTarget target(ink, context.clip, stroke.Covered());
        fill(target);
    }
    stroke.Put();
}

RunExtents& ScratchExtents() {
    static thread_local RunExtents extents;
    return extents;
}

void DrawPolygon(Context& context, const POINT* points, int count) {
    RunExtents& extents = ScratchExtents();
    extents.Find(points, count);
    const Path ring{points, count, true, 0, &extents};
    DrawFigure(context, &ring, 1, [&](FillTarget& target) { FillPolygon(target, points, count, extents); });
}

bool IsNarrow(const Pen& pen) {
    return pen.style != PS_NULL && pen.width <= 1;
}

/// \p box is not empty. The fill ends a row and a column before the box, whether a pen is there to draw them
/// or not; a narrow pen draws on all four borders and the fill keeps off them.
void DrawRectangle(Context& context, const Box& box) {
    const std::int32_t right = box.right - 1, bottom = box.bottom - 1;
    const POINT corners[] = {{right, box.top}, {box.left, box.top}, {box.left, bottom}, {right, bottom}};
    const Path ring{corners, 4, true, 0, nullptr};
    const bool narrow = IsNarrow(*context.pen);
    const Box inside{box.left + (narrow ? 1 : 0), box.top + (narrow ? 1 : 0), right, bottom};
    DrawFigure(context, &ring, 1, [&](FillTarget& target) { target.PutBox(inside); });
}

/// \p box is not empty. An ellipse of one or two pixels across is a rectangle.
void DrawEllipse(Context& context, const Box& box) {
    constexpr std::int64_t kSmallest = 3;
    if (std::int64_t{box.right} - box.left < kSmallest || std::int64_t{box.bottom} - box.top < kSmallest) {
        DrawRectangle(context, box);
        return;
    }
    static thread_local EllipseOutline outline;
    FindEllipseOutline(outline, box, context.clip.bounds, context.pen->width);
    DrawFigure(context, outline.paths.data(), outline.paths.size(),
               [&](FillTarget& target) { FillEllipse(target, box); });
}

Box OrderedBox(int left, int top, int right, int bottom) {
    return {std::min(left, right), std::min(top, bottom), std::max(left, right), std::max(top, bottom)};
}

/// Lists of fewer than two points draw nothing and fail.
bool IsDrawable(const POINT* points, int count) {
    if (points != nullptr && count >= 2) return true;
    SetError(ERROR_INVALID_PARAMETER);
    return false;
}

}  // namespace
}  // namespace device

BOOL MoveToEx(HDC dc, int x, int y, POINT* previous) {
    device::Trace("MoveToEx", dc, x, y, previous);
    return device::OnContext(dc, [&](device::Context& context) {
        if (previous != nullptr) *previous = context.position;
        context.position = {x, y};
        return true;
    });
}

BOOL LineTo(HDC dc, int x, int y) {
    device::Trace("LineTo", dc, x, y);
    return device::OnContext(dc, [&](device::Context& context) {
        const POINT points[] = {context.position, {x, y}};
        device::DrawLines(context, points, 2);
        context.position = points[1];
        return true;
    });
}

BOOL Polyline(HDC dc, const POINT* points, int count) {
    device::Trace("Polyline", dc, device::TracedPoints{points, count});
    return device::OnContext(dc, [&](device::Context& context) {
        if (!device::IsDrawable(points, count)) return false;
        device::DrawLines(context, points, count);
        return true;
    });
}

BOOL Polygon(HDC dc, const POINT* points, int count) {
    device::Trace("Polygon", dc, device::TracedPoints{points, count});
    return device::OnContext(dc, [&](device::Context& context) {
        if (!device::IsDrawable(points, count)) return false;
        device::DrawPolygon(context, points, count);
        return true;
    });
}

BOOL Rectangle(HDC dc, int left, int top, int right, int bottom) {
    device::Trace("Rectangle", dc, left, top, right, bottom);
    return device::OnContext(dc, [&](device::Context& context) {
        const device::Box box = device::OrderedBox(left, top, right, bottom);
        const bool onePixel =
            box.right - std::int64_t{box.left} == 1 && box.bottom - std::int64_t{box.top} == 1;
        if (onePixel && device::IsNarrow(*context.pen)) {
            // Where GDI leaves a hole: all four corners of the outline are one point, and a ring of one point
            // is nothing. A rectangle that has a pixel shows it.
            const POINT pixel[] = {{box.left, box.top}, {box.right, box.top}};
            device::DrawLines(context, pixel, 2);
        } else if (!box.IsEmpty()) {
            device::DrawRectangle(context, box);
        }
        return true;
    });
}

BOOL Ellipse(HDC dc, int left, int top, int right, int bottom) {
    device::Trace("Ellipse", dc, left, top, right, bottom);
    return device::OnContext(dc, [&](device::Context& context) {
        const device::Box box = device::OrderedBox(left, top, right, bottom);
        if (!box.IsEmpty()) device::DrawEllipse(context, box);
        return true;
    });
}
