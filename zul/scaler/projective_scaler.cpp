#include "zul/scaler/projective_scaler.h"

#include <algorithm>
#include <cmath>

#include "zul/geometry/angle.h"
#include "zul/geometry/point.h"
#include "zul/geometry/trigonometry.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/numeric.h"

namespace zul {
namespace {

constexpr double kGreatestHorizonFraction = 0.9;

/// Figures are cut where they look this many times as large as at the near edge: far below the screen, and
/// not so far that coordinates get out of hand.
constexpr double kCutMagnification = 16.0;

bool IsCoord(double value) {
    return value >= MinCoord && value <= MaxCoord;
}

/// Turns as CPoint::Rotate does, but where that would wrap the point just lies outside 16 bits.
TLongPoint Turned(TLongPoint point, TLongPoint pivot, double degrees) {
    const double radians = CAngle::DegreeToRadian(degrees);
    const double dx = static_cast<double>(point.X) - pivot.X;
    const double dy = static_cast<double>(point.Y) - pivot.Y;
    const double x = Cosine(radians) * dx - Sine(radians) * dy + pivot.X;
    const double y = Sine(radians) * dx + Cosine(radians) * dy + pivot.Y;
    const bool isNarrow = IsCoord(point.X) && IsCoord(point.Y) && IsCoord(pivot.X) && IsCoord(pivot.Y) &&
                          IsCoord(x - 1.0) && IsCoord(x + 1.0) && IsCoord(y - 1.0) && IsCoord(y + 1.0);
    if (!isNarrow) return {RoundToLong(x), RoundToLong(y)};
    TPoint turned = WrapToPoint(point.X, point.Y);
    CPoint::Rotate(turned.X, turned.Y, WrapToCoord(pivot.X), WrapToCoord(pivot.Y), degrees);
    return {turned.X, turned.Y};
}

TLongRect BoxAround(const TLongPoint (&corners)[4]) {
    TLongRect box{corners[0].X, corners[0].Y, corners[0].X, corners[0].Y};
    for (const TLongPoint& corner : corners) {
        box = {std::min(box.MinX, corner.X), std::min(box.MinY, corner.Y), std::max(box.MaxX, corner.X),
               std::max(box.MaxY, corner.Y)};
    }
    return box;
}

TPoint MiddleOf(TLongPoint a, TLongPoint b) {
    return {SaturateToCoord((std::int64_t{a.X} + b.X) / 2), SaturateToCoord((std::int64_t{a.Y} + b.Y) / 2)};
}

/// Halves towards zero.
TLongPoint CentreOf(const TLongRect& box) {
    return {static_cast<std::int32_t>((std::int64_t{box.MinX} + box.MaxX) / 2),
            static_cast<std::int32_t>((std::int64_t{box.MinY} + box.MaxY) / 2)};
}

void Widen(TLongRect& rect, std::int64_t across, std::int64_t along) {
    rect = {SaturateToLong(rect.MinX - across), SaturateToLong(rect.MinY - along),
            SaturateToLong(rect.MaxX + across), SaturateToLong(rect.MaxY + along)};
}

}  // namespace

// --- what is to be drawn ---

void CProjectiveScaler::GetQueryRect(TLongRect& rect, std::int32_t /*margin*/) {
    rect = BoxAround(m_Corners);
}

void CProjectiveScaler::PrepareQueryRect(TLongRect& rect, std::int32_t margin) {
    TLongPoint corners[4];
    FindTrapezoid(rect, corners);
    rect = BoxAround(corners);
    if (margin == 0) return;
    const std::int64_t widening = std::max(RoundToLong(margin * UnitsInFarPixel()), 2);
    Widen(rect, widening, widening);
}

bool CProjectiveScaler::IsDepthVisible(std::int32_t screenY) const {
    return screenY >= m_InscriptionClippingY;
}

double CProjectiveScaler::UnitsInFarPixel() const {
    // With t from 0 at the near edge to 1 at the far one, weights grow as 1 + 2 side t, and a screen row is
    // near row - rows * (1 + 2 side) t / (1 + 2 side t); this is the slope of it at t = 1.
    const double shrinking = 1.0 + 2.0 * m_SideFactor;
    const double rows = m_ScreenHeight - m_HorizonY;
    const double across = static_cast<double>(VisibleWidth()) / m_ScreenWidth;
    const double along = static_cast<double>(VisibleHeight()) * (1.0 + m_DepthFactor) / rows;
    return shrinking * std::max(across, along);
}

// --- set-up ---

void CProjectiveScaler::InitPerspective(const TPoint* mapCorners) {
    CModificator modificator(this);
    Rebuild(mapCorners);
}

void CProjectiveScaler::SetHorizonFraction(double fraction) {
    if (std::isnan(fraction)) return;
    fraction = std::clamp(fraction, 0.0, kGreatestHorizonFraction);
    if (fraction == m_HorizonFraction) return;
    CModificator modificator(this);
    m_HorizonFraction = fraction;
    Rebuild(nullptr);
}

void CProjectiveScaler::SetInscriptionClippingFraction(double fraction) {
    if (fraction == m_InscriptionClippingFraction) return;
    CModificator modificator(this);
    m_InscriptionClippingFraction = fraction;
}

void CProjectiveScaler::SetSlopeDepth(std::int32_t depthMetres) {
    CModificator modificator(this);
    const double factor = depthMetres / m_MetresInUnit / static_cast<double>(VisibleHeight());
    m_DepthFactor = factor > LeastDepthFactor ? std::min(factor, GreatestDepthFactor) : LeastDepthFactor;
    Rebuild(nullptr);
}

void CProjectiveScaler::SetScreenSize(std::int32_t width, std::int32_t height) {
    CScaler::SetScreenSize(width, height);
    Rebuild(nullptr);
}

void CProjectiveScaler::SetReviewDepth(std::int32_t depthMetres, const TPoint* point) {
    CModificator modificator(this);
    const std::int32_t x = point != nullptr ? point->X : CentreOf(m_VisibleBox).X;
    const std::int32_t y = point != nullptr ? point->Y : m_VisibleBox.MinY;
    const std::int32_t height = RoundToLong(depthMetres / m_MetresInUnit / m_DepthFactor);
    const std::int32_t width =
        m_ScreenHeight == 0 ? 0 : SaturateToLong(std::int64_t{height} * m_ScreenWidth / m_ScreenHeight);
    const std::int32_t left = SaturateToLong(std::int64_t{x} - width / 2);
    SetVisibleBox(left, y, SaturateToLong(std::int64_t{left} + width),
                  SaturateToLong(std::int64_t{y} + height), true);
}

void CProjectiveScaler::SetRotationAngle(double degrees) {
    m_PerspectiveAngle = degrees;
    CScaler::SetRotationAngle(degrees);
}

// --- the transform ---

void CProjectiveScaler::Rebuild(const TPoint* mapCorners) {
    m_HorizonY = m_ScreenHeight * m_HorizonFraction;
    m_InscriptionClippingY = m_ScreenHeight * m_InscriptionClippingFraction;

    TLongPoint corners[4];
    if (mapCorners != nullptr) {
        std::transform(mapCorners, mapCorners + 4, corners, [](const TPoint& corner) {
            return TLongPoint{corner.X, corner.Y};
        });
    } else {
        FindTrapezoid(m_VisibleBox, corners);
        if (m_PerspectiveAngle != 0.0) {
            const TLongPoint pivot = CentreOf(m_VisibleBox);
            m_PivotX = WrapToCoord(pivot.X);
            m_PivotY = WrapToCoord(pivot.Y);
        }
    }
    TDoublePoint map[4];
    std::transform(corners, corners + 4, map, [](const TLongPoint& corner) {
        return TDoublePoint{static_cast<double>(corner.X), static_cast<double>(corner.Y)};
    });
    const auto width = static_cast<double>(m_ScreenWidth);
    const auto height = static_cast<double>(m_ScreenHeight);
    const double horizon = RoundToLong(m_HorizonY);
    const TDoublePoint screen[4] = {{0.0, height}, {0.0, horizon}, {width, horizon}, {width, height}};

    TProjection toScreen, toMap;
    if (!FindProjection(map, screen, toScreen) || !FindProjection(screen, map, toMap)) return;
    m_MapToScreenMatrix = toScreen;
    m_ScreenToMapMatrix = toMap;
    KeepTrapezoid(corners);
}

void CProjectiveScaler::FindTrapezoid(const TLongRect& box, TLongPoint (&corners)[4]) const {
    const double aside = (static_cast<double>(box.MaxX) - box.MinX) * m_SideFactor;
    const double beyond = (static_cast<double>(box.MaxY) - box.MinY) * m_DepthFactor;
    const std::int32_t farY = RoundToLong(box.MaxY + beyond);
    corners[0] = {box.MinX, box.MinY};
    corners[1] = {RoundToLong(box.MinX - aside), farY};
    corners[2] = {RoundToLong(box.MaxX + aside), farY};
    corners[3] = {box.MaxX, box.MinY};
    if (m_PerspectiveAngle == 0.0) return;
    for (TLongPoint& corner : corners)
        corner = Turned(corner, CentreOf(m_VisibleBox), -m_PerspectiveAngle);
}

void CProjectiveScaler::KeepTrapezoid(const TLongPoint (&corners)[4]) {
    std::copy(std::begin(corners), std::end(corners), m_Corners);
    m_NearPoint = MiddleOf(corners[0], corners[3]);
    m_FarPoint = MiddleOf(corners[1], corners[2]);

    // The frame for clipping takes in the far map, and the margin that keeps cut edges out of sight.
    TLongRect frame = BoxAround(corners);
    Widen(frame, VisibleWidth() >> 3, VisibleHeight() >> 3);
    m_ExtVisible = {SaturateToCoord(frame.MinX), SaturateToCoord(frame.MinY), SaturateToCoord(frame.MaxX),
                    SaturateToCoord(frame.MaxY)};

    m_NearWeight = m_MapToScreenMatrix.Weight(corners[0].X, corners[0].Y);
    double least = m_NearWeight;
    for (const TLongPoint& corner : corners)
        least = std::min(least, m_MapToScreenMatrix.Weight(corner.X, corner.Y));
    // Corners in another order than they are meant to be in may have the viewer between them.
    m_NearLimit = std::max(least / kCutMagnification, 1000.0 * kTinyWeight);
}

// --- state ---

double CProjectiveScaler::GetScreenToVisibleAt(std::int32_t x, std::int32_t y) const {
    return m_ScreenToVisible * m_NearWeight / std::max(m_MapToScreenMatrix.Weight(x, y), m_NearLimit);
}

void CProjectiveScaler::GetViewLine(TPoint& nearPoint, TPoint& farPoint) const {
    nearPoint = m_NearPoint;
    farPoint = m_FarPoint;
}

void CProjectiveScaler::GetMapCorners(TLongPoint (&corners)[4]) const {
    std::copy(std::begin(m_Corners), std::end(m_Corners), corners);
}

}  // namespace zul
