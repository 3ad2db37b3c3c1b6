#include "zul/scaler/scaler.h"

#include <algorithm>

#include "zul/geometry/point.h"
#include "zul/geometry/rect.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/numeric.h"
#include "zul/kernel/string.h"

namespace zul {
namespace {

/// Whether height rather than width decides how large something of `width` by `height` may be shown in a
/// frame.
bool IsHeightLimiting(std::int32_t frameWidth, std::int32_t frameHeight, std::int64_t width,
                      std::int64_t height) {
    return static_cast<double>(frameWidth) / static_cast<double>(width) >
           static_cast<double>(frameHeight) / static_cast<double>(height);
}

/// Halves the width towards zero.
TCoord MiddleOf(std::int32_t min, std::int32_t max) {
    return WrapToCoord(min + (std::int64_t{max} - min) / 2);
}

}  // namespace

// --- what is to be drawn ---

void CScaler::GetQueryRect(TLongRect& rect, std::int32_t /*margin*/) {
    rect = m_VisibleBox;
    PrepareQueryRect(rect, 0);
}

void CScaler::PrepareQueryRect(TLongRect& rect, std::int32_t margin) {
    if (m_Angle != 0.0) {
        CRect turned(rect);
        turned.Rotate(m_PivotX, m_PivotY, m_Angle);
        turned.GetValue(rect);
    }
    if (margin == 0) return;
    const std::int64_t widening = std::max(ScreenToMap(margin), 2);
    rect.MinX = SaturateToLong(rect.MinX - widening);
    rect.MinY = SaturateToLong(rect.MinY - widening);
    rect.MaxX = SaturateToLong(rect.MaxX + widening);
    rect.MaxY = SaturateToLong(rect.MaxY + widening);
}

double CScaler::GetRotationAngle() const {
    return m_Angle;
}

bool CScaler::IsDepthVisible(std::int32_t /*screenY*/) const {
    return true;
}

// --- set-up ---

void CScaler::SetInscriptionClippingFraction(double /*fraction*/) {}

void CScaler::InitScaler(const TLongRect& bounds, TSize screen, TSize maxUnwrapped, double pixelsPerSm,
                         double metresInUnit, double maxZoomFraction) {
    CModificator modificator(this);
    m_MapBounds = bounds;
    m_ScreenWidth = m_ScreenHeight = 0;
    m_ScreenToVisible = 0.0;
    m_BaseFraction = 0.0;
    m_PixelsPerSm = pixelsPerSm;
    m_MetresInUnit = metresInUnit;
    m_MaxScale = maxZoomFraction;  // what an override of SetScreenSize sees until the scales are known
    m_MaxUnwrappedWidth = maxUnwrapped.Width;
    m_MaxUnwrappedHeight = maxUnwrapped.Height;
    SetScreenSize(screen.Width, screen.Height);
    m_MinScale = m_MetresInSm;
    m_MaxScale = CalculateMaxScale(maxZoomFraction == 0.0 ? 0.005 : maxZoomFraction);
}

void CScaler::SetScreenSize(std::int32_t width, std::int32_t height) {
    if (width == m_ScreenWidth && height == m_ScreenHeight) return;
    CModificator modificator(this);
    if (m_ScreenToVisible > 0.0) {
        if (m_Angle != 0.0) {
            // The view turns about its middle: move the corners so that what stood there stays in place.
            const std::int64_t halfX = (std::int64_t{width} - m_ScreenWidth) / 2;
            const std::int64_t halfY = (std::int64_t{height} - m_ScreenHeight) / 2;
            TCoord dx = WrapToCoord(ScreenToMap(SaturateToLong(halfX)));
            TCoord dy = WrapToCoord(ScreenToMap(SaturateToLong(halfY)));
            CPoint::Rotate(dx, dy, 0, 0, m_Angle);
            m_VisibleBox.MinX = SaturateToLong(std::int64_t{m_VisibleBox.MinX} + dx);
            m_VisibleBox.MinY = SaturateToLong(std::int64_t{m_VisibleBox.MinY} + dy);
            m_VisibleBox.MaxX = SaturateToLong(std::int64_t{m_VisibleBox.MaxX} + dx);
            m_VisibleBox.MaxY = SaturateToLong(std::int64_t{m_VisibleBox.MaxY} + dy);
            m_SpanLeft = m_VisibleBox.MinX;
            m_SpanBottom = m_VisibleBox.MaxY;
        }
        m_VisibleBox.MaxX = SaturateToLong(std::int64_t{m_VisibleBox.MinX} + ScreenToMap(width));
        m_VisibleBox.MinY = SaturateToLong(std::int64_t{m_VisibleBox.MaxY} - ScreenToMap(height));
        m_ScreenWidth = width;
        m_ScreenHeight = height;
    } else {
        m_ScreenWidth = width;
        m_ScreenHeight = height;
        m_VisibleBox = m_MapBounds;
        CalculateScaleFactor();
    }
    CalculateExtVisible();
}

void CScaler::SetMapBounds(std::int32_t minX, std::int32_t minY, std::int32_t maxX, std::int32_t maxY) {
    CModificator modificator(this);
    const std::int32_t width = m_ScreenWidth;
    const std::int32_t height = m_ScreenHeight;
    m_ScreenWidth = m_ScreenHeight = -1;  // no size of a screen, so that the size counts as new
    m_ScreenToVisible = 0.0;
    m_BaseFraction = 0.0;
    m_MapBounds = {minX, minY, maxX, maxY};
    SetScreenSize(width, height);
}

void CScaler::SetMaximumUnwrappedSize(std::int32_t width, std::int32_t height) {
    CModificator modificator(this);
    m_MaxUnwrappedWidth = width;
    m_MaxUnwrappedHeight = height;
    CalculateScaleFactor();
}

void CScaler::SetBaseScale() {
    CModificator modificator(this);
    m_VisibleBox = m_MapBounds;
    CalculateScaleFactor();
    CalculateExtVisible();
    m_OffsX = m_OffsY = 0;
}

void CScaler::SetRotationAngle(double degrees) {
    CModificator modificator(this);
    if (m_Angle == degrees) modificator.Clear();
    m_Angle = degrees;
    CalculateExtVisible();
}

void CScaler::ApplyScaler(const CScaler* other) {
    if (other == nullptr || other == this) return;
    CModificator modificator(this);
    m_MapBounds = other->m_MapBounds;
    m_VisibleBox = other->m_VisibleBox;
    m_MetresInSm = other->m_MetresInSm;
    m_MetresInUnit = other->m_MetresInUnit;
    m_ScreenToVisible = other->m_ScreenToVisible;
    m_BaseFraction = other->m_BaseFraction;
    m_PixelsPerSm = other->m_PixelsPerSm;
    m_MinScale = other->m_MinScale;
    m_MaxScale = other->m_MaxScale;
    m_SpanLeft = other->m_SpanLeft;
    m_SpanBottom = other->m_SpanBottom;
    m_OffsX = other->m_OffsX;
    m_OffsY = other->m_OffsY;
    m_ScreenWidth = other->m_ScreenWidth;
    m_ScreenHeight = other->m_ScreenHeight;
    m_MaxUnwrappedWidth = other->m_MaxUnwrappedWidth;
    m_MaxUnwrappedHeight = other->m_MaxUnwrappedHeight;
    m_ExtVisible = other->m_ExtVisible;
    ViewChanged();
}

// --- queries ---

void CScaler::GetScreenSize(std::int32_t& width, std::int32_t& height) const {
    width = m_ScreenWidth;
    height = m_ScreenHeight;
}

void CScaler::GetMaximumUnwrappedSize(std::int32_t& width, std::int32_t& height) const {
    width = m_MaxUnwrappedWidth;
    height = m_MaxUnwrappedHeight;
}

void CScaler::GetMapBounds(CRect& rect) const {
    rect.SetValue(m_MapBounds);
}

void CScaler::GetPivotPoint(TCoord& x, TCoord& y) const {
    x = m_PivotX;
    y = m_PivotY;
}

void CScaler::GetScrollOffset(std::int32_t& x, std::int32_t& y) const {
    x = m_OffsX;
    y = m_OffsY;
}

double CScaler::GetScreenToVisibleAt(std::int32_t /*x*/, std::int32_t /*y*/) const {
    return m_ScreenToVisible;
}

std::int32_t CScaler::GetRatio() const {
    if (m_UsePrinterScaleFactor) return m_PrinterScaleFactor;
    return std::min(RoundToLong(m_BaseFraction * 1000.0), 1000);
}

std::int32_t CScaler::GetPercentRatio(std::int32_t metresInSm) const {
    return RoundToLong(metresInSm / m_MinScale * 1000.0);
}

std::int32_t CScaler::GetMetersInSm(std::int32_t ratio) const {
    return RoundToLong(ratio * m_MinScale / 1000.0);
}

void CScaler::SetPrinterScaleFactor(std::int32_t factor) {
    CModificator modificator(this);
    const bool wasFactor = factor == m_PrinterScaleFactor;
    m_PrinterScaleFactor = factor;
    // While the factor is on, this compares it with itself and it stays on.
    if (factor < GetRatio()) {
        m_UsePrinterScaleFactor = true;
    } else if (wasFactor) {
        modificator.Clear();
    }
}

void CScaler::ClearPrinterScaleFactor() {
    if (!m_UsePrinterScaleFactor) return;
    CModificator modificator(this);
    m_UsePrinterScaleFactor = false;
}

// --- tests ---

bool CScaler::IsInBounds(TLongPoint point) const {
    return point.X >= m_MapBounds.MinX && point.X <= m_MapBounds.MaxX && point.Y >= m_MapBounds.MinY &&
           point.Y <= m_MapBounds.MaxY;
}

void CScaler::TestPoint(std::int32_t x, std::int32_t y) const {
    if (IsInBounds({x, y})) return;
    RunError(ErrorOverflow, u"Coordinate is out of map bounds <CScaler::TestPoint>", this);
}

void CScaler::TestPoints(const void* points, std::int32_t count) const {
    if (points == nullptr) return;
    const auto* point = static_cast<const TLongPoint*>(points);
    for (std::int32_t i = 0; i < count; ++i) {
        if (IsInBounds(point[i])) continue;
        RunError(ErrorOverflow, u"Coordinate is out of map bounds <CScaler::TestPoints>", this);
    }
}

namespace {

/// Whether the value had to be put on the nearer of the two bounds.
bool ClampToRange(TCoord& value, std::int32_t min, std::int32_t max) {
    if (value >= min && value <= max) return false;
    value = WrapToCoord(value < min ? min : max);
    return true;
}

}  // namespace

std::int32_t CScaler::HitTest(std::int32_t screenX, std::int32_t screenY, TCoord& x, TCoord& y) const {
    if (!(m_ScreenToVisible > 0.0)) return 0;
    std::int32_t result = 0;
    if (screenX < 0 || screenX >= m_ScreenWidth) result |= 1;
    if (screenY < 0 || screenY >= m_ScreenHeight) result |= 2;
    ScreenToMap(screenX, screenY, x, y);
    if (ClampToRange(x, m_MapBounds.MinX, m_MapBounds.MaxX)) result |= 4;
    if (ClampToRange(y, m_MapBounds.MinY, m_MapBounds.MaxY)) result |= 8;
    return result;
}

// --- persistence ---

template <typename TVisit>
void CScaler::VisitStored(TVisit visit) {
    static_cast<void>(visit(m_MapBounds.MinX) && visit(m_MapBounds.MinY) && visit(m_MapBounds.MaxX) &&
                      visit(m_MapBounds.MaxY) && visit(m_VisibleBox.MinX) && visit(m_VisibleBox.MinY) &&
                      visit(m_VisibleBox.MaxX) && visit(m_VisibleBox.MaxY) && visit(m_MetresInSm) &&
                      visit(m_ScreenToVisible) && visit(m_BaseFraction) && visit(m_PixelsPerSm) &&
                      visit(m_MetresInUnit) && visit(m_MinScale) && visit(m_MaxScale) && visit(m_SpanLeft) &&
                      visit(m_SpanBottom));
}

bool CScaler::ObjectToBuffer(CStream* stream) {
    if (stream == nullptr) return false;
    VisitStored([stream](auto& field) { return stream->Write(&field, sizeof field); });
    return true;
}

bool CScaler::ObjectFromBuffer(CStream* stream) {
    if (stream == nullptr) return false;
    // A field that a stream cut short lacks must not be filled with the bytes of another.
    VisitStored([stream](auto& field) { return stream->Read(&field, sizeof field); });
    return true;
}

std::uint32_t CScaler::GetPreferredSize() {
    // Eight bytes less than what is written: kept, callers know the number and streams grow.
    return 88;
}

// --- recalculation ---

void CScaler::CalculateScaleFactor() {
    CModificator modificator(this);
    CRect::GetProportional(m_ScreenWidth, m_ScreenHeight, m_VisibleBox.MinX, m_VisibleBox.MinY,
                           m_VisibleBox.MaxX, m_VisibleBox.MaxY);
    m_ScreenToVisible = IsHeightLimiting(m_ScreenWidth, m_ScreenHeight, BoundsWidth(), BoundsHeight())
                            ? m_ScreenHeight / static_cast<double>(VisibleHeight())
                            : m_ScreenWidth / static_cast<double>(VisibleWidth());
    m_MetresInSm = m_PixelsPerSm / m_ScreenToVisible * m_MetresInUnit;
    m_SpanLeft = m_VisibleBox.MinX;
    m_SpanBottom = m_VisibleBox.MaxY;
    CalculateBaseFraction();
    CalculateExtVisible();
}

double CScaler::CalculateMaxScale(double fraction) const {
    const double pixelsPerUnit =
        IsHeightLimiting(m_ScreenWidth, m_ScreenHeight, BoundsWidth(), BoundsHeight())
            ? m_ScreenHeight / (static_cast<double>(BoundsHeight()) * fraction)
            : m_ScreenWidth / (static_cast<double>(BoundsWidth()) * fraction);
    return m_PixelsPerSm / pixelsPerUnit * m_MetresInUnit;
}

void CScaler::CalculateBaseFraction() {
    CModificator modificator(this);
    m_BaseFraction =
        IsHeightLimiting(m_MaxUnwrappedWidth, m_MaxUnwrappedHeight, BoundsWidth(), BoundsHeight())
            ? ScreenToMap(m_MaxUnwrappedHeight) / static_cast<double>(BoundsHeight())
            : ScreenToMap(m_MaxUnwrappedWidth) / static_cast<double>(BoundsWidth());
}

void CScaler::CalculateVisible(std::int32_t dx, std::int32_t dy) {
    ShowFrom(std::int64_t{m_SpanLeft} + dx, std::int64_t{m_SpanBottom} + dy, ScreenToMap(m_ScreenWidth),
             ScreenToMap(m_ScreenHeight));
    CalculateExtVisible();
}

void CScaler::CalculateExtVisible() {
    CRect frame(0, 0, 0, 0);
    frame.SetValue(m_VisibleBox);
    if (m_Angle != 0.0) {
        m_PivotX = MiddleOf(m_VisibleBox.MinX, m_VisibleBox.MaxX);
        m_PivotY = MiddleOf(m_VisibleBox.MinY, m_VisibleBox.MaxY);
        frame.Rotate(m_PivotX, m_PivotY, m_Angle);
    }
    frame.Inflate(SaturateToLong(VisibleWidth() >> 3), SaturateToLong(VisibleHeight() >> 3));
    frame.GetValue(m_ExtVisible);
    ViewChanged();
}

void CScaler::ShowFrom(std::int64_t left, std::int64_t bottom, std::int32_t width, std::int32_t height) {
    m_SpanLeft = SaturateToLong(left);
    m_SpanBottom = SaturateToLong(bottom);
    m_VisibleBox = {m_SpanLeft, SaturateToLong(std::int64_t{m_SpanBottom} - height),
                    SaturateToLong(std::int64_t{m_SpanLeft} + width), m_SpanBottom};
}

}  // namespace zul
