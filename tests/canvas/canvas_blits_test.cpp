// Block transfers between canvases, and edges.
#include <gtest/gtest.h>

#include "tests/canvas/canvas_testing.h"

namespace {

using namespace zultest;
using zul::CBitmap;
using zul::CCanvas;

TEST(CanvasBlits, EveryOperationReachesTheDeviceWithItsNumber) {
    const std::int64_t numbers[] = {0x00CC0020, 0x005A0049, 0x00550009, 0x00000042,
                                    0x00FF0062, 0x008800C6, 0x00660046};
    Surface source(4, 4), target(4, 4);
    for (int rop = 0; rop < 7; ++rop) {
        const auto operation = static_cast<CBitmap::TRop>(rop);
        device::Recorder recorder;
        target.Canvas.BitBlt(0, 0, 2, 2, &source.Canvas, 1, 1, operation);
        target.Canvas.StretchBlt(0, 0, 2, 2, &source.Canvas, 1, 1, 2, 2, operation);
        target.Canvas.PatBlt(0, 0, 1, 1, operation);
        for (const char* name : {"BitBlt", "StretchBlt", "PatBlt"})
            EXPECT_EQ(recorder.Last(name)->arguments.back(), numbers[rop]) << name;
    }
    device::Recorder recorder;
    for (const int rop : {-1, 7, INT32_MAX}) {
        const auto operation = static_cast<CBitmap::TRop>(rop);
        target.Canvas.BitBlt(0, 0, 2, 2, &source.Canvas, 1, 1, operation);
        target.Canvas.StretchBlt(0, 0, 2, 2, &source.Canvas, 1, 1, 2, 2, operation);
        target.Canvas.PatBlt(0, 0, 1, 1, operation);
    }
    EXPECT_EQ(recorder.Count("BitBlt") + recorder.Count("StretchBlt") + recorder.Count("PatBlt"), 0);
}

TEST(CanvasBlits, CopyIsNotMappedAndMayOverlap) {
    zul::CScaler scaler;
    SetUpSquare(scaler, 4, 10);
    Surface surface(4, 1);
    surface.Canvas.SetScaler(&scaler);
    surface.Canvas.SetPixel(0, 0, Red);
    surface.Canvas.SetPixel(1, 0, Green);
    surface.Canvas.BitBlt(1, 0, 3, 1, &surface.Canvas, 0, 0, CBitmap::RopSourceCopy);
    EXPECT_EQ(surface.Look(), (Picture{"rrg."}));
}

TEST(CanvasBlits, BitmapFormsGiveTheBitmapBack) {
    NoLeaks leaks;
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.Create(2, 1, 32, nullptr));
    Surface target(4, 1);
    target.Canvas.BitBlt(&bitmap, 0, 0, 1, 1, 0, 0, CBitmap::RopSourceCopy);
    target.Canvas.StretchBlt(&bitmap, 2, 0, 2, 1, 0, 0, 1, 1, CBitmap::RopSourceCopy);
    EXPECT_EQ(target.Look(), (Picture{"#.##"}));
    const HDC device = ::CreateCompatibleDC(nullptr);
    EXPECT_NE(::SelectObject(device, bitmap.GetHandle()), nullptr) << "no device holds it any more";
    ::DeleteDC(device);
}

TEST(CanvasBlits, EdgesAreTranslatedByTheirTables) {
    const int edges[] = {4, 8, 1, 2, 9, 6, 5, 10};
    const int sides[] = {1, 2, 4, 8, 9, 6, 15};
    Surface surface(8, 8);
    device::Recorder recorder;
    for (int edge = -1; edge <= 8; ++edge) {
        for (int side = -1; side <= 7; ++side) {
            recorder.Clear();
            surface.Canvas.DrawEdge(1, 1, 7, 7, static_cast<CCanvas::TEdge>(edge),
                                    static_cast<CCanvas::TEdgeFlags>(side));
            const bool known = edge >= 0 && edge < 8 && side >= 0 && side < 7;
            ASSERT_EQ(recorder.Count("DrawEdge"), known ? 1 : 0) << edge << ", " << side;
            if (!known) continue;
            const std::vector<std::int64_t>& arguments = recorder.Last("DrawEdge")->arguments;
            EXPECT_EQ(arguments[arguments.size() - 2], edges[edge]);
            EXPECT_EQ(arguments.back(), sides[side]);
        }
    }
}

}  // namespace
