// The conversions of CScaler. That some round and some truncate, some turn before scaling and some after, is
// kept on purpose: callers count on each of them to the pixel.
#include <cstddef>

#include "zul/geometry/angle.h"
#include "zul/geometry/point.h"
#include "zul/geometry/trigonometry.h"
#include "zul/kernel/numeric.h"
#include "zul/scaler/mapping_kernels.h"
#include "zul/scaler/scaler.h"
#include "zul/scaler/usable_count.h"

namespace zul {
// --- map to screen ---

std::int32_t CScaler::MapToScreen(std::int32_t length) const {
    return RoundToLong(length * m_ScreenToVisible);
}

void CScaler::MapToScreen(std::int32_t x, std::int32_t y, std::int32_t& screenX,
                          std::int32_t& screenY) const {
    screenX = RoundToLong(static_cast<double>(std::int64_t{x} - m_SpanLeft) * m_ScreenToVisible);
    screenY = RoundToLong(static_cast<double>(std::int64_t{m_SpanBottom} - y) * m_ScreenToVisible);
}

void CScaler::MapToScreen(TLongPoint* out, const TPoint* in, std::int32_t& count) const {
    MapPoints({m_ScreenToVisible, m_SpanLeft, m_SpanBottom}, in, UsableCount(out, in, count), out);
}

void CScaler::MapToScreenTrunc(TLongPoint* out, const TPoint* in, std::int32_t& count) const {
    const TLinearMap map{m_ScreenToVisible, m_SpanLeft, m_SpanBottom};
    count = static_cast<std::int32_t>(MapDistinctPoints(map, in, UsableCount(out, in, count), out));
}

void CScaler::MapToScreenEx(TLongPoint* out, const TPoint* in, std::int32_t& count) const {
    const double radians = CAngle::DegreeToRadian(m_Angle);
    MapTurnedPoints({m_ScreenToVisible, m_SpanLeft, m_SpanBottom},
                    {Sine(radians), Cosine(radians), m_PivotX, m_PivotY}, in, UsableCount(out, in, count),
                    out);
}

void CScaler::MapToScreenEx(TCoord x, TCoord y, std::int32_t& screenX, std::int32_t& screenY) const {
    if (m_Angle != 0.0) CPoint::Rotate(x, y, m_PivotX, m_PivotY, m_Angle);
    CScaler::MapToScreen(x, y, screenX, screenY);
}

void CScaler::MapForDrawing(TLongPoint* out, const TPoint* in, std::int32_t& count) const {
    if (GetRotationAngle() == 0.0) {
        MapToScreenTrunc(out, in, count);
    } else {
        MapToScreenEx(out, in, count);
    }
}

std::int32_t CScaler::GetFigureRoom(std::int32_t count) const {
    return count;
}

void CScaler::MapFigure(TLongPoint* out, const TPoint* in, std::int32_t& count, bool /*closed*/) const {
    MapForDrawing(out, in, count);
}

bool CScaler::IsInFront(std::int32_t /*x*/, std::int32_t /*y*/) const {
    return true;
}

bool CScaler::CutSegment(TLongPoint& /*a*/, TLongPoint& /*b*/) const {
    return true;
}

// --- screen to map ---

std::int32_t CScaler::ScreenToMap(std::int32_t length) const {
    return RoundToLong(length / m_ScreenToVisible);
}

void CScaler::ScreenToMap(std::int32_t screenX, std::int32_t screenY, TCoord& x, TCoord& y) const {
    x = RoundToCoord(MapX(screenX));
    y = RoundToCoord(MapY(screenY));
}

void CScaler::ScreenToMap(void* points, std::int32_t count) const {
    auto* point = static_cast<TLongPoint*>(points);
    const std::size_t usable = UsableCount(points, points, count);
    for (std::size_t i = 0; i < usable; ++i) {
        point[i] = {RoundToLong(MapX(point[i].X)), RoundToLong(MapY(point[i].Y))};
    }
}

void CScaler::ScreenToMapL(std::int32_t& x, std::int32_t& y) const {
    x = RoundToLong(MapX(x));
    y = RoundToLong(MapY(y));
}

void CScaler::ScreenToMapEx(std::int32_t screenX, std::int32_t screenY, TCoord& x, TCoord& y) const {
    ScreenToMapEx(screenX, screenY);
    x = WrapToCoord(screenX);
    y = WrapToCoord(screenY);
}

void CScaler::ScreenToMapEx(std::int32_t& x, std::int32_t& y) const {
    CScaler::ScreenToMapL(x, y);
    if (m_Angle == 0.0) return;
    TCoord turnedX = WrapToCoord(x);
    TCoord turnedY = WrapToCoord(y);
    CPoint::Rotate(turnedX, turnedY, m_PivotX, m_PivotY, -m_Angle);
    x = turnedX;
    y = turnedY;
}

void CScaler::ScreenToMapEx(TLongPoint* points, std::int32_t count) const {
    const double radians = CAngle::DegreeToRadian(-m_Angle);
    const double sine = Sine(radians);
    const double cosine = Cosine(radians);
    const std::size_t usable = UsableCount(points, points, count);
    for (std::size_t i = 0; i < usable; ++i) {
        TCoord x = WrapToCoord(points[i].X);
        TCoord y = WrapToCoord(points[i].Y);
        CPoint::RotateEx(x, y, m_PivotX, m_PivotY, sine, cosine);
        points[i] = {RoundToLong(MapX(x)), RoundToLong(MapY(y))};
    }
}

}  // namespace zul
