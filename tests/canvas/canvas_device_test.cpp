// What a canvas does with its device, its bitmap, its tools and its modes.
#include <gtest/gtest.h>

#include "tests/canvas/canvas_testing.h"
#include "zul/geometry/rect.h"

namespace {

using namespace zultest;
using zul::CCanvas;

bool Lives(HDC device) {
    return ::GetObjectType(device) != 0;
}

TEST(CanvasDevice, ReleaseDeletesWhatItMust) {
    struct Row {
        const char* name;
        bool memory, own, deleteMemory, deleted;
    };
    const Row rows[] = {
        {"a foreign device", false, false, true, false}, {"memory, kept", true, false, false, false},
        {"memory, deleted", true, false, true, true},    {"own, kept", false, true, false, true},
        {"own, deleted", true, true, true, true},
    };
    for (const Row& row : rows) {
        NoLeaks leaks;
        const HDC device = ::CreateCompatibleDC(nullptr);
        CCanvas canvas;
        canvas.AttachToDevice(device, row.memory, true, row.own);
        EXPECT_EQ(canvas.GetHandle(), device);
        canvas.Release(row.deleteMemory);
        EXPECT_EQ(canvas.GetHandle(), nullptr);
        EXPECT_EQ(Lives(device), !row.deleted) << row.name;
        canvas.Release(true);
        if (!row.deleted) ::DeleteDC(device);
    }
}

TEST(CanvasDevice, AttachingReleasesTheFormerDevice) {
    NoLeaks leaks;
    CCanvas canvas;
    canvas.CreateMemoryCanvas();
    const HDC first = canvas.GetHandle();
    canvas.GetPen().Validate(&canvas);
    canvas.CreateMemoryCanvas();
    EXPECT_FALSE(Lives(first));
    const HDC second = canvas.GetHandle();
    canvas.AttachToDevice(nullptr, false, false, false);
    EXPECT_TRUE(Lives(second)) << "kept when asked to";
    ::DeleteDC(second);
    canvas.CreateMemoryCanvas();
    canvas.AttachToDevice(canvas.GetHandle());
    canvas.Rectangle(0, 0, 5, 5);  // on a device that its own attaching has just ended
    EXPECT_FALSE(canvas.IsDisplayCanvas());
}

TEST(CanvasDevice, ReleasePutsTheDeviceBackAsItWas) {
    NoLeaks leaks;
    const HDC device = ::CreateCompatibleDC(nullptr);
    const HGDIOBJ former[] = {::GetCurrentObject(device, OBJ_PEN), ::GetCurrentObject(device, OBJ_BRUSH),
                              ::GetCurrentObject(device, OBJ_BITMAP)};
    zul::CBitmap bitmap;
    ASSERT_TRUE(bitmap.Create(4, 4, 32, nullptr));
    {
        CCanvas canvas;
        canvas.AttachToDevice(device);
        canvas.AssignBitmap(&bitmap);
        canvas.GetPen().Create(zul::CPen::PenExtended, 31, 3, Red, 0, 5, Blue);
        canvas.Rectangle(0, 0, 3, 3);
        EXPECT_NE(::GetCurrentObject(device, OBJ_PEN), former[0]);
    }
    EXPECT_EQ(::GetCurrentObject(device, OBJ_PEN), former[0]);
    EXPECT_EQ(::GetCurrentObject(device, OBJ_BRUSH), former[1]);
    EXPECT_EQ(::GetCurrentObject(device, OBJ_BITMAP), former[2]);
    ::DeleteDC(device);
}

TEST(CanvasDevice, BitmapsComeAndGoAndTheDevicesOwnComesBack) {
    NoLeaks leaks;
    CCanvas canvas;
    canvas.CreateMemoryCanvas();
    const auto selected = [&canvas] { return ::GetCurrentObject(canvas.GetHandle(), OBJ_BITMAP); };
    const HGDIOBJ own = selected();
    zul::CBitmap first, second;
    ASSERT_TRUE(first.Create(2, 2, 32, nullptr));
    ASSERT_TRUE(second.Create(3, 3, 32, nullptr));
    canvas.AssignBitmap(nullptr);
    canvas.AssignBitmap(&first);
    canvas.AssignBitmap(&second);
    EXPECT_EQ(selected(), second.GetHandle());
    EXPECT_EQ(canvas.GetBitmap(), &second);
    canvas.AssignBitmap(nullptr);
    EXPECT_EQ(selected(), own);
    EXPECT_EQ(canvas.GetBitmap(), nullptr);

    canvas.AssignBitmap(&first);
    canvas.CreateMemoryCanvas();
    EXPECT_EQ(selected(), first.GetHandle()) << "a held bitmap is selected into the new device";
}

TEST(CanvasDevice, BitmapThatDiesFirstLeavesAWorkingCanvas) {
    NoLeaks leaks;
    CCanvas canvas;
    canvas.CreateMemoryCanvas();
    {
        zul::CBitmap bitmap;
        ASSERT_TRUE(bitmap.Create(2, 2, 32, nullptr));
        canvas.AssignBitmap(&bitmap);
    }
    canvas.Line(0, 0, 5, 5);
    EXPECT_EQ(canvas.GetBitmap(), nullptr);
    canvas.CreateMemoryCanvas();
}

TEST(CanvasDevice, QueriesAnswerTheDeviceAndNothingWhenDetached) {
    using Size = std::pair<std::int32_t, std::int32_t>;
    const device::DisplaySettings display = device::GetDisplay();
    struct Row {
        bool (CCanvas::*ask)(std::int32_t&, std::int32_t&) const;
        Size answer;
    };
    const Row rows[] = {
        {&CCanvas::GetDeviceSize, {display.widthMm, display.heightMm}},
        {&CCanvas::GetResolution, {display.width, display.height}},
        {&CCanvas::GetPhysicalOffset, {0, 0}},
        {&CCanvas::GetPhysicalSize, {0, 0}},
    };
    CCanvas detached, canvas;
    canvas.CreateMemoryCanvas();
    for (const Row& row : rows) {
        Size size{-7, -7};
        EXPECT_FALSE((detached.*row.ask)(size.first, size.second));
        EXPECT_EQ(size, Size(-7, -7));
        EXPECT_TRUE((canvas.*row.ask)(size.first, size.second));
        EXPECT_EQ(size, row.answer);
    }
    EXPECT_EQ(detached.GetDPI() | detached.GetBitsPixel() | detached.GetDeviceCaps(CCanvas::CapsWidth), 0);
    EXPECT_EQ(canvas.GetDPI(), display.dpiX);
    EXPECT_EQ(canvas.GetBitsPixel(), display.bitsPerPixel);
    device::Recorder recorder;
    const int indices[] = {0, 88, 90, 4, 6, 8, 10, 0};
    for (int caps = -1; caps <= 6; ++caps) {
        canvas.GetDeviceCaps(static_cast<CCanvas::TCaps>(caps));
        EXPECT_EQ(recorder.Last("GetDeviceCaps")->arguments[1], indices[caps + 1]) << caps;
    }
    device::DisplaySettings page;
    page.width = page.height = 20;
    CCanvas printer;
    printer.AttachToDevice(device::CreatePrinterPage(page), false, true, true);
    EXPECT_TRUE(printer.IsPrinterCanvas() && !printer.IsDisplayCanvas());
    EXPECT_TRUE(canvas.IsDisplayCanvas() && !canvas.IsPrinterCanvas());
}

TEST(CanvasDevice, SystemColoursAreAskedForWithTheFlagOnTheFirstTwo) {
    const std::int64_t indices[] = {0x40000005, 0x4000000F, 1, 2, 13, 7};
    device::Recorder recorder;
    for (int kind = 0; kind < 6; ++kind) {
        CCanvas::GetSysColor(static_cast<zul::CBrush::TSysType>(kind));
        ASSERT_NE(recorder.Last("GetSysColor"), nullptr);
        EXPECT_EQ(recorder.Last("GetSysColor")->arguments[0], indices[kind]);
    }
    recorder.Clear();
    EXPECT_EQ(CCanvas::GetSysColor(static_cast<zul::CBrush::TSysType>(6)), 0);
    EXPECT_EQ(CCanvas::GetSysColor(static_cast<zul::CBrush::TSysType>(-1)), 0);
    EXPECT_EQ(recorder.Count("GetSysColor"), 0);
}

TEST(CanvasDevice, ApplyCopiesToolsAndReferencesWhereTheyAre) {
    NoLeaks leaks;
    zul::CScaler scaler;
    SetUpSquare(scaler, 100, 2);
    zul::CGradient gradient;
    gradient.Append(1, 2, Red);
    zul::CPalette palette;
    palette.Append(Green);
    CCanvas source;
    source.GetPen().SetWidth(7);
    source.GetBrush().SetColor(Red);
    source.GetBrush().SetOrigin(3, 3);
    source.GetFont().SetHeight(33);
    source.GetBackground().SetColor(Blue);
    CCanvas bare;
    bare.ApplyCanvas(&source, true);
    EXPECT_EQ(bare.GetPalette(), nullptr);
    EXPECT_EQ(bare.GetGradient(), nullptr);
    EXPECT_EQ(bare.GetScaler(), nullptr);
    std::int32_t x, y;
    bare.GetBrush().GetOrigin(x, y);
    EXPECT_EQ(x, 0) << "the origin belongs to the device";

    source.SetScaler(&scaler);
    source.SetGradient(&gradient);
    source.SetPalette(&palette);
    for (const bool withScaler : {false, true}) {
        CCanvas target;
        target.ApplyCanvas(&source, withScaler);
        EXPECT_EQ(target.GetPen().GetWidth(), 7);
        EXPECT_EQ(target.GetBrush().GetColor(), Red);
        EXPECT_EQ(target.GetFont().GetHeight(), 33);
        EXPECT_EQ(target.GetBackground().GetColor(), Blue);
        ASSERT_NE(target.GetPalette(), nullptr);
        EXPECT_NE(target.GetPalette(), &palette) << "a copy of its own";
        EXPECT_EQ(target.GetPalette()->GetColor(0), Green);
        ASSERT_NE(target.GetGradient(), nullptr);
        EXPECT_EQ(target.GetGradient()->GetCount(), 1u);
        EXPECT_EQ(target.GetScaler() != nullptr, withScaler);
        if (withScaler) {
            EXPECT_EQ(target.GetScaler()->GetScreenToVisible(), scaler.GetScreenToVisible());
        }
        target.ApplyCanvas(&target, true);
        target.ApplyCanvas(nullptr, true);
        target.CreateMemoryCanvas();
        target.Release(true);
        EXPECT_EQ(target.GetPalette(), nullptr) << "released with the device";
    }
    EXPECT_EQ(palette.GetCount(), 1);
}

TEST(CanvasDevice, NavigationWithoutAScalerIsRefused) {
    CCanvas canvas;
    canvas.CreateMemoryCanvas();
    EXPECT_FALSE(canvas.Zoom(0, 0, 5, 5, true));
    EXPECT_FALSE(canvas.PlaceToCenter(1, 1));
    {
        zul::CScaler scaler;
        SetUpSquare(scaler, 100, 10);
        canvas.SetScaler(&scaler);
        EXPECT_TRUE(canvas.Zoom(0, 0, 100, 100, true));
        EXPECT_EQ(scaler.GetScreenToVisible(), 1.0);
        EXPECT_TRUE(canvas.PlaceToCenter(500, 500));
    }
    EXPECT_FALSE(canvas.Zoom(0, 0, 5, 5, true)) << "the scaler is gone";
    canvas.Line(0, 0, 9, 9);
}

TEST(CanvasDevice, ScrollMovesPixelsWithinTheRectangle) {
    Surface surface(6, 1);
    surface.Canvas.SetPixel(1, 0, Red);
    surface.Canvas.SetPixel(4, 0, Green);
    surface.Canvas.Scroll(2, 0, {0, 0, 4, 1});
    EXPECT_EQ(surface.Look(), (Picture{".r.rg."}));
}

}  // namespace
