// The tools' settings as text: what is written, and that everything readable comes back.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "tests/canvas/canvas_testing.h"
#include "zul/kernel/attribute_bag.h"
#include "zul/kernel/message.h"
#include "zul/kernel/stream.h"
#include "zul/kernel/system/text_file.h"

namespace {

using namespace zultest;

class FormatsTest : public testing::Test {
protected:
    ~FormatsTest() override { std::filesystem::remove(m_Path); }

    /// The block or the element of each of \p count tools.
    template <class T>
    std::vector<std::string> Texts(const T* tools, std::size_t count, bool elements) {
        zulsys::CTextFile file;
        EXPECT_TRUE(file.Create(m_Path.u16string().c_str()));
        for (std::size_t i = 0; i < count; ++i) {
            elements ? tools[i].ExportParametersEx(file) : tools[i].ExportParameters(file);
            file.WriteString("\f");
        }
        EXPECT_TRUE(file.Disconnect());
        std::ifstream all(m_Path, std::ios::binary);
        std::vector<std::string> texts;
        for (std::string text; std::getline(all, text, '\f');)
            texts.push_back(text);
        return texts;
    }
    template <class T>
    std::string Text(const T& tool, bool element) {
        return Texts(&tool, 1, element).at(0);
    }
    /// Has each of \p count tools read from one file. \returns the lines behind what they have read.
    template <class T>
    std::string Read(const std::string& text, T* tools, std::size_t count = 1) {
        std::ofstream(m_Path, std::ios::binary) << text;
        zulsys::CTextFile file;
        EXPECT_TRUE(file.Connect(m_Path.u16string().c_str()));
        for (std::size_t i = 0; i < count; ++i)
            tools[i].ImportParameters(file);
        std::string rest;
        for (char line[256]; file.ReadString(line, sizeof line);)
            rest += std::string(line) + "|";
        return rest;
    }

private:
    std::filesystem::path m_Path =
        std::filesystem::temp_directory_path() / ("zul-formats-" + std::to_string(std::random_device()()));
};

/// An XML reader for what the tools write: one attribute a line, its value up to the line's last quote.
template <class T>
void ReadElement(const std::string& element, T& tool) {
    zul::CAttributeBag bag;
    std::istringstream lines(element);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t equals = line.find("='"), name = line.rfind(' ', equals) + 1, value = equals + 2;
        if (equals == std::string::npos) continue;
        bag.SetAttribute(line.substr(name, equals - name).c_str(),
                         line.substr(value, line.rfind('\'') - value).c_str());
    }
    tool.ImportParametersEx(&bag);
}

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
    font.SetOreolColor(Green);
    EXPECT_EQ(Text(font, false),
              "    Font\n      Name : '50 %n%s \xD0\x96'<&>'\n      Style : 512\n      Height : 14\n"
              "      Color : 16711680\n      Alignment : 9\n      Oreol color : 65280\n"
              "      Angle : -900\n    EndBlock\n");
    EXPECT_EQ(Text(font, true),
              "      <Font name='50 %n%s \xD0\x96'<&>'\n        style='512'\n        height='14'\n"
              "        color='0000ff(0,0,255)'\n        alignment='9'\n"
              "        oreol_color='00ff00(0,255,0)'\n        angle='-900' >\n      </Font>\n");
    zul::CBackground background;
    background.SetMode(1);
    EXPECT_EQ(Text(background, false),
              "    Background\n      Mode : 1\n      Color : 0\n      Rop : 0\n    EndBlock\n");
    EXPECT_EQ(Text(background, true),
              "      <Background mode='1'\n        color='000000(0,0,0)'\n        rop='0' >\n"
              "      </Background>\n");
}

/// Sends \p tool each setter's message with a number of any size below \p mask, and a name without a line
/// feed, short enough for a line.
void Fill(zul::CAnyObject& tool, unsigned seed, std::int64_t mask) {
    constexpr const char16_t* Pieces[] = {u"'", u"%n", u"\"", u" ", u"\r", u"<", u"&", u"\\", u"\U0001F5FA"};
    std::mt19937 random(seed);
    std::u16string name;
    for (auto length = random() % 29; length != 0; --length) {
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
constexpr unsigned Count = 500;

TYPED_TEST(RoundTrip, EverySettingComesBackFromBothForms) {
    std::vector<TypeParam> from(Count), to(Count);
    std::string blocks;
    for (unsigned i = 0; i < Count; ++i) {
        Fill(from[i], i, -1);
        Fill(to[i], i + 1, -1);
    }
    for (const std::string& block : this->Texts(from.data(), Count, false))
        blocks += "    Other\n" + block;
    EXPECT_EQ(this->Read(blocks + "next\n", to.data(), Count), "next|");
    for (unsigned i = 0; i < Count; ++i) {
        EXPECT_EQ(Stored(to[i]), Stored(from[i])) << "block " << i;
        Fill(from[i], i + 2, 0xFFFFFF);  // colours of elements have no more bits
    }
    const std::vector<std::string> elements = this->Texts(from.data(), Count, true);
    for (unsigned i = 0; i < Count; ++i) {
        ReadElement(elements.at(i), to[i]);
        EXPECT_EQ(Stored(to[i]), Stored(from[i])) << elements[i];
    }
}

TYPED_TEST(RoundTrip, WhateverDamagedBlocksGiveIsWrittenAndReadAgain) {
    std::vector<TypeParam> tools(Count), same(Count);
    for (unsigned i = 0; i < Count; ++i)
        Fill(tools[i], i, -1);
    std::mt19937 random(7);
    std::string damaged, again;
    for (std::string block : this->Texts(tools.data(), Count, false)) {
        for (auto n = random() % 4; n != 0; --n)
            block[random() % block.size()] = static_cast<char>(random() % 128);
        block.insert(random() % block.size(), random() % 100, static_cast<char>(random() % 128));
        damaged += block.substr(random() % 30, block.size() - random() % 30);
    }
    this->Read(damaged, tools.data(), Count);
    for (const std::string& block : this->Texts(tools.data(), Count, false))
        again += block;
    EXPECT_EQ(this->Read(again, same.data(), Count), "");
    for (unsigned i = 0; i < Count; ++i)
        EXPECT_EQ(Stored(same[i]), Stored(tools[i])) << i;
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
        EXPECT_EQ(Read(row.text, &pen), row.rest);
        EXPECT_EQ(pen.GetWidth(), row.width);
        EXPECT_EQ(pen.GetStyle(), row.style);
    }
}

TEST_F(FormatsTest, FontNamesGoToTheLastQuoteOfTheirLine) {
    const std::string longest(240, 'n');
    const struct {
        std::string line, name;
    } rows[] = {
        {"      Name : 'O'Brien's' tail", "O'Brien's"},
        {"      Name : ''", ""},
        {"      Name : '", "before"},
        {"      Name", "before"},
        {"      Name : '" + longest + "'", longest},
        {"      Name : '" + longest + "s'", "before"},
        {"      Name : 'q'" + std::string(1'000'000, 'x') + "'", "before"},
    };
    for (const auto& row : rows) {
        zul::CFont font, expected;
        font.SetName(u"before");
        expected.SetName(zul::CString(row.name.c_str()).GetBuffer());
        EXPECT_EQ(Read(row.line + "\n    EndBlock\n", &font), "");
        EXPECT_EQ(Stored(font), Stored(expected)) << row.line.substr(0, 40);
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
        zul::CFont font, copy;
        font.ObjectFromBuffer(&stream);
        font.SetHeight(55);
        EXPECT_EQ(Read(Text(font, false) + "next\n", &copy), "next|");
        EXPECT_EQ(copy.GetHeight(), 55);
        copy.SetHeight(1);
        ReadElement(Text(font, true), copy);
        EXPECT_EQ(copy.GetHeight(), 55);
    }
}

/// Has every attribute, or none, and remembers what it was asked for.
class CAsked : public zul::CAnyObject {
public:
    bool DoMessage(zul::CMessage* message) override {
        const auto* name = zul::CMessage::ToPointer<const char16_t>(message->GetParam1());
        Names += std::string(zul::CString(name).GetBufferAnsi()) + " ";
        zul::CMessage::ToPointer<zul::CString>(message->GetParam2())->SetBuffer(Value);
        return Answer && message->IsNamed(u"GetAttributeValue");
    }
    std::string Names;
    const char* Value = "12";
    bool Answer = false;
};

TEST(Elements, AreAskedForEveryAttributeAndWhatTheyLackStays) {
    CAsked element;
    zul::CPen pen;
    zul::CBrush brush;
    zul::CFont font;
    zul::CBackground background;
    const std::uint64_t before = zul::CClient::GetModificationCount();
    pen.ImportParametersEx(&element);
    brush.ImportParametersEx(&element);
    font.ImportParametersEx(&element);
    background.ImportParametersEx(&element);
    pen.ImportParametersEx(nullptr);
    pen.ImportParametersEx(&pen);
    EXPECT_EQ(zul::CClient::GetModificationCount(), before);
    EXPECT_EQ(element.Names,
              "type style color width end_type dash_length extra_color is_scaled type style color "
              "name style color height alignment oreol_color angle mode color rop ");
    element.Answer = true;
    pen.ImportParametersEx(&element);
    pen.ImportParametersEx(&element);
    EXPECT_EQ(zul::CClient::GetModificationCount(), before + 8) << "every change is recorded once";
    EXPECT_TRUE(pen.GetColor() == 0x120000 && pen.GetWidth() == 12 && pen.IsScaled());
    element.Value = " 1";
    pen.ImportParametersEx(&element);
    EXPECT_FALSE(pen.IsScaled()) << "blanks are not skipped";
}

}  // namespace
