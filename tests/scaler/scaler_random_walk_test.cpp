// Random sequences of navigation. ZUL_SEQUENCES=100000 in the environment walks that many instead of a few.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>

#include "stored_scaler.h"
#include "zul/scaler/projective_scaler.h"

namespace zul {
namespace {

constexpr double kPixelsPerSm = 40.0;
constexpr double kMetresInUnit = 3.0;
constexpr std::int32_t kSmallest = 500;  // side of a rectangle to zoom to
constexpr int kSteps = 60;

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
bool Take(CScaler& scaler, const TPlan& plan, TLongPoint& dragged) {
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
            EXPECT_FALSE(scaler.CheckVisible()) << "once is enough";
            break;
        default:
            scaler.SetRotationAngle(plan.degrees);
    }
    return false;
}

/// One walk of a flat and a perspective view side by side.
class CWalk {
public:
    explicit CWalk(std::uint32_t seed) : m_Random(seed) {
        m_Screen = SomeScreen();
        m_Bounds = {Pick(-20000, -5000), Pick(-20000, -5000), Pick(5000, 20000), Pick(5000, 20000)};
        for (CScaler* scaler : {&m_Flat, static_cast<CScaler*>(&m_Perspective)})
            scaler->InitScaler(m_Bounds, m_Screen, m_Screen, kPixelsPerSm, kMetresInUnit, 0.1);
        m_MinScale = m_Flat.GetMinScale();
        m_MaxScale = m_Flat.GetMaxScale();
    }

    void Step() {
        const TPlan plan = SomePlan();
        SCOPED_TRACE(plan.step);
        const TStoredScaler before = StoredFormOf(m_Flat);
        TLongPoint offset{};
        m_Flat.GetScrollOffset(offset.X, offset.Y);
        TLongPoint dragged;
        const bool done = Take(m_Flat, plan, dragged);
        const TStoredScaler after = StoredFormOf(m_Flat);
        if (plan.step == Resize) m_Screen = plan.screen;
        ExpectOneView(after);
        ExpectLimits(after, plan);
        ExpectOffsets(before, after, offset, plan, done, dragged);

        Take(m_Perspective, plan, dragged);
        EXPECT_TRUE(StoredFormOf(m_Perspective) == after) << "both views move alike";
        ExpectNearEdge(after.box);
        if (plan.step == ZoomIn || plan.step == ZoomOut) ExpectNothingFurther(after, plan);
    }

private:
    std::int32_t Pick(std::int32_t low, std::int32_t high) {
        return std::uniform_int_distribution<std::int32_t>(low, high)(m_Random);
    }
    TSize SomeScreen() {
        const std::int32_t width = Pick(100, 900);
        return {width, Pick(100, 900)};
    }
    TPlan SomePlan() {
        TPlan plan{};
        plan.step = Pick(0, StepCount - 1);
        const std::int32_t x = Pick(m_Bounds.MinX, m_Bounds.MaxX), y = Pick(m_Bounds.MinY, m_Bounds.MaxY);
        // A wide range of sizes, so that either limit is met often.
        const std::int32_t reach = Pick(0, 2) == 0 ? 20000 : 2000;
        plan.rect = {x, y, x + Pick(kSmallest, reach), y + Pick(kSmallest, reach)};
        TLongRect box{};
        m_Flat.GetVisibleBox(box);
        const std::int32_t width = box.MaxX - box.MinX, height = box.MaxY - box.MinY;
        if (plan.step == MoveBox) plan.rect = {x, y, x + width, y + height};
        if (plan.step == ZoomOut) {  // into a part of the view
            const std::int32_t part = Pick(1, 8);
            plan.rect = {box.MinX, box.MinY, box.MinX + width / part, box.MinY + height / part};
        }
        plan.drag = {Pick(-400, 400), Pick(-400, 400)};
        plan.screen = SomeScreen();
        plan.degrees = Pick(0, 3) == 0 ? 0.0 : Pick(-359, 359);
        return plan;
    }

    /// Origin, box, scale and screen tell the same story.
    void ExpectOneView(const TStoredScaler& now) {
        EXPECT_GT(now.k, 0.0);
        EXPECT_EQ(now.left, now.box.MinX);
        EXPECT_EQ(now.bottom, now.box.MaxY);
        EXPECT_NEAR(now.metresInSm * now.k / (kPixelsPerSm * kMetresInUnit), 1.0, 1e-12);
        // The box is the screen in map units, to half a unit. Fitting a rectangle rounds the side that the
        // scale may be taken from, so the other one is off by as much as the sides differ; and a rectangle
        // that is too small is enlarged with its error.
        const double sides = std::max(m_Screen.Width, m_Screen.Height) /
                             static_cast<double>(std::min(m_Screen.Width, m_Screen.Height));
        const double enlargement = std::max(m_Screen.Width, m_Screen.Height) / now.k / kSmallest;
        const double slack = 1.0 + 0.5 * sides * std::max(1.0, enlargement);
        EXPECT_NEAR(now.box.MaxX - now.box.MinX, m_Screen.Width / now.k, slack);
        EXPECT_NEAR(now.box.MaxY - now.box.MinY, m_Screen.Height / now.k, slack);
    }

    /// Zooming in minds the most detailed scale only, whatever the rectangle, zooming out the other one.
    void ExpectLimits(const TStoredScaler& now, const TPlan& plan) {
        if (plan.step == ZoomOut || plan.step == ShowBox) {
            EXPECT_LE(now.metresInSm, m_MinScale * 1.01);
        }
        if (plan.step == ZoomIn || plan.step == ShowBox) {
            EXPECT_GE(now.metresInSm, m_MaxScale * 0.99);
        }
        EXPECT_EQ(now.minScale, m_MinScale);
        EXPECT_EQ(now.maxScale, m_MaxScale);
    }

    void ExpectOffsets(const TStoredScaler& before, const TStoredScaler& after, TLongPoint offset,
                       const TPlan& plan, bool done, TLongPoint dragged) {
        TLongPoint now{};
        m_Flat.GetScrollOffset(now.X, now.Y);
        const std::int32_t right = after.left - before.left, up = after.bottom - before.bottom;
        if (plan.step == Drag) {
            EXPECT_LE(std::abs(dragged.X), std::abs(plan.drag.X));
            EXPECT_LE(std::abs(dragged.Y), std::abs(plan.drag.Y));
            EXPECT_EQ(right != 0 || up != 0, done);
            EXPECT_NEAR(right, dragged.X / before.k, 0.5 / before.k + 0.51);
            EXPECT_NEAR(up, dragged.Y / before.k, 0.5 / before.k + 0.51);
            // Moved by its own size, nothing of the view stays; the box is rebuilt between x and y.
            const TLongRect& box = right != 0 ? after.box : before.box;
            const bool isNew = std::abs(right) >= before.box.MaxX - before.box.MinX;
            const bool isNewUp = isNew || std::abs(up) >= box.MaxY - box.MinY;
            if (right != 0) {
                EXPECT_EQ(now.X, isNew ? 0 : offset.X - dragged.X);
            }
            if (up != 0) {
                EXPECT_EQ(now.Y, isNewUp ? 0 : offset.Y + dragged.Y);
            }
        } else if (plan.step <= MoveBox || plan.step == Center) {
            const bool isRefused = plan.step <= ZoomOut && !done;
            EXPECT_EQ(now, isRefused ? offset : TLongPoint{});
        } else if (plan.step != DragUnits) {
            EXPECT_EQ(now, offset);
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
        EXPECT_EQ(corners[0], (TLongPoint{0, m_Screen.Height}));
        EXPECT_EQ(corners[3], (TLongPoint{m_Screen.Width, m_Screen.Height}));
    }

    /// At the limit the same once more is refused and changes nothing.
    void ExpectNothingFurther(const TStoredScaler& now, const TPlan& plan) {
        if (now.metresInSm != (plan.step == ZoomIn ? m_MaxScale : m_MinScale)) return;
        ++Limited;
        TLongPoint dragged;
        EXPECT_FALSE(Take(m_Flat, plan, dragged));
        EXPECT_TRUE(StoredFormOf(m_Flat) == now);
    }

    std::mt19937 m_Random;
    CScaler m_Flat;
    CProjectiveScaler m_Perspective;
    TSize m_Screen{};
    TLongRect m_Bounds{};
    double m_MinScale = 0.0, m_MaxScale = 0.0;

public:
    int Limited = 0;  ///< steps that ended at a limit
};

TEST(ScalerRandomWalk, KeepsTheViewConsistent) {
    const char* wanted = std::getenv("ZUL_SEQUENCES");
    const int sequences = wanted != nullptr ? std::atoi(wanted) : 150;
    int limited = 0;
    for (int seed = 1; seed <= sequences; ++seed) {
        CWalk walk(static_cast<std::uint32_t>(seed));
        for (int step = 0; step < kSteps; ++step) {
            walk.Step();
            ASSERT_FALSE(HasFailure()) << "seed " << seed << " step " << step;
        }
        limited += walk.Limited;
    }
    EXPECT_GT(limited, sequences) << "the limits are hardly met";
}

}  // namespace
}  // namespace zul
