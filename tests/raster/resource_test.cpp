#include <gtest/gtest.h>

#include "platform/software/resources.h"
#include "tests/raster/raster_testing.h"
#include "zul/raster/dib_section.h"

namespace {

using namespace zultest;

TEST(BitmapResources, GiveBitmapsTheirPictureAndSectionsTheirSize) {
    int place;
    const auto module = reinterpret_cast<HMODULE>(&place);
    const Bytes good = NoiseImage(8), topDown = Packed(Header(2, -2, 8, 0, 0), Bytes(1032)),
                huge = Packed(Header(5, 3, 8, 0xFFFFFFFF, 0), Bytes(9)), tiny(39);
    struct Row {
        const Bytes& bytes;
        bool bitmap, section;
        std::int32_t dib, width;  ///< of the section's packed image
    };
    const Row rows[] = {{good, true, true, 40 + 1024 + 24, 5},
                        {topDown, true, true, 40 + 1024, 2},
                        {huge, false, true, 0, 5},
                        {tiny, false, false, 0, 0}};
    for (const Row& row : rows) {
        const Bytes before = row.bytes;
        ASSERT_TRUE(device::RegisterBitmapResource(module, u"Map", row.bytes.data(), row.bytes.size()));
        zul::CBitmap bitmap;
        EXPECT_EQ(bitmap.Create(module, u"mAP"), row.bitmap);
        zul::CDibSection section;
        EXPECT_EQ(section.Create(module, u"Map"), row.section);
        EXPECT_EQ(section.GetWidth(), row.width);
        EXPECT_EQ(section.GetDIBSize(), row.dib);
        EXPECT_EQ(section.GetPixel(0, 0), 0);
        EXPECT_EQ(row.bytes, before);
    }
    Reports reports;
    zul::CDibSection section;
    EXPECT_TRUE(section.Create(module, MAKEINTRESOURCEW(7)));
    EXPECT_EQ(reports.Only(), "0: CreateDIBSection. Can't find specified resource");
    ASSERT_TRUE(device::RegisterBitmapResource(module, MAKEINTRESOURCEW(7), good.data(), good.size()));
    EXPECT_TRUE(section.Create(module, u"#7"));
    EXPECT_NE(section.GetHandle(), nullptr);
    const HRSRC stale = ::FindResourceW(module, u"#7", RT_BITMAP);
    device::RemoveBitmapResources(module);
    EXPECT_EQ(::LoadResource(module, stale), nullptr);
    EXPECT_EQ(::SizeofResource(module, stale), 0u);
    EXPECT_FALSE(zul::CBitmap().Create(module, u"Map"));
}

TEST(PrinterPage, ReadsThePictureInBetweenFromTheSourcePlaceAgain) {
    const std::uint32_t bits[] = {0xFF0000, 0x00FF00, 0x0000FF, 0x000000};
    zul::CBitmap bitmap;
    ASSERT_TRUE(bitmap.Create(4, 1, 32, bits));
    struct Row {
        std::int32_t x, width, sourceX;
        zul::CBitmap::TRop rop;
        std::string page;
    };
    const Row rows[] = {
        {1, 4, 0, zul::CBitmap::RopSourceCopy, ".rgb#."},
        {0, 3, 1, zul::CBitmap::RopSourceCopy, "b#...."},  // the picture in between is "gb#", read from 1 on
        {0, 2, 0, zul::CBitmap::RopSourceAnd, "##...."},   // ANDed into an empty picture first
        {0, -2, 0, zul::CBitmap::RopSourceCopy, "......"},
    };
    for (const Row& row : rows) {
        device::DisplaySettings page;
        page.width = 6;
        page.height = 1;
        zul::CCanvas canvas;
        canvas.AttachToDevice(device::CreatePrinterPage(page), true);
        Reports reports;
        bitmap.BitBlt(&canvas, row.x, 0, row.width, 1, row.sourceX, 0, row.rop);
        EXPECT_EQ(PictureOf(canvas, 6, 1), Picture{row.page});
        EXPECT_EQ(reports.List.size(), row.width < 0 ? 1u : 0u);
    }
}

}  // namespace
