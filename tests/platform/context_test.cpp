#include "platform/software/context.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/software/display.h"
#include "tests/platform/board.h"

namespace {

/// Puts the display back as it was.
class DisplayKeeper {
public:
    ~DisplayKeeper() { device::SetDisplay(m_Settings); }

private:
    device::DisplaySettings m_Settings = device::GetDisplay();
};

TEST(Context, TheDefaultBitmapIsSharedButItsPixelIsNot) {
    const HDC first = CreateCompatibleDC(nullptr), second = CreateCompatibleDC(nullptr);
    EXPECT_EQ(GetCurrentObject(first, OBJ_BITMAP), GetCurrentObject(second, OBJ_BITMAP));
    PatBlt(first, 0, 0, 1, 1, WHITENESS);
    EXPECT_EQ(GetPixel(first, 0, 0), 0xFFFFFFu);
    EXPECT_EQ(GetPixel(second, 0, 0), 0u);
    EXPECT_TRUE(DeleteObject(GetCurrentObject(first, OBJ_BITMAP)));
    EXPECT_EQ(GetObjectType(GetCurrentObject(first, OBJ_BITMAP)), OBJ_BITMAP);
    DeleteDC(first);
    DeleteDC(second);
}

TEST(Context, ABitmapIsInOneMemoryContextAtATime) {
    const HDC first = CreateCompatibleDC(nullptr), second = CreateCompatibleDC(nullptr);
    const HDC screen = GetDC(nullptr);
    const HBITMAP bitmap = CreateBitmap(4, 4, 1, 32, nullptr);
    const HGDIOBJ before = GetCurrentObject(second, OBJ_BITMAP);
    EXPECT_EQ(SelectObject(screen, bitmap), nullptr);
    EXPECT_NE(SelectObject(first, bitmap), nullptr);
    EXPECT_EQ(SelectObject(first, bitmap), bitmap);
    EXPECT_EQ(SelectObject(second, bitmap), nullptr);
    EXPECT_EQ(GetCurrentObject(second, OBJ_BITMAP), before);
    EXPECT_TRUE(DeleteDC(first));
    EXPECT_EQ(SelectObject(second, bitmap), before);
    EXPECT_EQ(SelectObject(second, before), bitmap);
    EXPECT_TRUE(DeleteObject(bitmap));
    DeleteDC(second);
    ReleaseDC(nullptr, screen);
}

TEST(Context, ModesOutOfRangeChangeNothing) {
    const struct {
        const char* what;
        int (*set)(HDC, int);
        int (*get)(HDC);
        int first, last, before;
    } rows[] = {
        {"operation", SetROP2, GetROP2, R2_BLACK, R2_WHITE, R2_COPYPEN},
        {"background", SetBkMode, GetBkMode, TRANSPARENT, OPAQUE, OPAQUE},
        {"stretching", SetStretchBltMode, GetStretchBltMode, BLACKONWHITE, HALFTONE, BLACKONWHITE},
    };
    const HDC dc = CreateCompatibleDC(nullptr);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(row.set(dc, row.first), row.before);
        EXPECT_EQ(row.set(dc, row.last), row.first);
        for (const int mode : {0, -1, row.last + 1, kMin, kMax})
            EXPECT_EQ(row.set(dc, mode), 0) << mode;
        EXPECT_EQ(row.get(dc), row.last);
    }
    DeleteDC(dc);
}

TEST(Context, TheDisplayIsDrawnOnThroughAnyOfItsContexts) {
    const DisplayKeeper keeper;
    for (const int bits : {1, 4, 8, 16, 24, 32}) {
        SCOPED_TRACE(bits);
        ASSERT_TRUE(device::SetDisplay({33, 7, bits, 96, 96, 271, 203}));
        const HDC first = GetDC(nullptr), second = GetDC(nullptr);
        EXPECT_NE(first, second);
        EXPECT_EQ(GetObjectType(first), OBJ_DC);
        SetPixel(first, 32, 6, 0xFFFFFF);
        EXPECT_EQ(GetPixel(second, 32, 6), 0xFFFFFFu);
        EXPECT_EQ(GetPixel(second, 33, 6), CLR_INVALID);
        EXPECT_FALSE(DeleteDC(first));
        EXPECT_EQ(ReleaseDC(nullptr, first), 1);
        EXPECT_EQ(ReleaseDC(nullptr, first), 0);
        EXPECT_EQ(ReleaseDC(nullptr, second), 1);
    }
    const HDC memory = CreateCompatibleDC(nullptr);
    EXPECT_EQ(ReleaseDC(nullptr, memory), 0);
    EXPECT_TRUE(DeleteDC(memory));
    EXPECT_EQ(GetDC(reinterpret_cast<HWND>(std::uintptr_t{1})), nullptr);
}

TEST(Context, AnOpenContextKeepsTheDisplayItWasMadeFor) {
    const DisplayKeeper keeper;
    const HDC before = GetDC(nullptr);
    const int width = GetDeviceCaps(before, HORZRES);
    device::DisplaySettings settings;
    settings.width = width + 10;
    ASSERT_TRUE(device::SetDisplay(settings));
    SetPixel(before, 0, 0, 0xFF);
    const HDC after = GetDC(nullptr);
    EXPECT_EQ(GetDeviceCaps(before, HORZRES), width);
    EXPECT_EQ(GetDeviceCaps(after, HORZRES), width + 10);
    EXPECT_EQ(GetPixel(after, 0, 0), 0u);
    ReleaseDC(nullptr, before);
    ReleaseDC(nullptr, after);
}

TEST(Context, SettingsOutOfRangeLeaveTheDisplayAlone) {
    const DisplayKeeper keeper;
    const int width = device::GetDisplay().width;
    const device::DisplaySettings bad[] = {
        {0, 9, 32, 96, 96, 1, 1},       {9, -1, 32, 96, 96, 1, 1},    {9, 9, 15, 96, 96, 1, 1},
        {9, 9, 0, 96, 96, 1, 1},        {9, 9, 32, 0, 96, 1, 1},      {9, 9, 32, 96, 96, 1, -1},
        {kMax, kMax, 32, 96, 96, 1, 1}, {9, 9, 32, 96, 96, 1, 1, -1}, {9, 9, 32, 96, 96, 1, 1, 0, kMax},
    };
    for (const device::DisplaySettings& settings : bad) {
        EXPECT_FALSE(device::SetDisplay(settings));
        EXPECT_EQ(device::CreatePrinterPage(settings), nullptr);
    }
    EXPECT_EQ(device::GetDisplay().width, width);
}

TEST(Context, CapabilitiesAreTheDevicesOwn) {
    const DisplayKeeper keeper;
    ASSERT_TRUE(device::SetDisplay({}));
    const device::DisplaySettings page{600, 900, 24, 300, 200, 51, 114, 20, 30};
    const HDC screen = GetDC(nullptr), memory = CreateCompatibleDC(nullptr);
    const HDC printer = device::CreatePrinterPage(page), proof = CreateCompatibleDC(printer);
    const struct {
        int index, display, printer;
    } rows[] = {
        {TECHNOLOGY, DT_RASDISPLAY, DT_RASPRINTER},
        {VERTSIZE, 203, 114},
        {HORZRES, 1024, 600},
        {BITSPIXEL, 32, 24},
        {LOGPIXELSY, 96, 200},
        {PHYSICALWIDTH, 0, 640},
        {PHYSICALOFFSETY, 0, 30},
        {12345, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.index);
        EXPECT_EQ(GetDeviceCaps(screen, row.index), row.display);
        EXPECT_EQ(GetDeviceCaps(memory, row.index), row.display);
        EXPECT_EQ(GetDeviceCaps(printer, row.index), row.printer);
        EXPECT_EQ(GetDeviceCaps(proof, row.index), row.printer);
    }
    EXPECT_EQ(GetPixel(printer, 599, 899), 0xFFFFFFu);
    EXPECT_EQ(ReleaseDC(nullptr, printer), 0);
    EXPECT_TRUE(DeleteDC(printer));
    EXPECT_TRUE(DeleteDC(proof));
    EXPECT_TRUE(DeleteDC(memory));
    ReleaseDC(nullptr, screen);
}

}  // namespace
