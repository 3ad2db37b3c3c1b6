// Dots and arrows at the ends of lines.

#include <cstdlib>

#include "zul/canvas/device_points.h"
#include "zul/geometry/angle.h"
#include "zul/kernel/numeric.h"
#include "zul/tools/device_answers.h"
#include "zul/tools/device_guards.h"
#include "zul/tools/pen.h"

namespace zul {
namespace {

constexpr std::uint32_t DotAtStart = 1, DotAtEnd = 2, ArrowAtStart = 4, ArrowAtEnd = 8, WideArrow = 16,
                        FilledArrow = 32;

std::int32_t OrDefault(std::uint32_t value, std::int32_t standard) {
    return value != 0 ? static_cast<std::int32_t>(value) : standard;
}

std::int32_t ArrowLength(std::uint32_t endType) {
    return OrDefault(endType >> 16 & 0xFF, 7);
}

std::int32_t ArrowAngle(std::uint32_t endType) {
    return OrDefault(endType >> 24, endType & WideArrow ? 30 : 12);
}

}  // namespace

void CPen::DrawEndings(const TLongPoint* points, std::int32_t count, bool closed) {
    if (!points || count < 2) return;
    ::SetLastError(ERROR_SUCCESS);
    if (PutEndings(points, count, closed)) {
        ReportShortage(this, u"CPen::DrawEndings");
    } else {
        RunError(ErrorFailed, u"Can't create pen handle <zul::CPen::DrawEndings()>", this);
    }
}

void CPen::DrawEndings(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) {
    const TLongPoint line[] = {{x1, y1}, {x2, y2}};
    DrawEndings(line, 2, false);
}

bool CPen::PutEndings(const TLongPoint* points, std::int32_t count, bool closed) {
    const auto endType = static_cast<std::uint32_t>(m_EndType);
    if (endType == 0 || !IsEnabledEndings()) return true;
    // The device takes a negative width for a positive one, too.
    const std::int32_t width = SaturateToLong(std::abs(std::int64_t{GetPixelWidth()}));
    CMadeHandle<HPEN> madePen(MakePen(PS_SOLID, width));
    CMadeHandle<HBRUSH> madeBrush(::CreateSolidBrush(static_cast<COLORREF>(GetColor())));
    if (!madePen.Get() || !madeBrush.Get()) return false;
    CSelection pen(m_Device, madePen.Get());
    CSelection brush(m_Device, madeBrush.Get());

    const auto draw = [&](TLongPoint from, TLongPoint to, std::uint32_t arrow, std::uint32_t dot) {
        if (endType & arrow) {
            DrawArrow(from, to, width, endType);
        } else if (endType & dot) {
            DrawOverlappedEllipse(to, width == 1 ? 3 : std::int64_t{width} * 2);
        }
    };
    const TLongPoint start = points[0], last = points[count - 1];
    draw(points[1], start, ArrowAtStart, DotAtStart);
    const TLongPoint end = closed ? start : last;
    draw(closed ? last : points[count - 2], end, ArrowAtEnd, DotAtEnd);
    ::MoveToEx(m_Device, end.X, end.Y, nullptr);
    return true;
}

/// A head at \p tip that points away from \p from.
void CPen::DrawArrow(TLongPoint from, TLongPoint tip, std::int32_t width, std::uint32_t endType) {
    TLongPoint wings[2] = {};
    CAngle::FindDxDy(from.X, from.Y, tip.X, tip.Y, static_cast<double>(ArrowLength(endType)) * width,
                     wings[0].X, wings[0].Y, wings[1].X, wings[1].Y, 180 - ArrowAngle(endType), true);
    if (endType & FilledArrow) {
        const TLongPoint head[] = {tip, wings[0], wings[1]};
        ::Polygon(m_Device, DevicePoints(head), 3);
        return;
    }
    for (const TLongPoint& wing : wings) {
        const TLongPoint stroke[] = {wing, tip};
        ::Polyline(m_Device, DevicePoints(stroke), 2);
    }
}

/// A dot over the line's end.
void CPen::DrawOverlappedEllipse(TLongPoint center, std::int64_t half) {
    const std::int64_t x = center.X, y = center.Y;
    ::Ellipse(m_Device, SaturateToLong(x - half), SaturateToLong(y - half), SaturateToLong(x + half),
              SaturateToLong(y + half));
}

}  // namespace zul
