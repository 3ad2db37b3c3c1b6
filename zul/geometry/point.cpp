#include "zul/geometry/point.h"

#include "zul/geometry/angle.h"
#include "zul/geometry/rect.h"
#include "zul/geometry/trigonometry.h"
#include "zul/kernel/any_object.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/numeric.h"
#include "zul/kernel/string.h"

namespace zul {

namespace {

void ReportOverflow(const char16_t* text) {
    CAnyObject::RunError(ErrorOverflow, text);
}

TCoord Turned(double offset, TCoord centre) {
    // The sign of the offset alone picks the half, before the centre comes in; past 16 bits the result wraps
    // unreported. Both are kept on purpose: stored maps were turned so.
    const double half = offset < 0 ? -0.5 : 0.5;
    return WrapToCoord(ToLong(offset + (half + centre)));
}

TCoord Stretched(TCoord v, TCoord centre, double factor) {
    const double stretched = (static_cast<double>(v) - centre) * factor + centre;
    const double rounded = AddHalfUnlessNegative(stretched);
    if (rounded < MinCoord || rounded > MaxCoord) ReportOverflow(u"Exceeds TCoord limits: Point::Scale");
    return ToCoord(rounded);
}

bool IsCoord(std::int64_t v) {
    return v >= MinCoord && v <= MaxCoord;
}

bool StaysInRange(TCoord v, std::int32_t distance) {
    return v < 0 ? std::int64_t{v} - distance >= MinCoord : std::int64_t{v} + distance <= MaxCoord;
}

}  // namespace

CPoint::CPoint(TCoord x, TCoord y) : m_X(x), m_Y(y) {}

CPoint::~CPoint() = default;

void CPoint::GetValue(TCoord& x, TCoord& y) const {
    x = m_X;
    y = m_Y;
}

bool CPoint::GetMbr(TRect& mbr) {
    mbr = {m_X, m_Y, m_X, m_Y};
    return true;
}

bool CPoint::GetMbr(CRect& mbr) {
    mbr.SetValue(m_X, m_Y, m_X, m_Y, false);
    return true;
}

void CPoint::SetX(TCoord x) {
    SetValue(x, m_Y);
}

void CPoint::SetY(TCoord y) {
    SetValue(m_X, y);
}

void CPoint::SetValue(TCoord x, TCoord y) {
    if (x == m_X && y == m_Y) return;
    CModificator modificator(this);
    m_X = x;
    m_Y = y;
}

void CPoint::SetValue(const CPoint& other) {
    SetValue(other.m_X, other.m_Y);
}

void CPoint::Clear() {
    CModificator modificator(this);
    m_X = 0;
    m_Y = 0;
}

void CPoint::Rotate(TCoord& x, TCoord& y, TCoord cx, TCoord cy, double degrees) {
    const double radians = CAngle::DegreeToRadian(degrees);
    RotateEx(x, y, cx, cy, Sine(radians), Cosine(radians));
}

void CPoint::RotateEx(TCoord& x, TCoord& y, TCoord cx, TCoord cy, double sine, double cosine) {
    const double dx = x - cx;
    const double dy = y - cy;
    x = Turned(cosine * dx - sine * dy, cx);
    y = Turned(sine * dx + cosine * dy, cy);
}

void CPoint::Scale(TCoord& x, TCoord& y, TCoord cx, TCoord cy, double kx, double ky) {
    x = Stretched(x, cx, kx);
    y = Stretched(y, cy, ky);
}

void CPoint::Move(TCoord& x, TCoord& y, std::int32_t dx, std::int32_t dy) {
    const std::int64_t newX = std::int64_t{x} + dx;
    const std::int64_t newY = std::int64_t{y} + dy;
    for (const std::int64_t sum : {newX, newY}) {
        if (!IsCoord(sum)) ReportOverflow(u"Exceeds TCoord limits: Point::Move");
    }
    x = WrapToCoord(newX);
    y = WrapToCoord(newY);
}

bool CPoint::CheckPointBounds(TCoord x, TCoord y, std::int32_t dx, std::int32_t dy) {
    return StaysInRange(x, dx) && StaysInRange(y, dy);
}

bool CPoint::ObjectToBuffer(CStream* stream) {
    if (!stream) return false;
    stream->Write(&m_X, sizeof(m_X));
    stream->Write(&m_Y, sizeof(m_Y));
    return CAnyObject::ObjectToBuffer(stream);
}

bool CPoint::ObjectFromBuffer(CStream* stream) {
    if (!stream) return false;
    stream->Read(&m_X, sizeof(m_X));
    stream->Read(&m_Y, sizeof(m_Y));
    return CAnyObject::ObjectFromBuffer(stream);
}

std::uint32_t CPoint::GetPreferredSize() {
    return sizeof(m_X) + sizeof(m_Y);
}

bool CPoint::ToString(CString&, const char16_t*) {
    return false;
}

}  // namespace zul
