// Tools that come back from XML documents.
#include "apps/zulmap/style_element.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "apps/zulmap/tool_error.h"
#include "zul/kernel/system/text_file.h"
#include "zul/tools/font.h"
#include "zul/tools/pen.h"

namespace {

class StyleDocumentTest : public testing::Test {
protected:
    ~StyleDocumentTest() override { std::filesystem::remove(m_path); }
    pugi::xml_node Read(const std::string& text) {
        std::ofstream(m_path, std::ios::binary) << text;
        zulmap::ReadStyleDocument(m_path.string(), m_document);
        return m_document.first_child();
    }
    std::string Name(const std::string& text) {
        zulmap::StyleElement element(Read(text));
        zul::CFont font;
        font.ImportParametersEx(&element);
        return zul::CString(font.GetName()).GetBufferAnsi();
    }

    std::filesystem::path m_path =
        std::filesystem::path(testing::TempDir()) /
        (std::string(testing::UnitTest::GetInstance()->current_test_info()->name()) + ".xml");
    pugi::xml_document m_document;
};

TEST_F(StyleDocumentTest, ToolsComeBackAsTheyWereWritten) {
    const char16_t* const names[] = {u"O'Brien & Sons", u"x' style='9", u"<&amp;>\"",
                                     u"\t\r\u0416\U0001F5FA'"};
    for (const char16_t* name : names) {
        zul::CFont from, to;
        from.Create(name, -14, 0x123456, 900);
        zul::CPen pen, samePen;
        pen.Create(zul::CPen::PenExtended, 1, 2, 0x030405, 6, 7, 0x080900);
        zulsys::CTextFile file;
        ASSERT_TRUE(file.Create(m_path.u16string().c_str()));
        file.WriteString("<?xml version='1.0'?>\n<look>\n");
        from.ExportParametersEx(file);
        pen.ExportParametersEx(file);
        file.WriteString("</look>\n");
        ASSERT_TRUE(file.Disconnect());
        zulmap::ReadStyleDocument(m_path.string(), m_document);
        zulmap::StyleElement font(m_document.child("look").child("Font"));
        zulmap::StyleElement line(m_document.child("look").child("Pen"));
        to.ImportParametersEx(&font);
        samePen.ImportParametersEx(&line);
        EXPECT_EQ(zul::CString(to.GetName()), zul::CString(name)) << zul::CString(name).GetBufferAnsi();
        EXPECT_TRUE(to.GetStyle() == from.GetStyle() && to.GetTextColor() == 0x123456);
        EXPECT_TRUE(samePen.IsEqualSettings(&pen));
    }
}

TEST_F(StyleDocumentTest, OtherLayoutsFollowTheRulesOfXml) {
    EXPECT_EQ(Name("<Font name='a&amp;b' style='0'/>"), "a&b");
    EXPECT_EQ(Name("<Font name='a'\n height='3' style='0'\n/>"), "a");
    EXPECT_EQ(Name("<Font\n style='0' name=\"O'Brien\"/>"), "O'Brien");
    EXPECT_EQ(Name("<Font name='a' alt='b'\r\n\tstyle='0'/>"), "a");
    EXPECT_EQ(Name("<Font/>"), "Microsoft Sans Serif");
    zulmap::StyleElement none{pugi::xml_node()};
    zul::CPen pen;
    pen.ImportParametersEx(&none);
    EXPECT_TRUE(pen.IsEqualSettings(std::make_unique<zul::CPen>().get()));
}

TEST_F(StyleDocumentTest, FaultsAreToldWithTheirLine) {
    const struct {
        std::string text, fault;
    } rows[] = {
        {"<look>\n      <Font name='O'Brien'\n        style='1' >\n</look>\n", "line 4: "},
        {"<look>\n<Pen type=3/></look>", "line 2: "},
        {"", "line 1: "},
        {std::string(100'000, '<'), "line 1: "},
    };
    for (const auto& row : rows) {
        try {
            Read(row.text);
            ADD_FAILURE() << row.text.substr(0, 60) << " is read";
        } catch (const zulmap::ToolError& error) {
            EXPECT_NE(std::string(error.what()).find("cannot be read as XML: " + row.fault),
                      std::string::npos)
                << error.what();
        }
    }
    EXPECT_THROW(zulmap::ReadStyleDocument(testing::TempDir(), m_document), zulmap::ToolError);
    EXPECT_THROW(zulmap::ReadStyleDocument("no/such/file.xml", m_document), zulmap::ToolError);
}

}  // namespace
