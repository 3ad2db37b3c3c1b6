#include "zul/tools/formats.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "zul/kernel/system/string.h"
#include "zul/kernel/system/text_file.h"
#include "zul/tools/palette.h"

namespace zul {
namespace {

constexpr char16_t Indent[] = u"      ";
constexpr char16_t EndLine[] = u"    EndBlock";
constexpr std::uint32_t IndentLength = 6;
constexpr std::uint32_t ColonLength = 3;  // with its blanks

/// One line of a file, as far as one reading reaches.
struct TLine {
    CString Text;
    bool IsWhole = false;
};

bool ReadLine(zulsys::CTextFile& file, TLine& line) {
    char bytes[256];
    if (!file.ReadString(bytes, sizeof bytes)) return false;
    line.Text.SetBuffer(bytes);
    line.IsWhole = !file.IsInsideLine();
    // The rest of a line is no line: it could pass for a setting.
    while (file.IsInsideLine() && file.ReadString(bytes, sizeof bytes)) {
    }
    return true;
}

bool BeginsWith(const char16_t* text, const char16_t* start) {
    return zulsys::CString::IsEqual(text, start, CString::GetLength(start));
}

const TSetting& SettingOfLine(const TSettings& settings, std::size_t line) {
    return *std::find_if(settings.begin(), settings.end(),
                         [line](const TSetting& setting) { return setting.Line == line; });
}

CString Quoted(const CString& text) {
    CString result(u"'");
    result.Append(text);
    result.Append(u"'");
    return result;
}

CString OneLine(const CString& text) {
    std::u16string line(text.GetBuffer());
    std::replace(line.begin(), line.end(), u'\n', u' ');
    return line.c_str();
}

CString ValueText(const TSetting& setting, const CAnyObject& tool, bool inElement) {
    const TSettingValue value = setting.Access.Get(tool);
    if (setting.Form == TSettingForm::Text) return OneLine(value.Text);
    if (setting.Form == TSettingForm::Color && inElement) {
        return CPalette::GetColorStringToXML(value.Number, true);
    }
    return CString::Format(u"%d", value.Number);
}

std::int32_t ReadNumber(const char16_t* text) {
    return ToLong(CString::Convert(text));
}

/// The value that a line has behind \p start characters; false for a text that does not end.
bool FindValue(const TSetting& setting, const TLine& line, std::uint32_t start, TSettingValue& value) {
    const CString& text = line.Text;
    if (setting.Form != TSettingForm::Text) {
        value.Number = start < text.GetLength() ? ReadNumber(text.GetBuffer() + start) : 0;
        return true;
    }
    ++start;  // the opening quote
    TTextIterator quote;
    if (!line.IsWhole || !text.FindLast(quote, u"'") || quote.Position < start) return false;
    value.Text = CString(text.GetBuffer() + start, quote.Position - start);
    return true;
}

/// Settings that were read, to be given to a tool all together: when memory ends before, it keeps what it
/// had.
class CReadSettings {
public:
    void Add(const TSetting& setting, TSettingValue value) {
        m_List.emplace_back(&setting, std::move(value));
    }
    void Apply(CAnyObject& tool) const {
        // Texts first: a tool needs memory for them and none for numbers.
        for (const bool texts : {true, false}) {
            for (const auto& [setting, value] : m_List) {
                if ((setting->Form == TSettingForm::Text) == texts) setting->Access.Set(tool, value);
            }
        }
    }

private:
    std::vector<std::pair<const TSetting*, TSettingValue>> m_List;
};

void CollectLine(const TSettings& settings, const TLine& line, CReadSettings& read) {
    const char16_t* const text = line.Text.GetBuffer();
    if (!BeginsWith(text, Indent)) return;
    for (const TSetting& setting : settings) {
        // Only as much as the key is compared, on purpose: longer words that begin with it have always
        // passed.
        if (!BeginsWith(text + IndentLength, setting.Key)) continue;
        const std::uint32_t start = IndentLength + CString::GetLength(setting.Key) + ColonLength;
        TSettingValue value;
        if (FindValue(setting, line, start, value)) read.Add(setting, std::move(value));
        return;
    }
}

}  // namespace

void ExportBlock(const CAnyObject& tool, const TSettings& settings, zulsys::CTextFile& file) {
    CString block = CString::Format(u"    %s\n", settings.Tool);
    for (std::size_t i = 0; i < settings.Count; ++i) {
        const TSetting& setting = SettingOfLine(settings, i);
        const CString value = ValueText(setting, tool, false);
        block.Append(Indent);
        block.Append(setting.Key);
        block.Append(u" : ");
        block.Append(setting.Form == TSettingForm::Text ? Quoted(value) : value);
        block.Append(u"\n");
    }
    block.Append(EndLine);
    block.Append(u"\n");
    // At once: a block is written whole or, without memory, not begun.
    file.WriteString(block.GetBufferAnsi());
}

void ExportElement(const CAnyObject& tool, const TSettings& settings, zulsys::CTextFile& file) {
    CString text = CString::Format(u"      <%s", settings.Tool);
    for (std::size_t i = 0; i < settings.Count; ++i) {
        const TSetting& setting = SettingOfLine(settings, i);
        text.Append(i == 0 ? u" " : u"\n        ");
        text.Append(setting.Attribute);
        text.Append(u"=");
        text.Append(Quoted(ValueText(setting, tool, true)));
    }
    text.Append(CString::Format(u" >\n      </%s>\n", settings.Tool));
    file.WriteString(text.GetBufferAnsi());
}

void ImportBlock(CAnyObject& tool, const TSettings& settings, zulsys::CTextFile& file) {
    CReadSettings read;
    for (TLine line; ReadLine(file, line) && !BeginsWith(line.Text.GetBuffer(), EndLine);)
        CollectLine(settings, line, read);
    if (!file.HasFailed()) read.Apply(tool);
}

void ImportElement(CAnyObject& tool, const TSettings& settings, CAnyObject* element) {
    CReadSettings read;
    for (const TSetting& setting : settings) {
        TSettingValue value;
        if (!tool.RunMessage(u"GetAttributeValue", element, nullptr, CMessage::FromPointer(setting.Attribute),
                             CMessage::FromPointer(&value.Text))) {
            continue;
        }
        if (setting.Form == TSettingForm::Color) {
            value.Number = CPalette::GetColorFromXML(value.Text);
        } else if (setting.Form != TSettingForm::Text) {
            value.Number = ReadNumber(value.Text.GetBuffer());
        }
        read.Add(setting, std::move(value));
    }
    read.Apply(tool);
}

}  // namespace zul
