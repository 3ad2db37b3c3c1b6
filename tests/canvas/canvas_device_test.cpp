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
    for (const bool deviceDiesFirst : {false, true}) {
        const HDC device = ::CreateCompatibleDC(nullptr);
        const auto selected = [device] {
            return std::vector<HGDIOBJ>{::GetCurrentObject(device, OBJ_PEN),
                                        ::GetCurrentObject(device, OBJ_BRUSH),
                                        ::GetCurrentObject(device, OBJ_BITMAP)};
        };
        const std::vector<HGDIOBJ> former = selected();
        zul::CBitmap bitmap;
        ASSERT_TRUE(bitmap.Create(4, 4, 32, nullptr));
        CCanvas canvas;
        canvas.AttachToDevice(device);
        canvas.AssignBitmap(&bitmap);
        canvas.GetPen().Create(zul::CPen::PenExtended, 31, 3, Red, 0, 5, Blue);
        canvas.Rectangle(0, 0, 3, 3);
        EXPECT_NE(selected()[0], former[0]);
        if (deviceDiesFirst) ::DeleteDC(device);
        canvas.Release();
        if (deviceDiesFirst) continue;
        EXPECT_EQ(selected(), former);
        ::DeleteDC(device);
    }
}

TEST(CanvasDevice, BitmapsComeAndGoAndTheDevicesOwnComesBack) {
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
    {
        zul::CBitmap mortal;
        ASSERT_TRUE(mortal.Create(2, 2, 32, nullptr));
        canvas.AssignBitmap(&mortal);
    }
    canvas.Line(0, 0, 5, 5);
    EXPECT_EQ(canvas.GetBitmap(), nullptr);
    canvas.CreateMemoryCanvas();
}

TEST(CanvasDevice, QueriesAnswerTheDeviceAndNothingWhenDetached) {
    const device::DisplaySettings display = device::GetDisplay();
    CCanvas detached, canvas, printer;
    canvas.CreateMemoryCanvas();
    using Query = bool (CCanvas::*)(std::int32_t&, std::int32_t&) const;
    for (const Query ask : {&CCanvas::GetDeviceSize, &CCanvas::GetResolution, &CCanvas::GetPhysicalOffset}) {
        std::int32_t x = -7, y = -7;
        EXPECT_FALSE((detached.*ask)(x, y));
        EXPECT_TRUE(x == -7 && y == -7) << x << ", " << y;
        EXPECT_TRUE((canvas.*ask)(x, y));
        EXPECT_TRUE(x != -7 && y != -7) << x << ", " << y;
    }
    EXPECT_EQ(detached.GetDPI() | detached.GetBitsPixel() | detached.GetDeviceCaps(CCanvas::CapsWidth), 0);
    EXPECT_EQ(canvas.GetDPI(), display.dpiX);
    const std::int64_t indices[] = {0, 88, 90, 4, 6, 8, 10, 0};
    device::Recorder recorder;
    for (int caps = -1; caps <= 6; ++caps) {
        canvas.GetDeviceCaps(static_cast<CCanvas::TCaps>(caps));
        EXPECT_EQ(Last(recorder, "GetDeviceCaps"), Numbers{indices[caps + 1]});
    }
    printer.AttachToDevice(device::CreatePrinterPage({}), false, true, true);
    EXPECT_TRUE(printer.IsPrinterCanvas() && !printer.IsDisplayCanvas());
    EXPECT_TRUE(canvas.IsDisplayCanvas() && !canvas.IsPrinterCanvas());
}

TEST(CanvasDevice, SystemColoursAreAskedForWithTheFlagOnTheFirstTwo) {
    const std::int64_t indices[] = {-1, 0x40000005, 0x4000000F, 1, 2, 13, 7, -1};
    for (int kind = -1; kind <= 6; ++kind) {
        device::Recorder recorder;
        const std::int32_t color = CCanvas::GetSysColor(static_cast<zul::CBrush::TSysType>(kind));
        const device::RecordedCall* call = recorder.Last("GetSysColor");
        EXPECT_EQ(call ? call->arguments[0] : -1, indices[kind + 1]);
        if (!call) {
            EXPECT_EQ(color, 0);
        }
    }
}

TEST(CanvasDevice, ApplyCopiesToolsAndReferencesWhereTheyAre) {
    zul::CScaler scaler;
    SetUpSquare(scaler, 100, 2);
    zul::CGradient gradient;
    gradient.Append(1, 2, Red);
    zul::CPalette palette;
    palette.Append(Green);
    CCanvas source;
    source.GetPen().SetWidth(7);
    source.GetBrush().SetOrigin(3, 3);
    source.GetFont().SetHeight(33);
    source.GetBackground().SetColor(Blue);
    source.SetScaler(&scaler);
    for (const bool full : {false, true}) {
        source.SetGradient(full ? &gradient : nullptr);
        source.SetPalette(full ? &palette : nullptr);
        CCanvas target;
        target.ApplyCanvas(&source, full);
        target.ApplyCanvas(&target, true);
        target.ApplyCanvas(nullptr, true);
        EXPECT_EQ(target.GetPen().GetWidth(), 7);
        std::int32_t x, y;
        target.GetBrush().GetOrigin(x, y);
        EXPECT_EQ(x, 0) << "the origin belongs to the device";
        EXPECT_EQ(target.GetFont().GetHeight(), 33);
        EXPECT_EQ(target.GetBackground().GetColor(), Blue);
        ASSERT_EQ(target.GetPalette() != nullptr, full);
        ASSERT_EQ(target.GetGradient() != nullptr, full);
        ASSERT_EQ(target.GetScaler() != nullptr, full);
        if (!full) continue;
        EXPECT_NE(target.GetPalette(), &palette) << "a copy of its own";
        EXPECT_EQ(target.GetPalette()->GetColor(0), Green);
        EXPECT_EQ(target.GetGradient()->GetCount(), 1u);
        EXPECT_EQ(target.GetScaler()->GetScreenToVisible(), scaler.GetScreenToVisible());
        target.CreateMemoryCanvas();
        target.Release();
        EXPECT_EQ(target.GetPalette(), nullptr) << "released with the device";
    }
}

TEST(CanvasDevice, NavigationWithoutAScalerIsRefused) {
    CCanvas canvas;
    canvas.CreateMemoryCanvas();
    {
        zul::CScaler scaler;
        SetUpSquare(scaler, 100, 10);
        canvas.SetScaler(&scaler);
        EXPECT_TRUE(canvas.Zoom(0, 0, 100, 100, true));
        EXPECT_EQ(scaler.GetScreenToVisible(), 1.0);
    }
    EXPECT_FALSE(canvas.Zoom(0, 0, 5, 5, true)) << "the scaler is gone";
    EXPECT_FALSE(canvas.PlaceToCenter(1, 1));
    canvas.Line(0, 0, 9, 9);
}

}  // namespace
