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
    for (const int rop : {-1, 0, 1, 2, 3, 4, 5, 6, 7, INT32_MAX}) {
        const auto operation = static_cast<CBitmap::TRop>(rop);
        device::Recorder recorder;
        target.Canvas.BitBlt(0, 0, 2, 2, &source.Canvas, 1, 1, operation);
        target.Canvas.StretchBlt(0, 0, 2, 2, &source.Canvas, 1, 1, 2, 2, operation);
        target.Canvas.PatBlt(0, 0, 1, 1, operation);
        for (const char* name : {"BitBlt", "StretchBlt", "PatBlt"}) {
            const Numbers call = Last(recorder, name);
            EXPECT_EQ(call.empty() ? -1 : call.back(), rop >= 0 && rop < 7 ? numbers[rop] : -1) << name;
        }
    }
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

TEST(CanvasBlits, EdgesAreTranslatedByTheirTables) {
    const int edges[] = {4, 8, 1, 2, 9, 6, 5, 10};
    const int sides[] = {1, 2, 4, 8, 9, 6, 15};
    CCanvas canvas;
    canvas.CreateMemoryCanvas();
    for (int edge = -1; edge <= 8; ++edge) {
        for (int side = -1; side <= 7; ++side) {
            device::Recorder recorder;
            canvas.DrawEdge(1, 2, 7, 8, static_cast<CCanvas::TEdge>(edge),
                            static_cast<CCanvas::TEdgeFlags>(side));
            const bool known = edge >= 0 && edge < 8 && side >= 0 && side < 7;
            EXPECT_EQ(Last(recorder, "DrawEdge"),
                      known ? (Numbers{1, 2, 7, 8, edges[edge], sides[side]}) : Numbers{})
                << edge << ", " << side;
        }
    }
}

}  // namespace
