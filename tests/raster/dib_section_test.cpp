#include "zul/raster/dib_section.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/raster/raster_testing.h"
#include "zul/kernel/stream.h"

namespace {

using namespace zultest;
using zul::CDibSection;

constexpr char Corrupt[] = "5: CreateDIBSection. Invalid or corrupt file";

const std::uint8_t* BitsOf(CDibSection& section) {
    return static_cast<const std::uint8_t*>(section.GetDIBBits());
}

TEST(DibSectionFiles, EveryDepthComesBackByteForByte) {
    for (const WORD depth : Depths) {
        SCOPED_TRACE(depth);
        const zul::CScratchPath path, saved, again;
        const Bytes packed = NoiseImage(depth);
        const auto tail = static_cast<std::uint32_t>(3 * dib::RowSize(5, depth));
        const Bytes file = File(packed, static_cast<std::uint32_t>(14 + packed.size() - tail));
        Put(path, file);
        CDibSection section;
        ASSERT_TRUE(section.Create(path.Wide().c_str()));
        ASSERT_NE(section.GetHandle(), nullptr);
        EXPECT_EQ(std::memcmp(section.GetDIBBits(), &packed[packed.size() - tail], tail), 0);
        EXPECT_TRUE(section.SaveToFile(saved.Wide().c_str()));
        EXPECT_EQ(Get(saved), file);

        // The device's own reader sees the same picture.
        zul::CBitmap read;
        ASSERT_TRUE(read.Create(path.Wide().c_str()));
        EXPECT_EQ(Colors(read, 5, 3), Colors(section, 5, 3));

        // What is stored has the pixels, but no section until one is made from it.
        zul::CMemoryStream stream;
        ASSERT_TRUE(section.ObjectToBuffer(&stream));
        stream.SetPosition(0);
        CDibSection stored;
        ASSERT_TRUE(stored.ObjectFromBuffer(&stream));
        EXPECT_EQ(stored.GetHandle(), nullptr);
        EXPECT_EQ(stored.GetDIBBits(), nullptr);
        for (int i = 0; i < 15; ++i)
            EXPECT_EQ(stored.GetPixel(i % 5, i / 5), section.GetPixel(i % 5, i / 5));
        EXPECT_TRUE(stored.SaveToFile(again.Wide().c_str()));
        EXPECT_EQ(Get(again), file);
    }
}

TEST(DibSectionFiles, OnlyAPlainWholeFileIsTaken) {
    const Bytes good = NoiseImage(24);
    struct Row {
        const char* name;
        std::size_t field, size;  ///< of the info header, to be changed
        std::int64_t value;
        bool read;
    };
    const Row rows[] = {
        {"as it is", 0, 4, 40, true},          {"image size not stated", 20, 4, 0, true},
        {"image size wrong", 20, 4, -5, true}, {"resolution", 24, 4, -1, true},
        {"short header", 0, 4, 12, false},     {"long header", 0, 4, 124, false},
        {"no header", 0, 4, -1, false},        {"top-down", 8, 4, -3, false},
        {"one row more", 8, 4, 4, false},      {"lowest row", 8, 4, INT32_MIN, false},
        {"no rows", 8, 4, 0, false},           {"no width", 4, 4, 0, false},
        {"left width", 4, 4, -5, false},       {"widest", 4, 4, INT32_MAX, false},
        {"two planes", 12, 2, 2, false},       {"no depth", 14, 2, 0, false},
        {"deeper", 14, 2, 32, false},          {"odd depth", 14, 2, 2, false},
        {"deepest", 14, 2, 0xFFFF, false},     {"compressed", 16, 4, 1, false},
        {"one colour", 32, 4, 1, false},       {"all colours", 32, 4, -1, false},
    };
    const zul::CScratchPath path;
    for (const Row& row : rows) {
        Bytes packed = good;
        std::memcpy(&packed[row.field], &row.value, row.size);
        Put(path, File(packed, 54));
        Reports reports;
        CDibSection section;
        EXPECT_TRUE(section.Create(path.Wide().c_str())) << row.name;
        EXPECT_EQ(section.GetHandle() != nullptr, row.read) << row.name;
        EXPECT_EQ(section.GetDIBBits() != nullptr, row.read) << row.name;
        EXPECT_EQ(reports.Only(), row.read ? "0 reports" : Corrupt) << row.name;
    }
    // Every cut, a foreign type, no file at all; reported by throwing.
    Bytes file = File(good, 54);
    ThrowingScope throwing;
    for (; !file.empty(); file.resize(file.size() - 1)) {
        if (file.size() == 14 + good.size()) continue;
        Put(path, file);
        CDibSection section;
        EXPECT_THROW(section.Create(path.Wide().c_str()), zul::CRunError) << file.size();
        EXPECT_EQ(section.GetHandle(), nullptr);
    }
    file = File(good, 54);
    file[1] = 'X';
    Put(path, file);
    CDibSection section;
    EXPECT_THROW(section.Create(path.Wide().c_str()), zul::CRunError);
    EXPECT_THROW(section.Create(u"no such file.bmp"), zul::CRunError);
    EXPECT_THROW(section.Create(static_cast<const char16_t*>(nullptr)), zul::CRunError);
}

TEST(DibSectionFiles, PixelsAreTakenFromBehindTheTableWhateverTheFileSays) {
    const zul::CScratchPath path;
    Put(path, File(NoiseImage(24), 58));
    CDibSection section;
    section.Create(path.Wide().c_str());
    ASSERT_NE(section.GetDIBBits(), nullptr);
    EXPECT_EQ(std::memcmp(section.GetDIBBits(), &NoiseImage(24)[40], 48), 0);
}

TEST(DibSection, MadeForASizeHasGreysButSavesNoTable) {
    const zul::CScratchPath path;
    for (const WORD depth : Depths) {
        SCOPED_TRACE(depth);
        const std::int64_t rows = 3 * dib::RowSize(5, depth);
        const Bytes pixels = Noise(static_cast<std::size_t>(rows), depth);
        CDibSection section;
        EXPECT_TRUE(section.Create(5, 3, depth, pixels.data()));
        ASSERT_NE(section.GetDIBBits(), nullptr);
        EXPECT_EQ(std::memcmp(section.GetDIBBits(), pixels.data(), pixels.size()), 0);
        const std::int32_t colors = static_cast<std::int32_t>(dib::FullColorCount(depth));
        EXPECT_EQ(section.GetColorUsed(), 0);
        EXPECT_EQ(section.GetPaletteEntriesCount(), colors);
        for (std::int32_t i = 0; i < colors; ++i) {
            const auto grey = static_cast<std::uint8_t>(i);
            const std::uint8_t entry[] = {grey, grey, grey, 0};
            EXPECT_EQ(std::memcmp(section.GetPaletteEntries() + 4 * i, entry, 4), 0) << i;
        }
        EXPECT_TRUE(section.SaveToFile(path.Wide().c_str()));
        const Bytes file = Get(path);
        ASSERT_EQ(file.size(), 54 + pixels.size());
        EXPECT_EQ(file[10], 54);
        EXPECT_EQ(Bytes(file.begin() + 54, file.end()), pixels);
        // The packed image counts the colours that its header leaves open, the copy into it does not.
        section.ExtractBitsFromHandle(nullptr);
        EXPECT_EQ(section.GetDIBSize(), 40 + 4 * colors + rows);
        EXPECT_EQ(std::memcmp(section.GetPaletteEntries(), pixels.data(), pixels.size()), 0);
    }
    // The former pixels may be the new ones.
    CDibSection section;
    const Bytes pixels = Noise(32, 1);
    section.Create(4, 2, 32, pixels.data());
    section.Create(2, 4, 32, section.GetDIBBits());
    EXPECT_EQ(std::memcmp(section.GetDIBBits(), pixels.data(), 32), 0);
    section.ExtractBitsFromHandle(nullptr);
    section.Create(1, 8, 32, section.GetBits());
    EXPECT_EQ(std::memcmp(section.GetDIBBits(), pixels.data(), 32), 0);
    EXPECT_TRUE(section.CreateCompatible(3, 2, nullptr));
    EXPECT_EQ(section.GetRowSize(), 3 * device::GetDisplay().bitsPerPixel / 8);
}

TEST(DibSection, RefusedSizesAreReportedAndLeaveNoSection) {
    const std::int32_t sizes[][3] = {{0, 4, 32},
                                     {-4, 4, 32},
                                     {4, 0, 32},
                                     {4, 4, 2},
                                     {4, 4, 64},
                                     {4, 4, 65544},
                                     {INT32_MAX, INT32_MAX, 32},
                                     {INT32_MIN, INT32_MIN, INT32_MAX},
                                     {1 << 16, 1 << 16, 8}};
    const zul::CScratchPath path;
    for (const auto& [width, height, depth] : sizes) {
        SCOPED_TRACE(width);
        Reports reports;
        CDibSection section;
        EXPECT_TRUE(section.Create(width, height, depth, nullptr));
        EXPECT_EQ(reports.Only(), "0: Bitmap.\tFailed to create compatible dibsection.");
        EXPECT_EQ(section.GetHandle(), nullptr);
        EXPECT_EQ(section.GetWidth(), width);
        section.SetPixel(0, 0, 1);
        EXPECT_LE(section.GetPixel(0, 0), 0);
    }
    Reports reports;
    CDibSection section;
    section.Create(2, 2, 32, nullptr);
    EXPECT_FALSE(section.SaveToFile(u"no/such/folder/x.bmp"));
    EXPECT_EQ(reports.Only(), "0: Failed to create specified file");
    EXPECT_FALSE(CDibSection().SaveToFile(path.Wide().c_str()));
    EXPECT_TRUE(Get(path).empty());
    ThrowingScope throwing;
    EXPECT_THROW(section.Create(0, 0, 0, nullptr), zul::CInternalError);
    EXPECT_THROW(section.Create(nullptr, u"none"), zul::CInternalError);
}

TEST(DibSectionPixels, FollowTheRulesOfTheirDepth) {
    struct Row {
        WORD depth;
        std::int32_t x;
        Bytes row;  ///< before
        std::int32_t read, color;
        Bytes expected;
    };
    const Row rows[] = {
        {1, 1, {0x40, 0, 0, 0}, 1, 2, {0, 0, 0, 0}},
        {1, 9, {0xFF, 0, 0, 0}, 0, 3, {0xFF, 0x40, 0, 0}},
        {4, 0, {0xAB, 0, 0, 0}, 11, 14, {0xA1, 0, 0, 0}},
        {4, 0, {0xAB, 0, 0, 0}, 11, 0, {0xA0, 0, 0, 0}},
        {4, 1, {0xAB, 0, 0, 0}, 10, 255, {0x0B, 0, 0, 0}},
        {4, 1, {0xAA, 0, 0, 0}, 10, 256, {0x0A, 0, 0, 0}},
        {8, 1, {0, 200, 0, 0}, -56, 0x1FE, {0, 0xFE, 0, 0}},
        {16, 1, {0, 0, 0xFE, 0xFF}, -2, 0x12345, {0, 0, 0x45, 0x23}},
        {24, 0, {0, 0, 0, 1}, 1, 0x70F, {15, 0, 0, 1}},
        {24, 1, {9, 9, 9, 0, 0, 0, 0, 8}, 0, 0, {9, 9, 9, 0, 0, 0, 0, 8}},
        {32, 0, {1, 2, 3, 0x80}, INT32_MIN + 0x030201, -2, {0xFE, 0xFF, 0xFF, 0xFF}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.depth << " bits, x " << row.x);
        CDibSection section;
        section.Create(static_cast<std::int32_t>(row.row.size() * 8 / row.depth), 1, row.depth,
                       row.row.data());
        ASSERT_NE(section.GetDIBBits(), nullptr);
        EXPECT_EQ(section.GetPixel(row.x, 0), row.read);
        section.SetPixel(row.x, 0, row.color);
        EXPECT_EQ(Bytes(BitsOf(section), BitsOf(section) + row.row.size()), row.expected);

        // Without a section the packed image is read and changed by the same rules.
        CDibSection packed;
        Bytes tail(static_cast<std::size_t>(4 * dib::FullColorCount(row.depth)));
        tail.insert(tail.end(), row.row.begin(), row.row.end());
        ASSERT_TRUE(packed.Create(Packed(Header(section.GetWidth(), 1, row.depth, 0, 0), tail).data()));
        EXPECT_EQ(packed.GetPixel(row.x, 0), row.read);
        packed.SetPixel(row.x, 0, row.color);
        EXPECT_EQ(Bytes(packed.GetBits(), packed.GetBits() + row.row.size()), row.expected);
    }
}

TEST(DibSectionPixels, PlacesOutsideReadNothingAndTakeNothing) {
    for (const WORD depth : Depths) {
        for (const bool detached : {false, true}) {
            CDibSection section;
            section.Create(5, 3, depth, nullptr);
            // A larger header than the section's must not open more memory.
            if (depth == 32) {
                ASSERT_TRUE(section.Create(Packed(Header(500, 300, 32, 0, 60), Bytes(60)).data()));
            }
            const HBITMAP handle = detached ? section.DetachHandle() : nullptr;
            for (const std::int32_t x : {INT32_MIN, -1, 0, 499, INT32_MAX}) {
                for (const std::int32_t y : {INT32_MIN, -1, 3, 299, INT32_MAX}) {
                    section.SetPixel(x, y, -1);
                    EXPECT_EQ(section.GetPixel(x, y), 0) << depth << ": " << x << ", " << y;
                }
            }
            ::DeleteObject(handle);
        }
    }
}

}  // namespace
