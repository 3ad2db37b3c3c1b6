#include "zul/geometry/points.h"

#include <cstring>

#include "geometry_testing.h"
#include "zul/geometry/point.h"
#include "zul/geometry/rect.h"

namespace zul::testing {
namespace {

const std::vector<int> EmptyBox = {32767, 32767, -32768, -32768};

TEST(Points, BoxFollowsSinglePoints) {
    CPoints points(true);
    EXPECT_EQ(Box(points), EmptyBox);
    points.Append(5, -3);
    EXPECT_EQ(Box(points), (std::vector<int>{5, -3, 5, -3}));
    points.Append(-32768, 32767);
    points.Insert(0, 32767, -32768);
    EXPECT_EQ(Box(points), (std::vector<int>{-32768, -32768, 32767, 32767}));
    EXPECT_EQ(Read(points), (List{{32767, -32768}, {5, -3}, {-32768, 32767}}));
    points.Delete(0u);
    EXPECT_EQ(Box(points), (std::vector<int>{-32768, -3, 5, 32767}));
    points.Clear();
    EXPECT_EQ(Box(points), EmptyBox);
}

TEST(Points, MillionAppendsAllocateOnlyGrowth) {
    CPoints points(true);
    std::uint32_t reserved = 0;
    int growths = 0;
    for (int i = 0; i < 1000000; ++i) {
        points.Append(static_cast<TCoord>(i & 0x7FFF), 1);
        if (points.GetReserved() == reserved) continue;
        reserved = points.GetReserved();
        ++growths;
    }
    EXPECT_EQ(points.GetCount(), 1000000u);
    EXPECT_LE(growths, 40);
}

TEST(Points, AppendedBlocksKeepOrTurnTheirOrder) {
    const TPoint block[] = {{1, 1}, {3, 2}, {2, 5}};
    CPoints points = Points({{9, 9}});
    points.Append(block, 3, true);
    points.Append(block, 2, false);
    EXPECT_EQ(Read(points), (List{{9, 9}, {2, 5}, {3, 2}, {1, 1}, {1, 1}, {3, 2}}));
    EXPECT_EQ(Box(points), (std::vector<int>{1, 1, 9, 9}));
}

TEST(Points, LongPointsKeepTheirLow16Bits) {
    const TLongPoint block[] = {{70000, -70000}, {INT32_MIN, INT32_MAX}};
    CPoints points(true);
    points.Append(block, 2, false);
    EXPECT_EQ(Read(points), (List{{4464, -4464}, {0, -1}}));
    EXPECT_EQ(Box(points), EmptyBox);
    points.Append(block, 1, true);
    EXPECT_EQ(Box(points), (std::vector<int>{0, -4464, 4464, -1}));
}

TEST(Points, OwnPointsAreCopiedFirst) {
    CPoints points = Points({{1, 1}, {2, 2}, {3, 3}});
    for (int i = 0; i < 6; ++i)
        points.Append(points.GetPoints(), points.GetCount(), i % 2 != 0);
    ASSERT_EQ(points.GetCount(), 3u * 64);
    EXPECT_EQ(points.GetPointX(191), 1);  // the last doubling turned the list, which begins with 1
    points.SetPoints(points.GetPoints() + 1, 3);
    EXPECT_EQ(Read(points), (List{{2, 2}, {3, 3}, {1, 1}}));
}

TEST(Points, CountsThatCannotBeAreIgnored) {
    CPoints points = Points({{1, 2}, {3, 4}});
    const TPoint block[] = {{7, 7}};
    const TLongPoint longBlock[] = {{7, 7}};
    points.Resize(-1);
    points.Resize(INT32_MAX);
    points.Reserve(-1, true);
    points.Reserve(INT32_MAX, true);
    points.Append(block, 0xFFFFFFFFu, false);
    points.Append(longBlock, 0x3FFFFFFFu, true);
    points.Append(static_cast<const TPoint*>(nullptr), 5, false);
    points.Append(static_cast<const TLongPoint*>(nullptr), 5, true);
    points.SetPoints(static_cast<const TPoint*>(nullptr), 5);
    points.SetPoints(block, 0x40000000u);
    points.SetPoints(static_cast<CArray<CPoint>*>(nullptr));
    points.GetPoints(nullptr);
    EXPECT_EQ(Read(points), (List{{1, 2}, {3, 4}}));
    EXPECT_EQ(Box(points), (std::vector<int>{1, 2, 3, 4}));
}

TEST(Points, IndicesOutOfRangeReadZeroAndChangeNothing) {
    CPoints points = Points({{1, 2}, {3, 4}});
    for (const std::uint32_t index : {2u, 3u, 0x40000000u, 0x40000001u, 0xFFFFFFFFu}) {
        TPoint read = {9, 9};
        points.GetPoint(index, read);
        EXPECT_EQ(read, (TPoint{0, 0}));
        points.SetPoint(index, 7, 7);
        points.SetPointX(index, 7);
        points.SetPointY(index, 7);
        points.Delete(index);
        if (index > 2) points.Insert(index, 7, 7);
    }
    EXPECT_EQ(Read(points), (List{{1, 2}, {3, 4}}));
}

TEST(Points, DeleteTakesARangeInAnyOrder) {
    const List list = {{0, 0}, {1, 1}, {2, 2}};
    const struct {
        std::int32_t from, to;
        bool done;
        List left;
    } rows[] = {
        {2, 0, true, {}},
        {0, 1, true, {{2, 2}}},
        {1, -1, true, {{0, 0}, {2, 2}}},
        {0, 3, false, list},
        {3, 0, false, list},
        {-1, 1, false, list},
        {-1, -1, false, list},
        {INT32_MIN, INT32_MAX, false, list},
    };
    for (const auto& row : rows) {
        CPoints points = Points(list);
        EXPECT_EQ(points.Delete(row.from, row.to), row.done) << row.from << ".." << row.to;
        EXPECT_EQ(Read(points), row.left);
        EXPECT_EQ(Box(points), Box(Points(row.left)));
    }
}

TEST(Points, RangeMoveLetsTheCountThroughAsIndex) {
    const List list = {{0, 0}, {1, 1}, {32767, 2}};
    const struct {
        std::int32_t from, to;
        bool done;
        List moved;
    } rows[] = {
        {0, 1, true, {{10, -1}, {11, 0}, {32767, 2}}},
        {2, -1, true, {{0, 0}, {1, 1}, {-32759, 1}}},
        {3, 1, true, {{0, 0}, {11, 0}, {-32759, 1}}},
        {3, 3, true, list},
        {4, -1, false, list},
        {0, 4, false, list},
        {-1, 2, false, list},
    };
    for (const auto& row : rows) {
        Reports reports;
        CPoints points = Points(list);
        EXPECT_EQ(points.Move(10, -1, row.from, row.to), row.done) << row.from << ".." << row.to;
        EXPECT_EQ(Read(points), row.moved);
        EXPECT_EQ(Box(points), Box(Points(row.moved)));
        EXPECT_TRUE(reports.Get().empty());
    }
}

TEST(Points, WholeMoveReportsOnceForEachCornerOfTheBox) {
    Reports reports;
    CPoints points = Points({{0, 0}, {32767, 10}, {5, 3}});
    points.Move(1, -1);
    EXPECT_EQ(Read(points), (List{{1, -1}, {-32768, 9}, {6, 2}}));
    EXPECT_EQ(Box(points), (std::vector<int>{1, -1, -32768, 9}));  // moved, not found anew
    EXPECT_EQ(reports.Get(), std::vector<std::string>{"5 Exceeds TCoord limits: Point::Move"});
    CPoints empty(true);
    empty.Move(1, 1);
    empty.Scale(0, 0, 2, 2);
    EXPECT_EQ(Box(empty), EmptyBox);
    EXPECT_EQ(reports.Get().size(), 1u);
}

TEST(Points, OverflowThatThrowsLeavesTheListAlone) {
    CThrowingErrorHandler handler;
    const CErrorHandlerScope scope(&handler);
    CPoints points = Points({{0, 0}, {32767, 10}});
    EXPECT_THROW(points.Move(1, 0), CRunError);
    EXPECT_THROW(points.Scale(0, 0, 2.0, 1.0), CRunError);
    EXPECT_EQ(Read(points), (List{{0, 0}, {32767, 10}}));
    EXPECT_EQ(Box(points), (std::vector<int>{0, 0, 32767, 10}));
}

TEST(Points, ScaleStretchesTheBoxWithThePoints) {
    Reports reports;
    CPoints points = Points({{-3, 2}, {4, 6}, {1, 1}});
    points.Scale(0, 0, -0.5, 1.5);
    EXPECT_EQ(Read(points), (List{{2, 3}, {-2, 9}, {-1, 2}}));  // 1.5, -0.5 and 1.5 away from zero
    EXPECT_EQ(Box(points), (std::vector<int>{-2, 2, 2, 9}));
    points.Scale(0, 0, 1.0, 5000.0);
    EXPECT_EQ(points.GetPointY(0), 15000);
    EXPECT_EQ(points.GetPointY(1), WrapToCoord(45000));
    EXPECT_EQ(reports.Get(), std::vector<std::string>{"5 Exceeds TCoord limits: Point::Scale"});
}

TEST(Points, ReverseKeepsTheMiddle) {
    CPoints points = Points({{1, 0}, {2, 0}, {3, 0}, {4, 0}, {5, 0}});
    points.Reverse();
    EXPECT_EQ(Read(points), (List{{5, 0}, {4, 0}, {3, 0}, {2, 0}, {1, 0}}));
    CPoints empty(true);
    empty.Reverse();
    EXPECT_EQ(empty.GetCount(), 0u);
}

TEST(Points, NextPointGoesAroundToAnotherPlace) {
    const List list = {{0, 0}, {0, 0}, {4, 4}};
    const struct {
        List list;
        std::uint32_t from;
        bool forward;
        std::uint32_t next;
    } rows[] = {
        {list, 0, true, 2},
        {list, 0, false, 2},
        {list, 2, true, 0},
        {list, 2, false, 1},
        {{{7, 7}}, 0, true, 0},
        {{{1, 1}, {1, 1}}, 1, true, 1},
        {{{1, 1}, {1, 1}}, 1, false, 1},
    };
    for (const auto& row : rows) {
        TCoord x = 99, y = 99;
        EXPECT_EQ(Points(row.list).GetNextPoint(row.from, x, y, row.forward), row.next);
        EXPECT_EQ((TPoint{x, y}), row.list[row.next]);
    }
    TCoord x = 99, y = 98;
    EXPECT_EQ(CPoints(true).GetNextPoint(0, x, y, true), 0u);
    EXPECT_EQ(Points(list).GetNextPoint(3, x, y, false), 0u);
    EXPECT_EQ((TPoint{x, y}), (TPoint{99, 98}));
}

TEST(Points, FirstAndLastOfAnEmptyListAreRefused) {
    TCoord x = 1, y = 2;
    std::uint32_t index = 3;
    EXPECT_FALSE(CPoints(true).GetFirst(x, y));
    EXPECT_FALSE(CPoints(true).GetLast(x, y, &index));
    EXPECT_TRUE(Points({{7, 8}, {9, 10}}).GetLast(x, y, &index));
    EXPECT_EQ((TPoint{x, y}), (TPoint{9, 10}));
    EXPECT_EQ(index, 1u);
}

TEST(Points, SetPointFindsTheBoxAnewOnlyOnChange) {
    CPoints points = Points({{0, 0}, {10, 10}});
    points.Resize(3);
    points.SetPoint(1, 10, 10);
    EXPECT_EQ(Box(points), (std::vector<int>{0, 0, 10, 10}));
    points.SetPointX(1, -5);
    points.SetPointY(1, 4);
    EXPECT_EQ(Box(points), (std::vector<int>{-5, 0, 0, 4}));
    EXPECT_EQ(Read(points), (List{{0, 0}, {-5, 4}, {0, 0}}));
}

TEST(Points, FindTakesTheFirstVertexInReach) {
    const CPoints points = Points({{0, 0}, {3, 0}, {10, 10}, {32767, 0}});
    const struct {
        TCoord x, y;
        std::int32_t tolerance, index;
    } rows[] = {
        {3, 0, 0, 1}, {2, 0, 2, 0}, {2, 0, 1, 1}, {12, 8, 2, 2}, {6, 6, 1, -1}, {32767, 0, 1, -1},
    };
    for (const auto& row : rows) {
        std::int32_t index = -1;
        EXPECT_EQ(points.Find(row.x, row.y, index, row.tolerance), row.index >= 0) << row.x << "," << row.y;
        EXPECT_EQ(index, row.index);
    }
}

TEST(Points, ArraysOfPointObjectsGoBothWays) {
    const CPoints points = Points({{1, 2}, {-3, 4}});
    CArray<CPoint> array;
    points.GetPoints(&array);
    array.DoAppend(nullptr);
    CPoints read = Points({{99, 99}});
    read.SetPoints(&array);
    EXPECT_EQ(Read(read), (List{{1, 2}, {-3, 4}, {0, 0}}));
    EXPECT_EQ(Box(read), (std::vector<int>{-3, 0, 1, 4}));
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
    CMemoryStream stream;
    EXPECT_TRUE(written.ObjectToBuffer(&stream));
    ASSERT_EQ(stream.GetSize(), 4u + 12 + 8);
    EXPECT_EQ(written.GetPreferredSize(), stream.GetSize());
    for (std::size_t size = 0; size <= stream.GetSize(); ++size) {
        CMemoryStream cut(stream.GetBuffer(), size);
        CPoints read = Points({{50, 60}});
        EXPECT_TRUE(read.ObjectFromBuffer(&cut));
        EXPECT_EQ(Read(read), size < 16 ? List{} : Read(written)) << size;
        EXPECT_EQ(Box(read), size < 16                 ? EmptyBox
                             : size < stream.GetSize() ? (std::vector<int>{0, -2, 300, 4})
                                                       : Box(written))
            << size;
    }
}

TEST(Points, StoredSizeThatEndsWithinAPointIsCutToWholePoints) {
    const std::uint8_t bytes[] = {7, 0, 0, 0, 1, 0, 2, 0, 3, 0, 4, 1, 0, 2, 0, 1, 0, 2, 0};
    CMemoryStream stream(bytes, sizeof(bytes));
    CPoints points(true);
    points.ObjectFromBuffer(&stream);
    points.Append(5, 6);
    EXPECT_EQ(Read(points), (List{{1, 2}, {5, 6}}));
}

TEST(Points, ListKeptOutOfStorageLeavesItsBox) {
    CPoints points(false);
    points.Append(3, 4);
    CMemoryStream stream;
    points.ObjectToBuffer(&stream);
    EXPECT_EQ(stream.GetSize(), 4u + 8);
}

TEST(Points, NoStreamIsRefused) {
    CPoints points = Points({{1, 2}});
    CPoint point(1, 2);
    CRect rect(1, 2, 3, 4);
    EXPECT_FALSE(points.ObjectToBuffer(nullptr) || point.ObjectToBuffer(nullptr) ||
                 rect.ObjectToBuffer(nullptr));
    EXPECT_FALSE(points.ObjectFromBuffer(nullptr) || point.ObjectFromBuffer(nullptr) ||
                 rect.ObjectFromBuffer(nullptr));
    EXPECT_EQ(points.GetCount(), 1u);
}

}  // namespace
}  // namespace zul::testing
