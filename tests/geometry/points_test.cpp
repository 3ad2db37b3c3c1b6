#include "zul/geometry/points.h"

#include "geometry_testing.h"
#include "zul/geometry/point.h"

namespace zul::testing {
namespace {

using Numbers = std::vector<int>;
const Numbers EmptyBox = {32767, 32767, -32768, -32768};

TEST(Points, AppendedBlocksTurnOrWrapAsAsked) {
    const TPoint block[] = {{1, 1}, {3, 2}, {2, 5}};
    CPoints points = Points({{9, 9}});
    points.Append(block, 3, true);
    points.Append(block, 2, false);
    points.Reverse();
    EXPECT_EQ(Read(points), (List{{3, 2}, {1, 1}, {1, 1}, {3, 2}, {2, 5}, {9, 9}}));
    EXPECT_EQ(Box(points), (Numbers{1, 1, 9, 9}));
    const TLongPoint longBlock[] = {{70000, -70000}, {INT32_MIN, INT32_MAX}};
    CPoints wrapped(true);
    wrapped.Append(longBlock, 2, false);
    EXPECT_EQ(Read(wrapped), (List{{4464, -4464}, {0, -1}}));
    EXPECT_EQ(Box(wrapped), EmptyBox);
    wrapped.Append(longBlock, 1, true);
    EXPECT_EQ(Box(wrapped), (Numbers{0, -4464, 4464, -1}));
}

TEST(Points, CountsAndIndicesThatCannotBeChangeNothing) {
    CPoints points = Points({{1, 2}, {3, 4}});
    const TPoint block[] = {{7, 7}};
    const TLongPoint longBlock[] = {{7, 7}};
    points.Resize(-1);
    points.Resize(INT32_MAX);
    points.Reserve(INT32_MAX, true);
    points.Append(block, 0xFFFFFFFFu, false);
    points.Append(longBlock, 0x3FFFFFFFu, true);
    points.Append(static_cast<const TPoint*>(nullptr), 5, false);
    points.Append(static_cast<const TLongPoint*>(nullptr), 5, true);
    points.SetPoints(static_cast<const TPoint*>(nullptr), 5);
    points.SetPoints(block, 0x40000000u);
    points.SetPoints(static_cast<CArray<CPoint>*>(nullptr));
    points.GetPoints(nullptr);
    for (const std::uint32_t index : {2u, 0x40000000u, 0x40000001u, 0xFFFFFFFFu}) {
        TPoint read = {9, 9};
        points.GetPoint(index, read);
        EXPECT_EQ(read, (TPoint{0, 0}));
        points.SetPoint(index, 7, 7);
        points.Delete(index);
        points.Insert(index + (index == 2 ? 1 : 0), 7, 7);
    }
    EXPECT_EQ(Read(points), (List{{1, 2}, {3, 4}}));
    EXPECT_EQ(Box(points), (Numbers{1, 2, 3, 4}));
}

TEST(Points, WholeMoveAndScaleCarryTheBoxAndReportItsCornersOnly) {
    Reports reports;
    CPoints points = Points({{0, 0}, {32767, 10}, {5, 3}});
    points.Move(1, -1);
    EXPECT_EQ(Read(points), (List{{1, -1}, {-32768, 9}, {6, 2}}));
    EXPECT_EQ(Box(points), (Numbers{1, -1, -32768, 9}));  // moved, not found anew
    CPoints scaled = Points({{-3, 2}, {4, 6}, {1, 1}});
    scaled.Scale(0, 0, -0.5, 1.5);
    EXPECT_EQ(Read(scaled), (List{{2, 3}, {-2, 9}, {-1, 2}}));  // 1.5, -0.5 and 1.5 away from zero
    EXPECT_EQ(Box(scaled), (Numbers{-2, 2, 2, 9}));
    scaled.Scale(0, 0, 1.0, 5000.0);
    EXPECT_EQ(scaled.GetPointY(1), WrapToCoord(45000));
    CPoints empty(true);
    empty.Move(1, 1);
    empty.Scale(0, 0, 2, 2);
    EXPECT_EQ(Box(empty), EmptyBox);
    EXPECT_EQ(reports.Get(), (std::vector<std::string>{"5 Exceeds TCoord limits: Point::Move",
                                                       "5 Exceeds TCoord limits: Point::Scale"}));
}

TEST(Points, OverflowThatThrowsLeavesTheListAlone) {
    CThrowingErrorHandler handler;
    const CErrorHandlerScope scope(&handler);
    CPoints points = Points({{0, 0}, {32767, 10}});
    EXPECT_THROW(points.Move(1, 0), CRunError);
    EXPECT_THROW(points.Scale(0, 0, 2.0, 1.0), CRunError);
    EXPECT_EQ(Read(points), (List{{0, 0}, {32767, 10}}));
    EXPECT_EQ(Box(points), (Numbers{0, 0, 32767, 10}));
}

TEST(Points, NextPointGoesAroundToAnotherPlace) {
    const auto next = [](const List& list, std::uint32_t from, bool forward) {
        TPoint p = {99, 98};
        const std::uint32_t index = Points(list).GetNextPoint(from, p.X, p.Y, forward);
        EXPECT_EQ(p, from < list.size() ? list[index] : (TPoint{99, 98}));
        return index;
    };
    const List list = {{0, 0}, {0, 0}, {4, 4}};
    EXPECT_EQ(next(list, 0, true), 2u);
    EXPECT_EQ(next(list, 0, false), 2u);
    EXPECT_EQ(next(list, 2, true), 0u);
    EXPECT_EQ(next({{1, 1}, {1, 1}}, 1, true), 1u);
    EXPECT_EQ(next(list, 3, false), 0u);
}

TEST(Points, ArraysOfPointObjectsGoBothWays) {
    CArray<CPoint> array;
    Points({{1, 2}, {-3, 4}}).GetPoints(&array);
    array.DoAppend(nullptr);
    CPoints read = Points({{99, 99}});
    read.SetPoints(&array);
    EXPECT_EQ(Read(read), (List{{1, 2}, {-3, 4}, {0, 0}}));
    EXPECT_EQ(Box(read), (Numbers{-3, 0, 1, 4}));
}

TEST(Points, OwnerRecordsAnAppendInsideTheBoxButNotOneThatGrowsIt) {
    CPoint owner(0, 0);
    CPoints points = Points({{0, 0}, {10, 10}});
    points.SetOwner(&owner);
    EXPECT_EQ(Recorded([&] { points.Append(5, 5); }), 1u);
    EXPECT_EQ(Recorded([&] { points.Append(11, 5); }), 0u);
    EXPECT_EQ(Recorded([&] { points.Move(1, 1); }), 1u);
    EXPECT_EQ(Recorded([&] { points.SetPoint(0, 1, 1); }), 0u);  // it stands there already
    EXPECT_EQ(Recorded([&] { points.Delete(0, 1); }), 1u);
    EXPECT_EQ(Recorded([&] { points.Clear(); }), 1u);
}

TEST(Points, StoredFormReadsBackAndSurvivesBeingCutShort) {
    CPoints written = Points({{1, -2}, {300, 4}});
    written.Resize(3);  // (0, 0) lies outside the stored box, which is trusted
    const std::vector<std::uint8_t> bytes = Stored(written);
    ASSERT_EQ(bytes.size(), 4u + 12 + 8);
    EXPECT_EQ(written.GetPreferredSize(), bytes.size());
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        CMemoryStream cut(bytes.data(), size);
        CPoints read = Points({{50, 60}});
        EXPECT_TRUE(read.ObjectFromBuffer(&cut));
        EXPECT_EQ(Read(read), size < 16 ? List{} : Read(written)) << size;
        const Numbers found = size < 16 ? EmptyBox : Numbers{0, -2, 300, 4};
        EXPECT_EQ(Box(read), size < bytes.size() ? found : Box(written)) << size;
    }
    EXPECT_FALSE(written.ObjectToBuffer(nullptr) || written.ObjectFromBuffer(nullptr));
    CPoints hidden(false);
    hidden.Append(3, 4);
    EXPECT_EQ(Stored(hidden).size(), 4u + 8) << "kept out of storage, a list leaves its box";
}

TEST(Points, StoredSizeThatEndsWithinAPointIsCutToWholePoints) {
    const std::uint8_t bytes[] = {7, 0, 0, 0, 1, 0, 2, 0, 3, 0, 4, 1, 0, 2, 0, 1, 0, 2, 0};
    CMemoryStream stream(bytes, sizeof(bytes));
    CPoints points(true);
    points.ObjectFromBuffer(&stream);
    points.Append(5, 6);
    EXPECT_EQ(Read(points), (List{{1, 2}, {5, 6}}));
}

}  // namespace
}  // namespace zul::testing
