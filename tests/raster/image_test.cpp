#include "zul/raster/image.h"

#include <gtest/gtest.h>

#include "tests/raster/raster_testing.h"
#include "zul/kernel/stream.h"

namespace {

using namespace zultest;
using zul::CImage;

/// A system directory with pictures below it.
class Image : public testing::Test {
protected:
    Image() {
        zul::CClient::GetSysDBDir(m_Before);
        zul::CClient::SetSysDBDir(m_Directory.Wide().c_str());
        std::filesystem::create_directories(m_Directory.Get() / "resource");
        Add("good.bmp", File(NoiseImage(24), 54));
        Add("picture.png", {0x89, 'P', 'N', 'G'});
        Add("cut.bmp", {'B', 'M', 0});
        Add("one.bmp", {'B'});
    }
    ~Image() override { zul::CClient::SetSysDBDir(m_Before); }

    void Add(const char* name, const Bytes& bytes) {
        std::ofstream(m_Directory.Get() / "resource" / name, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }

    zul::CString m_Before;
    zul::CScratchPath m_Directory;
};

TEST_F(Image, IsStoredByItsNameAndLoadedWhenNeeded) {
    CImage image;
    ASSERT_TRUE(image.Create(u"good.bmp"));
    const std::vector<std::int32_t> picture = Colors(image, 5, 3);
    zul::CMemoryStream stream;
    EXPECT_TRUE(image.ObjectToBuffer(&stream));
    EXPECT_EQ(stream.GetSize(), image.GetPreferredSize());
    EXPECT_EQ(stream.GetSize(), 4u + 2 * 8);
    CImage loaded;
    stream.SetPosition(0);
    EXPECT_TRUE(loaded.ObjectFromBuffer(&stream));
    EXPECT_FALSE(loaded.IsValid()) << "nothing is loaded yet";
    EXPECT_EQ(loaded.GetWidth(), 5);
    EXPECT_EQ(Colors(loaded, 5, 3), picture);
    EXPECT_NE(loaded.GetHandle(), image.GetHandle());
    loaded.Clear();
    EXPECT_FALSE(loaded.IsValid());
    EXPECT_EQ(Colors(loaded, 5, 3), picture);
    // Another name leaves the old picture behind; so does a stream without one.
    loaded.ObjectFromBuffer(&stream);
    EXPECT_EQ(loaded.GetHandle(), nullptr);
}

TEST_F(Image, KeepsTheNameOfAFileThatCannotBeLoadedAndTriesAgain) {
    Reports reports;
    for (const char16_t* name :
         {u"picture.png", u"cut.bmp", u"one.bmp", u"none.bmp", u"", u"..", u"\xD800.bmp"}) {
        CImage image;
        EXPECT_FALSE(image.Create(name));
        EXPECT_EQ(image.GetPath(), zul::CString(name));
        EXPECT_EQ(image.GetHandle(), nullptr);
        EXPECT_EQ(image.GetHeight(), 0);
    }
    CImage image;
    EXPECT_FALSE(image.Create(static_cast<const char16_t*>(nullptr)));
    EXPECT_FALSE(image.Create(u"late.bmp"));
    Add("late.bmp", File(NoiseImage(8), 14 + 40 + 1024));
    EXPECT_EQ(image.GetHeight(), 3);
    // The picture stays when another cannot be had.
    EXPECT_FALSE(image.Create(u"none.bmp"));
    EXPECT_EQ(image.GetHeight(), 3);
    EXPECT_EQ(reports.Only(), "0 reports");
}

}  // namespace
