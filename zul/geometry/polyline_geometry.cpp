// The line geometry of point lists: sides, crossings and offsets of lines given by bare points.
#include <cmath>

#include "zul/geometry/angle.h"
#include "zul/geometry/points.h"
#include "zul/kernel/numeric.h"

namespace zul {

TDotToLine CPoints::DotToLine(TCoord x1, TCoord y1, TCoord x2, TCoord y2, TCoord x, TCoord y) {
    // Products of 17-bit differences: exact in double precision.
    const double cross = static_cast<double>(x2 - x1) * (y - y1) - static_cast<double>(y2 - y1) * (x - x1);
    if (cross > 0) return TDotToLine::Left;
    return cross < 0 ? TDotToLine::Right : TDotToLine::On;
}

bool CPoints::LineParams(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, double& k,
                         double& b) {
    return LineParams(TDoublePoint{static_cast<double>(x1), static_cast<double>(y1)},
                      TDoublePoint{static_cast<double>(x2), static_cast<double>(y2)}, k, b);
}

bool CPoints::LineParams(const TDoublePoint& p1, const TDoublePoint& p2, double& k, double& b) {
    if (p1.X == p2.X) return false;
    k = (p2.Y - p1.Y) / (p2.X - p1.X);
    b = p1.Y - k * p1.X;
    return true;
}

TCoord CPoints::FindInters(TCoord x1, TCoord y1, TCoord x2, TCoord y2, TCoord c, bool byY) {
    // The answer along the other axis, the line running from (along, across) by (dAlong, dAcross).
    const auto crossing = [c](TCoord along, TCoord across, int dAlong, int dAcross) {
        if (dAcross == 0) return along;
        return RoundToCoord(along + static_cast<double>(c - across) * dAlong / dAcross);
    };
    return byY ? crossing(x1, y1, x1 - x2, y1 - y2) : crossing(y1, x1, y1 - y2, x1 - x2);
}

TCoord CPoints::FindInters(const TPoint& p1, const TPoint& p2, TCoord c, bool byY) {
    return FindInters(p1.X, p1.Y, p2.X, p2.Y, c, byY);
}

bool CPoints::FindInters(const TPoint& p1, const TPoint& p2, double k, double b, TPoint& out) {
    double lineK = 0;
    double lineB = 0;
    if (!LineParams(p1.X, p1.Y, p2.X, p2.Y, lineK, lineB)) return false;
    const double x = (b - lineB) / (lineK - k);
    out = {RoundToCoord(x), RoundToCoord(k * x + b)};
    return true;
}

bool CPoints::FindInters(const TPoint& a1, const TPoint& a2, const TPoint& b1, const TPoint& b2,
                         TPoint& out) {
    const bool aVertical = a1.X == a2.X;
    const bool bVertical = b1.X == b2.X;
    if (aVertical && bVertical) return false;
    if (aVertical) {
        out = {a1.X, FindInters(b1, b2, a1.X, false)};
        return true;
    }
    if (bVertical) {
        out = {b1.X, FindInters(a1, a2, b1.X, false)};
        return true;
    }
    double k = 0;
    double b = 0;
    return LineParams(b1.X, b1.Y, b2.X, b2.Y, k, b) && FindInters(a1, a2, k, b, out);
}

void CPoints::OffsetLine(const TPoint& a, const TPoint& b, double distance, TPoint& outA, TPoint& outB) {
    const double base = std::atan(static_cast<double>(b.Y - a.Y) / (b.X - a.X));
    double angle = CAngle::DegreeToRadian(-90);
    // 3.14 on purpose, not pi, as for arrow wings.
    if (b.X < a.X) angle = 3.14 - angle;
    const TPoint ends[] = {a, b};  // an output may be an input
    const std::int64_t dx = RoundToLong(distance * std::cos(angle + base));
    const std::int64_t dy = RoundToLong(distance * std::sin(angle + base));
    outA = WrapToPoint(ends[0].X + dx, ends[0].Y + dy);
    outB = WrapToPoint(ends[1].X + dx, ends[1].Y + dy);
}

void CPoints::OffsetPoint(TPoint a, TPoint b, double distance, TCoord& x, TCoord& y) {
    const double dx = b.X - a.X;
    const double dy = b.Y - a.Y;
    const double h = std::sqrt(dx * dx + dy * dy);
    x = h == 0 ? a.X : RoundToCoord(a.X + distance * dx / h);
    y = h == 0 ? a.Y : RoundToCoord(a.Y + distance * dy / h);
}

}  // namespace zul
