// What the device does not have, and error handlers that throw in the middle of a figure.
#include <gtest/gtest.h>

#include <functional>

#include "tests/canvas/canvas_testing.h"

namespace {

using namespace zultest;
using zul::CCanvas;

TEST(CanvasErrors, WhatTheDeviceCannotIsReportedAndDrawsNothing) {
    constexpr const char* Pie = "3: Abstract error <CCanvas::Pie - undefined method>";
    struct Row {
        const char* report;
        void (*draw)(CCanvas&);
    };
    const Row rows[] = {
        {Pie, [](CCanvas& c) { c.Arc(0, 0, 5, 5, 0, 0, 5, 5); }},
        {Pie, [](CCanvas& c) { c.AngleArc(0, 0, 5, 0.0, 90.0); }},
        {Pie, [](CCanvas& c) { c.Pie(0, 0, 5, 5, 0, 0, 5, 5); }},
        {"3: Abstract error <CCanvas::Chord - undefined method>",
         [](CCanvas& c) { c.Chord(0, 0, 5, 5, 0, 0, 5, 5); }},
        {"3: Abstract error <CCanvas::PolyBezier - undefined method>",
         [](CCanvas& c) { c.PolyBezier(nullptr); }},
        {"4: FloodFill is not supported in WinCE. <CCanvas::FloodFill>",
         [](CCanvas& c) { c.FloodFill(1, 1, Red, CCanvas::FillBorder); }},
        {"4: GradientFill is not supported in WinCE. <CCanvas::GradientFill>",
         [](CCanvas& c) { c.GradientFill(nullptr, nullptr, 0, zul::CGradient::Triangles); }},
        {"4: PlgBlt is not supported in WinCE. <CCanvas::PlgBlt>",
         [](CCanvas& c) { c.PlgBlt(nullptr, nullptr, 0, 0, 1, 1, nullptr, 0, 0); }},
        {"4: AlphaBlending is not supported in WinCE. <CCanvas::AlphaBlend>",
         [](CCanvas& c) { c.AlphaBlend(0, 0, 1, 1, nullptr, 0, 0, 1, 1, {}); }},
    };
    Surface surface(6, 6);
    for (const Row& row : rows) {
        Reports reports;
        row.draw(surface.Canvas);
        EXPECT_EQ(reports.Only(), row.report);
        EXPECT_EQ(reports.List[0].Object.DoGetInstance(), &surface.Canvas);
        EXPECT_EQ(surface.Look(), surface.Blank()) << row.report;
    }
}

TEST(CanvasErrors, PlgBltMakesTheMaskFirst) {
    const std::uint8_t packed[56] = {40, 0, 0, 0, 2, 0, 0, 0, 2, 0, 0, 0, 1, 0, 32, 0};
    zul::CBitmap mask;
    ASSERT_TRUE(mask.Create(packed, sizeof packed));
    ThrowingScope throwing;
    device::Recorder recorder;
    EXPECT_THROW(CCanvas().PlgBlt(nullptr, nullptr, 0, 0, 1, 1, &mask, 0, 0), zul::CRunError);
    EXPECT_EQ(recorder.Count("CreateDIBSection"), 1);
}

TEST(CanvasErrors, FiguresThatLoseTheirToolsMidwayLeakNothing) {
    const zul::TPoint map[] = {{0, 0}, {5, 0}, {5, 5}};
    const zul::TLongPoint screen[] = {{0, 0}, {5, 0}, {5, 5}};
    const std::function<void(CCanvas&)> figures[] = {
        [](CCanvas& c) { c.Line(0, 0, 3, 3); },
        [&](CCanvas& c) { c.Polyline(map, 3); },
        [&](CCanvas& c) { c.Polygon(map, 3); },
        [&](CCanvas& c) { c.Polygon(screen, 3); },
        [](CCanvas& c) { c.Rectangle(0, 0, 4, 4); },
        [](CCanvas& c) { c.Circle(2, 2, 2); },
        [](CCanvas& c) { c.FillRect(0, 0, 4, 4, nullptr); },
    };
    for (const auto& figure : figures) {
        Surface surface(6, 6);
        {
            const FullDevice full;
            {
                Reports reports;
                figure(surface.Canvas);
                EXPECT_GE(reports.List.size(), 1u);
            }
            ThrowingScope throwing;
            EXPECT_THROW(figure(surface.Canvas), std::runtime_error);
        }
        // With room again the same canvas draws.
        surface.Wipe();
        surface.Canvas.GetBrush().SetColor(Red);
        figure(surface.Canvas);
        EXPECT_NE(surface.Look(), surface.Blank());
    }
}

TEST(CanvasErrors, HandlerThatDrawsOnTheSameCanvasDoesNoHarm) {
    // Draws a longer list than the one whose pen just failed, which moves the scratch buffer.
    struct Drawing : zul::CErrorHandler {
        void OnError(const zul::TErrorReport&) override {
            const std::vector<zul::TPoint> many(3000, {1, 1});
            if (++Depth < 3) Canvas->Polyline(many.data(), 3000);
        }
        CCanvas* Canvas;
        int Depth = 0;
    } handler;
    Surface surface(40, 40);
    handler.Canvas = &surface.Canvas;
    const zul::CErrorHandlerScope scope(&handler);
    const FullDevice full;
    const zul::TPoint few[] = {{1, 1}, {30, 1}, {30, 30}};
    surface.Canvas.Polyline(few, 3);
    surface.Canvas.Polygon(few, 3);
    EXPECT_GE(handler.Depth, 3);
}

TEST(CanvasErrors, TemporaryCanvasesWithoutADeviceDrawNothing) {
    Surface surface(4, 4);
    zul::CBitmap bitmap;
    ASSERT_TRUE(bitmap.Create(4, 4, 32, nullptr));
    const FullDevice full;
    const Reports muted;
    surface.Canvas.BitBlt(&bitmap, 0, 0, 4, 4, 0, 0, zul::CBitmap::RopSourceCopy);
    bitmap.Fill(Red);
    EXPECT_EQ(bitmap.GetBitmapMaskColor(), -1);
    EXPECT_EQ(surface.Look(), surface.Blank());
}

}  // namespace
