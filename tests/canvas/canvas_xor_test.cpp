// Rubber bands: they show, they go away, and the device is afterwards as it was.
#include <gtest/gtest.h>

#include "tests/canvas/canvas_testing.h"
#include "zul/geometry/points.h"

namespace {

using namespace zultest;
using zul::CCanvas;

struct XorRow {
    const char* name;
    void (*draw)(CCanvas&, bool translate);
};

zul::CPoints Triangle() {
    zul::CPoints list(true);
    list.Append(2, 2);
    list.Append(15, 3);
    list.Append(8, 14);
    return list;
}

const XorRow Bands[] = {
    {"Line",
     [](CCanvas& canvas, bool translate) {
         canvas.XorLine({1, 1}, {17, 9}, translate);
     }},
    {"Sector",
     [](CCanvas& canvas, bool translate) {
         canvas.XorSector({1, 1}, {9, 17}, {17, 1}, translate);
     }},
    {"ClosedPolygon",
     [](CCanvas& canvas, bool translate) {
         zul::CPoints list = Triangle();
         canvas.XorPolygon(&list, true, translate);
     }},
    {"OpenPolygon",
     [](CCanvas& canvas, bool translate) {
         zul::CPoints list = Triangle();
         canvas.XorPolygon(&list, false, translate);
     }},
    {"Rectangle",
     [](CCanvas& canvas, bool translate) {
         canvas.XorRectangle({2, 2}, {15, 12}, false, translate);
     }},
    {"SolidRectangle",
     [](CCanvas& canvas, bool translate) {
         canvas.XorRectangle({2, 2}, {15, 12}, true, translate);
     }},
    {"Ellipse",
     [](CCanvas& canvas, bool translate) {
         canvas.XorEllipse({2, 2}, {15, 12}, translate);
     }},
};

class RubberBand : public testing::TestWithParam<XorRow> {};

TEST_P(RubberBand, DrawnTwiceItIsGoneAndTheToolsStand) {
    NoLeaks leaks;
    Surface surface(20, 20);
    CCanvas& canvas = surface.Canvas;
    canvas.GetPen().SetColor(Green);
    canvas.GetBrush().SetColor(Blue);
    canvas.Rectangle(5, 5, 14, 14);
    const Picture before = surface.Look();
    const HDC device = canvas.GetHandle();
    const HGDIOBJ pen = ::GetCurrentObject(device, OBJ_PEN);
    const HGDIOBJ brush = ::GetCurrentObject(device, OBJ_BRUSH);

    GetParam().draw(canvas, false);
    EXPECT_NE(surface.Look(), before) << "it is to be seen";
    EXPECT_EQ(::GetCurrentObject(device, OBJ_PEN), pen);
    EXPECT_EQ(::GetCurrentObject(device, OBJ_BRUSH), brush);
    EXPECT_EQ(::GetROP2(device), R2_COPYPEN);
    GetParam().draw(canvas, false);
    EXPECT_EQ(surface.Look(), before);
}

TEST_P(RubberBand, GoesThroughTheScalerOnlyWhenAsked) {
    zul::CScaler scaler;
    SetUpSquare(scaler, 10, 2);  // 20 map units on 10 pixels, y upwards
    Surface map(20, 20), flipped(20, 20), plain(20, 20);
    map.Canvas.SetScaler(&scaler);
    GetParam().draw(map.Canvas, true);
    flipped.Canvas.SetScaler(&scaler);
    GetParam().draw(flipped.Canvas, false);
    GetParam().draw(plain.Canvas, false);
    EXPECT_EQ(flipped.Look(), plain.Look());
    const Picture half = map.Look();
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(half[15][i], '.') << "nothing beyond the map's half size";
        EXPECT_EQ(half[i][15], '.');
    }
    EXPECT_NE(half, map.Blank());
}

INSTANTIATE_TEST_SUITE_P(, RubberBand, testing::ValuesIn(Bands),
                         [](const testing::TestParamInfo<XorRow>& row) { return row.param.name; });

TEST(RubberBandPolygon, ClosesAndFillsAsStated) {
    struct Row {
        std::size_t points;
        bool closed;
        const char* call;
    };
    for (const Row& row : {Row{3, true, "Polygon"}, Row{3, false, "Polyline"}, Row{2, true, "Polyline"},
                           Row{0, true, ""}, Row{0, false, ""}}) {
        zul::CPoints list = Triangle();
        while (list.GetCount() > row.points)
            list.Delete(0u);
        Surface surface(20, 20);
        device::Recorder recorder;
        surface.Canvas.XorPolygon(&list, row.closed, false);
        for (const char* name : {"Polygon", "Polyline"})
            EXPECT_EQ(recorder.Count(name), std::string(name) == row.call ? 1 : 0)
                << row.points << row.closed;
    }
    Surface surface(20, 20);
    zul::CPoints list = Triangle();
    surface.Canvas.XorPolygon(&list, true, false);
    EXPECT_EQ(surface.Canvas.GetPixel(8, 6), White) << "not filled";
    surface.Canvas.XorPolygon(nullptr, true, true);
}

}  // namespace
