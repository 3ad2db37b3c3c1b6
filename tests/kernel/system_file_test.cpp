#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "tests/kernel/kernel_testing.h"
#include "zul/kernel/system/file.h"
#include "zul/kernel/system/text_file.h"

namespace zulsys {
namespace {

void Put(const zul::CScratchPath& path, const std::string& bytes) {
    std::ofstream(path.Get(), std::ios::binary) << bytes;
}

std::string Get(const zul::CScratchPath& path) {
    std::ifstream file(path.Get(), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

TEST(FileTest, ReadsOnlyWhatIsThere) {
    const zul::CScratchPath path;
    Put(path, "BMxyz");
    CFile file;
    char bytes[8] = "";
    EXPECT_FALSE(file.Read(bytes, 1));
    ASSERT_TRUE(file.Connect(path.Wide().c_str(), true, nullptr, 8, 3));
    ASSERT_TRUE(file.Read(bytes, 2));
    EXPECT_STREQ(bytes, "BM");
    EXPECT_FALSE(file.Read(bytes, 4));
    EXPECT_FALSE(file.Read(bytes, -1));
    EXPECT_FALSE(file.Read(nullptr, 1));
}

TEST(FileTest, BackslashesSeparateFoldersAndMissingFilesDoNotOpen) {
    const zul::CScratchPath folder;
    std::filesystem::create_directory(folder.Get());
    std::ofstream(folder.Get() / std::filesystem::path(u"Ж.bmp")) << "x";
    CFile file;
    EXPECT_TRUE(file.Connect((folder.Wide() + u"\\Ж.bmp").c_str()));
    EXPECT_FALSE(file.Connect((folder.Wide() + u"\\none.bmp").c_str()));
    EXPECT_FALSE(file.Connect(folder.Wide().c_str()));
    EXPECT_FALSE(file.Connect(nullptr));
}

TEST(TextFileTest, LinesComeWithoutTheirEnds) {
    using Lines = std::vector<std::string>;
    const struct {
        std::string Bytes;
        std::uint32_t Size;
        Lines Expected;
    } rows[] = {
        {"one\r\n\r\ntwo\r\n", 256, {"one", "", "two"}},
        {"a\rb\n", 256, {"a\rb"}},
        {"abcdefgh\nij\n", 5, {"abcd", "efgh", "ij"}},
    };
    for (const auto& row : rows) {
        const zul::CScratchPath path;
        Put(path, row.Bytes);
        CTextFile file;
        ASSERT_TRUE(file.Connect(path.Wide().c_str()));
        Lines lines;
        std::vector<char> buffer(row.Size + 1, '#');
        while (file.ReadString(buffer.data(), row.Size)) {
            lines.emplace_back(buffer.data());
            ASSERT_EQ(buffer.back(), '#');
        }
        EXPECT_EQ(lines, row.Expected) << row.Bytes;
    }
}

TEST(TextFileTest, WritesTheTextAsItStandsAndRefusesBadBuffers) {
    const zul::CScratchPath path;
    CTextFile file;
    char buffer[4] = "###";
    EXPECT_FALSE(file.WriteString("x"));
    EXPECT_FALSE(file.ReadString(buffer, sizeof buffer));
    ASSERT_TRUE(file.Create(path.Wide().c_str()));
    EXPECT_TRUE(file.WriteString("  two : 3\n"));
    EXPECT_FALSE(file.WriteString(nullptr));
    EXPECT_TRUE(file.Disconnect());
    EXPECT_EQ(Get(path), "  two : 3\n");
    ASSERT_TRUE(file.Connect(path.Wide().c_str()));
    EXPECT_FALSE(file.ReadString(nullptr, 100));
    EXPECT_FALSE(file.ReadString(buffer, 0));
    EXPECT_FALSE(file.ReadString(buffer, 1));
    EXPECT_FALSE(file.Create(u"no/such/folder/file"));
    EXPECT_FALSE(file.IsConnected());
}

TEST(SystemStringTest, ComparesBeginnings) {
    const struct {
        const char16_t *First, *Second;
        std::uint32_t Length;
        bool Expected;
    } rows[] = {
        {u"      Styles : 1", u"      Style", 11, true},
        {u"      Style", u"      Type", 10, false},
        {u"ab", u"ab", 100, true},
        {u"abc", u"ab", 3, false},
        {nullptr, u"a", 1, false},
        {nullptr, nullptr, 5, true},
    };
    for (const auto& row : rows)
        EXPECT_EQ(CString::IsEqual(row.First, row.Second, row.Length), row.Expected);
}

}  // namespace
}  // namespace zulsys
