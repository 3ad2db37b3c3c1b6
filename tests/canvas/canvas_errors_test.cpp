// What the device does not have, and error handlers that throw in the middle of a figure.
#include <gtest/gtest.h>

#include <functional>

#include "tests/canvas/canvas_testing.h"
#include "zul/geometry/points.h"

namespace {

using namespace zultest;
using zul::CCanvas;

struct UnsupportedRow {
    const char* name;
    void (*draw)(CCanvas&);
    const char* report;
};

const UnsupportedRow Unsupported[] = {
    {"Arc", [](CCanvas& canvas) { canvas.Arc(0, 0, 5, 5, 0, 0, 5, 5); },
     "3: Abstract error <CCanvas::Pie - undefined method>"},
    {"AngleArc", [](CCanvas& canvas) { canvas.AngleArc(0, 0, 5, 0.0, 90.0); },
     "3: Abstract error <CCanvas::Pie - undefined method>"},
    {"Pie", [](CCanvas& canvas) { canvas.Pie(0, 0, 5, 5, 0, 0, 5, 5); },
     "3: Abstract error <CCanvas::Pie - undefined method>"},
    {"Chord", [](CCanvas& canvas) { canvas.Chord(0, 0, 5, 5, 0, 0, 5, 5); },
     "3: Abstract error <CCanvas::Chord - undefined method>"},
    {"PolyBezier", [](CCanvas& canvas) { canvas.PolyBezier(nullptr); },
     "3: Abstract error <CCanvas::PolyBezier - undefined method>"},
    {"FloodFill", [](CCanvas& canvas) { canvas.FloodFill(1, 1, Red, CCanvas::FillBorder); },
     "4: FloodFill is not supported in WinCE. <CCanvas::FloodFill>"},
    {"GradientFill",
     [](CCanvas& canvas) { canvas.GradientFill(nullptr, nullptr, 0, zul::CGradient::Triangles); },
     "4: GradientFill is not supported in WinCE. <CCanvas::GradientFill>"},
    {"PlgBlt", [](CCanvas& canvas) { canvas.PlgBlt(nullptr, nullptr, 0, 0, 1, 1, nullptr, 0, 0); },
     "4: PlgBlt is not supported in WinCE. <CCanvas::PlgBlt>"},
    {"AlphaBlend", [](CCanvas& canvas) { canvas.AlphaBlend(0, 0, 1, 1, nullptr, 0, 0, 1, 1, {}); },
     "4: AlphaBlending is not supported in WinCE. <CCanvas::AlphaBlend>"},
};

class UnsupportedOperation : public testing::TestWithParam<UnsupportedRow> {};

TEST_P(UnsupportedOperation, IsReportedAndDrawsNothing) {
    Surface surface(6, 6);
    Reports reports;
    GetParam().draw(surface.Canvas);
    EXPECT_EQ(reports.Only(), GetParam().report);
    EXPECT_EQ(reports.List[0].Object.DoGetInstance(), &surface.Canvas);
    EXPECT_EQ(surface.Look(), surface.Blank());
}

INSTANTIATE_TEST_SUITE_P(, UnsupportedOperation, testing::ValuesIn(Unsupported),
                         [](const testing::TestParamInfo<UnsupportedRow>& row) { return row.param.name; });

TEST(CanvasErrors, PlgBltMakesTheMaskFirst) {
    const std::uint8_t packed[56] = {40, 0, 0, 0, 2, 0, 0, 0, 2, 0, 0, 0, 1, 0, 32, 0};
    zul::CBitmap mask;
    ASSERT_TRUE(mask.Create(packed, sizeof packed));
    CCanvas canvas;
    ThrowingScope throwing;
    device::Recorder recorder;
    EXPECT_THROW(canvas.PlgBlt(nullptr, nullptr, 0, 0, 1, 1, &mask, 0, 0), zul::CRunError);
    EXPECT_EQ(recorder.Count("CreateDIBSection"), 1);
}

TEST(CanvasErrors, FiguresThatLoseTheirToolsMidwayLeakNothing) {
    const zul::TPoint map[] = {{0, 0}, {5, 0}, {5, 5}};
    const zul::TLongPoint screen[] = {{0, 0}, {5, 0}, {5, 5}};
    zul::CPoints list(true);
    list.Append(map, 3, false);
    zul::CBitmap source;
    ASSERT_TRUE(source.Create(4, 4, 32, nullptr));
    const std::function<void(CCanvas&)> figures[] = {
        [](CCanvas& c) { c.Line(0, 0, 3, 3); },
        [&](CCanvas& c) { c.Polyline(map, 3); },
        [&](CCanvas& c) { c.Polyline(&list); },
        [&](CCanvas& c) { c.Polygon(map, 3); },
        [&](CCanvas& c) { c.Polygon(screen, 3); },
        [](CCanvas& c) { c.Rectangle(0, 0, 4, 4); },
        [](CCanvas& c) { c.Ellipse(0, 0, 4, 4); },
        [](CCanvas& c) { c.Circle(2, 2, 2); },
        [](CCanvas& c) { c.FillRect(0, 0, 4, 4, nullptr); },
    };
    for (std::size_t i = 0; i < sizeof figures / sizeof figures[0]; ++i) {
        NoLeaks leaks;
        Surface surface(6, 6);
        {
            const FullDevice full;
            {
                Reports reports;
                figures[i](surface.Canvas);
                EXPECT_GE(reports.List.size(), 1u) << "figure " << i;
            }
            ThrowingScope throwing;
            EXPECT_THROW(figures[i](surface.Canvas), std::runtime_error) << "figure " << i;
        }
        // With room again the same canvas draws.
        surface.Wipe();
        surface.Canvas.GetBrush().SetColor(Red);
        figures[i](surface.Canvas);
        EXPECT_NE(surface.Look(), surface.Blank()) << "figure " << i;
    }
}

TEST(CanvasErrors, HandlerThatDrawsOnTheSameCanvasDoesNoHarm) {
    Surface surface(40, 40);
    std::vector<zul::TPoint> many(3000);
    for (std::size_t i = 0; i < many.size(); ++i)
        many[i] = {static_cast<zul::TCoord>(i % 40), static_cast<zul::TCoord>(i / 75)};
    // Draws a longer list than the one whose pen just failed, which moves the scratch buffer.
    struct Drawing : zul::CErrorHandler {
        void OnError(const zul::TErrorReport&) override {
            if (++Depth < 3) Canvas->Polyline(Points->data(), static_cast<std::int32_t>(Points->size()));
        }
        CCanvas* Canvas;
        std::vector<zul::TPoint>* Points;
        int Depth = 0;
    } handler;
    handler.Canvas = &surface.Canvas;
    handler.Points = &many;
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
    surface.Canvas.XorRectangle({0, 0}, {3, 3}, true, false);
    surface.Canvas.XorRectangle({0, 0}, {3, 3}, true, false);
    EXPECT_EQ(surface.Look(), surface.Blank());
}

}  // namespace
