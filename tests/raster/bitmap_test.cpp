#include "zul/raster/bitmap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "tests/canvas/canvas_testing.h"
#include "zul/kernel/library.h"
#include "zul/kernel/stream.h"

namespace {

using namespace zultest;
using zul::CBitmap;

using Bytes = std::vector<std::uint8_t>;

/// A packed image: the header with the fields a test sets, then \p tail.
Bytes Packed(const BITMAPINFOHEADER& header, const Bytes& tail) {
    Bytes bytes(sizeof header + tail.size());
    std::memcpy(bytes.data(), &header, sizeof header);
    std::copy(tail.begin(), tail.end(), bytes.begin() + sizeof header);
    return bytes;
}

BITMAPINFOHEADER Header(std::int32_t width, std::int32_t height, WORD depth, DWORD colors, DWORD imageSize) {
    BITMAPINFOHEADER header{};
    header.biSize = 40;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = depth;
    header.biClrUsed = colors;
    header.biSizeImage = imageSize;
    return header;
}

TEST(PackedBitmap, FiguresFollowFromTheHeader) {
    struct Row {
        BITMAPINFOHEADER header;
        std::int32_t row, colors, image, dib;
    };
    const Row rows[] = {
        {Header(33, 2, 1, 0, 0), 8, 2, 16, 40 + 8 + 16},
        {Header(3, 2, 24, 0, 0), 12, 0, 24, 40 + 24},
        {Header(3, 1, 8, 0, 0), 4, 256, 4, 40 + 1024 + 4},
        {Header(3, 1, 8, 16, 0), 4, 16, 4, 40 + 64 + 4},
        {Header(3, 1, 24, 16, 0), 12, 16, 12, 40 + 64 + 12},
        {Header(2, -3, 32, 0, 0), 8, 0, 24, 40 + 24},
        {Header(2, 3, 32, 0, 7), 8, 0, 7, 40 + 7},
        {Header(1, 1, 32, 0, 0x80000000), 4, 0, INT32_MIN, 40},
    };
    for (const Row& row : rows) {
        CBitmap bitmap;
        const Bytes bytes = Packed(row.header, Bytes(2000));
        ASSERT_TRUE(bitmap.Create(bytes.data()));
        EXPECT_EQ(bitmap.GetRowSize(), row.row);
        EXPECT_EQ(bitmap.GetPaletteEntriesCount(), row.colors);
        EXPECT_EQ(bitmap.GetPaletteSize(), 4 * row.colors);
        EXPECT_EQ(bitmap.GetImageSize(), row.image);
        EXPECT_EQ(bitmap.GetDIBSize(), row.dib);
        EXPECT_EQ(bitmap.GetWidth(), row.header.biWidth);
        EXPECT_EQ(bitmap.GetHeight(), row.header.biHeight);
        EXPECT_TRUE(bitmap.IsValid());
    }
}

TEST(PackedBitmap, HostileHeadersAreRefusedOrGiveZero) {
    struct Row {
        const char* name;
        BITMAPINFOHEADER header;
        bool stored;
    };
    BITMAPINFOHEADER shortHeader = Header(1, 1, 32, 0, 0);
    shortHeader.biSize = 39;
    BITMAPINFOHEADER hugeHeader = Header(1, 1, 32, 0, 0);
    hugeHeader.biSize = 0xFFFFFFFF;
    const Row rows[] = {
        {"short header", shortHeader, false},
        {"huge header", hugeHeader, false},
        {"colours overflow", Header(1, 1, 8, 0x80000000, 0), false},
        {"most colours", Header(1, 1, 8, 0xFFFFFFFF, 0), false},
        {"pixels overflow", Header(INT32_MAX, INT32_MAX, 0xFFFF, 0, 0), false},
        {"smallest height", Header(INT32_MAX, INT32_MIN, 32, 0, 0), false},
        {"announced size overflows", Header(1, 1, 32, 0, 0x7FFFFFFF), false},
        {"negative width", Header(INT32_MIN, INT32_MIN, 0xFFFF, 0, 0), true},
        {"nothing", BITMAPINFOHEADER{}, false},
    };
    for (const Row& row : rows) {
        CBitmap bitmap;
        const Bytes bytes = Packed(row.header, Bytes(64));
        EXPECT_EQ(bitmap.Create(bytes.data()), row.stored) << row.name;
        EXPECT_EQ(bitmap.GetHandle(), nullptr) << row.name;
        EXPECT_EQ(bitmap.GetImageSize(), 0) << row.name;
        EXPECT_EQ(bitmap.GetBits(), nullptr) << row.name;
    }
    CBitmap bitmap;
    EXPECT_FALSE(bitmap.Create(nullptr));
    EXPECT_FALSE(bitmap.Create(nullptr, 100));
    const Bytes bytes = Packed(Header(2, 2, 32, 0, 0), Bytes(16));
    EXPECT_TRUE(bitmap.Create(bytes.data(), 56));
    EXPECT_FALSE(bitmap.Create(bytes.data(), 55));
    EXPECT_FALSE(bitmap.Create(bytes.data(), 39));
}

TEST(PackedBitmap, HandleIsMadeOnlyFromWhatTheDeviceCanRead) {
    struct Row {
        const char* name;
        DWORD size;
        std::int32_t width, height;
        WORD planes, depth;
        DWORD compression, colors;
        bool made;
    };
    const Row rows[] = {
        {"plain", 40, 2, 2, 1, 8, 0, 0, true},        {"top-down", 40, 2, -2, 1, 8, 0, 0, true},
        {"few colours", 40, 2, 2, 1, 8, 0, 1, true},  {"compressed", 40, 2, 2, 1, 8, 1, 0, false},
        {"masks", 40, 2, 2, 1, 32, 3, 0, false},      {"no planes", 40, 2, 2, 0, 8, 0, 0, false},
        {"two planes", 40, 2, 2, 2, 8, 0, 0, false},  {"odd depth", 40, 2, 2, 1, 3, 0, 0, false},
        {"deep", 40, 2, 2, 1, 64, 0, 0, false},       {"no width", 40, 0, 2, 1, 8, 0, 0, false},
        {"left width", 40, -2, 2, 1, 8, 0, 0, false}, {"no height", 40, 2, 0, 1, 8, 0, 0, false},
        {"long header", 44, 2, 2, 1, 8, 0, 0, false}, {"too large", 40, 1 << 20, 1 << 20, 1, 8, 0, 0, false},
    };
    for (const Row& row : rows) {
        NoLeaks leaks;
        BITMAPINFOHEADER header = Header(row.width, row.height, row.depth, row.colors, 8);
        header.biSize = row.size;
        header.biPlanes = row.planes;
        header.biCompression = row.compression;
        CBitmap bitmap;
        const Bytes bytes = Packed(header, Bytes(1100));
        ASSERT_TRUE(bitmap.Create(bytes.data())) << row.name;
        EXPECT_EQ(bitmap.GetHandle() != nullptr, row.made) << row.name;
    }
}

TEST(PackedBitmap, PixelsAndColoursArriveInTheHandle) {
    // Two colours of four, two rows, the lower one first.
    const Bytes colors = {0, 0, 255, 0, 0, 255, 0, 0};
    const Bytes pixels = {0, 1, 0, 0, 1, 9, 0, 0};
    struct Row {
        const char* name;
        DWORD imageSize;
        std::size_t kept;  ///< pixel bytes that are there
        std::int32_t lowerLeft, lowerRight, upperLeft;
    };
    const Row rows[] = {
        {"whole", 8, 8, Red, Green, Green},
        {"announced as nothing, so nothing is copied", 0, 8, Red, Red, Red},
        {"announced shorter", 4, 8, Red, Green, Red},
        {"announced longer than the section", 12, 12, Red, Green, Green},
        {"negative", 0xFFFFFFFF, 8, Red, Red, Red},
    };
    for (const Row& row : rows) {
        Bytes tail = colors;
        tail.insert(tail.end(), pixels.begin(), pixels.end());
        tail.resize(colors.size() + row.kept);
        CBitmap bitmap;
        const Bytes bytes = Packed(Header(2, 2, 8, 2, row.imageSize), tail);
        ASSERT_TRUE(bitmap.Create(bytes.data(), static_cast<std::uint32_t>(bytes.size()))) << row.name;
        ASSERT_NE(bitmap.GetHandle(), nullptr) << row.name;
        zul::CCanvas canvas;
        canvas.CreateMemoryCanvas();
        canvas.AssignBitmap(&bitmap);
        EXPECT_EQ(canvas.GetPixel(0, 1), row.lowerLeft) << row.name;
        EXPECT_EQ(canvas.GetPixel(1, 1), row.lowerRight) << row.name;
        EXPECT_EQ(canvas.GetPixel(0, 0), row.upperLeft) << row.name;
        if (row.kept == 8 && row.imageSize == 8) {
            EXPECT_EQ(canvas.GetPixel(1, 0), Black) << "index 9 lies behind the two colours";
        }
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

TEST(Bitmap, RefusedCreationLeavesTheContents) {
    NoLeaks leaks;
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.Create(3, 4, 32, nullptr));
    const HBITMAP handle = bitmap.GetHandle();
    struct Row {
        std::int32_t width, height, depth;
    };
    for (const Row& row :
         {Row{-1, 4, 32}, Row{4, 4, -1}, Row{4, 4, 7}, Row{1 << 16, 1 << 16, 32},
          Row{INT32_MAX, INT32_MAX, 32}, Row{INT32_MIN, INT32_MIN, 1}, Row{2, 2, INT32_MAX}}) {
        EXPECT_FALSE(bitmap.Create(row.width, row.height, row.depth, nullptr)) << row.width << row.depth;
        EXPECT_EQ(bitmap.GetHandle(), handle);
    }
    EXPECT_FALSE(bitmap.CreateCompatible(-1, 5, nullptr));
    EXPECT_FALSE(bitmap.CreateCompatible(1 << 20, 1 << 20, nullptr));
    {
        FullDevice full;
        EXPECT_FALSE(bitmap.Create(2, 2, 32, nullptr));
        EXPECT_FALSE(bitmap.CreateCompatible(2, 2, nullptr));
    }
    EXPECT_EQ(bitmap.GetHandle(), handle);
    EXPECT_EQ(bitmap.GetWidth(), 3);
    EXPECT_EQ(bitmap.GetHeight(), 4);
}

TEST(Bitmap, OwnsWhatItMakesAndNotWhatItIsGiven) {
    NoLeaks leaks;
    const HBITMAP given = ::CreateBitmap(5, 6, 1, 32, nullptr);
    const auto alive = [&] { return ::GetObjectType(given) == OBJ_BITMAP; };
    {
        CBitmap bitmap;
        ASSERT_TRUE(bitmap.Create(2, 2, 32, nullptr));
        bitmap.AttachHandle(given);
        EXPECT_EQ(bitmap.GetWidth(), 5);
        bitmap.Clear();
        EXPECT_TRUE(alive());
        EXPECT_FALSE(bitmap.IsValid());
        bitmap.AttachHandle(given);
        bitmap.AttachHandle(nullptr);
        EXPECT_FALSE(bitmap.IsValid());
        bitmap.AttachHandle(given);
    }
    EXPECT_TRUE(alive()) << "the bitmap is gone, the handle is not";
    {
        CBitmap bitmap;
        bitmap.AttachHandle(given);
        ASSERT_TRUE(bitmap.Create(2, 2, 32, nullptr));
        EXPECT_TRUE(alive()) << "a new image does not take the old handle along";
    }
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
    NoLeaks leaks;
    EXPECT_EQ(CBitmap::GetPatternBitmap(), nullptr);
    InitializeLibrary();
    CBitmap* pattern = CBitmap::GetPatternBitmap();
    ASSERT_NE(pattern, nullptr);
    EXPECT_EQ(pattern->GetWidth(), 8);
    EXPECT_EQ(pattern->GetHeight(), 8);
    BITMAP description{};
    ::GetObjectW(pattern->GetHandle(), sizeof description, &description);
    EXPECT_EQ(description.bmBitsPixel, 1);

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
