#include <gtest/gtest.h>

#include <cstring>

#include "platform/gdi.h"
#include "tests/platform/board.h"

namespace {

BITMAP Describe(HGDIOBJ bitmap) {
    BITMAP result{};
    EXPECT_EQ(GetObjectW(bitmap, sizeof result, &result), static_cast<int>(sizeof result));
    return result;
}

TEST(Bitmaps, DeviceDependentOnesAreMadeOrRefused) {
    const struct {
        int width, height;
        UINT planes, bits;
        int rowBytes;  ///< 0: refused
    } rows[] = {
        {1, 1, 1, 1, 2},        {17, 3, 1, 1, 4},         {9, 1, 1, 4, 6},         {3, 2, 1, 8, 4},
        {3, 2, 1, 16, 6},       {5, 2, 1, 24, 16},        {5, 2, 1, 32, 20},       {kMax, 1, 1, 1, 268435456},
        {5, 5, 0, 1, 0},        {5, 5, 2, 1, 0},          {5, 5, 1, 0, 0},         {5, 5, 1, 15, 0},
        {5, 5, 1, 33, 0},       {5, 5, 1, 64, 0},         {-5, 5, 1, 8, 0},        {5, -5, 1, 8, 0},
        {kMin, kMin, 1, 32, 0}, {kMax, kMax, 1, 32, 0},   {65536, 4097, 1, 32, 0}, {kMax, 1, 1, 32, 0},
        {1, kMax, 1, 1, 0},     {5, 5, 1, 0xFFFFFFFF, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.width << " x " << row.height << " x " << row.bits);
        const HBITMAP bitmap = CreateBitmap(row.width, row.height, row.planes, row.bits, nullptr);
        ASSERT_EQ(bitmap != nullptr, row.rowBytes != 0);
        if (bitmap == nullptr) {
            EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
            continue;
        }
        const BITMAP description = Describe(bitmap);
        EXPECT_EQ(description.bmWidth, row.width);
        EXPECT_EQ(description.bmHeight, row.height);
        EXPECT_EQ(description.bmWidthBytes, row.rowBytes);
        EXPECT_EQ(description.bmBitsPixel, row.bits);
        EXPECT_EQ(description.bmBits, nullptr);
        EXPECT_TRUE(DeleteObject(bitmap));
    }
}

TEST(Bitmaps, AnEmptyOneIsTheDefaultBitmap) {
    const HDC dc = CreateCompatibleDC(nullptr);
    const HGDIOBJ standard = GetCurrentObject(dc, OBJ_BITMAP);
    EXPECT_EQ(CreateBitmap(0, 5, 1, 32, nullptr), standard);
    EXPECT_EQ(CreateBitmap(5, 0, 1, 1, nullptr), standard);
    EXPECT_EQ(CreateCompatibleBitmap(dc, 0, 0), standard);
    DeleteDC(dc);
}

TEST(Bitmaps, CompatibleOnesTakeTheContextsDepth) {
    const HDC screen = GetDC(nullptr);
    const Board mono(kLayouts[0], 4, 4), section(kLayouts[3], 4, 4);
    const struct {
        HDC dc;
        int bits;
        bool section;
    } rows[] = {{screen, 32, false}, {mono.Dc(), 1, false}, {section.Dc(), 8, true}};
    for (const auto& row : rows) {
        const HBITMAP bitmap = CreateCompatibleBitmap(row.dc, 9, 5);
        const BITMAP description = Describe(bitmap);
        EXPECT_EQ(description.bmBitsPixel, row.bits);
        EXPECT_EQ(description.bmBits != nullptr, row.section);
        EXPECT_TRUE(DeleteObject(bitmap));
    }
    for (const auto& [width, height] : {std::pair{-1, 5}, {5, -1}, {kMax, kMax}, {kMin, 1}}) {
        EXPECT_EQ(CreateCompatibleBitmap(screen, width, height), nullptr) << width << " x " << height;
    }
    EXPECT_EQ(CreateCompatibleBitmap(nullptr, 5, 5), nullptr);
    ReleaseDC(nullptr, screen);
}

TEST(Bitmaps, SectionHeadersAreChecked) {
    const struct {
        const char* what;
        bool good;
        BITMAPINFOHEADER header;
        std::uint32_t masks[3];
    } rows[] = {
        {"top-down", true, {40, 5, -5, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}},
        {"image size ignored", true, {40, 5, 5, 1, 32, BI_RGB, 0xFFFFFFFF, 0, 0, 0, 0}, {}},
        {"colour count huge", true, {40, 5, 5, 1, 8, BI_RGB, 0, 0, 0, 0xFFFFFFFF, 0}, {}},
        {"plain masks", true, {40, 5, 5, 1, 32, BI_BITFIELDS, 0, 0, 0, 0, 0}, {0xFF0000, 0xFF00, 0xFF}},
        {"masks of 16 bits", false, {40, 5, 5, 1, 32, BI_BITFIELDS, 0, 0, 0, 0, 0}, {0xF800, 0x7E0, 0x1F}},
        {"no masks", false, {40, 5, 5, 1, 32, BI_BITFIELDS, 0, 0, 0, 0, 0}, {}},
        {"short header", false, {12, 5, 5, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}},
        {"huge header", false, {0xFFFFFFFF, 5, 5, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}},
        {"no planes", false, {40, 5, 5, 0, 32, BI_RGB, 0, 0, 0, 0, 0}, {}},
        {"two planes", false, {40, 5, 5, 2, 32, BI_RGB, 0, 0, 0, 0, 0}, {}},
        {"no width", false, {40, 0, 5, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}},
        {"no height", false, {40, 5, 0, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}},
        {"least height", false, {40, 5, kMin, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}},
        {"over the limit", false, {40, 0x8000, 0x8000, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}},
        {"overflowing", false, {40, kMax, kMax, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}},
        {"depth 0", false, {40, 5, 5, 1, 0, BI_RGB, 0, 0, 0, 0, 0}, {}},
        {"depth 2", false, {40, 5, 5, 1, 2, BI_RGB, 0, 0, 0, 0, 0}, {}},
        {"depth 64", false, {40, 5, 5, 1, 64, BI_RGB, 0, 0, 0, 0, 0}, {}},
        {"packed", false, {40, 5, 5, 1, 32, 1, 0, 0, 0, 0, 0}, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        SectionInfo info(5, 5, 32);
        info.header = row.header;
        std::copy(std::begin(row.masks), std::end(row.masks), info.colors);
        void* bits = &info;
        const HBITMAP bitmap = CreateDIBSection(nullptr, info.Info(), DIB_RGB_COLORS, &bits, nullptr, 0);
        EXPECT_EQ(bitmap != nullptr, row.good);
        EXPECT_EQ(bits != nullptr, row.good);
        EXPECT_EQ(DeleteObject(bitmap) != FALSE, row.good);
    }
    SectionInfo info(5, 5, 32);
    EXPECT_EQ(CreateDIBSection(nullptr, nullptr, DIB_RGB_COLORS, nullptr, nullptr, 0), nullptr);
    EXPECT_EQ(CreateDIBSection(nullptr, info.Info(), 1, nullptr, nullptr, 0), nullptr);
    EXPECT_EQ(CreateDIBSection(nullptr, info.Info(), DIB_RGB_COLORS, nullptr, &info, 0), nullptr);
    const HBITMAP bitmap = CreateDIBSection(nullptr, info.Info(), DIB_RGB_COLORS, nullptr, nullptr, 0);
    EXPECT_TRUE(DeleteObject(bitmap));
}

TEST(Bitmaps, PixelsPastAShortColourTableAreBlack) {
    SectionInfo info(2, -1, 8);
    info.header.biClrUsed = 3;
    info.colors[2] = 0x123456;
    info.colors[3] = 0x654321;  // not the header's any more
    void* bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(nullptr, info.Info(), DIB_RGB_COLORS, &bits, nullptr, 0);
    const HDC dc = CreateCompatibleDC(nullptr);
    SelectObject(dc, bitmap);
    const struct {
        std::uint8_t pixel;
        COLORREF color;
    } rows[] = {{2, RGB(0x12, 0x34, 0x56)}, {3, 0}, {200, 0}, {255, 0}};
    for (const auto& row : rows) {
        *static_cast<std::uint8_t*>(bits) = row.pixel;
        EXPECT_EQ(GetPixel(dc, 0, 0), row.color) << int{row.pixel};
    }
    DeleteDC(dc);
    DeleteObject(bitmap);
}

TEST(Bitmaps, DescriptionsNeedTheirRoom) {
    const HBITMAP bitmap = CreateBitmap(1, 1, 1, 1, nullptr);
    const HPEN pen = CreatePen(PS_SOLID, 1, 0);
    const HBRUSH brush = CreateSolidBrush(0);
    const LOGFONTW asked{};
    const HFONT font = CreateFontIndirectW(&asked);
    const struct {
        HGDIOBJ object;
        int size;
    } rows[] = {
        {bitmap, sizeof(BITMAP)}, {pen, sizeof(LOGPEN)}, {brush, sizeof(LOGBRUSH)}, {font, sizeof(LOGFONTW)}};
    for (const auto& row : rows) {
        std::uint8_t room[128];
        std::memset(room, 0xEE, sizeof room);
        EXPECT_EQ(GetObjectW(row.object, row.size - 1, room), 0);
        EXPECT_EQ(GetObjectW(row.object, -1, room), 0);
        EXPECT_EQ(room[0], 0xEE);
        EXPECT_EQ(GetObjectW(row.object, row.size + 5, room), row.size);
        EXPECT_EQ(room[row.size], 0xEE);
        EXPECT_EQ(GetObjectW(row.object, 0, nullptr), row.size);
        DeleteObject(row.object);
    }
}

// The room for its sides and for its sources is larger than anything that 32 bits count.
TEST(Bitmaps, TheTallestHasFiguresFailThatNeedTooMuchMemory) {
    if (sizeof(void*) > 4) GTEST_SKIP() << "here there is room, and it takes gibibytes";
    constexpr int kRows = 1 << 28;
    const Board tall(kLayouts[1], 1, kRows), small(kLayouts[1], 8, 8);
    const POINT corners[] = {{0, 0}, {3, 0}, {2, kRows}};
    EXPECT_FALSE(Polygon(tall.Dc(), corners, 3));
    EXPECT_EQ(GetLastError(), ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_FALSE(StretchBlt(tall.Dc(), 0, 0, 1, kRows, small.Dc(), 0, 0, 8, 8, SRCCOPY));
    EXPECT_TRUE(Rectangle(tall.Dc(), 0, 0, 1, 9));
}

TEST(Tools, PensKeepTheRulesOfStyleAndWidth) {
    const struct {
        int style, width;
        UINT describedStyle;
        LONG describedWidth;
        int drawnStyle;
        std::int32_t drawnWidth;
    } rows[] = {
        {PS_SOLID, 0, PS_SOLID, 0, PS_SOLID, 1}, {PS_SOLID, -5, PS_SOLID, 5, PS_SOLID, 5},
        {PS_DASH, 0, PS_DASH, 0, PS_DASH, 1},    {PS_DASH, 2, PS_DASH, 2, PS_SOLID, 2},
        {PS_NULL, 7, PS_NULL, 1, PS_NULL, 1},    {-1, kMin, PS_SOLID, kMax, PS_SOLID, kMax},
    };
    const HDC dc = CreateCompatibleDC(nullptr);
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.style << ", " << row.width);
        const HPEN handle = CreatePen(row.style, row.width, RGB(1, 2, 3));
        LOGPEN description{};
        GetObjectW(handle, sizeof description, &description);
        EXPECT_EQ(description.lopnStyle, row.describedStyle);
        EXPECT_EQ(description.lopnWidth.x, row.describedWidth);
        SelectObject(dc, handle);
        EXPECT_EQ(device::FindContext(dc)->pen->style, row.drawnStyle);
        EXPECT_EQ(device::FindContext(dc)->pen->width, row.drawnWidth);
        DeleteObject(handle);
    }
    DeleteDC(dc);
}

}  // namespace
