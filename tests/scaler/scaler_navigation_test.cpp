#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "stored_scaler.h"
#include "zul/canvas/canvas.h"
#include "zul/kernel/client.h"
#include "zul/kernel/message.h"
#include "zul/kernel/numeric.h"
#include "zul/tools/brush.h"

namespace zul {
namespace {

using TOperation = void (*)(CScaler&);

constexpr TOperation kWholeMap = [](CScaler&) {};
constexpr TOperation kZoomed = [](CScaler& s) { s.Zoom(400, 100, 800, 300, true); };  // 2 units a pixel
constexpr TOperation kFarAway = [](CScaler& s) { s.SetMinScale(800.0); };  // the map fills half the screen

/// 200 x 100 pixels over a map of 2000 x 1000: 10 units a pixel, 400 to 8 metres per centimetre.
class ScalerNavigation : public testing::Test {
protected:
    void SetUp() override { scaler.InitScaler({0, 0, 2000, 1000}, {200, 100}, {200, 100}, 40.0, 1.0, 0.02); }

    void ExpectView(const TLongRect& box) {
        const TStoredScaler stored = StoredFormOf(scaler);
        EXPECT_EQ(stored.box, box);
        EXPECT_EQ(stored.left, box.MinX);
        EXPECT_EQ(stored.bottom, box.MaxY);
    }
    void ExpectOffset(std::int32_t x, std::int32_t y) {
        TLongPoint got{};
        scaler.GetScrollOffset(got.X, got.Y);
        EXPECT_EQ(got, (TLongPoint{x, y}));
    }
    void Shows(const char* name, TOperation start, const TLongRect& box, double metresInSm,
               TOperation operation) {
        SCOPED_TRACE(name);
        SetUp();
        start(scaler);
        operation(scaler);
        ExpectView(box);
        EXPECT_DOUBLE_EQ(scaler.GetMetresInSm(), metresInSm);
        EXPECT_EQ(scaler.GetRatio(), std::min(1000, static_cast<int>(metresInSm * 1000.0 / 400.0)));
    }
    /// Expects false, and that the operation leaves the stored state alone and records nothing.
    template <typename TCall>
    void ExpectNothingHappens(TCall operation) {
        const TStoredScaler before = StoredFormOf(scaler);
        const std::uint64_t modifications = CClient::GetModificationCount();
        EXPECT_FALSE(operation());
        EXPECT_EQ(CClient::GetModificationCount(), modifications);
        EXPECT_TRUE(StoredFormOf(scaler) == before);
    }

    CScaler scaler;
};

TEST_F(ScalerNavigation, ZoomFitsTheRectangleWithinTheScaleLimits) {
    Shows("corners in any order", kWholeMap, {400, 100, 800, 300}, 80.0,
          [](CScaler& s) { s.Zoom(800, 300, 400, 100, true); });
    Shows("narrow", kWholeMap, {350, 100, 750, 300}, 80.0,
          [](CScaler& s) { s.Zoom(500, 100, 600, 300, true); });
    Shows("too far in, 7 x 4 becomes 40 x 22.86", kWholeMap, {983, 489, 1023, 512}, 8.0,
          [](CScaler& s) { s.Zoom(1000, 500, 1007, 503, true); });
    Shows("out", kZoomed, {200, 0, 1000, 400}, 160.0, [](CScaler& s) { s.Zoom(500, 150, 700, 250, false); });
    Shows("too far out: as large as the map, so not centred", kZoomed, {-390, -195, 1610, 805}, 400.0,
          [](CScaler& s) { s.Zoom(600, 300, 620, 310, false); });
    Shows("out to a map smaller than the screen", kFarAway, {-1000, -500, 3000, 1500}, 800.0, [](CScaler& s) {
        s.Zoom(100, 100, 300, 200, true);
        s.Zoom(100, 100, 101, 101, false);
    });
}

TEST_F(ScalerNavigation, BoxesDepthsAndCentresAreShownWithinTheScaleLimits) {
    Shows("any centre", kZoomed, {-70200, -95, -69800, 105}, 80.0,
          [](CScaler& s) { s.CenterMap(-70000, 5); });
    Shows("other bounds show the whole map", kZoomed, {0, 0, 4000, 2000}, 800.0,
          [](CScaler& s) { s.SetMapBounds(0, 0, 4000, 2000); });
    Shows("too detailed", kWholeMap, {85, 92, 125, 112}, 8.0,
          [](CScaler& s) { s.SetVisibleBox(100, 100, 110, 105, true); });
    Shows("too coarse", kWholeMap, {1000, 500, 3000, 1500}, 400.0,
          [](CScaler& s) { s.SetVisibleBox(0, 0, 4000, 2000, true); });
    Shows("as it is", kWholeMap, {400, 100, 500, 900}, 400.0,
          [](CScaler& s) { s.SetVisibleBox(400, 100, 500, 900, false); });
    Shows("depth", kZoomed, {500, 100, 700, 200}, 40.0, [](CScaler& s) { s.SetReviewDepth(100, nullptr); });
    Shows("depth from a point", kZoomed, {400, 50, 800, 250}, 80.0, [](CScaler& s) {
        const TPoint viewer{600, 50};
        s.SetReviewDepth(200, &viewer);
    });
}

TEST_F(ScalerNavigation, NewScaleLimitPullsTheViewButKeepsTheBox) {
    Shows("less detail than that already", kZoomed, {400, 100, 800, 300}, 80.0,
          [](CScaler& s) { s.SetMinScale(60.0); });
    Shows("most detail", kZoomed, {400, 100, 800, 300}, 40.0, [](CScaler& s) { s.SetMaxScale(40.0); });
    Shows("the box of the old scale", kZoomed, {200, 0, 1000, 400}, 40.0, [](CScaler& s) {
        s.SetMinScale(160.0);
        s.SetMaxScale(40.0);
    });
}

TEST_F(ScalerNavigation, NothingHappensAtTheLimits) {
    ExpectNothingHappens([this] { return scaler.Zoom(0, 0, 1000, 500, false); });
    EXPECT_TRUE(scaler.Zoom(1000, 500, 1010, 505, true));
    EXPECT_EQ(scaler.GetMetresInSm(), scaler.GetMaxScale());
    ExpectNothingHappens([this] { return scaler.Zoom(1000, 500, 1010, 505, true); });
    scaler.SetMinScale(800.0);
    scaler.SetVisibleBox(1, -40, 4001, 1960, true);
    EXPECT_TRUE(scaler.CheckVisible());
    ExpectNothingHappens([this] { return scaler.CheckVisible(); });
    scaler.SetVisibleBox(-50, -40, 3950, 1960, true);
    ExpectNothingHappens([this] { return scaler.CheckVisible(); });
    scaler.SetVisibleBox(7, 0, 7, 100, true);
    const TStoredScaler stored = StoredFormOf(scaler);
    EXPECT_EQ(stored.box, (TLongRect{7, 0, 7, 100})) << "a box without width is stored";
    EXPECT_EQ(stored.left, -50) << "and nothing else happens";
}

TEST_F(ScalerNavigation, MetresInUnitCountTwiceWhenALimitIsSet) {
    scaler.InitScaler({0, 0, 2000, 1000}, {200, 100}, {200, 100}, 40.0, 2.0, 0.02);
    scaler.SetMinScale(1600.0);
    EXPECT_EQ(scaler.GetMetresInSm(), 3200.0);
}

TEST_F(ScalerNavigation, ScrollStopsAtTheMapEdge) {
    scaler.Zoom(400, 100, 800, 300, true);  // 2 units a pixel
    struct TRow {
        const char* name;
        std::int32_t dx, dy, doneX, doneY;
        bool moved;
        std::int32_t minX, minY;
    };
    const TRow rows[] = {
        {"free", 10, 20, 10, 20, true, 420, 140},
        {"over the right edge", 5000, 0, 590, 0, true, 1600, 140},
        {"against the right edge but up", 7, 10, 0, 10, true, 1600, 160},
        {"over the upper edge", 0, 5000, 0, 320, true, 1600, 800},
        {"left, and against the upper edge", -100, 1, -100, 0, true, 1400, 800},
        {"over the left edge, down over the lower", -5000, -5000, -700, -400, true, 0, 0},
        {"into the lower left corner", -3, -3, 0, 0, false, 0, 0},
        {"nowhere", 0, 0, 0, 0, false, 0, 0},
    };
    for (const TRow& row : rows) {
        SCOPED_TRACE(row.name);
        std::int32_t dx = row.dx, dy = row.dy;
        EXPECT_EQ(scaler.Scroll(nullptr, dx, dy), row.moved);
        EXPECT_EQ(dx, row.doneX);
        EXPECT_EQ(dy, row.doneY);
        ExpectView({row.minX, row.minY, row.minX + 400, row.minY + 200});
    }
    std::int32_t dx = -1, dy = -1;
    ExpectNothingHappens([&] { return scaler.Scroll(nullptr, dx, dy); });
}

TEST_F(ScalerNavigation, ScrollCarriesTheBrushPatternAlong) {
    CCanvas canvas;
    const auto expectOrigin = [&canvas](std::int32_t x, std::int32_t y) {
        TLongPoint got{};
        canvas.GetBrush().GetOrigin(got.X, got.Y);
        EXPECT_EQ(got, (TLongPoint{x, y}));
    };
    scaler.Zoom(400, 100, 800, 300, true);  // 2 units a pixel
    canvas.GetBrush().SetOrigin(3, 4);
    std::int32_t dx = 10, dy = 20;
    scaler.Scroll(&canvas, dx, dy);
    expectOrigin(-7, 24);
    ExpectOffset(-10, 20);
    dx = 200, dy = 5;  // a whole screen across: nothing on the screen stays
    scaler.Scroll(&canvas, dx, dy);
    EXPECT_EQ(dx, 200);
    expectOrigin(0, 0);
    ExpectOffset(0, 0);
    dx = -4, dy = 0;
    scaler.Scroll(&canvas, dx, dy);
    dx = 0, dy = 100;
    scaler.Scroll(&canvas, dx, dy);
    expectOrigin(0, 0);
    ExpectOffset(4, 0);
    for (const TOperation rebuild : {
             +[](CScaler& s) { s.CenterMap(500, 500); },
             +[](CScaler& s) { s.Zoom(400, 100, 800, 300, true); },
             +[](CScaler& s) { s.SetVisibleBox(400, 100, 800, 300, false); },
             +[](CScaler& s) { s.SetMinScale(500.0); },
             +[](CScaler& s) { s.SetBaseScale(); },
         }) {
        dx = 4, dy = 0;
        scaler.Scroll(&canvas, dx, dy);
        rebuild(scaler);
        ExpectOffset(0, 0);
    }
}

TEST_F(ScalerNavigation, ScrollInMapCoordsConvertsBothWays) {
    scaler.Zoom(400, 100, 800, 300, true);
    std::int32_t dx = 41, dy = -5000;  // 20.5 pixels are 21, which are 42 units
    EXPECT_TRUE(scaler.ScrollInMapCoords(nullptr, dx, dy));
    EXPECT_EQ(dx, 42);
    EXPECT_EQ(dy, -100);
    ExpectView({442, 0, 842, 200});
    EXPECT_TRUE(scaler.PlaceToCenter(nullptr, 210, 130));  // (10, 30), taken as pixels
    ExpectView({462, 60, 862, 260});
}

TEST_F(ScalerNavigation, ScrollBarsCountQuartersOfTheView) {
    struct TRow {
        TLongRect box;
        bool vertical;
        std::int32_t range, position;
    };
    const TRow rows[] = {
        {{0, 0, 1800, 1000}, false, 2, 1},         // a rest of less than one step counts as two
        {{150, 0, 1950, 1000}, false, 2, 2},       // beyond the middle of the rest
        {{400, 100, 800, 300}, false, 16, 4},      // 1600 in steps of 100
        {{450, 100, 850, 300}, false, 16, 5},      // a fraction counts as one
        {{400, 100, 800, 300}, true, 16, 14},      // from the top
        {{-1000, -500, 3000, 1500}, true, 1, -1},  // the view is the larger one
    };
    for (const TRow& row : rows) {
        scaler.SetVisibleBox(row.box.MinX, row.box.MinY, row.box.MaxX, row.box.MaxY, false);
        std::int32_t range = -1, position = -1;
        scaler.GetScrollParams(range, position, row.vertical);
        EXPECT_EQ(range, row.range) << row.box.MinX;
        EXPECT_EQ(position, row.position) << row.box.MinX;
    }
}

bool Send(CScaler& scaler, std::int32_t code, const void* data) {
    CMessage message(code, CMessage::FromPointer(data));
    return scaler.DoMessage(&message);
}

TEST_F(ScalerNavigation, MessagesReadAndSetScalesAndBoxes) {
    double value = 16.0;
    EXPECT_TRUE(Send(scaler, 10070, &value));
    value = 500.0;
    EXPECT_TRUE(Send(scaler, 10072, &value));
    for (const auto& [code, expected] : {std::pair{10069, 16.0}, {10071, 500.0}, {10073, 500.0}}) {
        EXPECT_TRUE(Send(scaler, code, &value));
        EXPECT_EQ(value, expected) << code;
    }

    TLongRect rect{100, 200, 300, 250};
    const TStoredScaler before = StoredFormOf(scaler);
    EXPECT_TRUE(Send(scaler, 10078, &rect));
    EXPECT_EQ(scaler.GetExtVisible().MinX, 75);
    EXPECT_EQ(StoredFormOf(scaler).left, before.left) << "the origin stays";
    TLongRect box{};
    std::int32_t* targets[4] = {&box.MinX, &box.MinY, nullptr, &box.MaxY};
    EXPECT_TRUE(Send(scaler, 10074, targets));
    EXPECT_EQ(box, (TLongRect{100, 200, 0, 250}));
    EXPECT_TRUE(Send(scaler, 10077, &rect));
    EXPECT_EQ(rect, (TLongRect{0, 0, 2000, 1000}));

    std::uint8_t origin[12];
    const std::int16_t corner[] = {-7, 1234};
    const double k = 2.5;
    std::memcpy(origin, corner, 4);
    std::memcpy(origin + 4, &k, 8);
    EXPECT_FALSE(Send(scaler, 10179, origin)) << "the base class knows nothing of it";
    TStoredScaler expected = StoredFormOf(scaler);
    expected.left = -7;
    expected.bottom = -1234;
    expected.k = 2.5;
    EXPECT_TRUE(StoredFormOf(scaler) == expected) << "nothing else changes";
    EXPECT_EQ(scaler.MapToScreen(2), 5);
}

TEST_F(ScalerNavigation, MessagesWithoutDataAreNotHandled) {
    for (std::int32_t code = 10060; code < 10090; ++code)
        EXPECT_FALSE(Send(scaler, code, nullptr)) << code;
    std::int64_t data[4] = {1, 2, 3, 4};
    for (const std::int32_t code : {0, 10068, 10075, 10076, 10079, 10080, 10178}) {
        ExpectNothingHappens([&] { return Send(scaler, code, data); });
    }
    EXPECT_FALSE(scaler.DoMessage(nullptr));
    CMessage named(CString(u"Draw"), CMessage::FromPointer(data));
    EXPECT_FALSE(scaler.DoMessage(&named));
}

}  // namespace
}  // namespace zul
