/// \file
/// Texts and formats of all kinds: printing, numbers, lines, case, code pages, bytes in buffers, what is
/// typed on the command line, class documents.
///
/// The first byte of an input chooses what the rest is tried with. Printing agrees with the C library where
/// both know the conversion, and what was printed exactly reads back.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <limits>
#include <sstream>
#include <string>

#include "apps/zulmap/render_command.h"
#include "apps/zulmap/tool_error.h"
#include "apps/zulmap/tool_settings.h"
#include "apps/zulmap/view/view_script.h"
#include "fuzz/frame/fuzzing.h"
#include "zul/geometry/point.h"
#include "zul/geometry/rect.h"
#include "zul/kernel/buffer.h"
#include "zul/kernel/class_registry.h"
#include "zul/kernel/domain.h"
#include "zul/kernel/stream.h"
#include "zul/kernel/string.h"
#include "zul/scaler/length.h"

namespace {

using fuzz::Input;
using fuzz::Require;
using zul::CString;

constexpr int kLongest = 200;

// --- printing ---

void PrintAnything(Input& input) {
    const std::u16string format = input.Text(kLongest), text = input.Text(20);
    const std::string bytes = input.Bytes(20);
    const auto number = input.Any<std::int32_t>();
    const auto wide = input.Any<std::int64_t>();
    const double real = input.Real(1000);
    CString::Format(format.c_str());
    CString::Format(format.c_str(), number, real, text.c_str(), bytes.c_str(), wide);
    CString::Format(format.c_str(), text.c_str(), &input, static_cast<const char*>(nullptr), real, number);
    CString::FormatNumber(format.c_str(), real);
    CString printed;
    zul::CFloat(real).ToString(printed, format.c_str());
    zul::CPoint(1, -2).ToString(printed, format.c_str());
    zul::CRect(1, 2, 3, 4).ToString(printed, format.c_str());
    zul::CLength(real).ToString(printed, format.c_str());
}

/// A conversion without its length and type: "%-+08.3".
std::string Conversion(Input& input) {
    std::string conversion = "%";
    for (const char flag : {'-', '+', ' ', '0', '#'})
        if (input.Below(4) == 0) conversion += flag;
    if (input.Flag()) conversion += std::to_string(1 + input.Below(40));
    if (input.Flag()) conversion += "." + std::to_string(input.Below(30));
    return conversion;
}

template <class T>
void RequirePrinted(const std::string& ours, const std::string& theirs, T value) {
    char expected[600];
    std::snprintf(expected, sizeof expected, theirs.c_str(), value);
    const CString printed = CString::Format(CString(ours.c_str()).GetBuffer(), value);
    Require(printed == CString(expected), theirs.c_str());
}

void PrintAsLibrary(Input& input) {
    const std::string conversion = Conversion(input);
    const char integer = input.OneOf("diuxX"), floating = input.OneOf("feg");
    if (integer != 0) {
        RequirePrinted(conversion + integer, conversion + integer, input.Any<std::int32_t>());
        RequirePrinted(conversion + integer, conversion + "ll" + integer, input.Any<long long>());
    }
    const auto value = input.Any<double>();
    if (floating != 0 && std::isfinite(value))
        RequirePrinted(conversion + floating, conversion + floating, value);
}

// --- numbers ---

void ReadNumbers(Input& input) {
    const auto value = input.Any<double>();
    const auto whole = input.Any<std::int64_t>();
    CString text;
    zul::CFloat real(value), other;
    real.ToString(text, u"%.17g");
    other.FromString(text, nullptr);
    Require(!std::isfinite(value) || other.GetValue() == value, "a floating number comes back");
    zul::CInteger integer(whole), same;
    integer.ToString(text, nullptr);
    same.FromString(text, nullptr);
    Require(same.GetValue() == whole, "an integer comes back");

    const CString any(input.Text(kLongest).c_str());
    zul::CFloat unknown(std::numeric_limits<double>::infinity());
    unknown.FromString(any, nullptr);
    Require(std::isinf(unknown.GetValue()) || unknown.IsValidString(any, nullptr),
            "only what is valid is taken");
    for (const std::uint32_t radix : {0u, 2u, 10u, 16u, 36u, 37u})
        CString::Convert(any.GetBuffer(), radix);
    unknown.GetIntegerValue();
    real.Compare(&unknown);
    zul::CLength(value).GetIntegerValue();
}

// --- texts ---

bool IsBreak(char16_t unit) {
    return unit == u'\n' || unit == u'\r';
}

void RequireLines(const CString& text) {
    zul::TTextIterator line;
    std::uint32_t end = 0;
    for (bool found = text.FindFirstLine(line); found; found = text.FindNextLine(line)) {
        Require(line.Position >= end && line.Position - end <= 2, "lines follow each other");
        end = line.Position + line.Length;
        Require(end <= text.GetLength(), "a line lies in its text");
        for (std::uint32_t i = line.Position; i < end; ++i)
            Require(!IsBreak(text.GetBuffer()[i]), "a line is one");
    }
    Require(text.GetLength() - end <= 2, "all lines are found");
}

void HandleTexts(Input& input) {
    const std::u16string units = input.Text(kLongest), part = input.Text(4);
    CString text(units.data(), static_cast<std::uint32_t>(units.size()));
    RequireLines(text);

    zul::TTextIterator place;
    const std::u16string wanted = part.c_str();
    const std::size_t expected = wanted.empty() ? units.npos : units.rfind(wanted);
    Require(text.FindLast(place, part.c_str()) == (expected != units.npos), "what is there is found");
    Require(expected == units.npos || place.Position == expected, "the last place is found");

    const CString narrow(text.GetBufferAnsi());
    Require(CString(narrow.GetBufferAnsi()) == narrow, "what has been UTF-8 stays");
    const std::string bytes = input.Bytes(kLongest);
    const CString widened(bytes.c_str());
    Require(CString(widened.GetBufferAnsi()) == widened, "what has been UTF-8 stays");

    Require(text.IsEqual(&text, true), "a text equals itself");
    for (const bool ignoreCase : {false, true}) {
        Require(CString::IsEqual(text.GetBuffer(), widened.GetBuffer(), ignoreCase) ==
                    CString::IsEqual(widened.GetBuffer(), text.GetBuffer(), ignoreCase),
                "equality goes both ways");
    }
    zul::CMemoryStream stream;
    text.ObjectToBuffer(&stream);
    Require(stream.GetSize() == text.GetPreferredSize(), "a text knows its size");
    stream.SetPosition(0);
    CString same;
    Require(same.ObjectFromBuffer(&stream) && same == text, "a stored text comes back");
    zul::CMemoryStream hostile(bytes.data(), bytes.size());
    same.ObjectFromBuffer(&hostile);
    text.SetAt(u'x', input.Any<std::uint32_t>() % (kLongest * 2));
    text.Append(text);
    text.Append(part.c_str());
}

// --- bytes ---

/// A buffer beside a plain text, to which the same is done.
class Twins {
public:
    void Step(Input& input) {
        const int kind = input.Below(5), position = input.Below(100);
        std::string bytes = input.Bytes(20);
        if (kind == 4) return RequireNoRoom(bytes);
        if (kind == 3) return Delete(static_cast<std::uint32_t>(position), input.Any<std::uint8_t>());
        const bool own = input.Flag() && bytes.size() <= m_Model.size();
        if (own) bytes = m_Model.substr(0, bytes.size());
        Put(kind == 0, static_cast<std::uint32_t>(position), bytes, own);
    }

private:
    /// \p own: the bytes are the buffer's first.
    void Put(bool insert, std::uint32_t position, const std::string& bytes, bool own) {
        const void* const source = own ? m_Buffer.GetBuffer() : bytes.data();
        const auto size = static_cast<std::uint32_t>(bytes.size());
        Require(
            (insert ? m_Buffer.DoInsert(position, size, source) : m_Buffer.Write(position, size, source)) ||
                size == 0,
            "there is room");
        if (size > 0 && position > m_Model.size()) m_Model.resize(position);
        if (size > 0) m_Model.replace(position, insert ? 0 : size, bytes);
        RequireSame();
    }
    void Delete(std::uint32_t position, std::uint32_t size) {
        m_Buffer.DoDelete(position, size);
        if (position < m_Model.size()) m_Model.erase(position, size);
        RequireSame();
    }
    void RequireNoRoom(const std::string& bytes) {
        const auto size = static_cast<std::uint32_t>(bytes.size());
        Require(size == 0 || !m_Buffer.Write(UINT32_MAX - size + 1, size, bytes.data()),
                "4 GiB are not passed");
        RequireSame();
    }
    void RequireSame() const {
        Require(
            m_Buffer.GetSize() == m_Model.size() &&
                std::equal(m_Model.begin(), m_Model.end(), static_cast<const char*>(m_Buffer.GetBuffer())),
            "a buffer holds what was put there");
    }

    zul::CAnyMemoryBuffer m_Buffer;
    std::string m_Model;
};

void ChangeBuffer(Input& input) {
    Twins twins;
    while (input.IsLeft())
        twins.Step(input);
}

// --- what is typed ---

/// Hands \p text to a parser, which may refuse it with its own kind of error and no other.
template <class Parser>
void Try(Parser&& parser, const std::string& text) {
    try {
        parser(text);
    } catch (const zulmap::ToolError& error) {
        Require(*error.what() != 0, "an error has a text");
    }
}

void ReadTyped(Input& input) {
    const int parser = input.Below(9);
    const std::string text = input.Rest();
    const auto parse = [parser](const std::string& typed) {
        std::int32_t color;
        switch (parser) {
            case 0: {
                const zulmap::PenSettings settings = zulmap::ParsePen(typed);
                zul::CPen pen;
                zulmap::UsePen(pen, settings);
                const zulmap::PenSettings same = zulmap::SettingsOf(pen);
                Require(same.style == settings.style && same.width == settings.width &&
                            same.color == settings.color && same.endType == settings.endType,
                        "a pen is what was typed");
                return;
            }
            case 1:
                return void(zulmap::ParseBrush(typed));
            case 2:
                return void(zulmap::ParseFont(typed));
            case 3:
                return void(zulmap::ParsePage(typed));
            case 4:
                return void(zulmap::ParseColor(typed, color));
            case 5: {
                const zul::TSize size = zulmap::ParseSize(typed);
                return Require(size.Width > 0 && size.Height > 0, "a size has room");
            }
            case 6: {
                const zulmap::Box box = zulmap::ParseBox(typed);
                return Require(box.minX < box.maxX && box.minY < box.maxY, "a box has room");
            }
            case 7: {
                zulmap::ParseRaster(typed);
                return Require(std::abs(zulmap::ParseAngle(typed)) < 360.0, "an angle is within a turn");
            }
            default: {
                std::istringstream lines(typed);
                zulmap::ViewScript(lines, "script");
            }
        }
    };
    Try(parse, text);
}

void RegisterClass(Input& input) {
    static int left = 200000;  // the registry forgets nothing
    if (left == 0) return;
    --left;
    const std::string document = input.Rest();
    zul::CClass::Register(nullptr, CString(document.c_str()));
}

}  // namespace

void fuzz::Run(const std::uint8_t* data, std::size_t size) {
    constexpr void (*kTrials[])(Input&) = {PrintAnything, PrintAsLibrary, ReadNumbers,
                                           HandleTexts,   ReadTyped,      ReadTyped,
                                           ReadTyped,     RegisterClass,  ChangeBuffer};
    Input input(data, size);
    const int trial = input.Below(static_cast<int>(std::size(kTrials)));
    kTrials[trial](input);
}
