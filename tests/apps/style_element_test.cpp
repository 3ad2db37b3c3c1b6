// Tools that come back from XML documents.
#include "apps/zulmap/style_element.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "apps/zulmap/tool_error.h"
#include "zul/kernel/system/text_file.h"
#include "zul/tools/font.h"

namespace {

class StyleDocumentTest : public testing::Test {
protected:
    ~StyleDocumentTest() override { std::filesystem::remove(m_path); }
    /// The font that stands first in a document.
    void Read(const std::string& text, zul::CFont& font) {
        std::ofstream(m_path, std::ios::binary) << text;
        pugi::xml_document document;
        zulmap::ReadStyleDocument(m_path.string(), document);
        zulmap::StyleElement element(
            document.find_node([](pugi::xml_node node) { return node.name() == std::string("Font"); }));
        font.ImportParametersEx(&element);
    }

    std::filesystem::path m_path =
        std::filesystem::path(testing::TempDir()) /
        (std::string(testing::UnitTest::GetInstance()->current_test_info()->name()) + ".xml");
};

TEST_F(StyleDocumentTest, FontsComeBackAsTheyWereWritten) {
    for (const char16_t* name : {u"O'Brien & Sons", u"x' style='9", u"<&amp;>\"", u"\t\r\u0416\U0001F5FA'"}) {
        zul::CFont from, to;
        from.Create(name, -14, 0x123456, 900);
        zulsys::CTextFile file;
        ASSERT_TRUE(file.Create(m_path.u16string().c_str()));
        from.ExportParametersEx(file);
        ASSERT_TRUE(file.Disconnect());
        std::ifstream bytes(m_path, std::ios::binary);
        Read("<look>\n" + std::string(std::istreambuf_iterator<char>(bytes), {}) + "</look>", to);
        EXPECT_EQ(zul::CString(to.GetName()), zul::CString(name)) << zul::CString(name).GetBufferAnsi();
        EXPECT_TRUE(to.GetStyle() == from.GetStyle() && to.GetTextColor() == 0x123456 &&
                    to.GetHeight() == -14);
    }
}

TEST_F(StyleDocumentTest, FaultsAreToldWithTheirLine) {
    const std::pair<std::string, std::string> rows[] = {
        {"<look>\n      <Font name='O'Brien'\n        style='1' >\n</look>\n", "line 4: "},
        {"<look>\n<Pen type=3/></look>", "line 2: "},
        {"", "line 1: "},
        {std::string(100'000, '<'), "line 1: "},
    };
    zul::CFont font;
    for (const auto& [text, fault] : rows) {
        try {
            Read(text, font);
            ADD_FAILURE() << text.substr(0, 60) << " is read";
        } catch (const zulmap::ToolError& error) {
            EXPECT_NE(std::string(error.what()).find("cannot be read as XML: " + fault), std::string::npos);
        }
    }
    pugi::xml_document document;
    EXPECT_THROW(zulmap::ReadStyleDocument(testing::TempDir(), document), zulmap::ToolError);
    EXPECT_THROW(zulmap::ReadStyleDocument("no/such/file.xml", document), zulmap::ToolError);
}

}  // namespace
