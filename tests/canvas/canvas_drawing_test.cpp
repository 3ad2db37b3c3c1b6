// What each drawing operation puts down, with and without a scaler.
#include <gtest/gtest.h>

#include <functional>

#include "tests/canvas/canvas_testing.h"
#include "zul/geometry/rect.h"

namespace {

using namespace zultest;
using zul::CCanvas;
using zul::TLongPoint;
using zul::TPoint;

TEST(Drawing, FiguresPutDownTheirPixels) {
    NoLeaks leaks;
    Surface surface(40, 4);
    CCanvas& canvas = surface.Canvas;
    canvas.GetPen().SetWidth(5);
    canvas.GetPen().Validate(&canvas);
    canvas.MoveTo(20, 2);  // draws nothing, even with a wide pen
    canvas.GetPen().SetWidth(1);
    canvas.GetBrush().SetColor(Red);

    canvas.Line(0, 0, 3, 0);
    canvas.LineTo(3, 3);
    const TLongPoint bent[] = {{5, 0}, {7, 2}};
    canvas.Polyline(bent, 2);
    canvas.LineTo(9, 2);
    canvas.Rectangle(10, 0, 13, 3);
    canvas.Rectangle(15, 2, 15, 2);
    const TLongPoint longPair[] = {{17, 1}, {20, 1}};
    canvas.Polygon(longPair, 2);
    const TPoint pair[] = {{17, 3}, {20, 3}};
    canvas.Polygon(pair, 2);
    const TLongPoint rings[] = {{22, 0}, {24, 0}, {24, 2}, {22, 2}, {39, 0}, {39, 3}, {36, 0}};
    const int counts[] = {4, 3};
    canvas.PolyPolygon(rings, counts, 2);
    zul::CPoints first = List({{26, 0}, {28, 0}, {28, 2}, {26, 2}});
    zul::CPoints second = List({{39, 0}, {39, 3}, {36, 0}});
    zul::CPoints* lists[] = {&first, &second};
    canvas.PolyPolygon(lists, 2);
    canvas.FillRect(30, 1, 32, 3, nullptr);
    zul::CBrush blue;
    blue.SetColor(Blue);
    canvas.FillRect(zul::CRect(33, 1, 35, 3), &blue);
    canvas.GetBackground().SetColor(Green);
    canvas.Pixel(36, 3);
    canvas.SetPixel(36, 0, Blue);
    canvas.GetBrush().SetColor(Green);  // not validated by the operation
    canvas.PatBlt(39, 2, 37, 1, zul::CBitmap::RopPatternInvert);
    canvas.PatBlt(37, 1, 39, 2, zul::CBitmap::RopDestinationInvert);
    EXPECT_EQ(surface.Look(), (Picture{
                                  "####.#....####........###.###.......b...",
                                  "...#..#...#rr#...####.#r#.#r#.rr.bb..rr.",
                                  "...#...##.#rr#.#......###.###.rr.bb.....",
                                  "..........####...###................g...",
                              }));
}

TEST(DrawingCoordinates, ReachTheDeviceAsStated) {
    constexpr std::int32_t Most = INT32_MAX;
    const TLongPoint far[] = {{0, 0}, {70000, -70000}};
    struct Row {
        const char* call;
        std::function<void(CCanvas&)> draw;
        Numbers numbers;
    };
    const Row rows[] = {
        {"Rectangle", [](CCanvas& c) { c.Rectangle(-Most, -Most, Most, Most); }, {-Most, -Most, Most, Most}},
        {"Ellipse", [](CCanvas& c) { c.Ellipse(0, 0, 10, 10); }, {0, 0, 10, 10}},
        {"Ellipse", [](CCanvas& c) { c.Circle(-32760, 0, 10); }, {32766, -10, -32750, 10}},
        {"Ellipse", [](CCanvas& c) { c.Circle(Most, Most, Most); }, {0, 0, -2, -2}},
        {"PatBlt",
         [](CCanvas& c) { c.PatBlt(-Most, 8, Most, 1, zul::CBitmap::RopBlackness); },
         {-Most, 1, Most, 7, BLACKNESS}},
        {"Polyline", [](CCanvas& c) { c.Line(70000, 5, 1, 2); }, {2, 4464, 5, 1, 2}},
        {"Polyline",
         [&](CCanvas& c) {
             c.Polyline(far, 2);
             c.LineTo(1, 2);  // goes on from the uncut point
         },
         {2, 70000, -70000, 1, 2}},
    };
    for (const Row& row : rows) {
        CCanvas canvas;
        canvas.CreateMemoryCanvas();
        device::Recorder recorder;
        row.draw(canvas);
        EXPECT_EQ(Last(recorder, row.call), row.numbers) << row.call;
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
    canvas.FillRect(700, 500, 500, 900, nullptr);
    canvas.FillRect(zul::CRect(0, 0, 200, 100), nullptr);
    EXPECT_EQ(surface.Look(),
              (Picture{"..........", ".###.rr...", ".#r#.rr...", ".###.rr...", ".....rr...", "..........",
                       "..........", "..........", "..........", "rr........"}));
    EXPECT_EQ(canvas.PrepareLength(250), 3);
    canvas.SetPretranslation(false);
    EXPECT_EQ(canvas.PrepareLength(250), 250);
    canvas.FillRect(zul::CRect(0, 0, 2, 1), nullptr);
    EXPECT_EQ(surface.Look()[0], "rr........");
}

TEST(DrawingCoordinates, RotatedViewTurnsPointsButNotFillRect) {
    zul::CScaler scaler;
    SetUpSquare(scaler, 100, 1);
    scaler.SetRotationAngle(90.0);
    CCanvas canvas;
    canvas.CreateMemoryCanvas();
    canvas.SetScaler(&scaler);
    std::int32_t expectedX, expectedY;
    scaler.MapToScreenEx(70, 50, expectedX, expectedY);
    for (std::int32_t x : {70, 70 + 65536}) {  // the low 16 bits are turned
        std::int32_t y = 50;
        canvas.PreparePoint(x, y);
        EXPECT_EQ(x, expectedX);
        EXPECT_EQ(y, expectedY);
    }
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
    CCanvas canvas;
    canvas.CreateMemoryCanvas();
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
    for (const std::int32_t count : {1, 0, -1, INT32_MIN, INT32_MAX, (1 << 26) + 1}) {
        canvas.Polyline(&point, count);  // the last two: too many to be looked at
        canvas.Polygon(&point, count);
        if (count < 2) canvas.Polygon(&longPoint, count);
        if (count < 1) canvas.Polyline(&longPoint, count);
        canvas.Polyline(static_cast<TPoint*>(nullptr), count);
        canvas.Polygon(static_cast<TPoint*>(nullptr), count);
        canvas.Polyline(static_cast<TLongPoint*>(nullptr), count);
        canvas.Polygon(static_cast<TLongPoint*>(nullptr), count);
    }
    canvas.PolyPolygon(static_cast<zul::CPoints**>(nullptr), 3);
    canvas.PolyPolygon(&longPoint, nullptr, 1);
    canvas.PolyPolygon(&longPoint, &minus, 1);
    EXPECT_EQ(recorder.Count("Polyline") + recorder.Count("Polygon"), 0);
}

TEST(DrawingOrder, ToolsAreValidatedBeforeTheFigure) {
    struct Row {
        const char* tools;  ///< p pen, b brush, g background
        std::function<void(CCanvas&)> draw;
    };
    const TPoint map[] = {{0, 0}, {5, 0}, {5, 5}};
    const TLongPoint screen[] = {{0, 0}, {5, 0}, {5, 5}};
    zul::CBrush brush;
    const Row rows[] = {
        {"", [](CCanvas& c) { c.MoveTo(1, 1); }},
        {"pg", [](CCanvas& c) { c.LineTo(1, 1); }},
        {"pg", [&](CCanvas& c) { c.Polyline(map, 3); }},
        {"", [&](CCanvas& c) { c.Polyline(screen, 3); }},
        {"pbg", [&](CCanvas& c) { c.Polygon(map, 3); }},
        {"pbg", [&](CCanvas& c) { c.Polygon(screen, 3); }},
        {"pbg", [](CCanvas& c) { c.Rectangle(0, 0, 2, 2); }},
        {"pbg", [](CCanvas& c) { c.Ellipse(0, 0, 2, 2); }},
        {"pbg", [](CCanvas& c) { c.Circle(0, 0, 2); }},
        {"b", [&](CCanvas& c) { c.FillRect(0, 0, 2, 2, &brush); }},
        {"", [&](CCanvas& c) { c.FillRect(zul::CRect(0, 0, 2, 2), &brush); }},
        {"", [](CCanvas& c) { c.PatBlt(0, 0, 2, 2, zul::CBitmap::RopBlackness); }},
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
        EXPECT_EQ(tools, row.tools) << "row " << &row - rows;
    }
}

TEST(DrawingDetached, EveryOperationIsHarmless) {
    NoLeaks leaks;
    CCanvas canvas;
    zul::CScaler unset;
    for (zul::CScaler* scaler : {static_cast<zul::CScaler*>(nullptr), &unset}) {
        canvas.SetScaler(scaler);
        canvas.SetListClipping(scaler == nullptr);
        zul::CPoints list = List({{0, 0}, {30000, 5}, {-30000, 9}});
        canvas.Line(1, 2, 3, 4);
        canvas.Polyline(&list);
        canvas.Polygon(&list);
        canvas.Rectangle(INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX);
        canvas.Circle(INT32_MIN, INT32_MIN, INT32_MIN);
        canvas.FillRect(0, 0, 5, 5, nullptr);
        canvas.PatBlt(INT32_MIN, 0, INT32_MAX, 5, zul::CBitmap::RopWhiteness);
        canvas.XorPolygon(&list, true, true);
        canvas.XorRectangle({0, 0}, {5, 5}, true, true);
        canvas.BitBlt(0, 0, 5, 5, &canvas, 0, 0, zul::CBitmap::RopSourceCopy);
        canvas.SetPixel(0, 0, Red);
        EXPECT_EQ(canvas.GetPixel(0, 0), -1);
        canvas.Scroll(1, 1, {0, 0, 5, 5});
    }
}

}  // namespace
