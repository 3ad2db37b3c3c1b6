// The figures of extended pens: the line itself, then what the style puts on or along it.

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "zul/canvas/canvas.h"
#include "zul/canvas/device_points.h"
#include "zul/geometry/angle.h"
#include "zul/kernel/numeric.h"
#include "zul/tools/device_answers.h"
#include "zul/tools/device_guards.h"
#include "zul/tools/line_walk.h"
#include "zul/tools/pen.h"
#include "zul/tools/pen_marks.h"
#include "zul/tools/pen_styles.h"

namespace zul {
namespace {

using penstyles::TMark;
using CMadePen = CMadeHandle<HPEN>;

/// What rounding and the device's own caps may add to a mark's reach, pixels.
constexpr std::int64_t Margin = 4;

TLongPoint Shifted(TLongPoint point, std::int64_t dx, std::int64_t dy) {
    return {SaturateToLong(point.X + dx), SaturateToLong(point.Y + dy)};
}

std::int64_t Sign(std::int64_t value) {
    return value > 0 ? 1 : value < 0 ? -1 : 0;
}

/// Puts the dashes of a walk down. A dash that bends is one stroke, so that no raster operation meets its
/// corners twice.
class CDashes {
public:
    explicit CDashes(HDC device) : m_Device(device) {}

    void Add(const TLineSegment& segment, std::int64_t start, std::int64_t end, bool seen) {
        // Compared by place: repeated points make no segment between the two.
        const bool bends = m_Open && start < 0 && m_Stroke.back() == segment.From;
        if (!bends) {
            Flush();
            m_Stroke.push_back(segment.At(std::max<std::int64_t>(start, 0)));
        }
        m_Open = end > segment.Length;
        m_Stroke.push_back(m_Open ? segment.To : segment.At(end));
        m_Seen |= seen;
    }
    void Flush() {
        if (m_Seen) ::Polyline(m_Device, DevicePoints(m_Stroke.data()), static_cast<int>(m_Stroke.size()));
        m_Stroke.clear();
        m_Seen = false;
    }

private:
    HDC m_Device;
    std::vector<TLongPoint> m_Stroke;
    bool m_Open = false;  ///< the stroke goes on on the next segment
    bool m_Seen = false;  ///< some of it
};

/// A stroke across the line or from it to one side.
struct TTick {
    TTick(const TLineSegment& segment, double half) {
        CAngle::FindDxDy(static_cast<double>(segment.To.X) - segment.From.X,
                         static_cast<double>(segment.To.Y) - segment.From.Y, half, Dy, Dx);
    }

    void Draw(HDC device, TLongPoint at, bool side, bool oneSided, bool odd) const {
        const std::int64_t dx = Dx, dy = Dy;
        TLongPoint ends[] = {Shifted(at, dx, dy), Shifted(at, -dx, -dy)};
        if (oneSided) {
            const std::int64_t sign = side ? -1 : 1;
            ends[0] = at;
            ends[1] = Shifted(at, sign * dx, sign * dy);
            // Of an odd width a pixel longer where it goes to smaller coordinates.
            if (odd)
                ends[1] = Shifted(ends[1], std::min<std::int64_t>(Sign(sign * dx), 0),
                                  std::min<std::int64_t>(Sign(sign * dy), 0));
        } else if (odd) {
            // The same at the ends with the greater ones.
            if (Dx != 0) ends[Dx < 0] = Shifted(ends[Dx < 0], 1, 0);
            if (Dy != 0) ends[Dy < 0] = Shifted(ends[Dy < 0], 0, 1);
        }
        ::Polyline(device, DevicePoints(ends), 2);
    }

    std::int32_t Dx = 0, Dy = 0;
};

/// Calls draw(segment, place) for each mark of no length, \p width pixels wide, that may be seen. Widths
/// count from the mark's own start, so that it is centred half a width further on.
template <class Draw>
void WalkPlaces(HDC device, const TLongPoint* points, std::int32_t count, bool closed, std::int64_t lead,
                std::int64_t step, std::int32_t width, std::int64_t reach, Draw&& draw) {
    WalkLine(points, count, closed, {lead, 0, step},
             TLineWindow(device, std::abs(reach) + std::abs(std::int64_t{width}) + Margin),
             [&](const TLineSegment& segment, std::int64_t start, std::int64_t, bool) {
                 draw(segment, segment.At(start + width / 2));
             });
}

}  // namespace

std::int32_t CPen::GetPixelWidth() const {
    const std::int32_t width = m_fScaled ? GetPixelValue(m_Width) : m_Width;
    return width == 0 ? 1 : width;
}

HPEN CPen::MakePen(int style, std::int32_t width) const {
    return ::CreatePen(style, width, static_cast<COLORREF>(GetColor()));
}

// --- figures ---

void CPen::Rectangle(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) {
    const auto [left, right] = std::minmax(x1, x2);
    const auto [top, bottom] = std::minmax(y1, y2);
    const TLongPoint corners[] = {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
    DrawPoly(corners, 4, true);
}

void CPen::LineTo(std::int32_t x, std::int32_t y, CCanvas* canvas) {
    if (!canvas) return;
    const TLongPoint line[] = {canvas->GetPosition(), {x, y}};
    DrawPoly(line, 2, false);
}

void CPen::DrawPoly(const TLongPoint* points, std::int32_t count, bool closed) {
    if (!points || count < 2) return;
    // A pen that has just become a solid one draws as that.
    const std::uint32_t word = m_Type == PenExtended ? penstyles::GetWord(m_Style) : penstyles::BaseLine;
    const bool base = (word & penstyles::BaseLine) != 0;
    ::SetLastError(ERROR_SUCCESS);
    bool complete = DrawBase(points, count, closed, base);
    if (word & penstyles::Decorated) complete = DrawMarks(points, count, closed, base) && complete;
    complete = PutEndings(points, count, closed) && complete;
    const TLongPoint end = points[closed ? 0 : count - 1];
    ::MoveToEx(m_Device, end.X, end.Y, nullptr);
    // Not before everything is drawn: the handler may throw, or draw itself and take the points away.
    if (!complete) {
        RunError(ErrorFailed, u"Can't create pen handle <zul::CPen::DrawPoly()>", this);
    } else {
        ReportShortage(this, u"CPen::DrawPoly");
    }
}

bool CPen::DrawBase(const TLongPoint* points, std::int32_t count, bool closed, bool visible) {
    CMadePen none(visible ? nullptr : ::CreatePen(PS_NULL, 1, 0));
    if (!visible && !none.Get()) return false;
    CSelection pen(m_Device, visible ? m_Handle : none.Get());
    if (closed) {
        ::Polygon(m_Device, DevicePoints(points), count);
    } else {
        ::Polyline(m_Device, DevicePoints(points), count);
    }
    return true;
}

void CPen::DrawOutline(HPEN pen, const TLongPoint* points, std::int32_t count, bool closed) {
    if (!pen) return;
    CSelection selectedPen(m_Device, pen);
    CSelection brush(m_Device, ::GetStockObject(NULL_BRUSH));
    if (closed) {
        ::Polygon(m_Device, DevicePoints(points), count);
    } else {
        ::Polyline(m_Device, DevicePoints(points), count);
    }
}

// --- marks ---

bool CPen::DrawMarks(const TLongPoint* points, std::int32_t count, bool closed, bool base) {
    const std::int32_t width = GetPixelWidth();
    const std::int64_t dash = std::max(m_DashLength, 1);
    CMadePen made(base ? nullptr : MakePen(PS_SOLID, width));
    if (!base && !made.Get()) return false;
    const std::int32_t penWidth =
        base ? SaturateToLong(std::int64_t{m_MadeWidth} * penstyles::Get(m_Style).Extra1.WidthFactor) : width;
    CSelection pen(m_Device, base ? m_ExtraHandle1 : made.Get());
    bool complete = true;
    for (const TMark& mark : penstyles::GetMarks(m_Style)) {
        const std::int64_t first = mark.First.Of(dash), second = mark.Second.Of(dash);
        switch (mark.Kind) {
            case TMark::Outline1:
                DrawOutline(m_ExtraHandle1, points, count, closed);
                break;
            case TMark::Outline2:
                DrawOutline(m_ExtraHandle2, points, count, closed);
                break;
            case TMark::Dashes:
                DrawDashLine(points, count, 0, first, second, closed, width, penWidth);
                break;
            case TMark::Ticks:
                complete &= DrawCrossLines(points, count, mark.HalfWidths * 0.5 * width, first, second,
                                           mark.Side == TMark::Left, mark.Side != TMark::Both, closed, width);
                break;
            case TMark::Arrows:
                complete &= DrawArrowsPolyline(points, count, second, first, mark.Side == TMark::Forth,
                                               closed, width);
                break;
        }
    }
    return complete;
}

void CPen::DrawDashLine(const TLongPoint* points, std::int32_t count, std::int64_t start, std::int64_t dash,
                        std::int64_t gap, bool closed, std::int32_t width, std::int32_t penWidth) {
    // The pen's dash length as it stands: 0 makes dots.
    const std::int64_t on = (dash != 0 ? dash : m_DashLength) * width;
    const std::int64_t off = (gap != 0 ? gap : (m_DashLength >> 3) + 1) * width;
    // A wide pen's round ends reach half a width beyond a stroke and would close the gap. So the stroke is
    // that much shorter at either end, and what can be seen is as long as it should be.
    const std::int64_t caps = penWidth > 1 ? penWidth : 0;
    CDashes dashes(m_Device);
    WalkLine(points, count, closed, {start + caps / 2, on - caps, on + off},
             TLineWindow(m_Device, std::abs(std::int64_t{penWidth}) + Margin),
             [&](const TLineSegment& segment, std::int64_t from, std::int64_t to, bool seen) {
                 dashes.Add(segment, from, to, seen);
             });
    dashes.Flush();
}

bool CPen::DrawCrossLines(const TLongPoint* points, std::int32_t count, double half, std::int64_t offset,
                          std::int64_t spacing, bool side, bool oneSided, bool closed, std::int32_t width) {
    CMadePen made(MakePen(PS_SOLID, width));
    if (!made.Get()) return false;
    CSelection pen(m_Device, made.Get());
    const bool odd = width % 2 != 0;
    WalkPlaces(m_Device, points, count, closed, offset * width, (spacing + 1) * width, width, ToLong64(half),
               [&](const TLineSegment& segment, TLongPoint at) {
                   // Backwards an odd width lies a pixel on.
                   if (odd)
                       at = Shifted(at, segment.From.X > segment.To.X ? -1 : 0,
                                    segment.From.Y > segment.To.Y ? -1 : 0);
                   TTick(segment, half).Draw(m_Device, at, side, oneSided, odd);
               });
    return true;
}

bool CPen::DrawArrowsPolyline(const TLongPoint* points, std::int32_t count, std::int64_t spacing,
                              std::int64_t offset, bool direction, bool closed, std::int32_t width) {
    CMadePen made(MakePen(PS_SOLID, width));
    if (!made.Get()) return false;
    CSelection pen(m_Device, made.Get());
    const std::int64_t step = (spacing + 1) * width;
    const double half = 1.5 * width;
    std::int64_t lead = offset * width;
    // At the very start of a line there is room for an arrow only when the next one fits too.
    if (lead == 0 && TLineSegment(points[0], points[1]).Length < step) lead = step;
    WalkPlaces(m_Device, points, count, closed, lead, step, width, 2 * ToLong64(half),
               [&](const TLineSegment& segment, TLongPoint tip) {
                   const TLongPoint& from = direction ? segment.To : segment.From;
                   const TLongPoint& to = direction ? segment.From : segment.To;
                   // Along the line from the tip, and the same turned by a right angle.
                   std::int32_t x = 0, y = 0;
                   CAngle::FindDxDy(static_cast<double>(to.X) - from.X, static_cast<double>(to.Y) - from.Y,
                                    half, x, y);
                   const std::int64_t alongX = x, alongY = -std::int64_t{y};
                   const TLongPoint head[] = {Shifted(tip, alongX - alongY, alongY + alongX), tip,
                                              Shifted(tip, alongX + alongY, alongY - alongX)};
                   ::Polyline(m_Device, DevicePoints(head), 3);
               });
    return true;
}

void CPen::DrawArrowsLine(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                          std::int32_t spacing, std::int32_t offset, bool direction) {
    const TLongPoint line[] = {{x1, y1}, {x2, y2}};
    if (!DrawArrowsPolyline(line, 2, spacing, offset, direction, false, GetPixelWidth()))
        RunError(ErrorFailed, u"Can't create pen handle <zul::CPen::DrawArrowsLine()>", this);
}

}  // namespace zul
