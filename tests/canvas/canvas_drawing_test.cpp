// What each drawing operation puts down, with and without a scaler.
#include <gtest/gtest.h>

#include <functional>

#include "tests/canvas/canvas_testing.h"
#include "zul/geometry/points.h"
#include "zul/geometry/rect.h"

namespace {

using namespace zultest;
using zul::CCanvas;
using zul::TLongPoint;
using zul::TPoint;

zul::CPoints List(std::initializer_list<TPoint> points) {
    zul::CPoints list(true);
    for (const TPoint& point : points)
        list.Append(point.X, point.Y);
    return list;
}

struct DrawingRow {
    const char* name;
    void (*draw)(CCanvas&);
    Picture picture;
};

// A black pen of one pixel and a red brush, device coordinates.
const DrawingRow Drawings[] = {
    {"LineLeavesItsEndOut",
     [](CCanvas& canvas) { canvas.Line(0, 0, 3, 0); },
     {"###...", "......", "......", "......"}},
    {"LinesGoOnWhereTheLastOneEnded",
     [](CCanvas& canvas) {
         canvas.MoveTo(0, 0);
         canvas.LineTo(3, 0);
         canvas.LineTo(3, 3);
     },
     {"####..", "...#..", "...#..", "......"}},
    {"MoveDrawsNothingEvenWithAWidePen",
     [](CCanvas& canvas) {
         canvas.GetPen().SetWidth(5);
         canvas.GetPen().Validate(&canvas);
         canvas.MoveTo(2, 2);
     },
     {"......", "......", "......", "......"}},
    {"PolylineOfLongPoints",
     [](CCanvas& canvas) {
         const TLongPoint points[] = {{0, 3}, {0, 0}, {4, 0}};
         canvas.Polyline(points, 3);
     },
     {"####..", "#.....", "#.....", "#....."}},
    {"PolylineThenLineTo",
     [](CCanvas& canvas) {
         const TLongPoint points[] = {{0, 0}, {2, 2}};
         canvas.Polyline(points, 2);
         canvas.LineTo(5, 2);
     },
     {"#.....", ".#....", "..###.", "......"}},
    {"RectangleIncludesBothCorners",
     [](CCanvas& canvas) { canvas.Rectangle(1, 0, 4, 3); },
     {".####.", ".#rr#.", ".#rr#.", ".####."}},
    {"RectangleOfOnePoint",
     [](CCanvas& canvas) { canvas.Rectangle(2, 2, 2, 2); },
     {"......", "......", "..#...", "......"}},
    {"PolygonFillsAndCloses",
     [](CCanvas& canvas) {
         const TLongPoint points[] = {{0, 0}, {4, 0}, {4, 3}, {0, 3}};
         canvas.Polygon(points, 4);
     },
     {"#####.", "#rrr#.", "#rrr#.", "#####."}},
    {"PolygonOfTwoLongPointsHasBothEnds",
     [](CCanvas& canvas) {
         const TLongPoint points[] = {{1, 1}, {4, 1}};
         canvas.Polygon(points, 2);
     },
     {"......", ".####.", "......", "......"}},
    {"PolygonOfTwoMapPointsIsALine",
     [](CCanvas& canvas) {
         const TPoint points[] = {{1, 1}, {4, 1}};
         canvas.Polygon(points, 2);
     },
     {"......", ".###..", "......", "......"}},
    {"PolyPolygonDrawsTheFirstRingOnly",
     [](CCanvas& canvas) {
         const TLongPoint points[] = {{0, 0}, {2, 0}, {2, 2}, {0, 2}, {5, 3}, {4, 3}, {4, 2}};
         const int counts[] = {4, 3};
         canvas.PolyPolygon(points, counts, 2);
     },
     {"###...", "#r#...", "###...", "......"}},
    {"FillRectExcludesRightAndBottom",
     [](CCanvas& canvas) { canvas.FillRect(1, 1, 3, 3, nullptr); },
     {"......", ".rr...", ".rr...", "......"}},
    {"FillRectWithAnotherBrush",
     [](CCanvas& canvas) {
         zul::CBrush brush;
         brush.SetColor(Blue);
         canvas.FillRect(zul::CRect(1, 1, 3, 3), &brush);
     },
     {"......", ".bb...", ".bb...", "......"}},
    {"PatBltOrdersItsCorners",
     [](CCanvas& canvas) { canvas.PatBlt(4, 3, 2, 1, zul::CBitmap::RopBlackness); },
     {"......", "..##..", "..##..", "......"}},
    {"PatBltPaintsTheDevicesBrush",
     [](CCanvas& canvas) {
         canvas.GetBrush().Validate(&canvas);
         canvas.GetBrush().SetColor(Blue);  // not validated by the operation
         canvas.PatBlt(0, 0, 2, 1, zul::CBitmap::RopPatternInvert);
         canvas.PatBlt(0, 0, 2, 1, zul::CBitmap::RopDestinationInvert);
     },
     {"rr....", "......", "......", "......"}},
    {"PatBltOfASourceOperationDrawsNothing",
     [](CCanvas& canvas) { canvas.PatBlt(0, 0, 5, 4, zul::CBitmap::RopSourceCopy); },
     {"......", "......", "......", "......"}},
    {"PixelTakesTheBackgroundsColour",
     [](CCanvas& canvas) {
         canvas.GetBackground().SetColor(Green);
         canvas.Pixel(5, 3);
         canvas.SetPixel(0, 0, Blue);
     },
     {"b.....", "......", "......", ".....g"}},
    {"NothingIsFilledInLinesOnlyMode",
     [](CCanvas& canvas) {
         canvas.SetLinesOnlyMode(true);
         canvas.GetBrush().SetColor(Green);
         canvas.Rectangle(0, 0, 3, 2);
     },
     {"####..", "#..#..", "####..", "......"}},
};

class Drawing : public testing::TestWithParam<DrawingRow> {};

TEST_P(Drawing, PutsDownItsPixels) {
    NoLeaks leaks;
    Surface surface(6, 4);
    surface.Canvas.GetBrush().SetColor(Red);
    surface.Canvas.GetPen().Validate(&surface.Canvas);
    surface.Canvas.GetBackground().Validate(&surface.Canvas);
    GetParam().draw(surface.Canvas);
    EXPECT_EQ(surface.Look(), GetParam().picture);
}

INSTANTIATE_TEST_SUITE_P(, Drawing, testing::ValuesIn(Drawings),
                         [](const testing::TestParamInfo<DrawingRow>& row) { return row.param.name; });

/// What reached the device under a call's name, without its device.
using Numbers = std::vector<std::int64_t>;

Numbers Last(const device::Recorder& recorder, const char* name) {
    const device::RecordedCall* call = recorder.Last(name);
    return call ? Numbers(call->arguments.begin() + 1, call->arguments.end()) : Numbers{};
}

TEST(DrawingCoordinates, ReachTheDeviceAsStated) {
    constexpr std::int32_t Most = INT32_MAX;
    struct Row {
        const char* name;
        const char* call;
        std::function<void(CCanvas&)> draw;
        Numbers numbers;
    };
    const Row rows[] = {
        {"rectangle", "Rectangle", [](CCanvas& c) { c.Rectangle(0, 0, 10, 10); }, {0, 0, 11, 11}},
        {"rectangle at the limit",
         "Rectangle",
         [](CCanvas& c) { c.Rectangle(-Most, -Most, Most, Most); },
         {-Most, -Most, Most, Most}},
        {"ellipse", "Ellipse", [](CCanvas& c) { c.Ellipse(0, 0, 10, 10); }, {0, 0, 10, 10}},
        {"circle", "Ellipse", [](CCanvas& c) { c.Circle(100, 50, 30); }, {70, 20, 130, 80}},
        {"circle wraps to the left",
         "Ellipse",
         [](CCanvas& c) { c.Circle(-32760, 0, 10); },
         {32766, -10, -32750, 10}},
        {"circle at the limit", "Ellipse", [](CCanvas& c) { c.Circle(Most, Most, Most); }, {0, 0, -2, -2}},
        {"patblt",
         "PatBlt",
         [](CCanvas& c) { c.PatBlt(9, 8, 2, 1, zul::CBitmap::RopWhiteness); },
         {2, 1, 7, 7, WHITENESS}},
        {"patblt at the limit",
         "PatBlt",
         [](CCanvas& c) { c.PatBlt(-Most, 0, Most, 1, zul::CBitmap::RopBlackness); },
         {-Most, 0, Most, 1, BLACKNESS}},
        {"position in 16 bits",
         "Polyline",
         [](CCanvas& c) {
             c.MoveTo(70000, 5);
             c.LineTo(1, 2);
         },
         {2, 4464, 5, 1, 2}},
        {"position after long points is whole",
         "Polyline",
         [](CCanvas& c) {
             const TLongPoint points[] = {{0, 0}, {70000, -70000}};
             c.Polyline(points, 2);
             c.LineTo(1, 2);
         },
         {2, 70000, -70000, 1, 2}},
        {"edge",
         "DrawEdge",
         [](CCanvas& c) { c.DrawEdge(1, 2, 3, 4, CCanvas::EdgeBump, CCanvas::SideTopRight); },
         {1, 2, 3, 4, 9, 6}},
    };
    for (const Row& row : rows) {
        CCanvas canvas;
        canvas.CreateMemoryCanvas();
        device::Recorder recorder;
        row.draw(canvas);
        EXPECT_EQ(Last(recorder, row.call), row.numbers) << row.name;
    }
}

TEST(DrawingCoordinates, GoThroughTheScaler) {
    zul::CScaler scaler;
    SetUpSquare(scaler, 10, 100);  // (0, 0)-(1000, 1000) on 10 x 10 pixels, y upwards
    Surface surface(10, 10);
    CCanvas& canvas = surface.Canvas;
    canvas.SetScaler(&scaler);
    canvas.GetBrush().SetColor(Red);
    canvas.Rectangle(100, 900, 300, 700);
    EXPECT_EQ(surface.Look()[1], ".###......");
    EXPECT_EQ(surface.Look()[2], ".#r#......");
    EXPECT_EQ(surface.Look()[3], ".###......");
    surface.Wipe();
    canvas.FillRect(500, 500, 300, 900, nullptr);
    EXPECT_EQ(surface.Look()[1], "...rr.....");
    EXPECT_EQ(surface.Look()[4], "...rr.....");
    EXPECT_EQ(surface.Look()[5], "..........");
    EXPECT_EQ(canvas.PrepareLength(250), 3);
    canvas.SetPretranslation(false);
    EXPECT_EQ(canvas.PrepareLength(250), 250);
    surface.Wipe();
    canvas.FillRect(zul::CRect(0, 0, 2, 1), nullptr);
    EXPECT_EQ(surface.Look()[0], "rr........");
    surface.Wipe();
    canvas.SetPretranslation(true);
    canvas.FillRect(zul::CRect(0, 0, 200, 100), nullptr);
    EXPECT_EQ(surface.Look()[9], "rr........");
}

TEST(DrawingCoordinates, RotatedViewTurnsPointsButNotFillRect) {
    zul::CScaler scaler;
    SetUpSquare(scaler, 100, 1);
    scaler.SetRotationAngle(90.0);
    CCanvas canvas;
    canvas.CreateMemoryCanvas();
    canvas.SetScaler(&scaler);
    std::int32_t x = 70, y = 50;
    canvas.PreparePoint(x, y);
    std::int32_t expectedX, expectedY;
    scaler.MapToScreenEx(70, 50, expectedX, expectedY);
    EXPECT_EQ(x, expectedX);
    EXPECT_EQ(y, expectedY);
    std::int32_t wrappedX = 70 + 65536, wrappedY = 50;
    canvas.PreparePoint(wrappedX, wrappedY);
    EXPECT_EQ(wrappedX, x) << "the low 16 bits are turned";

    device::Recorder recorder;
    canvas.FillRect(10, 20, 30, 40, nullptr);
    EXPECT_EQ(Last(recorder, "FillRect")[0], 10);
    EXPECT_EQ(Last(recorder, "FillRect")[1], 60);
}

TEST(DrawingLists, PointsOnOnePixelAreDrawnOnce) {
    zul::CScaler scaler;
    SetUpSquare(scaler, 10, 100);
    Surface surface(10, 10);
    surface.Canvas.SetScaler(&scaler);
    zul::CPoints list = List({{0, 1000}, {1, 1000}, {2, 999}, {500, 1000}, {501, 1000}});
    device::Recorder recorder;
    surface.Canvas.Polyline(&list);
    EXPECT_EQ(Last(recorder, "Polyline"), (Numbers{2, 0, 0, 5, 0}));

    recorder.Clear();
    zul::CPoints dot = List({{0, 0}, {1, 1}, {2, 2}});
    surface.Canvas.Polyline(&dot);
    EXPECT_EQ(recorder.Count("Polyline"), 0) << "a line on a single pixel is none";
    surface.Canvas.Polygon(&dot);
    EXPECT_EQ(recorder.Count("Polygon"), 0);
}

TEST(DrawingLists, BadListsDrawNothing) {
    NoLeaks leaks;
    Surface surface(4, 4);
    CCanvas& canvas = surface.Canvas;
    zul::CPoints empty(true);
    zul::CPoints one = List({{1, 1}});
    const TPoint point{1, 1};
    const TLongPoint longPoint{1, 1};
    const int minus = -4;
    device::Recorder recorder;
    for (zul::CPoints* list : {static_cast<zul::CPoints*>(nullptr), &empty, &one}) {
        canvas.Polyline(list);
        canvas.Polygon(list);
        canvas.PolyPolygon(&list, 1);
        canvas.PolyPolygon(&list, 0);
    }
    for (const std::int32_t count : {0, 1, -1, INT32_MIN, INT32_MAX, (1 << 26) + 1}) {
        if (count < 2) {
            canvas.Polyline(&point, count);
            canvas.Polygon(&point, count);
            canvas.Polygon(&longPoint, count);
        }
        if (count < 1) canvas.Polyline(&longPoint, count);
        canvas.Polyline(static_cast<const TPoint*>(nullptr), count);
        canvas.Polygon(static_cast<const TPoint*>(nullptr), count);
        canvas.Polyline(static_cast<const TLongPoint*>(nullptr), count);
        canvas.Polygon(static_cast<const TLongPoint*>(nullptr), count);
        if (count > (1 << 26)) canvas.Polyline(&point, count);  // too many to be looked at
    }
    canvas.PolyPolygon(static_cast<zul::CPoints**>(nullptr), 3);
    canvas.PolyPolygon(&longPoint, nullptr, 1);
    canvas.PolyPolygon(&longPoint, &minus, 1);
    canvas.PolyPolygon(nullptr, &minus, 1);
    EXPECT_EQ(recorder.Count("Polyline"), 0);
    EXPECT_EQ(recorder.Count("Polygon"), 0);
    EXPECT_EQ(surface.Look(), surface.Blank());
}

TEST(DrawingOrder, ToolsAreValidatedBeforeTheFigure) {
    struct Row {
        const char* name;
        std::function<void(CCanvas&)> draw;
        const char* tools;  ///< p pen, b brush, g background
    };
    const TPoint map[] = {{0, 0}, {5, 0}, {5, 5}};
    const TLongPoint screen[] = {{0, 0}, {5, 0}, {5, 5}};
    zul::CBrush brush;
    const Row rows[] = {
        {"move", [](CCanvas& c) { c.MoveTo(1, 1); }, ""},
        {"line", [](CCanvas& c) { c.LineTo(1, 1); }, "pg"},
        {"polyline", [&](CCanvas& c) { c.Polyline(map, 3); }, "pg"},
        {"polyline of long points", [&](CCanvas& c) { c.Polyline(screen, 3); }, ""},
        {"polygon", [&](CCanvas& c) { c.Polygon(map, 3); }, "pbg"},
        {"polygon of long points", [&](CCanvas& c) { c.Polygon(screen, 3); }, "pbg"},
        {"rectangle", [](CCanvas& c) { c.Rectangle(0, 0, 2, 2); }, "pbg"},
        {"ellipse", [](CCanvas& c) { c.Ellipse(0, 0, 2, 2); }, "pbg"},
        {"circle", [](CCanvas& c) { c.Circle(0, 0, 2); }, "pbg"},
        {"fill", [&](CCanvas& c) { c.FillRect(0, 0, 2, 2, &brush); }, "b"},
        {"fill a rectangle", [&](CCanvas& c) { c.FillRect(zul::CRect(0, 0, 2, 2), &brush); }, ""},
        {"patblt", [](CCanvas& c) { c.PatBlt(0, 0, 2, 2, zul::CBitmap::RopBlackness); }, ""},
    };
    brush.GetHandle(nullptr);
    for (const Row& row : rows) {
        CCanvas canvas;
        canvas.CreateMemoryCanvas();
        device::Recorder recorder;
        row.draw(canvas);
        std::string tools;
        for (const device::RecordedCall& call : recorder.Calls()) {
            if (call.name == "CreatePen") tools += 'p';
            if (call.name == "CreateSolidBrush") tools += 'b';
            if (call.name == "SetBkColor") tools += 'g';
        }
        EXPECT_EQ(tools, row.tools) << row.name;
    }
}

TEST(DrawingDetached, EveryOperationIsHarmless) {
    NoLeaks leaks;
    CCanvas canvas;
    zul::CScaler unset;
    for (zul::CScaler* scaler : {static_cast<zul::CScaler*>(nullptr), &unset}) {
        for (const bool clipping : {true, false}) {
            canvas.SetScaler(scaler);
            canvas.SetListClipping(clipping);
            zul::CPoints list = List({{0, 0}, {30000, 5}, {-30000, 9}});
            const TPoint map[] = {{0, 0}, {5, 0}, {5, 5}};
            canvas.Line(1, 2, 3, 4);
            canvas.Polyline(&list);
            canvas.Polygon(&list);
            canvas.Polygon(map, 3);
            canvas.Rectangle(INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX);
            canvas.Ellipse(INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN);
            canvas.Circle(INT32_MIN, INT32_MIN, INT32_MIN);
            canvas.FillRect(0, 0, 5, 5, nullptr);
            canvas.PatBlt(INT32_MIN, 0, INT32_MAX, 5, zul::CBitmap::RopWhiteness);
            canvas.XorPolygon(&list, true, true);
            canvas.XorRectangle({0, 0}, {5, 5}, true, true);
            canvas.BitBlt(0, 0, 5, 5, &canvas, 0, 0, zul::CBitmap::RopSourceCopy);
            canvas.SetPixel(0, 0, Red);
            EXPECT_EQ(canvas.GetPixel(0, 0), -1);
            canvas.SetTextColor(Red);
            canvas.Scroll(1, 1, {0, 0, 5, 5});
            canvas.DrawEdge(0, 0, 5, 5, CCanvas::EdgeRaised, CCanvas::SideAll);
        }
    }
}

}  // namespace
