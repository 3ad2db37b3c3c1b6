#include "zul/kernel/stream.h"

#include <gtest/gtest.h>

#include "tests/kernel/kernel_testing.h"

namespace zul {
namespace {

TEST(MemoryStreamTest, AShortReadLeavesTheTargetAndEndsTheStream) {
    CMemoryStream stream("abcde", 5);
    char text[4] = "...";
    ASSERT_TRUE(stream.Read(text, 3));
    EXPECT_FALSE(stream.Read(text, 3));
    EXPECT_STREQ(text, "abc");
    EXPECT_EQ(stream.GetRemaining(), 0u);
    EXPECT_FALSE(stream.Read(text, 1));
    EXPECT_TRUE(stream.Read(nullptr, 0));
}

TEST(MemoryStreamTest, WritesOverwriteThenGrow) {
    CMemoryStream stream("abcde", 5);
    stream.SetPosition(3);
    ASSERT_TRUE(stream.Write("XYZ", 3));
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(stream.GetBuffer()), stream.GetSize()), "abcXYZ");
    stream.SetPosition(1000);
    EXPECT_EQ(stream.GetPosition(), 6u);
    EXPECT_FALSE(stream.Write(nullptr, 1));
    EXPECT_FALSE(CMemoryStream(nullptr, 5).Read(&stream, 1));
}

TEST(FileStreamTest, ReadsBackWhatItWrote) {
    const CScratchPath path;
    ASSERT_TRUE(CFileStream(path.Wide().c_str(), u"wb").Write("abcdef", 6));
    ASSERT_TRUE(CFileStream(path.Wide().c_str(), u"ab").Write("gh", 2));
    CFileStream stream(path.Wide().c_str(), u"r+b");
    EXPECT_EQ(stream.GetRemaining(), 8u);
    char text[9] = "";
    ASSERT_TRUE(stream.Read(text, 2));
    ASSERT_TRUE(stream.Write("XY", 2));
    EXPECT_EQ(stream.GetRemaining(), 4u);
    ASSERT_TRUE(stream.Read(text, 4));
    EXPECT_STREQ(text, "efgh");
    CFileStream again(path.Wide().c_str(), u"rb");
    EXPECT_FALSE(again.Read(text, 9));
    EXPECT_STREQ(text, "efgh");
    std::filesystem::resize_file(path.Get(), std::uintmax_t{5} << 30);
    EXPECT_EQ(CFileStream(path.Wide().c_str(), u"rb").GetRemaining(), std::uint64_t{5} << 30);
}

TEST(FileStreamTest, WithoutAFileEverythingFails) {
    const CScratchPath missing;
    std::filesystem::create_directory(missing.Get());
    const struct {
        std::u16string Path;
        const char16_t* Mode;
    } rows[] = {
        {missing.Wide() + u"/none", u"rb"}, {missing.Wide(), u"rb"},  // a directory
        {missing.Wide() + u"/none", u""},   {u"\xD800", u"wb"},      {u"", u"wb"},
    };
    for (const auto& row : rows) {
        CFileStream stream(row.Path.c_str(), row.Mode);
        char byte = 'x';
        EXPECT_FALSE(stream.IsOpen() || stream.Read(&byte, 1) || stream.Write(&byte, 1));
        EXPECT_EQ(stream.GetRemaining(), 0u);
    }
    EXPECT_FALSE(CFileStream(nullptr, u"rb").IsOpen());
    EXPECT_FALSE(CFileStream(missing.Wide().c_str(), nullptr).IsOpen());
}

}  // namespace
}  // namespace zul
