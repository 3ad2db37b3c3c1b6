#include "zul/geometry/rect.h"

#include <algorithm>
#include <utility>

#include "zul/geometry/angle.h"
#include "zul/geometry/point.h"
#include "zul/geometry/points.h"
#include "zul/geometry/trigonometry.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/numeric.h"

namespace zul {

namespace {

TCoord Middle(TCoord low, TCoord high) {
    return static_cast<TCoord>((low + high) >> 1);
}

void InflateSpan(TCoord& low, TCoord& high, std::int32_t distance) {
    const std::int64_t d = distance;
    if (d >= 0) {
        low = SaturateToCoord(low - d);
        high = SaturateToCoord(high + d);
    } else if (high - low >= 2 * d) {
        // The guard compares with a negative number, so every normalised span passes and may turn inside out.
        // Kept on purpose: callers rely on the result.
        low = WrapToCoord(low - d);
        high = WrapToCoord(high + d);
    } else {
        high = Middle(low, high);
        low = high;
    }
}

// A span that a rotation made shorter than `length` is laid about its middle again, one unit longer than
// that.
void KeepLength(std::int32_t& low, std::int32_t& high, std::int32_t length) {
    if (high - low >= length) return;
    low = ((high + low) >> 1) - ((length + 1) >> 1);
    high = low + length + 1;
}

}  // namespace

// --- construct ---

CRect::CRect(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY)
    : m_MinX(minX), m_MinY(minY), m_MaxX(maxX), m_MaxY(maxY) {}

CRect::CRect(const TRect& rect) : CRect(rect.MinX, rect.MinY, rect.MaxX, rect.MaxY) {}

CRect::CRect(const TLongRect& rect)
    : CRect(WrapToCoord(rect.MinX), WrapToCoord(rect.MinY), WrapToCoord(rect.MaxX), WrapToCoord(rect.MaxY)) {}

CRect::~CRect() = default;

// --- query ---

void CRect::GetValue(TCoord& minX, TCoord& minY, TCoord& maxX, TCoord& maxY) const {
    minX = m_MinX;
    minY = m_MinY;
    maxX = m_MaxX;
    maxY = m_MaxY;
}

void CRect::GetValue(TRect& rect) const {
    rect = {m_MinX, m_MinY, m_MaxX, m_MaxY};
}

void CRect::GetValue(TLongRect& rect) const {
    rect = {m_MinX, m_MinY, m_MaxX, m_MaxY};
}

std::int64_t CRect::GetArea() const {
    return GetArea(m_MinX, m_MinY, m_MaxX, m_MaxY);
}

std::int64_t CRect::GetArea(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY) {
    return (std::int64_t{maxX} - minX) * (std::int64_t{maxY} - minY);
}

void CRect::GetCenterPoint(TCoord& x, TCoord& y) const {
    x = Middle(m_MinX, m_MaxX);
    y = Middle(m_MinY, m_MaxY);
}

bool CRect::IsEqual(const CRect* other) const {
    return other && IsEqual(other->m_MinX, other->m_MinY, other->m_MaxX, other->m_MaxY);
}

bool CRect::IsEqual(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY) const {
    return m_MinX == minX && m_MinY == minY && m_MaxX == maxX && m_MaxY == maxY;
}

bool CRect::IsInside(TCoord x, TCoord y) const {
    return m_MinX <= x && x <= m_MaxX && m_MinY <= y && y <= m_MaxY;
}

bool CRect::IsInside(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY, bool touchAllowed) const {
    const bool within = m_MinX <= minX && maxX <= m_MaxX && m_MinY <= minY && maxY <= m_MaxY;
    return within && (touchAllowed || !IsTouch(minX, minY, maxX, maxY));
}

bool CRect::IsInside(const CRect* other, bool touchAllowed) const {
    return other && IsInside(other->m_MinX, other->m_MinY, other->m_MaxX, other->m_MaxY, touchAllowed);
}

bool CRect::IsInsideOf(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY, bool touchAllowed) const {
    return CRect(minX, minY, maxX, maxY).IsInside(this, touchAllowed);
}

bool CRect::IsInsideOf(const CRect* other, bool touchAllowed) const {
    return other && other->IsInside(this, touchAllowed);
}

bool CRect::IsIntersect(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY) const {
    return minX <= m_MaxX && m_MinX <= maxX && minY <= m_MaxY && m_MinY <= maxY;
}

bool CRect::IsIntersect(const CRect* other) const {
    return other && IsIntersect(other->m_MinX, other->m_MinY, other->m_MaxX, other->m_MaxY);
}

bool CRect::IsTouch(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY) const {
    return m_MinX == minX || m_MinX == maxX || m_MaxX == minX || m_MaxX == maxX || m_MinY == minY ||
           m_MinY == maxY || m_MaxY == minY || m_MaxY == maxY;
}

bool CRect::IsTouch(const CRect* other) const {
    return other && IsTouch(other->m_MinX, other->m_MinY, other->m_MaxX, other->m_MaxY);
}

bool CRect::IsBelong(TCoord x1, TCoord y1, TCoord x2, TCoord y2, TCoord x, TCoord y) {
    Normalize(x1, y1, x2, y2);
    return x1 <= x && x <= x2 && y1 <= y && y <= y2;
}

bool CRect::IsNear(TCoord x, TCoord y, TCoord cx, TCoord cy, std::int32_t tolerance) {
    const std::int64_t reach = tolerance;
    return WrapToCoord(cx - reach) <= x && x <= WrapToCoord(cx + reach) && WrapToCoord(cy - reach) <= y &&
           y <= WrapToCoord(cy + reach);
}

TDotToRect CRect::AnalizePoint(TCoord x, TCoord y) const {
    return AnalizePoint(x, y, m_MinX, m_MinY, m_MaxX, m_MaxY);
}

TDotToRect CRect::AnalizePoint(TCoord x, TCoord y, TCoord minX, TCoord minY, TCoord maxX, TCoord maxY) {
    if (x < minX) {
        if (y > maxY) return TDotToRect::UpperLeft;
        return y < minY ? TDotToRect::LowerLeft : TDotToRect::Left;
    }
    if (x <= maxX) {
        if (y > maxY) return TDotToRect::Above;
        return y < minY ? TDotToRect::Below : TDotToRect::Inside;
    }
    if (y > maxY) return TDotToRect::UpperRight;
    return y < minY ? TDotToRect::LowerRight : TDotToRect::Right;
}

bool CRect::CheckCoordBounds(std::int32_t dx, std::int32_t dy) const {
    const std::int64_t byX = dx;
    const std::int64_t byY = dy;
    return m_MinX - byX >= MinCoord && m_MinY - byY >= MinCoord && m_MaxX + byX <= MaxCoord &&
           m_MaxY + byY <= MaxCoord;
}

bool CRect::Find(TCoord x, TCoord y, std::int32_t& corner, std::int32_t tolerance) const {
    const TPoint corners[] = {{m_MinX, m_MinY}, {m_MinX, m_MaxY}, {m_MaxX, m_MaxY}, {m_MaxX, m_MinY}};
    for (std::int32_t i = 0; i < 4; ++i) {
        if (!IsNear(x, y, corners[i].X, corners[i].Y, tolerance)) continue;
        corner = i;
        return true;
    }
    return false;
}

void CRect::GetHotPoints(CPoints& points) const {
    const TCoord midX = Middle(m_MinX, m_MaxX);
    const TCoord midY = Middle(m_MinY, m_MaxY);
    const TPoint handles[] = {{m_MinX, m_MinY}, {m_MinX, midY}, {m_MinX, m_MaxY}, {midX, m_MaxY},
                              {m_MaxX, m_MaxY}, {m_MaxX, midY}, {m_MaxX, m_MinY}, {midX, m_MinY}};
    points.SetPoints(handles, 8);
}

bool CRect::GetMbr(TRect& mbr) {
    GetValue(mbr);
    return true;
}

bool CRect::GetMbr(CRect& mbr) {
    mbr.SetValue(*this);
    return true;
}

// --- change ---

void CRect::SetMinX(TCoord minX) {
    SetValue(minX, m_MinY, m_MaxX, m_MaxY, false);
}

void CRect::SetMinY(TCoord minY) {
    SetValue(m_MinX, minY, m_MaxX, m_MaxY, false);
}

void CRect::SetMaxX(TCoord maxX) {
    SetValue(m_MinX, m_MinY, maxX, m_MaxY, false);
}

void CRect::SetMaxY(TCoord maxY) {
    SetValue(m_MinX, m_MinY, m_MaxX, maxY, false);
}

void CRect::SetValue(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY, bool normalize) {
    if (IsEqual(minX, minY, maxX, maxY)) return;
    CModificator modificator(this);
    m_MinX = minX;
    m_MinY = minY;
    m_MaxX = maxX;
    m_MaxY = maxY;
    if (normalize) Normalize();
}

void CRect::SetValue(const CRect& other) {
    SetValue(other.m_MinX, other.m_MinY, other.m_MaxX, other.m_MaxY, false);
}

void CRect::SetValue(const TLongRect& rect) {
    const auto lower = [](std::int32_t v) { return WrapToCoord(std::max<std::int32_t>(v, MinCoord)); };
    const auto upper = [](std::int32_t v) { return WrapToCoord(std::min<std::int32_t>(v, MaxCoord)); };
    Store({lower(rect.MinX), lower(rect.MinY), upper(rect.MaxX), upper(rect.MaxY)});
}

void CRect::Store(const TRect& rect) {
    CModificator modificator(this);
    m_MinX = rect.MinX;
    m_MinY = rect.MinY;
    m_MaxX = rect.MaxX;
    m_MaxY = rect.MaxY;
}

void CRect::Clear() {
    Store({});
}

void CRect::Normalize() {
    Normalize(m_MinX, m_MinY, m_MaxX, m_MaxY);
}

void CRect::Normalize(TCoord& minX, TCoord& minY, TCoord& maxX, TCoord& maxY) {
    if (maxX < minX) std::swap(minX, maxX);
    if (maxY < minY) std::swap(minY, maxY);
}

void CRect::Inflate(std::int32_t dx, std::int32_t dy) {
    CModificator modificator(this);
    InflateSpan(m_MinX, m_MaxX, dx);
    InflateSpan(m_MinY, m_MaxY, dy);
}

void CRect::Intersect(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY) {
    if (!IsIntersect(minX, minY, maxX, maxY)) return;
    SetValue(std::max(m_MinX, minX), std::max(m_MinY, minY), std::min(m_MaxX, maxX), std::min(m_MaxY, maxY),
             false);
}

void CRect::Intersect(const CRect* other) {
    if (other) Intersect(other->m_MinX, other->m_MinY, other->m_MaxX, other->m_MaxY);
}

void CRect::Unite(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY) {
    SetValue(std::min(m_MinX, minX), std::min(m_MinY, minY), std::max(m_MaxX, maxX), std::max(m_MaxY, maxY),
             false);
}

void CRect::Unite(const CRect* other) {
    if (other) Unite(other->m_MinX, other->m_MinY, other->m_MaxX, other->m_MaxY);
}

void CRect::Move(std::int32_t dx, std::int32_t dy) {
    TRect moved = {m_MinX, m_MinY, m_MaxX, m_MaxY};
    CPoint::Move(moved.MinX, moved.MinY, dx, dy);
    CPoint::Move(moved.MaxX, moved.MaxY, dx, dy);
    Store(moved);
}

void CRect::Scale(TCoord cx, TCoord cy, double kx, double ky) {
    TRect scaled = {m_MinX, m_MinY, m_MaxX, m_MaxY};
    CPoint::Scale(scaled.MinX, scaled.MinY, cx, cy, kx, ky);
    CPoint::Scale(scaled.MaxX, scaled.MaxY, cx, cy, kx, ky);
    Store(scaled);
}

void CRect::Rotate(TCoord cx, TCoord cy, double degrees) {
    const double radians = CAngle::DegreeToRadian(degrees);
    const double sine = Sine(radians);
    const double cosine = Cosine(radians);

    TPoint corners[] = {{m_MinX, m_MinY}, {m_MinX, m_MaxY}, {m_MaxX, m_MaxY}, {m_MaxX, m_MinY}};
    for (TPoint& corner : corners)
        CPoint::RotateEx(corner.X, corner.Y, cx, cy, sine, cosine);

    TLongRect box = {corners[0].X, corners[0].Y, corners[0].X, corners[0].Y};
    for (const TPoint& corner : corners) {
        box.MinX = std::min<std::int32_t>(box.MinX, corner.X);
        box.MaxX = std::max<std::int32_t>(box.MaxX, corner.X);
        box.MinY = std::min<std::int32_t>(box.MinY, corner.Y);
        box.MaxY = std::max<std::int32_t>(box.MaxY, corner.Y);
    }
    KeepLength(box.MinX, box.MaxX, GetWidth());
    KeepLength(box.MinY, box.MaxY, GetHeight());
    SetValue(WrapToCoord(box.MinX), WrapToCoord(box.MinY), WrapToCoord(box.MaxX), WrapToCoord(box.MaxY),
             true);
}

// --- operate ---

void CRect::GetProportional(std::int32_t w, std::int32_t h, std::int32_t& minX, std::int32_t& minY,
                            std::int32_t& maxX, std::int32_t& maxY) {
    const std::int64_t width = std::int64_t{maxX} - minX;
    const std::int64_t height = std::int64_t{maxY} - minY;
    // A size of 0 divides to infinity or to no number; ToLong makes a limit or 0 of it.
    const auto enlarge = [](double size, std::int64_t old, std::int32_t& low, std::int32_t& high) {
        const std::int64_t enlarged = ToLong(size + 0.5);
        high = WrapToLong(high + ((enlarged - old) >> 1));
        low = WrapToLong(high - enlarged);
    };
    if (static_cast<double>(w) / h > static_cast<double>(width) / static_cast<double>(height)) {
        enlarge(static_cast<double>(w * height) / h, width, minX, maxX);
    } else {
        enlarge(static_cast<double>(h * width) / w, height, minY, maxY);
    }
}

// --- persist ---

bool CRect::ObjectToBuffer(CStream* stream) {
    if (!stream) return false;
    for (const TCoord* bound : {&m_MinX, &m_MinY, &m_MaxX, &m_MaxY})
        stream->Write(bound, sizeof(TCoord));
    return CAnyObject::ObjectToBuffer(stream);
}

bool CRect::ObjectFromBuffer(CStream* stream) {
    if (!stream) return false;
    for (TCoord* bound : {&m_MinX, &m_MinY, &m_MaxX, &m_MaxY})
        stream->Read(bound, sizeof(TCoord));
    return CAnyObject::ObjectFromBuffer(stream);
}

std::uint32_t CRect::GetPreferredSize() {
    return 4 * sizeof(TCoord);
}

bool CRect::ToString(CString&, const char16_t*) {
    return false;
}

}  // namespace zul
