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

TEST(Drawing, MovingDrawsNothingAndPixelsHaveTheBackgroundsColour) {
    Surface surface(9, 3);
    surface.Canvas.GetPen().SetWidth(3);
    surface.Canvas.GetPen().Validate(&surface.Canvas);
    surface.Canvas.MoveTo(4, 1);
    surface.Canvas.GetBackground().SetColor(Green);
    surface.Canvas.Pixel(0, 0);
    EXPECT_EQ(surface.Look(), (Picture{"g........", ".........", "........."}));
}

TEST(DrawingCoordinates, ReachTheDeviceAsStated) {
    constexpr std::int32_t Most = INT32_MAX;
    const TLongPoint far[] = {{0, 0}, {70000, -70000}};
    const TLongPoint rings[] = {{0, 0}, {9, 0}, {9, 9}, {1, 1}, {2, 2}, {3, 1}, {4, 4}};
    const int counts[] = {3, 4};
    zul::CPoints first = List({{0, 0}, {9, 0}, {9, 9}}), second = List({{1, 1}, {2, 2}, {3, 1}, {4, 4}});
    zul::CPoints* lists[] = {&first, &second};
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
        // Of several rings only the first is drawn.
        {"Polygon", [&](CCanvas& c) { c.PolyPolygon(rings, counts, 2); }, {3, 0, 0, 9, 0, 9, 9}},
        {"Polygon", [&](CCanvas& c) { c.PolyPolygon(lists, 2); }, {3, 0, 0, 9, 0, 9, 9}},
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
    const TPoint map[] = {{250, 900}};
    TLongPoint pixels[1] = {};
    std::int32_t count = 1;
    canvas.PreparePoint(pixels, map, count);
    EXPECT_TRUE(pixels[0] == (TLongPoint{3, 1}));
    canvas.SetPretranslation(false);
    EXPECT_EQ(canvas.PrepareLength(250), 250);
    canvas.PreparePoint(pixels, map, count);
    EXPECT_TRUE(pixels[0] == (TLongPoint{250, 900}));
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

TEST(ListClipping, ListsAreCutDrawnOrLeftOut) {
    zul::CScaler scaler;
    SetUpSquare(scaler, 40, 10);  // the visible rectangle is (-50, -50)-(450, 450)
    CCanvas canvas;
    canvas.CreateMemoryCanvas();
    canvas.SetScaler(&scaler);
    struct Row {
        const char* name;
        std::vector<TPoint> points;
        Numbers clipped, whole;  ///< what reaches the device with clipping on and off
    };
    const Row rows[] = {
        {"up to the border", {{-50, 450}, {450, -50}}, {2, -5, -5, 45, 45}, {2, -5, -5, 45, 45}},
        {"leaving", {{200, 200}, {1000, 200}}, {2, 20, 20, 45, 20}, {2, 20, 20, 100, 20}},
        {"its box meets, itself misses", {{440, 1000}, {1000, 440}}, {}, {2, 44, -60, 100, -4}},
        {"right", {{451, 0}, {500, 300}}, {}, {}},
        {"left", {{-51, 0}, {-500, 300}}, {}, {}},
        {"above", {{0, 451}, {300, 900}}, {}, {}},
        {"below", {{0, -51}, {300, -900}}, {}, {}},
    };
    for (const Row& row : rows) {
        for (const bool clipping : {true, false}) {
            canvas.SetListClipping(clipping);
            zul::CPoints list = List(row.points);
            device::Recorder recorder;
            canvas.Polyline(&list);
            EXPECT_EQ(Last(recorder, "Polyline"), clipping ? row.clipped : row.whole) << row.name;
        }
    }
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

}  // namespace
