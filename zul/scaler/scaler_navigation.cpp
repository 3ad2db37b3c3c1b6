// Moving the view of a CScaler over the map, and the messages that ask for it.
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "zul/canvas/canvas.h"
#include "zul/geometry/rect.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/numeric.h"
#include "zul/scaler/scaler.h"
#include "zul/tools/brush.h"

namespace zul {
namespace {

/// Halves towards minus infinity. Keeps 16 bits, so that it wraps on maps larger than that: callers rely on
/// it.
TCoord CentreOf(std::int32_t min, std::int32_t max) {
    return WrapToCoord((std::int64_t{min} + max) >> 1);
}

/// Adds half whatever the sign: the scale limits are cut to size this way, unlike what is rounded elsewhere.
std::int32_t AddHalfAndTruncate(double value) {
    return ToLong(value + 0.5);
}

/// Cuts a step so that a view does not leave the map. False when the view touches or passes that edge
/// already.
bool LimitStep(std::int32_t& step, std::int32_t visibleMin, std::int32_t visibleMax, std::int32_t mapMin,
               std::int32_t mapMax) {
    if (step >= 0) {
        if (visibleMax >= mapMax) return false;
        if (std::int64_t{visibleMax} + step >= mapMax)
            step = SaturateToLong(std::int64_t{mapMax} - visibleMax);
    } else {
        if (visibleMin <= mapMin) return false;
        if (std::int64_t{visibleMin} + step <= mapMin)
            step = SaturateToLong(std::int64_t{mapMin} - visibleMin);
    }
    return true;
}

/// Moves a visible range over the middle of a map range that fits on the screen. False when the map does not
/// fit, or lies within the visible range as it is.
bool CentreRange(std::int32_t screenSpan, std::int32_t mapMin, std::int32_t mapMax, std::int32_t& visibleMin,
                 std::int32_t& visibleMax) {
    if (screenSpan < std::int64_t{mapMax} - mapMin) return false;
    if (mapMax <= visibleMax && mapMin >= visibleMin) return false;
    const std::int64_t shift = std::int64_t{CentreOf(mapMin, mapMax)} - CentreOf(visibleMin, visibleMax);
    visibleMin = SaturateToLong(visibleMin + shift);
    visibleMax = SaturateToLong(visibleMax + shift);
    return true;
}

/// Stretches a range about its middle, halves towards zero.
void StretchRange(std::int32_t& min, std::int32_t& max, double factor) {
    const std::int32_t length = RoundToLong(static_cast<double>(std::int64_t{max} - min) * factor);
    min = SaturateToLong((std::int64_t{min} + max) / 2 - length / 2);
    max = SaturateToLong(std::int64_t{min} + length);
}

/// Keeps pattern fills in step with the map.
void MoveBrushOrigin(CCanvas* canvas, std::int32_t dx, std::int32_t dy) {
    if (canvas == nullptr) return;
    CBrush& brush = canvas->GetBrush();
    std::int32_t x = 0;
    std::int32_t y = 0;
    brush.GetOrigin(x, y);
    brush.SetOrigin(SaturateToLong(std::int64_t{x} + dx), SaturateToLong(std::int64_t{y} + dy));
}

void ResetBrushOrigin(CCanvas* canvas) {
    if (canvas != nullptr) canvas->GetBrush().SetOrigin(0, 0);
}

/// One more for a number that has a fraction, on whichever side of zero.
std::int32_t TruncateAndCountFraction(double value) {
    const std::int64_t whole = ToLong(value);
    return SaturateToLong(std::trunc(value) == value || std::isnan(value) ? whole : whole + 1);
}

}  // namespace

// --- zoom ---

bool CScaler::Zoom(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, bool zoomIn) {
    // Equal to the last bit: it is the limit itself that an earlier zoom stored.
    if (m_MetresInSm == (zoomIn ? m_MaxScale : m_MinScale)) return false;
    CModificator modificator(this);
    if (x1 > x2) std::swap(x1, x2);
    if (y1 > y2) std::swap(y1, y2);
    CRect::GetProportional(m_ScreenWidth, m_ScreenHeight, x1, y1, x2, y2);
    TCoord centreX = CentreOf(x1, x2);
    TCoord centreY = CentreOf(y1, y2);
    std::int32_t width = SaturateToLong(std::int64_t{x2} - x1);
    std::int32_t height = SaturateToLong(std::int64_t{y2} - y1);

    m_ScreenToVisible = zoomIn ? m_ScreenWidth / static_cast<double>(width)
                               : m_ScreenToVisible * (width / static_cast<double>(VisibleWidth()));
    m_MetresInSm = m_PixelsPerSm / m_ScreenToVisible * m_MetresInUnit;
    if (!zoomIn) {
        width = ScreenToMap(m_ScreenWidth);
        height = ScreenToMap(m_ScreenHeight);
    }
    const double limit = zoomIn ? m_MaxScale : m_MinScale;
    if (zoomIn ? m_MetresInSm < limit : m_MetresInSm > limit) {
        const double excess = m_MetresInSm / limit;
        width = AddHalfAndTruncate(width / excess);
        height = AddHalfAndTruncate(height / excess);
        m_MetresInSm = limit;
        m_ScreenToVisible = m_PixelsPerSm / m_MetresInSm * m_MetresInUnit;
    }

    if (BoundsWidth() < ScreenToMap(m_ScreenWidth)) centreX = CentreOf(m_MapBounds.MinX, m_MapBounds.MaxX);
    if (BoundsHeight() < ScreenToMap(m_ScreenHeight)) centreY = CentreOf(m_MapBounds.MinY, m_MapBounds.MaxY);
    ShowFrom(std::int64_t{centreX} - (width >> 1), std::int64_t{centreY} + (height >> 1), width, height);
    CalculateBaseFraction();
    CalculateExtVisible();
    m_OffsX = m_OffsY = 0;
    return true;
}

// --- scroll ---

bool CScaler::Scroll(CCanvas* canvas, std::int32_t& dx, std::int32_t& dy) {
    if (dx == 0 && dy == 0) return false;
    CModificator modificator(this);
    bool redraw = false;
    const bool across = dx != 0 && ScrollAcross(canvas, dx, redraw);
    const bool up = dy != 0 && ScrollUp(canvas, dy, redraw);
    if (!across && !up) modificator.Clear();
    return across || up;
}

bool CScaler::ScrollAcross(CCanvas* canvas, std::int32_t& dx, bool& redraw) {
    const std::int32_t wanted = ScreenToMap(dx);
    std::int32_t step = wanted;
    if (!LimitStep(step, m_VisibleBox.MinX, m_VisibleBox.MaxX, m_MapBounds.MinX, m_MapBounds.MaxX)) {
        dx = 0;
        return false;
    }
    if (step != wanted) dx = MapToScreen(step);
    if (std::abs(std::int64_t{step}) < VisibleWidth()) {
        m_OffsX = SaturateToLong(std::int64_t{m_OffsX} - dx);
        MoveBrushOrigin(canvas, SaturateToLong(-std::int64_t{dx}), 0);
    } else {
        redraw = true;
        m_OffsX = 0;
        ResetBrushOrigin(canvas);
    }
    CalculateVisible(step, 0);
    return true;
}

bool CScaler::ScrollUp(CCanvas* canvas, std::int32_t& dy, bool redraw) {
    const std::int32_t wanted = ScreenToMap(dy);
    std::int32_t step = wanted;
    if (!LimitStep(step, m_VisibleBox.MinY, m_VisibleBox.MaxY, m_MapBounds.MinY, m_MapBounds.MaxY)) {
        dy = 0;
        return false;
    }
    if (step != wanted) dy = MapToScreen(step);
    if (!redraw && std::abs(std::int64_t{step}) < VisibleHeight()) {
        m_OffsY = SaturateToLong(std::int64_t{m_OffsY} + dy);
        MoveBrushOrigin(canvas, 0, dy);
    } else {
        m_OffsY = 0;
        ResetBrushOrigin(canvas);
    }
    CalculateVisible(0, step);
    return true;
}

bool CScaler::ScrollInMapCoords(CCanvas* canvas, std::int32_t& dx, std::int32_t& dy) {
    std::int32_t screenDx = MapToScreen(dx);
    std::int32_t screenDy = MapToScreen(dy);
    const bool moved = Scroll(canvas, screenDx, screenDy);
    dx = ScreenToMap(screenDx);
    dy = ScreenToMap(screenDy);
    return moved;
}

bool CScaler::PlaceToCenter(CCanvas* canvas, TCoord x, TCoord y) {
    std::int32_t dx = SaturateToLong(x - (VisibleWidth() >> 1));
    std::int32_t dy = SaturateToLong(y - (VisibleHeight() >> 1));
    return Scroll(canvas, dx, dy);
}

void CScaler::CenterMap(std::int32_t x, std::int32_t y) {
    CModificator modificator(this);
    const std::int64_t dx = x - (m_VisibleBox.MinX + VisibleWidth() / 2);
    const std::int64_t dy = y - (m_VisibleBox.MinY + VisibleHeight() / 2);
    m_VisibleBox = {SaturateToLong(m_VisibleBox.MinX + dx), SaturateToLong(m_VisibleBox.MinY + dy),
                    SaturateToLong(m_VisibleBox.MaxX + dx), SaturateToLong(m_VisibleBox.MaxY + dy)};
    m_SpanLeft = m_VisibleBox.MinX;
    m_SpanBottom = m_VisibleBox.MaxY;
    m_PivotX = WrapToCoord(x);
    m_PivotY = WrapToCoord(y);
    m_OffsX = m_OffsY = 0;
    CalculateExtVisible();
}

bool CScaler::CheckVisible() {
    CModificator modificator(this);
    bool changed = false;
    if (CentreRange(ScreenToMap(m_ScreenWidth), m_MapBounds.MinX, m_MapBounds.MaxX, m_VisibleBox.MinX,
                    m_VisibleBox.MaxX) &&
        m_SpanLeft != m_VisibleBox.MinX) {
        m_SpanLeft = m_VisibleBox.MinX;
        changed = true;
    }
    if (CentreRange(ScreenToMap(m_ScreenHeight), m_MapBounds.MinY, m_MapBounds.MaxY, m_VisibleBox.MinY,
                    m_VisibleBox.MaxY) &&
        m_SpanBottom != m_VisibleBox.MaxY) {
        m_SpanBottom = m_VisibleBox.MaxY;
        changed = true;
    }
    if (changed) {
        CalculateExtVisible();
    } else {
        modificator.Clear();
    }
    return changed;
}

// --- the visible box and the scale limits ---

void CScaler::SetVisibleBox(std::int32_t minX, std::int32_t minY, std::int32_t maxX, std::int32_t maxY,
                            bool fit) {
    CModificator modificator(this);
    if (m_Angle != 0.0) {
        m_PivotX = CentreOf(minX, maxX);
        m_PivotY = CentreOf(minY, maxY);
    }
    m_VisibleBox = {minX, minY, maxX, maxY};
    if (VisibleWidth() == 0 || VisibleHeight() == 0) return;
    if (fit) {
        CalculateScaleFactor();
        double factor = 0.0;
        if (m_MetresInSm < m_MaxScale) {
            factor = m_MaxScale / m_MetresInSm;
        } else if (m_MetresInSm > m_MinScale) {
            factor = m_MinScale / m_MetresInSm;
        }
        if (factor != 0.0) {
            StretchRange(m_VisibleBox.MinX, m_VisibleBox.MaxX, factor);
            StretchRange(m_VisibleBox.MinY, m_VisibleBox.MaxY, factor);
            CalculateScaleFactor();
        }
    } else {
        m_SpanLeft = minX;
        m_SpanBottom = maxY;
    }
    CalculateExtVisible();
    m_OffsX = m_OffsY = 0;
}

void CScaler::SetReviewDepth(std::int32_t depth, const TPoint* point) {
    CModificator modificator(this);
    const std::int32_t x =
        point != nullptr
            ? point->X
            : static_cast<std::int32_t>((std::int64_t{m_VisibleBox.MinX} + m_VisibleBox.MaxX) / 2);
    const std::int32_t y = point != nullptr ? point->Y : m_VisibleBox.MinY;
    const std::int32_t height = RoundToLong(depth / m_MetresInUnit);
    const std::int32_t width =
        m_ScreenHeight == 0 ? 0 : SaturateToLong(std::int64_t{height} * m_ScreenWidth / m_ScreenHeight);
    const std::int32_t left = SaturateToLong(std::int64_t{x} - width / 2);
    SetVisibleBox(left, y, SaturateToLong(std::int64_t{left} + width),
                  SaturateToLong(std::int64_t{y} + height), true);
}

void CScaler::SetMinScale(double scale) {
    if (m_MinScale == scale) return;
    CModificator modificator(this);
    m_MinScale = scale;
    // From anywhere on the detailed side of the new limit, not only from beyond it: callers rely on the jump.
    if (m_MetresInSm < scale) JumpToScale(scale);
}

void CScaler::SetMaxScale(double scale) {
    if (m_MaxScale == scale) return;
    CModificator modificator(this);
    m_MaxScale = scale;
    if (m_MetresInSm > scale) JumpToScale(scale);
}

void CScaler::JumpToScale(double scale) {
    // The box keeps the size of the old scale, and metres in unit go in after k: both on purpose.
    const std::int32_t width = ScreenToMap(m_ScreenWidth);
    const std::int32_t height = ScreenToMap(m_ScreenHeight);
    m_ScreenToVisible = m_PixelsPerSm / scale;
    m_MetresInSm = scale * m_MetresInUnit;
    m_OffsX = m_OffsY = 0;
    ShowFrom(m_VisibleBox.MinX + (VisibleWidth() >> 1) - (width >> 1),
             m_VisibleBox.MinY + (VisibleHeight() >> 1) + (height >> 1), width, height);
    CalculateBaseFraction();
    CalculateExtVisible();
}

void CScaler::GetScrollParams(std::int32_t& range, std::int32_t& position, bool vertical) const {
    const std::int64_t visible = vertical ? VisibleHeight() : VisibleWidth();
    const std::int64_t before = vertical ? std::int64_t{m_MapBounds.MaxY} - m_VisibleBox.MaxY
                                         : std::int64_t{m_VisibleBox.MinX} - m_MapBounds.MinX;
    const auto rest = static_cast<double>((vertical ? BoundsHeight() : BoundsWidth()) - visible);
    const double step = static_cast<double>(visible) / 4.0;
    double steps = rest / step;
    if (steps < 1.0) steps = rest > 0.0 ? 2.0 : 1.0;
    range = TruncateAndCountFraction(steps);
    if (range == 2) {
        position = static_cast<double>(before) > rest / 2.0 ? 2 : 1;
    } else {
        position = TruncateAndCountFraction(static_cast<double>(before) / step);
    }
}

// --- messages ---

namespace {

enum TScalerMessage : std::int32_t {
    MessageGetMaxScale = 10069,
    MessageSetMaxScale = 10070,
    MessageGetMinScale = 10071,
    MessageSetMinScale = 10072,
    MessageGetScale = 10073,
    MessageGetVisibleBox = 10074,
    MessageGetMapBounds = 10077,
    MessageSetVisibleBox = 10078,
    MessageSetOrigin = 10179,
};

/// What lies behind an address in a message, which promises no alignment.
template <typename T>
T Fetch(const std::byte* from) {
    T value;
    std::memcpy(&value, from, sizeof value);
    return value;
}

template <typename T>
void Store(std::byte* to, const T& value) {
    std::memcpy(to, &value, sizeof value);
}

}  // namespace

bool CScaler::DoMessage(CMessage* message) {
    if (message == nullptr) return false;
    auto* data = CMessage::ToPointer<std::byte>(message->GetParam1());
    if (data == nullptr) return CAnyObject::DoMessage(message);
    switch (message->GetCode()) {
        case MessageGetMaxScale:
            Store(data, m_MaxScale);
            return true;
        case MessageSetMaxScale:
            SetMaxScale(Fetch<double>(data));
            return true;
        case MessageGetMinScale:
            Store(data, m_MinScale);
            return true;
        case MessageSetMinScale:
            SetMinScale(Fetch<double>(data));
            return true;
        case MessageGetScale:
            Store(data, m_MetresInSm);
            return true;
        case MessageGetVisibleBox: {
            struct TTargets {
                std::int32_t* at[4];
            };
            const auto targets = Fetch<TTargets>(data);
            const std::int32_t values[] = {m_VisibleBox.MinX, m_VisibleBox.MinY, m_VisibleBox.MaxX,
                                           m_VisibleBox.MaxY};
            for (int i = 0; i < 4; ++i) {
                if (targets.at[i] != nullptr) *targets.at[i] = values[i];
            }
            return true;
        }
        case MessageGetMapBounds:
            Store(data, m_MapBounds);
            return true;
        case MessageSetVisibleBox: {
            CModificator modificator(this);
            m_VisibleBox = Fetch<TLongRect>(data);
            CalculateExtVisible();
            return true;
        }
        case MessageSetOrigin: {
            CModificator modificator(this);
            m_SpanLeft = Fetch<std::int16_t>(data);
            m_SpanBottom = -Fetch<std::int16_t>(data + 2);
            m_ScreenToVisible = Fetch<double>(data + 4);
            break;
        }
    }
    return CAnyObject::DoMessage(message);
}

}  // namespace zul
