#include "zul/raster/bitmap.h"

#include <gtest/gtest.h>

#include "tests/raster/raster_testing.h"
#include "zul/kernel/library.h"
#include "zul/kernel/stream.h"

namespace {

using namespace zultest;
using zul::CBitmap;

TEST(PackedBitmap, HostileHeadersAreRefusedOrGiveZero) {
    BITMAPINFOHEADER shortHeader = Header(1, 1, 32, 0, 0);
    shortHeader.biSize = 39;
    BITMAPINFOHEADER hugeHeader = Header(1, 1, 32, 0, 0);
    hugeHeader.biSize = 0xFFFFFFFF;
    const BITMAPINFOHEADER negativeWidth = Header(INT32_MIN, INT32_MIN, 0xFFFF, 0, 0);
    for (const BITMAPINFOHEADER& header :
         {BITMAPINFOHEADER{}, shortHeader, hugeHeader, Header(1, 1, 8, 0x80000000, 0),
          Header(1, 1, 8, 0xFFFFFFFF, 0), Header(INT32_MAX, INT32_MAX, 0xFFFF, 0, 0),
          Header(INT32_MAX, INT32_MIN, 32, 0, 0), Header(1, 1, 32, 0, 0x7FFFFFFF), negativeWidth}) {
        CBitmap bitmap;
        const bool stored = bitmap.Create(Packed(header, Bytes(64)).data());
        EXPECT_EQ(stored, header.biWidth < 0) << header.biWidth << " x " << header.biHeight;
        EXPECT_EQ(bitmap.GetHandle(), nullptr);
        EXPECT_EQ(bitmap.GetImageSize(), 0);
        EXPECT_EQ(bitmap.GetBits(), nullptr);
    }
    CBitmap bitmap;
    EXPECT_FALSE(bitmap.Create(static_cast<const void*>(nullptr)));
    EXPECT_FALSE(bitmap.Create(nullptr, 100));
    const Bytes bytes = Packed(Header(2, 2, 32, 0, 0), Bytes(16));
    EXPECT_TRUE(bitmap.Create(bytes.data(), 56));
    EXPECT_FALSE(bitmap.Create(bytes.data(), 55));
    EXPECT_FALSE(bitmap.Create(bytes.data(), 39));
}

TEST(PackedBitmap, PixelsAndColoursArriveInTheHandle) {
    // Two colours of four, two rows, the lower one first.
    Bytes tail = {0, 0, 255, 0, 0, 255, 0, 0, 0, 1, 0, 0, 1, 2, 0, 0};
    struct Row {
        const char* name;
        DWORD imageSize;
        Picture picture;
    };
    const Row rows[] = {
        {"whole; index 2 lies behind the two colours", 8, {"g#", "rg"}},
        {"announced as nothing, so nothing is copied", 0, {"rr", "rr"}},
        {"announced shorter", 4, {"rr", "rg"}},
        {"announced longer than the section", 12, {"g#", "rg"}},
        {"negative", 0xFFFFFFFF, {"rr", "rr"}},
    };
    for (const Row& row : rows) {
        tail.resize(row.imageSize == 12 ? 20 : 16);
        CBitmap bitmap;
        const Bytes bytes = Packed(Header(2, 2, 8, 2, row.imageSize), tail);
        ASSERT_TRUE(bitmap.Create(bytes.data(), static_cast<std::uint32_t>(bytes.size()))) << row.name;
        zul::CCanvas canvas;
        canvas.CreateMemoryCanvas();
        canvas.AssignBitmap(&bitmap);
        EXPECT_EQ(PictureOf(canvas, 2, 2), row.picture) << row.name;
        canvas.AssignBitmap(nullptr);
    }
}

TEST(PackedBitmap, MayBeCreatedFromItself) {
    CBitmap bitmap;
    const Bytes outer = Packed(Header(2, 2, 32, 0, 0), Bytes(16, 7));
    ASSERT_TRUE(bitmap.Create(outer.data()));
    const std::uint8_t* bits = bitmap.GetBits();
    ASSERT_NE(bits, nullptr);
    ASSERT_TRUE(bitmap.Create(bits - 40));
    EXPECT_EQ(bitmap.GetDIBSize(), 56);
    EXPECT_EQ(bitmap.GetBits()[15], 7);
}

TEST(PackedBitmap, SurvivesTheStreamAsASharedBuffer) {
    CBitmap bitmap;
    const Bytes bytes = Packed(Header(2, 2, 32, 0, 16), Bytes(16, 0xFF));
    ASSERT_TRUE(bitmap.Create(bytes.data()));
    zul::CMemoryStream stream;
    EXPECT_TRUE(bitmap.ObjectToBuffer(&stream));
    EXPECT_EQ(stream.GetSize(), 8u);
    stream.SetPosition(0);
    CBitmap copy;
    EXPECT_TRUE(copy.ObjectFromBuffer(&stream));
    EXPECT_EQ(copy.GetBits(), bitmap.GetBits()) << "one buffer for both";
    EXPECT_EQ(copy.GetBitmapMaskColor(), White);
}

TEST(BitmapFiles, AreSavedWithoutATableAndWithThePixelsThatThePackedImageHolds) {
    const zul::CScratchPath path;
    for (const WORD depth : Depths) {
        SCOPED_TRACE(depth);
        const Bytes packed = NoiseImage(depth);
        CBitmap bitmap;
        ASSERT_TRUE(bitmap.Create(packed.data()));
        EXPECT_TRUE(bitmap.SaveToFile(path.Wide().c_str()));
        Bytes file = Get(path);
        ASSERT_EQ(file.size(), 54u + static_cast<std::size_t>(bitmap.GetImageSize()));
        EXPECT_EQ(Bytes(file.begin() + 54, file.end()),
                  Bytes(packed.end() - bitmap.GetImageSize(), packed.end()));
        BITMAPINFOHEADER header = dib::ReadHeader(&file[14]);
        EXPECT_NEAR(header.biXPelsPerMeter, 3780, 40);
        EXPECT_NEAR(header.biYPelsPerMeter, 3780, 40);
        header.biXPelsPerMeter = header.biYPelsPerMeter = 0;
        const Bytes expected = Packed(Header(5, 3, depth, 0, static_cast<DWORD>(bitmap.GetImageSize())), {});
        EXPECT_EQ(Packed(header, {}), expected);
    }
    CBitmap bitmap;
    EXPECT_FALSE(bitmap.SaveToFile(path.Wide().c_str()));
    ASSERT_TRUE(bitmap.Create(2, 2, 32, Bytes(16, 0xFF).data()));
    EXPECT_TRUE(bitmap.SaveToFile(path.Wide().c_str()));
    const Bytes file = Get(path);
    EXPECT_EQ(Bytes(file.begin() + 54, file.end()), Bytes(16))
        << "a plain bitmap cannot reach its handle's pixels";
    for (const char16_t* nowhere : {u"no/such/folder/x.bmp", static_cast<const char16_t*>(nullptr)}) {
        Reports reports;
        EXPECT_FALSE(bitmap.SaveToFile(nowhere));
        EXPECT_EQ(reports.Only(), "5: Can't create file.");
    }
    const HBITMAP handle = bitmap.GetHandle();
    for (const char16_t* nothing : {u"no such file.bmp", static_cast<const char16_t*>(nullptr),
                                    reinterpret_cast<const char16_t*>(std::uintptr_t{7})})
        EXPECT_FALSE(bitmap.Create(nothing));
    EXPECT_EQ(bitmap.GetHandle(), handle);
}

TEST(Bitmap, RefusedCreationLeavesTheContents) {
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.Create(3, 4, 32, nullptr));
    const HBITMAP handle = bitmap.GetHandle();
    const std::int32_t refused[][3] = {
        {-1, 4, 32},       {4, 4, -1}, {4, 4, 7}, {1 << 16, 1 << 16, 32}, {INT32_MIN, INT32_MIN, 1},
        {2, 2, INT32_MAX},
    };
    for (const auto& [width, height, depth] : refused)
        EXPECT_FALSE(bitmap.Create(width, height, depth, nullptr))
            << width << " x " << height << " x " << depth;
    EXPECT_FALSE(bitmap.CreateCompatible(-1, 5, nullptr));
    EXPECT_FALSE(bitmap.CreateCompatible(1 << 20, 1 << 20, nullptr));
    {
        FullDevice full;
        EXPECT_FALSE(bitmap.Create(2, 2, 32, nullptr));
        EXPECT_FALSE(bitmap.CreateCompatible(2, 2, nullptr));
    }
    EXPECT_EQ(bitmap.GetHandle(), handle);
    EXPECT_EQ(bitmap.GetWidth(), 3);
}

TEST(Bitmap, OwnsWhatItMakesAndNotWhatItIsGiven) {
    const HBITMAP given = ::CreateBitmap(5, 6, 1, 32, nullptr);
    const auto alive = [&] { return ::GetObjectType(given) == OBJ_BITMAP; };
    {
        CBitmap bitmap;
        ASSERT_TRUE(bitmap.Create(2, 2, 32, nullptr));
        bitmap.AttachHandle(given);
        EXPECT_EQ(bitmap.GetWidth(), 5);
        bitmap.AttachHandle(nullptr);
        EXPECT_TRUE(alive());
        EXPECT_FALSE(bitmap.IsValid());
        bitmap.AttachHandle(given);
        ASSERT_TRUE(bitmap.Create(2, 2, 32, nullptr));
        EXPECT_TRUE(alive()) << "a new image does not take the old handle along";
        bitmap.AttachHandle(given);
    }
    EXPECT_TRUE(alive()) << "the bitmap is gone, the handle is not";
    HBITMAP detached;
    {
        CBitmap bitmap;
        ASSERT_TRUE(bitmap.Create(2, 2, 32, nullptr));
        const std::uint64_t changes = zul::CClient::GetModificationCount();
        detached = bitmap.DetachHandle();
        EXPECT_EQ(zul::CClient::GetModificationCount(), changes + 1);
        EXPECT_FALSE(bitmap.IsValid());
    }
    EXPECT_EQ(::GetObjectType(detached), OBJ_BITMAP);
    ::DeleteObject(detached);
    ::DeleteObject(given);
}

TEST(Bitmap, PatternIsThereBetweenStartAndEnd) {
    EXPECT_EQ(CBitmap::GetPatternBitmap(), nullptr);
    InitializeLibrary();
    CBitmap* pattern = CBitmap::GetPatternBitmap();
    ASSERT_NE(pattern, nullptr);
    // As a brush it paints the text colour everywhere.
    Surface surface(10, 3);
    surface.Canvas.GetBrush().SetType(zul::CBrush::BrushPattern);
    surface.Canvas.GetBrush().SetPattern(pattern);
    surface.Canvas.SetTextColor(Red);
    surface.Canvas.FillRect(0, 0, 10, 3, nullptr);
    EXPECT_EQ(surface.Look(), Picture(3, "rrrrrrrrrr"));
    InitializeLibrary();
    EXPECT_NE(CBitmap::GetPatternBitmap(), nullptr);
    FinalizeLibrary();
    EXPECT_EQ(CBitmap::GetPatternBitmap(), nullptr);
    EXPECT_EQ(surface.Canvas.GetBrush().GetPattern(), nullptr);
    FinalizeLibrary();
}

}  // namespace
