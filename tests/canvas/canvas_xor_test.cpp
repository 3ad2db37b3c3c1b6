// Rubber bands: they show, they go away, and the device is afterwards as it was.
#include <gtest/gtest.h>

#include "tests/canvas/canvas_testing.h"

namespace {

using namespace zultest;
using zul::CCanvas;

using Band = void (*)(CCanvas& canvas, bool translate);

struct BandRow {
    const char* name;
    Band draw;
};

zul::CPoints Triangle() {
    return List({{2, 2}, {15, 3}, {8, 14}});
}

template <bool Closed>
void DrawTriangle(CCanvas& canvas, bool translate) {
    zul::CPoints list = Triangle();
    canvas.XorPolygon(&list, Closed, translate);
}

template <bool Solid>
void DrawRectangle(CCanvas& canvas, bool translate) {
    canvas.XorRectangle({2, 2}, {15, 12}, Solid, translate);
}

const BandRow Bands[] = {
    {"Line",
     [](CCanvas& canvas, bool translate) {
         canvas.XorLine({1, 1}, {17, 9}, translate);
     }},
    {"Sector",
     [](CCanvas& canvas, bool translate) {
         canvas.XorSector({1, 1}, {9, 17}, {17, 1}, translate);
     }},
    {"ClosedPolygon", DrawTriangle<true>},
    {"OpenPolygon", DrawTriangle<false>},
    {"Rectangle", DrawRectangle<false>},
    {"SolidRectangle", DrawRectangle<true>},
    {"Ellipse",
     [](CCanvas& canvas, bool translate) {
         canvas.XorEllipse({2, 2}, {15, 12}, translate);
     }},
};

class RubberBand : public testing::TestWithParam<BandRow> {};

TEST_P(RubberBand, DrawnTwiceItIsGoneAndTheToolsStand) {
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
    Surface plain(20, 20), surface(20, 20);
    GetParam().draw(plain.Canvas, false);
    surface.Canvas.SetScaler(&scaler);
    GetParam().draw(surface.Canvas, false);
    EXPECT_EQ(surface.Look(), plain.Look());
    surface.Wipe();
    GetParam().draw(surface.Canvas, true);
    const Picture half = surface.Look();
    EXPECT_NE(half, surface.Blank());
    for (const std::string& row : half)
        EXPECT_EQ(row.substr(11), std::string(9, '.'));
    EXPECT_EQ(Picture(half.begin() + 11, half.end()), Picture(9, std::string(20, '.')));
}

INSTANTIATE_TEST_SUITE_P(, RubberBand, testing::ValuesIn(Bands),
                         [](const testing::TestParamInfo<BandRow>& row) { return row.param.name; });

TEST(RubberBandPolygon, ClosesAndFillsAsStated) {
    struct Row {
        std::size_t points;
        bool closed;
        int polygons, polylines;
    };
    for (const Row& row : {Row{3, true, 1, 0}, Row{3, false, 0, 1}, Row{2, true, 0, 1}, Row{0, true, 0, 0}}) {
        zul::CPoints list = Triangle();
        while (list.GetCount() > row.points)
            list.Delete(0u);
        Surface surface(20, 20);
        device::Recorder recorder;
        surface.Canvas.XorPolygon(&list, row.closed, false);
        EXPECT_EQ(recorder.Count("Polygon"), row.polygons) << row.points << row.closed;
        EXPECT_EQ(recorder.Count("Polyline"), row.polylines) << row.points << row.closed;
        EXPECT_EQ(surface.Canvas.GetPixel(8, 6), White) << "not filled";
    }
    CCanvas().XorPolygon(nullptr, true, true);
}

}  // namespace
