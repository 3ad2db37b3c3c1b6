#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <vector>

#include "stored_scaler.h"
#include "tests/canvas/canvas_testing.h"
#include "zul/geometry/rect.h"
#include "zul/kernel/client.h"

namespace zul {

namespace {

constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();

TLongRect Widen(const TRect& rect) {
    return {rect.MinX, rect.MinY, rect.MaxX, rect.MaxY};
}

TEST(ScalerSetUp, WholeMapFillsTheTighterDirection) {
    struct TRow {
        TLongRect bounds;
        TSize screen;
        TLongRect box;
        double k;
    };
    const TRow rows[] = {
        {{0, 0, 1000, 500}, {200, 100}, {0, 0, 1000, 500}, 0.2},
        {{0, 0, 1000, 1000}, {200, 100}, {-500, 0, 1500, 1000}, 0.1},
        {{0, 0, 1000, 1000}, {100, 200}, {0, -500, 1000, 1500}, 0.1},
        {{-200000, 0, 200000, 400000}, {100, 100}, {-200000, 0, 200000, 400000}, 0.00025},
    };
    for (const TRow& row : rows) {
        CScaler scaler;
        scaler.InitScaler(row.bounds, row.screen, {400, 200}, 40.0, 2.0, 0.02);
        const TStoredScaler stored = StoredFormOf(scaler);
        EXPECT_EQ(stored.box, row.box);
        EXPECT_EQ(stored.left, row.box.MinX);
        EXPECT_EQ(stored.bottom, row.box.MaxY);
        EXPECT_DOUBLE_EQ(stored.k, row.k);
        EXPECT_DOUBLE_EQ(stored.metresInSm, 40.0 / row.k * 2.0);
        EXPECT_EQ(stored.minScale, stored.metresInSm);
        EXPECT_NEAR(stored.maxScale, stored.minScale * 0.02, 1e-9)
            << "a fiftieth of the map in the same direction";
    }
    CScaler scaler;
    scaler.InitScaler({0, 0, 1000, 500}, {200, 100}, {400, 200}, 40.0, 2.0, 0.0);
    EXPECT_DOUBLE_EQ(scaler.GetMaxScale(), scaler.GetMinScale() * 0.005);
}

TEST(ScalerSetUp, NewScreenSizeKeepsScaleAndTopLeftCorner) {
    CScaler scaler;
    scaler.InitScaler({0, 0, 1000, 500}, {200, 100}, {400, 200}, 40.0, 2.0, 0.0);
    scaler.SetScreenSize(100, 200);
    const TStoredScaler stored = StoredFormOf(scaler);
    EXPECT_EQ(stored.box, (TLongRect{0, -500, 500, 500}));
    EXPECT_DOUBLE_EQ(stored.k, 0.2);

    // Turned, the view also moves by the turned half of the growth: 250 to the right becomes 250 up.
    scaler.SetRotationAngle(90.0);
    scaler.SetScreenSize(200, 200);
    EXPECT_EQ(StoredFormOf(scaler).box, (TLongRect{0, -250, 1000, 750}));
    EXPECT_EQ(StoredFormOf(scaler).bottom, 750);
}

TEST(ScalerSetUp, FrameForClippingIsTheTurnedBoxAndAnEighthMore) {
    CScaler scaler;
    scaler.InitScaler({0, 0, 1000, 1000}, {200, 100}, {400, 200}, 40.0, 2.0, 0.0);
    EXPECT_EQ(Widen(scaler.GetExtVisible()), (TLongRect{-750, -125, 1750, 1125}));
    scaler.SetRotationAngle(90.0);
    // The turned box is 1000 wide and 2000 high, but never narrower than it was.
    EXPECT_EQ(Widen(scaler.GetExtVisible()), (TLongRect{-750, -625, 1751, 1625}));
    TPoint pivot{};
    scaler.GetPivotPoint(pivot.X, pivot.Y);
    EXPECT_EQ(pivot, (TPoint{500, 500}));
    scaler.SetRotationAngle(0.0);
    scaler.SetVisibleBox(-40000, -30000, 40000, 30000, false);
    EXPECT_EQ(Widen(scaler.GetExtVisible()), (TLongRect{-32768, -32768, 32767, 32767}));
}

TEST(ScalerSetUp, QueryRectIsTheTurnedBoxWhateverTheMargin) {
    CScaler scaler;
    scaler.InitScaler({0, 0, 1000, 1000}, {200, 100}, {400, 200}, 40.0, 2.0, 0.0);
    TLongRect rect{};
    scaler.GetQueryRect(rect, 50);
    EXPECT_EQ(rect, (TLongRect{-500, 0, 1500, 1000}));
    scaler.SetRotationAngle(90.0);
    scaler.GetQueryRect(rect, 50);
    EXPECT_EQ(rect, (TLongRect{-500, -500, 1501, 1500}));
    scaler.SetRotationAngle(0.0);
    scaler.PrepareQueryRect(rect = {0, 0, 10, 10}, 10);  // 10 pixels are 100 units
    EXPECT_EQ(rect, (TLongRect{-100, -100, 110, 110}));
    scaler.PrepareQueryRect(rect = {kMin, kMin, kMax, kMax}, 10);
    EXPECT_EQ(rect, (TLongRect{kMin, kMin, kMax, kMax}));
    SetMapping(scaler, 8.0, 0, 0);
    for (const std::int32_t margin : {1, 8, 12, -1}) {  // 0, 1, 2 and 0 units
        scaler.PrepareQueryRect(rect = {0, 0, 10, 10}, margin);
        EXPECT_EQ(rect, (TLongRect{-2, -2, 12, 12})) << "margin " << margin;
    }
}

TEST(ScalerRatio, PerMilleOfTheMapAndOfTheLeastDetail) {
    CScaler scaler;
    scaler.InitScaler({0, 0, 1000, 500}, {200, 100}, {100, 50}, 40.0, 2.0, 0.0);  // 400 metres per centimetre
    EXPECT_EQ(scaler.GetRatio(), 500);
    scaler.SetMaximumUnwrappedSize(4000, 2000);
    EXPECT_EQ(scaler.GetRatio(), 1000) << "never more than the whole";
    std::int32_t width = 0, height = 0;
    scaler.GetMaximumUnwrappedSize(width, height);
    EXPECT_EQ(width * 10000 + height, 40002000);
    CRect bounds(0, 0, 0, 0);
    scaler.GetMapBounds(bounds);
    EXPECT_EQ(bounds.GetMaxX() * 1000 + bounds.GetMaxY(), 1000500);
    EXPECT_EQ(scaler.GetPercentRatio(100), 250);
    EXPECT_EQ(scaler.GetMetersInSm(250), 100);

    scaler.SetPrinterScaleFactor(300);
    EXPECT_EQ(scaler.GetRatio(), 300);
    scaler.SetPrinterScaleFactor(5000);  // on already, so any factor counts
    EXPECT_EQ(scaler.GetRatio(), 5000);
    scaler.ClearPrinterScaleFactor();
    EXPECT_EQ(scaler.GetRatio(), 1000);
    scaler.SetPrinterScaleFactor(1000);  // not below the ratio: stored, not switched on
    scaler.SetVisibleBox(0, 0, 500, 250, true);
    scaler.SetMaximumUnwrappedSize(100, 50);
    EXPECT_EQ(scaler.GetRatio(), 250);
}

class CRecordingScaler : public CScaler {
public:
    void DoModify() override { ++changes; }
    void DoUnmodify() override { --changes; }
    int changes = 0;
};

TEST(ScalerSetUp, OneCallIsOneChangeAndTheSameAgainNone) {
    CRecordingScaler scaler;
    int changes = 0;
    for (void (*change)(CScaler&) : {
             +[](CScaler& s) { s.SetScreenSize(300, 100); },
             +[](CScaler& s) { s.SetRotationAngle(30.0); },
             +[](CScaler& s) { s.SetPrinterScaleFactor(-3); },
             +[](CScaler& s) { s.ClearPrinterScaleFactor(); },
             +[](CScaler& s) { s.SetMinScale(7.0); },
             +[](CScaler& s) { s.SetMaxScale(3.0); },
         }) {
        ++changes;
        for (int again = 0; again < 2; ++again) {
            change(scaler);
            EXPECT_EQ(scaler.changes, changes);
        }
    }
}

TEST(ScalerTests, HitTestClampsAndSaysSo) {
    CScaler scaler;
    TCoord x = 11, y = 12;
    EXPECT_EQ(scaler.HitTest(5, 5, x, y), 0);
    EXPECT_EQ(x, 11) << "not set up: nothing written";
    scaler.InitScaler({0, 0, 1000, 1000}, {200, 100}, {400, 200}, 40.0, 2.0, 0.0);
    struct TRow {
        std::int32_t screenX, screenY, bits;
        TCoord x, y;
    };
    const TRow rows[] = {
        {100, 50, 0, 500, 500},
        {0, 0, 4, 0, 1000},
        {-1, 50, 1 | 4, 0, 500},
        {100, 100, 2, 500, 0},
        {200, 101, 1 | 2 | 4 | 8, 1000, 0},
    };
    for (const TRow& row : rows) {
        EXPECT_EQ(scaler.HitTest(row.screenX, row.screenY, x, y), row.bits)
            << row.screenX << ", " << row.screenY;
        EXPECT_EQ(x, row.x) << row.screenX << ", " << row.screenY;
        EXPECT_EQ(y, row.y) << row.screenX << ", " << row.screenY;
    }
}

TEST(ScalerTests, PointsOutsideTheMapAreReportedOneByOne) {
    const zultest::Reports errors;
    CScaler scaler;
    scaler.SetMapBounds(-10, 0, 100, 50);
    scaler.TestPoint(-10, 0);
    scaler.TestPoint(100, 50);
    EXPECT_TRUE(errors.List.empty()) << "the edges belong to the map";
    for (const TLongPoint outside : {TLongPoint{-11, 0}, {101, 0}, {0, -1}, {0, 51}}) {
        scaler.TestPoint(outside.X, outside.Y);
    }
    ASSERT_EQ(errors.List.size(), 4u);
    EXPECT_EQ(errors.List[0].Type, 5);
    EXPECT_STREQ(errors.List[0].Text.GetBufferAnsi(), "Coordinate is out of map bounds <CScaler::TestPoint>");
    const TLongPoint points[] = {{0, 0}, {kMax, 0}, {5, 5}, {0, kMin}};
    scaler.TestPoints(points, 4);
    scaler.TestPoints(points, -4);
    scaler.TestPoints(nullptr, 4);
    ASSERT_EQ(errors.List.size(), 6u);
    EXPECT_STREQ(errors.List[5].Text.GetBufferAnsi(),
                 "Coordinate is out of map bounds <CScaler::TestPoints>");
}

TEST(ScalerPersistence, StoredFormHasFixedPlaces) {
    const TStoredScaler stored{{1, 2, 3, 4}, {5, 6, 7, 8}, 9.5, 10.5, 0.5, 12.5, 13.5, 14.5, 15.5, 16, -17};
    CScaler scaler;
    Restore(scaler, stored);
    const double read[] = {scaler.GetMetresInSm(),   scaler.GetScreenToVisible(), scaler.GetRatio() / 1000.0,
                           scaler.GetMetresInUnit(), scaler.GetMinScale(),        scaler.GetMaxScale()};
    const double expected[] = {9.5, 10.5, 0.5, 13.5, 14.5, 15.5};
    EXPECT_TRUE(std::equal(std::begin(read), std::end(read), expected));
    TLongPoint origin{};
    scaler.ScreenToMapL(origin.X, origin.Y);
    EXPECT_EQ(origin, (TLongPoint{16, -17}));
    EXPECT_TRUE(StoredFormOf(scaler) == stored);
    EXPECT_EQ(scaler.GetPreferredSize(), 88u) << "not what is written";
}

TEST(ScalerPersistence, ShortStreamsFillWholeFieldsInOrder) {
    CScaler made;
    made.InitScaler({0, 0, 1000, 500}, {200, 100}, {400, 200}, 40.0, 2.0, 0.02);
    const TStoredScaler before = StoredFormOf(made);
    TStoredScaler stored;
    std::memset(static_cast<void*>(&stored), 0x41, sizeof stored);
    const auto* newBytes = reinterpret_cast<const std::uint8_t*>(&stored);
    for (std::size_t size = 0; size <= sizeof stored; ++size) {
        CScaler scaler;
        scaler.ApplyScaler(&made);
        CMemoryStream stream(newBytes, size);
        EXPECT_TRUE(scaler.ObjectFromBuffer(&stream));
        const std::size_t width = size < 32 || size >= 88 ? 4 : 8;
        const std::size_t filled = size - size % width;
        TStoredScaler expected = before;
        std::memcpy(static_cast<void*>(&expected), newBytes, filled);
        EXPECT_TRUE(StoredFormOf(scaler) == expected) << "stream of " << size;
    }
    CScaler scaler;
    EXPECT_FALSE(scaler.ObjectFromBuffer(nullptr));
    EXPECT_FALSE(scaler.ObjectToBuffer(nullptr));
}

TEST(ScalerSetUp, AppliedScalerShowsTheSameButKeepsItsTurn) {
    CScaler source, target;
    source.InitScaler({0, 0, 1000, 500}, {200, 100}, {100, 50}, 40.0, 2.0, 0.02);
    source.SetRotationAngle(30.0);
    source.SetPrinterScaleFactor(7);
    target.ApplyScaler(&source);
    target.ApplyScaler(nullptr);
    target.ApplyScaler(&target);
    EXPECT_TRUE(StoredFormOf(target) == StoredFormOf(source));
    EXPECT_EQ(Widen(target.GetExtVisible()), Widen(source.GetExtVisible()));
    std::int32_t width = 0, height = 0;
    target.GetScreenSize(width, height);
    EXPECT_EQ(width * 1000 + height, 200100);
    EXPECT_EQ(target.GetRotationAngle(), 0.0);
    EXPECT_EQ(target.GetRatio(), 500);
    EXPECT_EQ(source.GetRatio(), 7);
}

}  // namespace
}  // namespace zul
