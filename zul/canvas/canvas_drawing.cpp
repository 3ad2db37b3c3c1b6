#include <algorithm>
#include <utility>

#include "zul/canvas/canvas.h"
#include "zul/canvas/corners.h"
#include "zul/canvas/device_points.h"
#include "zul/geometry/rect.h"
#include "zul/kernel/numeric.h"
#include "zul/tools/device_answers.h"
#include "zul/tools/device_guards.h"

namespace zul {
namespace {

/// Longer lists are not drawn: their device points would not fit the scratch buffer.
constexpr std::int32_t MaxPoints = 1 << 26;

bool IsInside(const TRect& box, const TRect& frame) {
    return frame.MinX <= box.MinX && box.MaxX <= frame.MaxX && frame.MinY <= box.MinY &&
           box.MaxY <= frame.MaxY;
}

bool Misses(const TRect& box, const TRect& frame) {
    return box.MaxX < frame.MinX || box.MinX > frame.MaxX || box.MaxY < frame.MinY || box.MinY > frame.MaxY;
}

/// The device leaves out the right and the bottom side of what it is given.
std::int32_t OneMore(std::int32_t value) {
    return SaturateToLong(std::int64_t{value} + 1);
}

void WidenPoints(TLongPoint* out, const TPoint* in, std::int32_t count) {
    std::transform(in, in + count, out, [](const TPoint& point) { return TLongPoint{point.X, point.Y}; });
}

/// The device as rubber bands need it: inverted by a white pen, nothing filled.
class CRubberBand {
public:
    CRubberBand(HDC device, HGDIOBJ pen)
        : m_Pen(device, pen), m_Rop(device, R2_XORPEN), m_Brush(device, ::GetStockObject(NULL_BRUSH)) {}
    explicit CRubberBand(HDC device) : CRubberBand(device, ::GetStockObject(WHITE_PEN)) {}

private:
    CSelection m_Pen;
    CRopSelection m_Rop;
    CSelection m_Brush;
};

}  // namespace

// --- coordinates ---

void CCanvas::PreparePoint(std::int32_t& x, std::int32_t& y) {
    const CScaler* scaler = GetMapping();
    if (!scaler) return;
    std::int32_t screenX = x;
    std::int32_t screenY = y;
    if (scaler->GetRotationAngle() == 0.0) {
        scaler->MapToScreen(x, y, screenX, screenY);
    } else {
        scaler->MapToScreenEx(WrapToCoord(x), WrapToCoord(y), screenX, screenY);
    }
    x = screenX;
    y = screenY;
}

void CCanvas::PreparePoint(TLongPoint* out, const TPoint* in, std::int32_t& count) {
    if (!out || !in || count < 1) return;
    if (const CScaler* scaler = GetMapping()) {
        scaler->MapForDrawing(out, in, count);
    } else {
        WidenPoints(out, in, count);
    }
}

std::int32_t CCanvas::PrepareLength(std::int32_t length) {
    const CScaler* scaler = GetMapping();
    return scaler ? scaler->MapToScreen(length) : length;
}

bool CCanvas::IsInFront(TLongPoint a, TLongPoint b) {
    const CScaler* scaler = GetMapping();
    return !scaler || (scaler->IsInFront(a.X, a.Y) && scaler->IsInFront(b.X, b.Y));
}

bool CCanvas::CutLine(TLongPoint& a, TLongPoint& b) {
    const CScaler* scaler = GetMapping();
    return !scaler || scaler->CutSegment(a, b);
}

bool CCanvas::ConvertList(const CScaler* scaler, const TPoint* points, std::int32_t& count, bool closed) {
    if (!points || count < 1 || count > MaxPoints) return false;
    const std::int64_t room = std::int64_t{scaler ? scaler->GetFigureRoom(count) : count} + 1;
    const auto size = static_cast<std::uint32_t>(room * static_cast<std::int64_t>(sizeof(TLongPoint)));
    // Only ever grown: what a list leaves behind is overwritten by the next one.
    if (m_Buffer.GetSize() < size) NeedMemory(m_Buffer.Resize(size, false));
    if (scaler) {
        scaler->MapFigure(GetConverted(), points, count, closed);
    } else {
        WidenPoints(GetConverted(), points, count);
    }
    return true;
}

CPoints* CCanvas::Clip(CPoints* points, bool closed) {
    const CScaler* scaler = GetScaler();
    if (!scaler || !points) return points;
    const TRect& frame = scaler->GetExtVisible();
    TRect box;
    points->GetMbr(box);
    if (IsInside(box, frame)) return points;
    if (!m_ListClipping) return Misses(box, frame) ? nullptr : points;
    points->ClipByRect(frame.MinX, frame.MinY, frame.MaxX, frame.MaxY, m_Clipped, closed);
    return &m_Clipped;
}

// --- lines ---

void CCanvas::ValidateLine() {
    m_Pen.Validate(this);
    m_Background.Validate(this);
}

void CCanvas::MoveTo(std::int32_t x, std::int32_t y) {
    PreparePoint(x, y);
    const POINT here[] = {{x, y}, {x, y}};
    // Without the operation a wide pen would leave a dot.
    CRopSelection invisible(m_Device, R2_NOP);
    ::Polyline(m_Device, here, 2);
    SetPosition(x, y);
}

void CCanvas::SetPosition(std::int32_t x, std::int32_t y) {
    m_CurPositionX = WrapToCoord(x);
    m_CurPositionY = WrapToCoord(y);
}

void CCanvas::LineTo(std::int32_t x, std::int32_t y) {
    PreparePoint(x, y);
    ValidateLine();
    if (m_Pen.GetType() == CPen::PenExtended) {
        m_Pen.LineTo(x, y, this);
        return;
    }
    const POINT line[] = {{m_CurPositionX, m_CurPositionY}, {x, y}};
    IsDone(::Polyline(m_Device, line, 2), this, u"CCanvas::LineTo");
    SetPosition(x, y);
}

void CCanvas::Line(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) {
    TLongPoint a{x1, y1};
    TLongPoint b{x2, y2};
    if (!CutLine(a, b)) return;
    MoveTo(a.X, a.Y);
    LineTo(b.X, b.Y);
}

void CCanvas::Polyline(CPoints* points) {
    const CPoints* visible = Clip(points, false);
    if (visible) Polyline(visible->GetPoints(), SaturateToLong(visible->GetCount()));
}

void CCanvas::Polyline(const TPoint* points, std::int32_t count) {
    if (count <= 1 || !ConvertList(GetMapping(), points, count, false) || count <= 1) return;
    ValidateLine();
    Polyline(GetConverted(), count);
}

void CCanvas::Polyline(const TLongPoint* points, std::int32_t count) {
    if (!points || count < 1) return;
    // The points may be gone when an error handler has had its turn.
    m_CurPositionX = points[count - 1].X;
    m_CurPositionY = points[count - 1].Y;
    if (m_Pen.GetType() == CPen::PenExtended) {
        m_Pen.Polyline(points, count);
    } else {
        IsDone(::Polyline(m_Device, DevicePoints(points), count), this, u"CCanvas::Polyline");
        m_Pen.DrawEndings(points, count, false);
    }
}

// --- areas ---

void CCanvas::ValidateFigure() {
    m_Pen.Validate(this);
    m_Brush.Validate(this);
    m_Background.Validate(this);
}

void CCanvas::Polygon(CPoints* points) {
    const CPoints* visible = Clip(points, true);
    if (visible) Polygon(visible->GetPoints(), SaturateToLong(visible->GetCount()));
}

void CCanvas::Polygon(const TPoint* points, std::int32_t count) {
    if (count < 2) return;
    if (count == 2) {
        Polyline(points, count);
    } else if (ConvertList(GetMapping(), points, count, true)) {
        const bool extended = m_Pen.GetType() == CPen::PenExtended;
        ValidateFigure();
        DrawPolygon(GetConverted(), count, extended);
    }
}

void CCanvas::Polygon(const TLongPoint* points, std::int32_t count) {
    if (!points) return;
    const bool extended = m_Pen.GetType() == CPen::PenExtended;
    ValidateFigure();
    DrawPolygon(points, count, extended);
}

void CCanvas::DrawPolygon(const TLongPoint* points, std::int32_t count, bool extended) {
    if (count < 2) return;
    if (extended) {
        m_Pen.Polygon(points, count);
        return;
    }
    if (count == 2) IsDone(::Polyline(m_Device, DevicePoints(points), count), this, u"CCanvas::Polygon");
    IsDone(::Polygon(m_Device, DevicePoints(points), count), this, u"CCanvas::Polygon");
}

void CCanvas::PolyPolygon(CPoints** lists, std::uint32_t count) {
    if (lists && count) Polygon(lists[0]);
}

void CCanvas::PolyPolygon(const TLongPoint* points, const int* counts, std::uint32_t count) {
    if (counts && count) Polygon(points, counts[0]);
}

void CCanvas::Rectangle(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) {
    if (!IsInFront({x1, y1}, {x2, y2})) return;
    PreparePoint(x1, y1);
    PreparePoint(x2, y2);
    ValidateFigure();
    if (m_Pen.GetType() == CPen::PenExtended) {
        m_Pen.Rectangle(x1, y1, x2, y2);
        return;
    }
    IsDone(::Rectangle(m_Device, x1, y1, OneMore(x2), OneMore(y2)), this, u"CCanvas::Rectangle");
}

void CCanvas::Ellipse(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) {
    if (!IsInFront({x1, y1}, {x2, y2})) return;
    PreparePoint(x1, y1);
    PreparePoint(x2, y2);
    ValidateFigure();
    IsDone(::Ellipse(m_Device, x1, y1, x2, y2), this, u"CCanvas::Ellipse");
}

void CCanvas::Circle(std::int32_t x, std::int32_t y, std::int32_t radius) {
    if (!IsInFront({x, y}, {x, y})) return;
    PreparePoint(x, y);
    const std::int64_t r = PrepareLength(radius);
    ValidateFigure();
    // Each side is kept in 16 bits, as callers rely on: beyond them the circle wraps around.
    const TCoord left = WrapToCoord(x - r);
    const TCoord top = WrapToCoord(y - r);
    IsDone(::Ellipse(m_Device, left, top, WrapToCoord(left + 2 * r), WrapToCoord(top + 2 * r)), this,
           u"CCanvas::Circle");
}

void CCanvas::FillRect(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, CBrush* brush) {
    if (!IsInFront({x1, y1}, {x2, y2})) return;
    TLongPoint low{x1, y1};
    TLongPoint high{x2, y2};
    if (const CScaler* scaler = GetMapping()) MapCorners(*scaler, low, high);
    m_Brush.Validate(this);
    FillDeviceRect(low, high, brush);
}

void CCanvas::FillRect(const CRect& rect, CBrush* brush) {
    const TPoint corners[] = {{rect.GetMinX(), rect.GetMinY()}, {rect.GetMaxX(), rect.GetMaxY()}};
    if (!IsInFront({corners[0].X, corners[0].Y}, {corners[1].X, corners[1].Y})) return;
    TLongPoint mapped[2] = {};
    std::int32_t count = 2;
    const CScaler* scaler = GetMapping();
    if (scaler) {
        scaler->MapToScreen(mapped, corners, count);
        OrderCorners(mapped[0], mapped[1]);
    } else {
        WidenPoints(mapped, corners, count);
    }
    FillDeviceRect(mapped[0], mapped[1], brush);
}

void CCanvas::FillDeviceRect(TLongPoint low, TLongPoint high, CBrush* brush) {
    const HBRUSH handle = brush ? brush->GetHandle(nullptr) : m_Brush.GetHandle(this);
    const RECT area{low.X, low.Y, high.X, high.Y};
    IsDone(::FillRect(m_Device, &area, handle), this, u"CCanvas::FillRect");
}

// --- rubber bands ---

void CCanvas::XorLine(TLongPoint a, TLongPoint b, bool translate) {
    if (translate && !CutLine(a, b)) return;
    const TLongPoint line[] = {Translated(a, translate), Translated(b, translate)};
    CRubberBand band(m_Device);
    IsDone(::Polyline(m_Device, DevicePoints(line), 2), this, u"CCanvas::XorLine");
}

void CCanvas::XorSector(TLongPoint a, TLongPoint b, TLongPoint c, bool translate) {
    if (translate && !(IsInFront(a, b) && IsInFront(b, c))) return;
    const TLongPoint angle[] = {Translated(a, translate), Translated(b, translate), Translated(c, translate)};
    CRubberBand band(m_Device);
    IsDone(::Polyline(m_Device, DevicePoints(angle), 3), this, u"CCanvas::XorSector");
}

void CCanvas::XorPolygon(CPoints* points, bool closed, bool translate) {
    if (!points) return;
    std::int32_t count = SaturateToLong(points->GetCount());
    if (count == 2) closed = false;
    const CScaler* scaler = translate ? GetMapping() : nullptr;
    if (!ConvertList(scaler, points->GetPoints(), count, closed) || count < 1) return;
    CRubberBand band(m_Device);
    const POINT* const ring = DevicePoints(GetConverted());
    IsDone(closed ? ::Polygon(m_Device, ring, count) : ::Polyline(m_Device, ring, count), this,
           u"CCanvas::XorPolygon");
}

void CCanvas::XorRectangle(TLongPoint a, TLongPoint b, bool solidPen, bool translate) {
    if (translate && !IsInFront(a, b)) return;
    a = Translated(a, translate);
    b = Translated(b, translate);
    CMadeHandle<HPEN> pen(solidPen ? ::CreatePen(PS_SOLID, 1, 0xFFFFFF) : nullptr);
    if (solidPen && !IsDone(pen.Get(), this, u"CCanvas::XorRectangle")) return;
    CRubberBand band(m_Device, solidPen ? pen.Get() : ::GetStockObject(WHITE_PEN));
    IsDone(::Rectangle(m_Device, a.X, a.Y, OneMore(b.X), OneMore(b.Y)), this, u"CCanvas::XorRectangle");
}

void CCanvas::XorEllipse(TLongPoint a, TLongPoint b, bool translate) {
    if (translate && !IsInFront(a, b)) return;
    a = Translated(a, translate);
    b = Translated(b, translate);
    CRubberBand band(m_Device);
    IsDone(::Ellipse(m_Device, a.X, a.Y, b.X, b.Y), this, u"CCanvas::XorEllipse");
}

TLongPoint CCanvas::Translated(TLongPoint point, bool translate) {
    if (translate) PreparePoint(point.X, point.Y);
    return point;
}

}  // namespace zul
