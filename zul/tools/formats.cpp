#include "zul/tools/formats.h"

#include <algorithm>
#include <string>
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

void ApplyLine(CAnyObject& tool, const TSettings& settings, const TLine& line) {
    const char16_t* const text = line.Text.GetBuffer();
    if (!BeginsWith(text, Indent)) return;
    for (const TSetting& setting : settings) {
        // Only as much as the key is compared, on purpose: longer words that begin with it have always
        // passed.
        if (!BeginsWith(text + IndentLength, setting.Key)) continue;
        const std::uint32_t start = IndentLength + CString::GetLength(setting.Key) + ColonLength;
        TSettingValue value;
        if (FindValue(setting, line, start, value)) setting.Access.Set(tool, value);
        return;
    }
}

}  // namespace

void ExportBlock(const CAnyObject& tool, const TSettings& settings, zulsys::CTextFile& file) {
    file.WriteString(CString::Format(u"    %s\n", settings.Tool).GetBufferAnsi());
    for (std::size_t i = 0; i < settings.Count; ++i) {
        const TSetting& setting = SettingOfLine(settings, i);
        const CString value = ValueText(setting, tool, false);
        CString line(Indent);
        line.Append(setting.Key);
        line.Append(u" : ");
        line.Append(setting.Form == TSettingForm::Text ? Quoted(value) : value);
        line.Append(u"\n");
        if (i + 1 == settings.Count) {
            line.Append(EndLine);
            line.Append(u"\n");
        }
        file.WriteString(line.GetBufferAnsi());
    }
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
    std::vector<TSettingValue> former;
    for (const TSetting& setting : settings)
        former.push_back(setting.Access.Get(tool));
    for (TLine line; ReadLine(file, line);) {
        if (BeginsWith(line.Text.GetBuffer(), EndLine)) return;
        ApplyLine(tool, settings, line);
    }
    if (!file.HasFailed()) return;
    auto value = former.begin();
    for (const TSetting& setting : settings)
        setting.Access.Set(tool, *value++);
}

void ImportElement(CAnyObject& tool, const TSettings& settings, CAnyObject* element) {
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
        setting.Access.Set(tool, value);
    }
}

}  // namespace zul
