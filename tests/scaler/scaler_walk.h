/// \file
/// Walks of random navigation, and what must hold after each of their steps.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "tests/scaler/stored_scaler.h"
#include "zul/scaler/projective_scaler.h"

namespace zul {

inline constexpr double kPixelsPerSm = 40.0;
inline constexpr double kMetresInUnit = 3.0;
inline constexpr std::int32_t kSmallest = 500;  // side of a rectangle to zoom to

enum TStep { ZoomIn, ZoomOut, ShowBox, MoveBox, Drag, DragUnits, Center, Resize, Check, Turn, StepCount };

/// What a step is given; all random, before anything happens.
struct TPlan {
    int step;
    TLongRect rect;
    TLongPoint drag;
    TSize screen;
    double degrees;
};

/// What the step answers, if it answers; \p dragged comes back as what was scrolled.
template <class Expect>
bool Take(CScaler& scaler, const TPlan& plan, TLongPoint& dragged, Expect&& expect) {
    const TLongRect& r = plan.rect;
    dragged = plan.drag;
    switch (plan.step) {
        case ZoomIn:
        case ZoomOut:
            return scaler.Zoom(r.MinX, r.MaxY, r.MaxX, r.MinY, plan.step == ZoomIn);
        case ShowBox:
        case MoveBox:
            scaler.SetVisibleBox(r.MinX, r.MinY, r.MaxX, r.MaxY, plan.step == ShowBox);
            break;
        case Drag:
            return scaler.Scroll(nullptr, dragged.X, dragged.Y);
        case DragUnits:
            return scaler.ScrollInMapCoords(nullptr, dragged.X, dragged.Y);
        case Center:
            scaler.CenterMap(r.MinX, r.MinY);
            break;
        case Resize:
            scaler.SetScreenSize(plan.screen.Width, plan.screen.Height);
            break;
        case Check:
            scaler.CheckVisible();
            expect(!scaler.CheckVisible(), "centring once is enough");
            break;
        default:
            scaler.SetRotationAngle(plan.degrees);
    }
    return false;
}

/// One walk of a flat and a perspective view side by side. pick(low, high) gives the next random number,
/// expect(holds, what) is told what must hold.
template <class Pick, class Expect>
class CWalk {
public:
    CWalk(Pick pick, Expect expect) : m_Pick(pick), m_Expect(expect) {
        m_Screen = SomeScreen();
        m_Bounds = {m_Pick(-20000, -5000), m_Pick(-20000, -5000), m_Pick(5000, 20000), m_Pick(5000, 20000)};
        for (CScaler* scaler : {&m_Flat, static_cast<CScaler*>(&m_Perspective)})
            scaler->InitScaler(m_Bounds, m_Screen, m_Screen, kPixelsPerSm, kMetresInUnit, 0.1);
        m_MinScale = m_Flat.GetMinScale();
        m_MaxScale = m_Flat.GetMaxScale();
    }

    void Step() {
        const TPlan plan = SomePlan();
        const TStoredScaler before = StoredFormOf(m_Flat);
        TLongPoint offset{};
        m_Flat.GetScrollOffset(offset.X, offset.Y);
        TLongPoint dragged;
        const bool done = Take(m_Flat, plan, dragged, m_Expect);
        const TStoredScaler after = StoredFormOf(m_Flat);
        if (plan.step == Resize) m_Screen = plan.screen;
        ExpectOneView(after);
        ExpectLimits(after, plan);
        ExpectOffsets(before, after, offset, plan, done, dragged);

        Take(m_Perspective, plan, dragged, m_Expect);
        m_Expect(StoredFormOf(m_Perspective) == after, "both views move alike");
        ExpectNearEdge(after.box);
        if (plan.step == ZoomIn || plan.step == ZoomOut) ExpectNothingFurther(after, plan);
    }

private:
    TSize SomeScreen() {
        const std::int32_t width = m_Pick(100, 900);
        return {width, m_Pick(100, 900)};
    }
    TPlan SomePlan() {
        TPlan plan{};
        plan.step = m_Pick(0, StepCount - 1);
        const std::int32_t x = m_Pick(m_Bounds.MinX, m_Bounds.MaxX), y = m_Pick(m_Bounds.MinY, m_Bounds.MaxY);
        // A wide range of sizes, so that either limit is met often.
        const std::int32_t reach = m_Pick(0, 2) == 0 ? 20000 : 2000;
        plan.rect = {x, y, x + m_Pick(kSmallest, reach), y + m_Pick(kSmallest, reach)};
        TLongRect box{};
        m_Flat.GetVisibleBox(box);
        const std::int32_t width = box.MaxX - box.MinX, height = box.MaxY - box.MinY;
        if (plan.step == MoveBox) plan.rect = {x, y, x + width, y + height};
        if (plan.step == ZoomOut) {  // into a part of the view
            const std::int32_t part = m_Pick(1, 8);
            plan.rect = {box.MinX, box.MinY, box.MinX + width / part, box.MinY + height / part};
        }
        plan.drag = {m_Pick(-400, 400), m_Pick(-400, 400)};
        plan.screen = SomeScreen();
        plan.degrees = m_Pick(0, 3) == 0 ? 0.0 : m_Pick(-359, 359);
        return plan;
    }

    /// Origin, box, scale and screen tell the same story.
    void ExpectOneView(const TStoredScaler& now) {
        m_Expect(now.k > 0.0, "the scale is positive");
        m_Expect(now.left == now.box.MinX, "the origin is the box's left side");
        m_Expect(now.bottom == now.box.MaxY, "the origin is the box's upper side");
        m_Expect(std::abs(now.metresInSm * now.k / (kPixelsPerSm * kMetresInUnit) - 1.0) <= 1e-12,
                 "scale and metres tell the same");
        // The box is the screen in map units, to half a unit. Fitting a rectangle rounds the side that the
        // scale may be taken from, so the other one is off by as much as the sides differ; and a rectangle
        // that is too small is enlarged with its error.
        const double sides = std::max(m_Screen.Width, m_Screen.Height) /
                             static_cast<double>(std::min(m_Screen.Width, m_Screen.Height));
        const double enlargement = std::max(m_Screen.Width, m_Screen.Height) / now.k / kSmallest;
        const double slack = 1.0 + 0.5 * sides * std::max(1.0, enlargement);
        m_Expect(std::abs(now.box.MaxX - now.box.MinX - (m_Screen.Width / now.k)) <= slack,
                 "the box is as wide as the screen");
        m_Expect(std::abs(now.box.MaxY - now.box.MinY - (m_Screen.Height / now.k)) <= slack,
                 "the box is as high as the screen");
    }

    /// Zooming in minds the most detailed scale only, whatever the rectangle, zooming out the other one.
    void ExpectLimits(const TStoredScaler& now, const TPlan& plan) {
        if (plan.step == ZoomOut || plan.step == ShowBox) {
            m_Expect(now.metresInSm <= m_MinScale * 1.01, "the least detailed scale holds");
        }
        if (plan.step == ZoomIn || plan.step == ShowBox) {
            m_Expect(now.metresInSm >= m_MaxScale * 0.99, "the most detailed scale holds");
        }
        m_Expect(now.minScale == m_MinScale, "the limits stay");
        m_Expect(now.maxScale == m_MaxScale, "the limits stay");
    }

    void ExpectOffsets(const TStoredScaler& before, const TStoredScaler& after, TLongPoint offset,
                       const TPlan& plan, bool done, TLongPoint dragged) {
        TLongPoint now{};
        m_Flat.GetScrollOffset(now.X, now.Y);
        const std::int32_t right = after.left - before.left, up = after.bottom - before.bottom;
        if (plan.step == Drag) {
            m_Expect(std::abs(dragged.X) <= std::abs(plan.drag.X),
                     "no more is scrolled across than was asked");
            m_Expect(std::abs(dragged.Y) <= std::abs(plan.drag.Y), "no more is scrolled up than was asked");
            m_Expect((right != 0 || up != 0) == done, "it is told whether the view moved");
            m_Expect(std::abs(right - (dragged.X / before.k)) <= 0.5 / before.k + 0.51,
                     "the view moved by the pixels told across");
            m_Expect(std::abs(up - (dragged.Y / before.k)) <= 0.5 / before.k + 0.51,
                     "the view moved by the pixels told up");
            // Moved by its own size, nothing of the view stays; the box is rebuilt between x and y.
            const TLongRect& box = right != 0 ? after.box : before.box;
            const bool isNew = std::abs(right) >= before.box.MaxX - before.box.MinX;
            const bool isNewUp = isNew || std::abs(up) >= box.MaxY - box.MinY;
            if (right != 0) {
                m_Expect(now.X == (isNew ? 0 : offset.X - dragged.X), "the offset across adds up");
            }
            if (up != 0) {
                m_Expect(now.Y == (isNewUp ? 0 : offset.Y + dragged.Y), "the offset up adds up");
            }
        } else if (plan.step <= MoveBox || plan.step == Center) {
            const bool isRefused = plan.step <= ZoomOut && !done;
            m_Expect(now == (isRefused ? offset : TLongPoint{}), "a new view has no offset");
        } else if (plan.step != DragUnits) {
            m_Expect(now == offset, "the offset stays");
        }
    }

    /// The near corners of the trapezoid are the lower ones of the screen.
    void ExpectNearEdge(const TLongRect& box) {
        // Zooming out of a box that was put there at another scale may end at any detail, in an empty box
        // too.
        if (box.MinX == box.MaxX || box.MinY == box.MaxY) return;
        TLongPoint corners[4];
        m_Perspective.GetMapCorners(corners);
        m_Perspective.MapToScreen(corners[0].X, corners[0].Y, corners[0].X, corners[0].Y);
        m_Perspective.MapToScreen(corners[3].X, corners[3].Y, corners[3].X, corners[3].Y);
        m_Expect(corners[0] == TLongPoint{0, m_Screen.Height}, "the near edge begins at the lower left");
        m_Expect(corners[3] == TLongPoint{m_Screen.Width, m_Screen.Height},
                 "the near edge ends at the lower right");
    }

    /// At the limit the same once more is refused and changes nothing.
    void ExpectNothingFurther(const TStoredScaler& now, const TPlan& plan) {
        if (now.metresInSm != (plan.step == ZoomIn ? m_MaxScale : m_MinScale)) return;
        ++Limited;
        TLongPoint dragged;
        m_Expect(!Take(m_Flat, plan, dragged, m_Expect), "at a limit the same once more is refused");
        m_Expect(StoredFormOf(m_Flat) == now, "what is refused changes nothing");
    }

    Pick m_Pick;
    Expect m_Expect;
    CScaler m_Flat;
    CProjectiveScaler m_Perspective;
    TSize m_Screen{};
    TLongRect m_Bounds{};
    double m_MinScale = 0.0, m_MaxScale = 0.0;

public:
    int Limited = 0;  ///< steps that ended at a limit
};

}  // namespace zul
