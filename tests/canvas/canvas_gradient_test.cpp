// Gradients on a canvas.
#include <gtest/gtest.h>

#include "tests/canvas/canvas_testing.h"
#include "zul/scaler/projective_scaler.h"

namespace {

using namespace zultest;
using zul::CGradient;

TEST(CanvasGradient, OwnVerticesGoThroughTheScalerInTurn) {
    zul::CScaler scaler;
    SetUpSquare(scaler, 8, 10);
    CGradient gradient;
    gradient.Append(0, 0, Black);  // the bottom of the map
    gradient.Append(40, 80, White);
    gradient.Append(0, 0, Blue);  // half a rectangle
    Surface surface(8, 8);
    surface.Canvas.SetScaler(&scaler);
    surface.Canvas.SetGradient(&gradient);
    surface.Canvas.DrawGradient(nullptr, nullptr, 0, CGradient::RectVertical);
    EXPECT_EQ(surface.Canvas.GetPixel(0, 0), 0xFFFFFF);
    EXPECT_EQ(surface.Canvas.GetPixel(3, 7), 0x1F1F1F);
}

TEST(CanvasGradient, WhatCannotBeDrawnIsNot) {
    zul::CProjectiveScaler scaler;
    scaler.InitScaler({-20000, -20000, 20000, 20000}, {9, 9}, {9, 9}, 40.0, 1.0, 0.001);
    scaler.SetVisibleBox(-300, 200, 300, 800, true);
    CGradient gradient;
    gradient.Append(-900, -20000, Black);  // behind the viewer
    gradient.Append(0, 500, Black);
    gradient.Append(90, 300, Black);
    ASSERT_FALSE(scaler.IsInFront(-900, -20000));
    const std::int32_t behind[] = {0, 1, 2}, negative[] = {2, -1}, beyond[] = {1, 2, 3, 1},
                       far[] = {INT32_MAX, 1};
    const std::string outside = "3: Out of range error : Index in <zul::CCanvas::DrawGradient>",
                      none = "0 reports";
    const struct {
        CGradient* gradient;
        const std::int32_t* corners;
        std::int32_t count, mode;
        std::string report;
    } rows[] = {{&gradient, negative, 1, 0, outside}, {&gradient, beyond, 2, 0, outside},
                {&gradient, far, 1, 1, outside},      {&gradient, behind, 1, 2, none},
                {&gradient, behind + 1, -1, 0, none}, {&gradient, behind + 1, INT32_MIN, 1, none},
                {&gradient, behind + 1, 1, -1, none}, {&gradient, behind + 1, 1, 3, none},
                {&gradient, nullptr, 7, 2, none},     {nullptr, behind + 1, 1, 0, none}};
    Surface surface(9, 9);
    surface.Canvas.SetScaler(&scaler);
    for (const auto& row : rows) {
        Reports reports;
        surface.Canvas.DrawGradient(row.gradient, row.corners, row.count,
                                    static_cast<CGradient::TMode>(row.mode));
        EXPECT_EQ(reports.Only(), row.report) << &row - rows;
        EXPECT_EQ(surface.Look(), surface.Blank()) << &row - rows;
    }
    surface.Canvas.DrawGradient(&gradient, behind + 1, 1, CGradient::RectHorizontal);
    EXPECT_NE(surface.Look(), surface.Blank());
}

}  // namespace
