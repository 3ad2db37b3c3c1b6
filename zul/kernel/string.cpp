#include "zul/kernel/string.h"

#include <cstring>
#include <string_view>
#include <utility>

#include "zul/kernel/stream.h"

namespace zul {
namespace {

constexpr char32_t Replacement = 0xFFFD;

bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void AppendUtf8(std::string& text, char32_t point) {
    const auto put = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
    const auto putTail = [&put, point](int shift) { put(0x80u | ((point >> shift) & 0x3Fu)); };
    if (point < 0x80) {
        put(point);
    } else if (point < 0x800) {
        put(0xC0u | (point >> 6));
        putTail(0);
    } else if (point < 0x10000) {
        put(0xE0u | (point >> 12));
        putTail(6);
        putTail(0);
    } else {
        put(0xF0u | (point >> 18));
        putTail(12);
        putTail(6);
        putTail(0);
    }
}

std::string ToUtf8(std::u16string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t point = text[i];
        if (IsHighSurrogate(point) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
            point = 0x10000 + ((point - 0xD800) << 10) + (text[++i] - char32_t{0xDC00});
        } else if (IsHighSurrogate(point) || IsLowSurrogate(point)) {
            point = Replacement;
        }
        AppendUtf8(result, point);
    }
    return result;
}

/// Takes one code point off the front; a sequence that is cut short, overlong, a surrogate or beyond Unicode
/// takes its first byte only.
char32_t TakePoint(std::string_view& bytes) {
    const auto byteAt = [&bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const char32_t lead = byteAt(0);
    const std::size_t length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 0;
    static constexpr char32_t Smallest[] = {0, 0, 0x80, 0x800, 0x10000};

    char32_t point = length <= 1 ? lead : lead & (0x7Fu >> length);
    bool valid = length != 0 && lead < 0xF8 && length <= bytes.size();
    for (std::size_t i = 1; valid && i < length; ++i) {
        valid = (byteAt(i) & 0xC0u) == 0x80u;
        point = (point << 6) | (byteAt(i) & 0x3Fu);
    }
    valid = valid && point >= Smallest[length] && point <= 0x10FFFF && !IsHighSurrogate(point) &&
            !IsLowSurrogate(point);
    bytes.remove_prefix(valid ? length : 1);
    return valid ? point : Replacement;
}

std::u16string ToUtf16(std::string_view bytes) {
    std::u16string result;
    result.reserve(bytes.size());
    while (!bytes.empty()) {
        const char32_t point = TakePoint(bytes);
        if (point < 0x10000) {
            result.push_back(static_cast<char16_t>(point));
        } else {
            result.push_back(static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10)));
            result.push_back(static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF)));
        }
    }
    return result;
}

struct TCaseRange {
    char16_t First, Last;
    char16_t Distance;  // to the small letter
};

constexpr TCaseRange Capitals[] = {
    {u'A', u'Z', 32},     {0x00C0, 0x00D6, 32}, {0x00D8, 0x00DE, 32}, {0x0391, 0x03A1, 32},
    {0x03A3, 0x03A9, 32}, {0x0400, 0x040F, 80}, {0x0410, 0x042F, 32},
};

char16_t ToSmall(char16_t character) {
    for (const TCaseRange& range : Capitals) {
        if (character >= range.First && character <= range.Last) {
            return static_cast<char16_t>(character + range.Distance);
        }
    }
    return character;
}

bool AreEqual(std::u16string_view first, std::u16string_view second, bool ignoreCase) {
    if (!ignoreCase) return first == second;
    if (first.size() != second.size()) return false;
    for (std::size_t i = 0; i < first.size(); ++i) {
        if (first[i] != second[i] && ToSmall(first[i]) != ToSmall(second[i])) return false;
    }
    return true;
}

}  // namespace

CString::CString(const char16_t* text, std::uint32_t length) {
    if (text != nullptr) m_Text.assign(text, length);
}

CString& CString::operator=(const CString& other) {
    SetBuffer(other);
    return *this;
}

std::uint32_t CString::GetLength(const char16_t* text) {
    return text != nullptr ? static_cast<std::uint32_t>(std::u16string_view(text).size()) : 0;
}

bool CString::IsEqual(const char16_t* first, const char16_t* second, bool ignoreCase) {
    if (first == nullptr || second == nullptr) return first == second;
    return AreEqual(first, second, ignoreCase);
}

const char* CString::GetBufferAnsi() const {
    if (m_Ansi == nullptr) m_Ansi = std::make_unique<std::string>(ToUtf8(m_Text));
    return m_Ansi->c_str();
}

bool CString::IsEqual(const char16_t* text, bool ignoreCase) const {
    return text != nullptr && AreEqual(m_Text, text, ignoreCase);
}

bool CString::IsEqual(const CString* text, bool ignoreCase) const {
    return text != nullptr && AreEqual(m_Text, text->m_Text, ignoreCase);
}

bool CString::FindFirstLine(TTextIterator& line) const {
    line = TTextIterator();
    return FindNextLine(line);
}

bool CString::FindNextLine(TTextIterator& line) const {
    if (line.Next >= m_Text.size()) return false;
    std::size_t end = m_Text.find_first_of(u"\r\n", line.Next);
    if (end == std::u16string::npos) end = m_Text.size();
    line.Position = line.Next;
    line.Length = static_cast<std::uint32_t>(end) - line.Position;
    const bool pair = m_Text.compare(end, 2, u"\r\n") == 0;
    line.Next = static_cast<std::uint32_t>(end) + (pair ? 2 : 1);
    return true;
}

bool CString::FindLast(TTextIterator& place, const char16_t* what) const {
    const std::uint32_t length = GetLength(what);
    const std::size_t found = length != 0 ? m_Text.rfind(what) : std::u16string::npos;
    if (found == std::u16string::npos) return false;
    place.Position = static_cast<std::uint32_t>(found);
    place.Length = length;
    place.Next = place.Position + length;
    return true;
}

void CString::Append(const CString& text) {
    m_Text.append(text.m_Text);
    m_Ansi.reset();
}

void CString::Append(const char16_t* text) {
    if (text == nullptr) return;
    m_Text.append(text);
    m_Ansi.reset();
}

void CString::SetAt(char16_t character, std::uint32_t index) {
    if (index >= m_Text.size()) return;
    if (character == 0) {
        m_Text.resize(index);
    } else {
        m_Text[index] = character;
    }
    m_Ansi.reset();
}

void CString::SetBuffer(const CString& text) {
    if (this != &text) Assign(std::u16string(text.m_Text));
}

void CString::SetBuffer(const char* text) {
    Assign(text != nullptr ? ToUtf16(text) : std::u16string());
}

void CString::SetBuffer(const char16_t* text) {
    Assign(text != nullptr ? std::u16string(text) : std::u16string());
}

void CString::Clear() {
    Assign(std::u16string());
}

bool CString::ObjectToBuffer(CStream* stream) const {
    if (stream == nullptr) return false;
    const std::uint32_t count = GetLength();
    return stream->Write(&count, sizeof count) && stream->Write(m_Text.data(), 2 * count);
}

bool CString::ObjectFromBuffer(CStream* stream) {
    std::uint32_t count = 0;
    const bool fits = stream != nullptr && stream->Read(&count, sizeof count) &&
                      2 * std::uint64_t{count} <= stream->GetRemaining() && count <= UINT32_MAX / 2;
    std::u16string text(fits ? count : 0, u'\0');
    const bool whole = fits && stream->Read(text.data(), 2 * count);
    Assign(whole ? std::move(text) : std::u16string());
    return whole;
}

void CString::Assign(std::u16string&& text) {
    // The source may have been this string's own text or its UTF-8 twin: both go only now, after the copy.
    m_Text = std::move(text);
    m_Ansi.reset();
}

}  // namespace zul
