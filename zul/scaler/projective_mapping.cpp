// The conversions of CProjectiveScaler.
#include <cmath>
#include <cstddef>

#include "zul/kernel/numeric.h"
#include "zul/scaler/projective_kernels.h"
#include "zul/scaler/projective_scaler.h"
#include "zul/scaler/usable_count.h"

namespace zul {
namespace {

/// The image before it is made whole pixels or units. False when there is none.
bool Project(const TProjection& projection, double x, double y, TDoublePoint& image) {
    const double weight = projection.Weight(x, y);
    if (!(std::abs(weight) >= kTinyWeight)) return false;
    image = {projection.X(x, y) / weight, projection.Y(x, y) / weight};
    return true;
}

void ProjectInPlace(const TProjection& projection, std::int32_t& x, std::int32_t& y) {
    TDoublePoint image;
    if (!Project(projection, x, y, image)) return;
    x = RoundToLong(image.X);
    y = RoundToLong(image.Y);
}

/// The part of the way from a point in front of a limit to one behind it at which the limit is reached.
double PartInFront(double weightInFront, double weightBehind, double limit) {
    return (weightInFront - limit) / (weightInFront - weightBehind);
}

}  // namespace

// --- map to screen ---

std::int32_t CProjectiveScaler::MapToScreen(std::int32_t length) const {
    return CScaler::MapToScreen(length);
}

void CProjectiveScaler::MapToScreen(std::int32_t x, std::int32_t y, std::int32_t& screenX,
                                    std::int32_t& screenY) const {
    TDoublePoint image;
    if (!Project(m_MapToScreenMatrix, x, y, image)) return;
    screenX = RoundToLong(image.X);
    screenY = RoundToLong(image.Y);
}

void CProjectiveScaler::MapToScreen(TLongPoint* out, const TPoint* in, std::int32_t& count) const {
    ProjectPoints(m_MapToScreenMatrix, in, UsableCount(out, in, count), out);
}

void CProjectiveScaler::MapToScreenTrunc(TLongPoint* out, const TPoint* in, std::int32_t& count) const {
    const std::size_t usable = UsableCount(out, in, count);
    std::size_t kept = 0;
    for (std::size_t i = 0; i < usable; ++i)  // over the point that ended the run
        i += ProjectPointsInFront(m_MapToScreenMatrix, m_NearLimit, in + i, usable - i, out, kept);
    count = static_cast<std::int32_t>(kept);
}

void CProjectiveScaler::MapToScreenEx(TLongPoint* out, const TPoint* in, std::int32_t& count) const {
    const std::size_t usable = UsableCount(out, in, count);
    for (std::size_t i = 0; i < usable; ++i) {
        TDoublePoint image{static_cast<double>(in[i].X), static_cast<double>(in[i].Y)};
        Project(m_MapToScreenMatrix, in[i].X, in[i].Y, image);
        out[i] = {ToLong(image.X), ToLong(image.Y)};
    }
}

void CProjectiveScaler::MapToScreenEx(TCoord x, TCoord y, std::int32_t& screenX,
                                      std::int32_t& screenY) const {
    MapToScreen(x, y, screenX, screenY);
}

// --- figures ---

std::int32_t CProjectiveScaler::GetFigureRoom(std::int32_t count) const {
    return SaturateToLong(std::int64_t{count} * 2);
}

void CProjectiveScaler::MapFigure(TLongPoint* out, const TPoint* in, std::int32_t& count, bool closed) const {
    const std::size_t usable = UsableCount(out, in, count);
    const auto isInFront = [&](std::size_t i) { return IsInFront(in[i].X, in[i].Y); };
    std::size_t kept = 0;
    const auto putCut = [&](std::size_t inFront, std::size_t behind) {
        const TLongPoint cut = MapCut(in[inFront], in[behind]);
        if (kept == 0 || out[kept - 1] != cut) out[kept++] = cut;
    };
    for (std::size_t i = 0; i < usable;) {
        const bool hasPrevious = i > 0 || closed;
        const std::size_t previous = i > 0 ? i - 1 : usable - 1;
        if (isInFront(i)) {
            if (hasPrevious && !isInFront(previous)) putCut(i, previous);
            i += ProjectPointsInFront(m_MapToScreenMatrix, m_NearLimit, in + i, usable - i, out, kept);
        } else {
            if (hasPrevious && isInFront(previous)) putCut(previous, i);
            while (i < usable && !isInFront(i))
                ++i;
        }
    }
    count = static_cast<std::int32_t>(kept);
}

bool CProjectiveScaler::IsInFront(std::int32_t x, std::int32_t y) const {
    return m_MapToScreenMatrix.Weight(x, y) >= m_NearLimit;
}

bool CProjectiveScaler::CutSegment(TLongPoint& a, TLongPoint& b) const {
    const bool isInFrontA = IsInFront(a.X, a.Y);
    const bool isInFrontB = IsInFront(b.X, b.Y);
    if (!isInFrontA && !isInFrontB) return false;
    if (!isInFrontA) a = CutPoint(b, a);
    if (!isInFrontB) b = CutPoint(a, b);
    return true;
}

TLongPoint CProjectiveScaler::CutPoint(TLongPoint inFront, TLongPoint behind) const {
    const double part = PartInFront(m_MapToScreenMatrix.Weight(inFront.X, inFront.Y),
                                    m_MapToScreenMatrix.Weight(behind.X, behind.Y), m_NearLimit);
    return {RoundToLong(inFront.X + (static_cast<double>(behind.X) - inFront.X) * part),
            RoundToLong(inFront.Y + (static_cast<double>(behind.Y) - inFront.Y) * part)};
}

TLongPoint CProjectiveScaler::MapCut(TPoint inFront, TPoint behind) const {
    // Always from the same end, so that figures with a common edge are cut at the same point of it; and
    // mapped before it is rounded to whole units, which are large so near the viewer.
    const double part = PartInFront(m_MapToScreenMatrix.Weight(inFront.X, inFront.Y),
                                    m_MapToScreenMatrix.Weight(behind.X, behind.Y), m_NearLimit);
    const double x = inFront.X + (behind.X - inFront.X) * part;
    const double y = inFront.Y + (behind.Y - inFront.Y) * part;
    return {RoundToLong(m_MapToScreenMatrix.X(x, y) / m_NearLimit),
            RoundToLong(m_MapToScreenMatrix.Y(x, y) / m_NearLimit)};
}

// --- screen to map ---

std::int32_t CProjectiveScaler::ScreenToMap(std::int32_t length) const {
    return CScaler::ScreenToMap(length);
}

void CProjectiveScaler::ScreenToMap(std::int32_t screenX, std::int32_t screenY, TCoord& x, TCoord& y) const {
    TDoublePoint image;
    if (!Project(m_ScreenToMapMatrix, screenX, screenY, image)) return;
    x = SaturateToCoord(RoundToLong(image.X));
    y = SaturateToCoord(RoundToLong(image.Y));
}

void CProjectiveScaler::ScreenToMapL(std::int32_t& x, std::int32_t& y) const {
    ProjectInPlace(m_ScreenToMapMatrix, x, y);
}

void CProjectiveScaler::ScreenToMapEx(std::int32_t screenX, std::int32_t screenY, TCoord& x,
                                      TCoord& y) const {
    ScreenToMap(screenX, screenY, x, y);
}

void CProjectiveScaler::ScreenToMapEx(std::int32_t& x, std::int32_t& y) const {
    ScreenToMapL(x, y);
}

void CProjectiveScaler::ScreenToMapEx(TLongPoint* points, std::int32_t count) const {
    ScreenToMap(points, count);
}

void CProjectiveScaler::ScreenToMap(TLongPoint* points, std::int32_t count) const {
    const std::size_t usable = UsableCount(points, points, count);
    for (std::size_t i = 0; i < usable; ++i)
        ProjectInPlace(m_ScreenToMapMatrix, points[i].X, points[i].Y);
}

}  // namespace zul
