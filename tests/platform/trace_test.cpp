#include "platform/software/trace.h"

#include <gtest/gtest.h>

namespace {

using device::Recorder;

TEST(Trace, RecordsNamesAndArguments) {
    const HDC dc = CreateCompatibleDC(nullptr);
    const auto value = static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(dc));
    Recorder recorder;
    const RECT rect{1, -2, 3, 4};
    FillRect(dc, &rect, nullptr);
    GetSysColor(COLOR_WINDOW | SYS_COLOR_INDEX_FLAG);
    CreateCompatibleBitmap(dc, -7, 9);
    ASSERT_EQ(recorder.Calls().size(), 3u);
    EXPECT_EQ(recorder.Calls()[0].name, "FillRect");
    EXPECT_EQ(recorder.Calls()[0].arguments, (std::vector<std::int64_t>{value, 1, -2, 3, 4, 0}));
    EXPECT_EQ(recorder.Last("GetSysColor")->arguments, (std::vector<std::int64_t>{0x40000005}));
    EXPECT_EQ(recorder.Last("CreateCompatibleBitmap")->arguments, (std::vector<std::int64_t>{value, -7, 9}));
    EXPECT_EQ(recorder.Last("CreatePen"), nullptr);
    DeleteDC(dc);
}

TEST(Trace, PointListsAreCopied) {
    Recorder recorder;
    POINT points[] = {{1, 2}, {-3, 4}};
    Polyline(nullptr, points, 2);
    Polygon(nullptr, nullptr, 5);
    points[0].x = 99;
    EXPECT_EQ(recorder.Last("Polyline")->arguments, (std::vector<std::int64_t>{0, 2, 1, 2, -3, 4}));
    EXPECT_EQ(recorder.Last("Polygon")->arguments, (std::vector<std::int64_t>{0, 5}));
}

}  // namespace
