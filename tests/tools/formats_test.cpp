// The tools' settings as text: what is written, and that everything readable comes back.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "tests/canvas/canvas_testing.h"
#include "tests/tools/written_element.h"
#include "zul/kernel/message.h"
#include "zul/kernel/stream.h"
#include "zul/kernel/system/text_file.h"

namespace {

using namespace zultest;

class FormatsTest : public testing::Test {
protected:
    ~FormatsTest() override { std::filesystem::remove(m_Path); }

    template <class T>
    std::string Text(const T& tool, bool element) {
        zulsys::CTextFile file;
        EXPECT_TRUE(file.Create(m_Path.u16string().c_str()));
        element ? tool.ExportParametersEx(file) : tool.ExportParameters(file);
        EXPECT_TRUE(file.Disconnect());
        std::ifstream bytes(m_Path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(bytes), {});
    }
    /// \returns the lines behind what \p tool has read.
    template <class T>
    std::string Read(const std::string& text, T& tool) {
        std::ofstream(m_Path, std::ios::binary) << text;
        zulsys::CTextFile file;
        EXPECT_TRUE(file.Connect(m_Path.u16string().c_str()));
        tool.ImportParameters(file);
        std::string rest;
        for (char line[256]; file.ReadString(line, sizeof line);)
            rest += std::string(line) + "|";
        return rest;
    }

private:
    std::filesystem::path m_Path =
        std::filesystem::temp_directory_path() / ("zul-formats-" + std::to_string(std::random_device()()));
};

std::string Stored(zul::CAnyObject& object) {
    zul::CMemoryStream stream;
    EXPECT_TRUE(object.ObjectToBuffer(&stream));
    return std::string(stream.GetBuffer(), stream.GetBuffer() + stream.GetSize());
}

TEST_F(FormatsTest, BlocksAndElementsHaveExactlyTheseBytes) {
    zul::CPen pen;
    pen.Create(zul::CPen::PenExtended, -2, 3, 0x123456, 5, 6, Red);
    pen.SetScaled(true);
    EXPECT_EQ(Text(pen, false),
              "    Pen\n      Type : 3\n      Style : -2\n      Width : 3\n      Color : 1193046\n"
              "      EndType : 5\n      DashLength : 6\n      ExtraColor : 255\n      IsScaled : 1\n"
              "    EndBlock\n");
    EXPECT_EQ(Text(pen, true),
              "      <Pen type='3'\n        style='-2'\n        width='3'\n"
              "        color='563412(86,52,18)'\n        end_type='5'\n        dash_length='6'\n"
              "        extra_color='ff0000(255,0,0)'\n        is_scaled='1' >\n      </Pen>\n");
    zul::CBrush brush;
    brush.SetColor(INT32_MIN);
    EXPECT_EQ(Text(brush, false),
              "    Brush\n      Type : 1\n      Style : 4\n      Color : -2147483648\n    EndBlock\n");
    EXPECT_EQ(Text(brush, true),
              "      <Brush type='1'\n        style='4'\n        color='000000(0,0,0)' >\n      </Brush>\n");
    zul::CFont font;
    font.Create(u"50 %n%s \u0416'<&>", 14, Blue, -900);
    EXPECT_EQ(Text(font, false),
              "    Font\n      Name : '50 %n%s \xD0\x96'<&>'\n      Style : 512\n      Height : 14\n"
              "      Color : 16711680\n      Alignment : 9\n      Oreol color : 0\n      Angle : -900\n"
              "    EndBlock\n");
    EXPECT_EQ(Text(font, true),
              "      <Font name='50 %n%s \xD0\x96'<&>'\n        style='512'\n        height='14'\n"
              "        color='0000ff(0,0,255)'\n        alignment='9'\n"
              "        oreol_color='000000(0,0,0)'\n        angle='-900' >\n      </Font>\n");
    const zul::CBackground background;
    EXPECT_EQ(Text(background, false),
              "    Background\n      Mode : 0\n      Color : 0\n      Rop : 0\n    EndBlock\n");
    EXPECT_EQ(Text(background, true),
              "      <Background mode='0'\n        color='000000(0,0,0)'\n        rop='0' >\n"
              "      </Background>\n");
}

/// Sends \p tool each setter's message with a number of any size below \p mask, and a name that fits a line.
void Fill(zul::CAnyObject& tool, unsigned seed, std::int64_t mask) {
    constexpr const char16_t* Pieces[] = {u"'", u"%n", u"\"", u" ", u"\r", u"<", u"&", u"\\", u"\U0001F5FA"};
    std::mt19937 random(seed);
    std::u16string name;
    for (auto length = random() % 59; length != 0; --length) {
        const char16_t other[] = {static_cast<char16_t>(u' ' + random() % 0xD7E0), 0};
        name += random() % 2 != 0 ? Pieces[random() % 9] : other;
    }
    for (std::int32_t code = 10020; code <= 10062; code += 2) {
        const auto number = static_cast<std::int32_t>(random()) >> random() % 32;
        zul::CMessage message(code, code == 10050 ? zul::CMessage::FromPointer(name.c_str()) : number & mask);
        tool.DoMessage(&message);
    }
}

template <class T>
class RoundTrip : public FormatsTest {};
using Tools = testing::Types<zul::CPen, zul::CBrush, zul::CFont, zul::CBackground>;
TYPED_TEST_SUITE(RoundTrip, Tools);

TYPED_TEST(RoundTrip, EverySettingComesBackFromBothForms) {
    for (unsigned seed = 0; seed < 100; ++seed) {
        TypeParam from, to;
        Fill(from, seed, -1);
        Fill(to, seed + 1, -1);
        EXPECT_EQ(this->Read("    Other\n" + this->Text(from, false) + "next\n", to), "next|");
        EXPECT_EQ(Stored(to), Stored(from)) << "block " << seed;
        Fill(from, seed + 2, 0xFFFFFF);  // colours of elements have no more bits
        ReadElement(this->Text(from, true), to);
        EXPECT_EQ(Stored(to), Stored(from)) << "element " << seed;
    }
}

TEST_F(FormatsTest, LinesAreReadByTheirColumns) {
    const std::string blanks(1'000'000, ' ');
    const struct {
        const char* what;
        std::string text;
        std::int32_t width, style;  ///< of a pen that had 7 and 8
        std::string rest = "";
    } rows[] = {
        {"no end line", "      Width : 5", 5, 8},
        {"carriage returns", "    Pen\r\n      Width : 5\r\n    EndBlock\r\nx\r\n", 5, 8, "x|"},
        {"cut short, or two blanks before the colon", "      Width\n      Style  : 5\n", 0, 0},
        {"words that begin with a key", "      Widths: 5\n      Styled: -6\n", 5, -6},
        {"other indents", "     Width : 5\n       Style : 6\nWidth : 5\n", 7, 8},
        {"words that begin as the end line", "    EndBlockade\n      Width : 5\n", 7, 8, "      Width : 5|"},
        {"fractions and beyond 32 bits", "      Width : 5.9\n      Style : -99999999999\n", 5, INT32_MIN},
        {"zeros inside", std::string("      Width : 5\0      Style : 6\n", 33), 5, 8},
        {"rests of long lines", blanks.substr(0, 255) + "      Width : 5\n      Style : 6\n", 7, 6},
        {"long lines", "      Width : 5" + blanks + "\n    EndBlock" + blanks + "x\ny\n", 5, 8, "y|"},
        {"no UTF-8", "\xFF\xFE\n      Width : 5\xC0\n\xF4\n", 5, 8},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        zul::CPen pen;
        pen.SetWidth(7);
        pen.SetStyle(8);
        EXPECT_EQ(Read(row.text, pen), row.rest);
        EXPECT_EQ(pen.GetWidth(), row.width);
        EXPECT_EQ(pen.GetStyle(), row.style);
    }
}

TEST_F(FormatsTest, FontNamesGoToTheLastQuoteOfTheirLine) {
    const std::string longest(240, 'n');
    const std::pair<std::string, std::string> rows[] = {
        {"      Name : 'O'Brien's' tail", "O'Brien's"},
        {"      Name : ''", ""},
        {"      Name : '", "before"},
        {"      Name", "before"},
        {"      Name : '" + longest + "'", longest},
        {"      Name : '" + longest + "s'", "before"},
        {"      Name : 'q'" + std::string(1'000'000, 'x') + "'", "before"},
    };
    for (const auto& [line, name] : rows) {
        zul::CFont font, expected;
        font.SetName(u"before");
        expected.SetName(zul::CString(name.c_str()).GetBuffer());
        Read(line, font);
        EXPECT_EQ(Stored(font), Stored(expected)) << line.substr(0, 40);
    }
}

TEST_F(FormatsTest, AFontNameCannotPassForOtherLines) {
    const std::u16string filler(241, u'n');  // to the 255th byte of the line
    for (const std::u16string& name :
         {std::u16string(u"x'\n      Height : 777\n    EndBlock\n    Pen\n"), std::u16string(u"x\0y", 3),
          filler + u"      Height : 777", filler + u"    EndBlock"}) {
        // Names with zeros in them come from stored objects.
        zul::CMemoryStream stream;
        zul::CString(name.data(), static_cast<std::uint32_t>(name.size())).ObjectToBuffer(&stream);
        stream.SetPosition(0);
        zul::CFont font, block, element;
        font.ObjectFromBuffer(&stream);
        font.SetHeight(55);
        EXPECT_EQ(Read(Text(font, false) + "next\n", block), "next|");
        ReadElement(Text(font, true), element);
        EXPECT_TRUE(block.GetHeight() == 55 && element.GetHeight() == 55);
    }
}

TEST(ToolSettings, DefaultAndXorLeaveTheOtherSettings) {
    zul::CPen pen, xored, expected;
    pen.Create(zul::CPen::PenExtended, 7, 9, Red, 3, 8, Green);
    xored.ApplyPen(&pen);
    xored.CreateXor(4);
    expected.Create(zul::CPen::PenSolid, 7, 4, White, 3, 8, Green);
    EXPECT_TRUE(xored.IsEqualSettings(&expected));
    pen.SetScaled(true);
    pen.Default();
    expected.Create(zul::CPen::PenSolid, 7, 1, Black, 0, 8, Green);
    EXPECT_TRUE(pen.IsEqualSettings(&expected));
    zul::CBrush brush, plain;
    plain.Create(zul::CBrush::BrushSolid, White, 2);
    for (void (zul::CBrush::*const set)() : {&zul::CBrush::Default, &zul::CBrush::CreateXor}) {
        brush.Create(zul::CBrush::BrushPattern, Red, 2);
        EXPECT_FALSE(brush.IsEqualSettings(&plain) || brush.IsEqualSettings(nullptr));
        (brush.*set)();
        EXPECT_TRUE(brush.IsEqualSettings(&plain));
    }
    zul::CFont font, fresh;
    font.Create(u"Other", 14, Red, 30);
    font.SetAlignment(0);
    font.Default();
    fresh.SetStyle(0);
    fresh.SetName(u"Microsoft Sans Serif");
    EXPECT_EQ(Stored(font), Stored(fresh));
}

/// Remembers what it was asked for.
class CAsked : public zul::CAnyObject {
public:
    bool DoMessage(zul::CMessage* message) override {
        const auto* name = zul::CMessage::ToPointer<const char16_t>(message->GetParam1());
        Names += std::string(zul::CString(name).GetBufferAnsi()) + " ";
        if (Value) zul::CMessage::ToPointer<zul::CString>(message->GetParam2())->SetBuffer(Value);
        return Value && message->IsNamed(u"GetAttributeValue");
    }
    std::string Names;
    const char* Value = nullptr;
};

TEST(Elements, AreAskedForEveryAttributeAndWhatTheyLackStays) {
    CAsked element;
    zul::CPen pen;
    const std::uint64_t before = zul::CClient::GetModificationCount();
    pen.ImportParametersEx(&element);
    zul::CBrush().ImportParametersEx(&element);
    zul::CFont().ImportParametersEx(&element);
    zul::CBackground().ImportParametersEx(&element);
    pen.ImportParametersEx(nullptr);
    EXPECT_EQ(element.Names,
              "type style color width end_type dash_length extra_color is_scaled type style color "
              "name style color height alignment oreol_color angle mode color rop ");
    EXPECT_EQ(zul::CClient::GetModificationCount(), before);
    element.Value = "12";
    pen.ImportParametersEx(&element);
    pen.ImportParametersEx(&element);
    EXPECT_EQ(zul::CClient::GetModificationCount(), before + 8) << "every change is recorded once";
    EXPECT_TRUE(pen.GetColor() == 0x120000 && pen.GetWidth() == 12 && pen.IsScaled());
    element.Value = " 1";
    pen.ImportParametersEx(&element);
    EXPECT_FALSE(pen.IsScaled()) << "blanks are not skipped";
}

}  // namespace
