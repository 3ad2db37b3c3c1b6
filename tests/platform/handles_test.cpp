#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "platform/gdi.h"
#include "platform/software/display.h"

namespace {

HGDIOBJ AsHandle(std::uintptr_t value) {
    return reinterpret_cast<HGDIOBJ>(value);
}
std::uintptr_t ValueOf(HGDIOBJ handle) {
    return reinterpret_cast<std::uintptr_t>(handle);
}

TEST(Handles, ForeignValuesAreRefusedEverywhere) {
    const HPEN pen = CreatePen(PS_SOLID, 1, 0);
    const HRGN region = CreateRectRgn(1, 1, 3, 3);
    const HDC good = CreateCompatibleDC(nullptr);
    EXPECT_EQ(SelectClipRgn(good, region), SIMPLEREGION);
    const std::uintptr_t live = ValueOf(pen);
    const std::uintptr_t otherSlot = live ^ 1, otherGeneration = live ^ 0x10000,
                         otherType = live ^ (1u << 27);
    const std::uintptr_t highBit = live | (std::uintptr_t{1} << (sizeof(void*) * 8 - 1));
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(&live);
    const std::uintptr_t foreign[] = {0,          1,          0x1234,    0xFFFF,          0x7FFFFFFF,
                                      0x80000000, 0xFFFFFFFF, otherSlot, otherGeneration, otherType,
                                      highBit,    address};
    for (const std::uintptr_t value : foreign) {
        SCOPED_TRACE(value);
        const HGDIOBJ handle = AsHandle(value);
        const HDC dc = reinterpret_cast<HDC>(value);
        const HRGN bad = reinterpret_cast<HRGN>(value);
        LOGPEN description;
        RECT rect{0, 0, 1, 1};
        SIZE size{};
        const POINT points[] = {{1, 1}, {5, 5}, {1, 5}};
        EXPECT_EQ(GetObjectType(handle), 0u);
        EXPECT_FALSE(DeleteObject(handle));
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
        EXPECT_EQ(GetObjectW(handle, sizeof description, &description), 0);
        EXPECT_FALSE(DeleteDC(dc));
        EXPECT_EQ(ReleaseDC(nullptr, dc), 0);
        EXPECT_EQ(SelectObject(dc, pen), nullptr);
        EXPECT_EQ(GetCurrentObject(dc, OBJ_PEN), nullptr);
        EXPECT_EQ(SetROP2(dc, R2_NOT), 0);
        EXPECT_EQ(GetROP2(dc), 0);
        EXPECT_EQ(SetBkMode(dc, OPAQUE), 0);
        EXPECT_EQ(GetBkMode(dc), 0);
        EXPECT_EQ(SetBkColor(dc, 0), CLR_INVALID);
        EXPECT_EQ(GetBkColor(dc), CLR_INVALID);
        EXPECT_EQ(SetTextColor(dc, 0), CLR_INVALID);
        EXPECT_EQ(GetTextColor(dc), CLR_INVALID);
        EXPECT_EQ(SetStretchBltMode(dc, COLORONCOLOR), 0);
        EXPECT_EQ(GetStretchBltMode(dc), 0);
        EXPECT_FALSE(SetBrushOrgEx(dc, 0, 0, nullptr));
        EXPECT_FALSE(GetBrushOrgEx(dc, nullptr));
        EXPECT_EQ(GetDeviceCaps(dc, HORZRES), 0);
        EXPECT_EQ(CreatePatternBrush(reinterpret_cast<HBITMAP>(value)), nullptr);
        EXPECT_EQ(CreateCompatibleBitmap(dc, 1, 1), nullptr);
        EXPECT_FALSE(FillRect(dc, &rect, nullptr));
        EXPECT_FALSE(PatBlt(dc, 0, 0, 1, 1, BLACKNESS));
        EXPECT_EQ(GetPixel(dc, 0, 0), CLR_INVALID);
        EXPECT_EQ(SetPixel(dc, 0, 0, 0), CLR_INVALID);
        EXPECT_FALSE(MoveToEx(dc, 1, 1, nullptr) || LineTo(dc, 1, 1));
        EXPECT_FALSE(Polyline(dc, points, 3) || Polygon(dc, points, 3));
        EXPECT_FALSE(Rectangle(dc, 0, 0, 5, 5) || Ellipse(dc, 0, 0, 5, 5));
        EXPECT_FALSE(BitBlt(good, 0, 0, 2, 2, dc, 0, 0, SRCCOPY) ||
                     BitBlt(dc, 0, 0, 2, 2, good, 0, 0, SRCCOPY));
        EXPECT_FALSE(BitBlt(dc, 0, 0, 2, 2, nullptr, 0, 0, WHITENESS));
        EXPECT_FALSE(StretchBlt(good, 0, 0, 2, 2, dc, 0, 0, 1, 1, SRCCOPY));
        EXPECT_FALSE(StretchBlt(dc, 0, 0, 2, 2, good, 0, 0, 1, 1, SRCCOPY));
        EXPECT_FALSE(TransparentImage(good, 0, 0, 2, 2, dc, 0, 0, 1, 1, 0));
        EXPECT_FALSE(TransparentImage(dc, 0, 0, 2, 2, good, 0, 0, 1, 1, 0));
        EXPECT_FALSE(DrawEdge(dc, &rect, BDR_RAISEDOUTER, BF_RECT));
        EXPECT_FALSE(ScrollDC(dc, 1, 1, &rect, &rect, nullptr, nullptr));
        EXPECT_FALSE(ExtTextOutW(dc, 0, 0, 0, nullptr, u"a", 1, nullptr));
        EXPECT_FALSE(GetTextExtentExPointW(dc, u"a", 1, 0, nullptr, nullptr, &size));
        for (int mode = RGN_AND; mode <= RGN_COPY; ++mode) {
            EXPECT_EQ(CombineRgn(bad, region, region, mode), ERROR);
            EXPECT_EQ(CombineRgn(region, bad, region, mode), ERROR);
            EXPECT_EQ(CombineRgn(region, region, bad, mode), mode == RGN_COPY ? SIMPLEREGION : ERROR);
        }
        EXPECT_EQ(OffsetRgn(bad, 1, 1) | GetRgnBox(bad, &rect), ERROR);
        EXPECT_EQ(GetRegionData(bad, 0, nullptr), 0u);
        EXPECT_FALSE(PtInRegion(bad, 0, 0));
        EXPECT_EQ(GetClipRgn(good, bad), -1);
        EXPECT_EQ(SelectClipRgn(dc, region) | GetClipBox(dc, &rect) | ExcludeClipRect(dc, 0, 0, 8, 8), ERROR);
        if (value != 0) {
            EXPECT_EQ(CreateCompatibleDC(dc), nullptr);
            EXPECT_EQ(SelectClipRgn(good, bad), ERROR);
        }
    }
    RECT box{};
    EXPECT_EQ(GetRgnBox(region, &box), SIMPLEREGION);
    EXPECT_TRUE(box.left == 1 && box.bottom == 3) << "no call has changed it";
    EXPECT_TRUE(DeleteObject(region) && DeleteDC(good));
    EXPECT_EQ(GetObjectType(pen), OBJ_PEN);
    EXPECT_TRUE(DeleteObject(pen));
}

TEST(Handles, ADeletedHandleStaysStaleWhileItsSlotIsUsedAgain) {
    const HPEN first = CreatePen(PS_SOLID, 1, 0);
    EXPECT_TRUE(DeleteObject(first));
    std::set<HGDIOBJ> seen{first};
    for (int i = 0; i < 100000; ++i) {
        const HPEN pen = CreatePen(PS_SOLID, 1, 0);
        ASSERT_NE(pen, nullptr);
        ASSERT_TRUE(seen.insert(pen).second) << "handle given out again after " << i;
        ASSERT_TRUE(DeleteObject(pen));
        ASSERT_EQ(GetObjectType(first), 0u);
    }
}

TEST(Handles, AFullTableRefusesAndRecovers) {
    std::vector<HBRUSH> brushes;
    for (;;) {
        const HBRUSH brush = CreateSolidBrush(0);
        if (brush == nullptr) break;
        ASSERT_GE(ValueOf(brush), 0x10000u);
        ASSERT_LE(ValueOf(brush), 0x7FFFFFFFu);
        brushes.push_back(brush);
        ASSERT_LT(brushes.size(), 100000u);
    }
    EXPECT_EQ(GetLastError(), ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_GT(brushes.size(), 60000u);
    EXPECT_EQ(CreateCompatibleDC(nullptr), nullptr);
    for (const HBRUSH brush : brushes)
        ASSERT_TRUE(DeleteObject(brush));
    const HDC dc = CreateCompatibleDC(nullptr);
    EXPECT_TRUE(DeleteDC(dc));
}

TEST(Handles, StockObjectsOutliveTheirDeletion) {
    const int stock[] = {WHITE_BRUSH, LTGRAY_BRUSH, GRAY_BRUSH, DKGRAY_BRUSH, BLACK_BRUSH,    NULL_BRUSH,
                         WHITE_PEN,   BLACK_PEN,    NULL_PEN,   SYSTEM_FONT,  DEFAULT_PALETTE};
    for (const int index : stock) {
        SCOPED_TRACE(index);
        const HGDIOBJ object = GetStockObject(index);
        const DWORD type = GetObjectType(object);
        EXPECT_NE(type, 0u);
        EXPECT_TRUE(DeleteObject(object));
        EXPECT_EQ(GetObjectType(object), type);
        EXPECT_EQ(GetStockObject(index), object);
    }
    EXPECT_TRUE(DeleteObject(GetSysColorBrush(COLOR_WINDOW)));
    EXPECT_EQ(GetObjectType(GetSysColorBrush(COLOR_WINDOW)), OBJ_BRUSH);
    for (const int index : {-1, 9, 16, 1000})
        EXPECT_EQ(GetStockObject(index), nullptr) << index;
}

TEST(Handles, ADeletedPenLivesUntilTheLastContextLetsGo) {
    const HDC first = CreateCompatibleDC(nullptr), second = CreateCompatibleDC(nullptr);
    const HPEN pen = CreatePen(PS_SOLID, 3, RGB(1, 2, 3));
    SelectObject(first, pen);
    SelectObject(second, pen);
    const int live = device::LiveHandles();
    EXPECT_TRUE(DeleteObject(pen));
    EXPECT_EQ(GetCurrentObject(first, OBJ_PEN), pen);
    EXPECT_EQ(SelectObject(first, GetStockObject(BLACK_PEN)), pen);
    EXPECT_EQ(device::LiveHandles(), live);
    EXPECT_EQ(SelectObject(second, GetStockObject(BLACK_PEN)), pen);
    EXPECT_EQ(device::LiveHandles(), live - 1);
    EXPECT_EQ(GetObjectType(pen), 0u);
    EXPECT_FALSE(DeleteObject(pen));
    EXPECT_TRUE(DeleteDC(first));
    EXPECT_TRUE(DeleteDC(second));
}

TEST(Handles, EndingAContextFreesWhatWasDeletedInIt) {
    const HDC dc = CreateCompatibleDC(nullptr);
    const HBITMAP bitmap = CreateBitmap(8, 8, 1, 32, nullptr);
    const HBRUSH brush = CreateSolidBrush(0);
    SelectObject(dc, bitmap);
    SelectObject(dc, brush);
    EXPECT_TRUE(DeleteObject(brush));
    EXPECT_TRUE(DeleteDC(dc));
    EXPECT_EQ(GetObjectType(brush), 0u);
    EXPECT_EQ(GetObjectType(bitmap), OBJ_BITMAP);
    EXPECT_TRUE(DeleteObject(bitmap));
    EXPECT_FALSE(DeleteDC(dc));
}

}  // namespace
