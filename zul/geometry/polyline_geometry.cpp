// The line geometry of point lists: sides, crossings and offsets of lines given by bare points, and what lies
// on one side of a line.
#include <cmath>
#include <vector>

#include "zul/geometry/angle.h"
#include "zul/geometry/points.h"
#include "zul/geometry/trigonometry.h"
#include "zul/kernel/numeric.h"

namespace zul {

namespace {

TDoublePoint Widened(const TPoint& p) {
    return {static_cast<double>(p.X), static_cast<double>(p.Y)};
}

/// The other coordinate of the line through p1 and p2 where its y (`byY`) or its x is `c`; the first point's
/// when the line runs parallel to that direction.
double CrossingWith(const TDoublePoint& p1, const TDoublePoint& p2, double c, bool byY) {
    const double dx = p1.X - p2.X;
    const double dy = p1.Y - p2.Y;
    if (byY) return dy == 0 ? p1.X : p1.X + (c - p1.Y) * dx / dy;
    return dx == 0 ? p1.Y : p1.Y + (c - p1.X) * dy / dx;
}

TPoint Rounded(const TDoublePoint& p) {
    return {RoundToCoord(p.X), RoundToCoord(p.Y)};
}

}  // namespace

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
    return FindInters(TPoint{x1, y1}, TPoint{x2, y2}, c, byY);
}

TCoord CPoints::FindInters(const TPoint& p1, const TPoint& p2, TCoord c, bool byY) {
    return RoundToCoord(CrossingWith(Widened(p1), Widened(p2), c, byY));
}

bool CPoints::FindInters(const TPoint& p1, const TPoint& p2, double k, double b, TPoint& out) {
    return FindInters(Widened(p1), Widened(p2), k, b, out);
}

bool CPoints::FindInters(const TDoublePoint& p1, const TDoublePoint& p2, double k, double b,
                         TDoublePoint& out) {
    double lineK = 0;
    double lineB = 0;
    if (!LineParams(p1, p2, lineK, lineB)) return false;
    const double x = (b - lineB) / (lineK - k);
    out = {x, k * x + b};
    return true;
}

bool CPoints::FindInters(const TDoublePoint& p1, const TDoublePoint& p2, double k, double b, TPoint& out) {
    TDoublePoint crossing = {};
    if (!FindInters(p1, p2, k, b, crossing)) return false;
    out = Rounded(crossing);
    return true;
}

bool CPoints::FindInters(const TPoint& a1, const TPoint& a2, const TPoint& b1, const TPoint& b2,
                         TPoint& out) {
    return FindInters(Widened(a1), Widened(a2), Widened(b1), Widened(b2), out);
}

bool CPoints::FindInters(const TDoublePoint& a1, const TDoublePoint& a2, const TDoublePoint& b1,
                         const TDoublePoint& b2, TPoint& out) {
    double k = 0;
    double b = 0;
    if (!LineParams(b1, b2, k, b)) {
        if (a1.X == a2.X) return false;
        out = Rounded({b1.X, CrossingWith(a1, a2, b1.X, false)});
        return true;
    }
    if (FindInters(a1, a2, k, b, out)) return true;
    out = Rounded({a1.X, CrossingWith(b1, b2, a1.X, false)});
    return true;
}

void CPoints::OffsetLine(const TPoint& a, const TPoint& b, double distance, TPoint& outA, TPoint& outB) {
    const double base = Arctangent(static_cast<double>(b.Y - a.Y) / (b.X - a.X));
    double angle = CAngle::DegreeToRadian(-90);
    // 3.14 on purpose, not pi, as for arrow wings.
    if (b.X < a.X) angle = 3.14 - angle;
    const TPoint ends[] = {a, b};  // an output may be an input
    const std::int64_t dx = RoundToLong(distance * Cosine(angle + base));
    const std::int64_t dy = RoundToLong(distance * Sine(angle + base));
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

void CPoints::ClipByLine(const TPoint* points, std::uint32_t count, const TPoint& a, const TPoint& b,
                         CPoints& out) {
    if (!points || count == 0) return;
    if (out.IsOwn(points)) {
        const std::vector<TPoint> copy(points, points + count);
        ClipByLine(copy.data(), count, a, b, out);
        return;
    }
    double k = 0;
    double c = 0;
    const bool vertical = !LineParams(a.X, a.Y, b.X, b.Y, k, c);
    const auto sideOf = [&](const TPoint& p) { return DotToLine(a.X, a.Y, b.X, b.Y, p.X, p.Y); };
    const auto crossing = [&](const TPoint& from, const TPoint& to) {
        TPoint point = {};
        if (vertical) {
            point = {a.X, FindInters(from, to, a.X, false)};
        } else if (!FindInters(from, to, k, c, point)) {
            point = {from.X, FindInters(a, b, from.X, false)};
        }
        return point;
    };
    const auto append = [&out](const TPoint& p) { out.Append(p.X, p.Y); };

    TDotToLine before = sideOf(points[0]);
    if (before != TDotToLine::Right) append(points[0]);
    for (std::uint32_t i = 1; i < count; ++i) {
        const TDotToLine side = sideOf(points[i]);
        const bool crosses = (before == TDotToLine::Right && side == TDotToLine::Left) ||
                             (before == TDotToLine::Left && side == TDotToLine::Right);
        if (crosses) append(crossing(points[i - 1], points[i]));
        if (side != TDotToLine::Right) append(points[i]);
        before = side;
    }
}

}  // namespace zul
