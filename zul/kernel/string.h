/// \file
/// The library's text value: UTF-16, with printf-style formatting, number reading and a line iterator.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>

#include "zul/kernel/export.h"

namespace zul {

class CStream;

/// A place in a text: where a line or a found text starts and how many characters it has.
struct TTextIterator {
    std::uint32_t Position = 0;  ///< of the first character
    std::uint32_t Length = 0;    ///< characters
    std::uint32_t Next = 0;      ///< where the search goes on
};

/// One value for `CString::Format`, with what is needed to tell a fitting conversion from a wrong one.
class CFormatArgument {
public:
    /// What a conversion may ask for.
    enum TKind { Integer, Floating, Wide, Narrow, Pointer };

    /// A number, an address, a text, or an object whose GetBuffer() is wide text; texts must outlive it.
    template <class T>
    CFormatArgument(const T& value) {
        using V = std::decay_t<T>;
        if constexpr (std::is_same_v<V, char16_t*> || std::is_same_v<V, const char16_t*>) {
            m_Kind = Wide;
            m_Address = static_cast<const char16_t*>(value);
        } else if constexpr (std::is_same_v<V, char*> || std::is_same_v<V, const char*>) {
            m_Kind = Narrow;
            m_Address = static_cast<const char*>(value);
        } else if constexpr (std::is_floating_point_v<V>) {
            m_Kind = Floating;
            m_Double = static_cast<double>(value);
        } else if constexpr (std::is_integral_v<V> || std::is_enum_v<V>) {
            m_Kind = Integer;
            m_IsLong = sizeof(V) > 4;
            m_Integer = static_cast<std::int64_t>(value);
        } else if constexpr (std::is_pointer_v<V>) {
            m_Kind = Pointer;
            m_Address = value;
        } else {
            m_Kind = Wide;
            m_Address = value.GetBuffer();
        }
    }

    /// The value as its kind has it; 0 or null as another one.
    TKind GetKind() const { return m_Kind; }
    bool IsLong() const { return m_IsLong; }  ///< an integer of more than 32 bits
    std::int64_t GetInteger() const { return m_Integer; }
    double GetDouble() const { return m_Double; }
    const void* GetAddress() const { return m_Address; }

private:
    TKind m_Kind = Integer;
    bool m_IsLong = false;
    std::int64_t m_Integer = 0;
    double m_Double = 0.0;
    const void* m_Address = nullptr;
};

/// A text of 16-bit characters. A value: copies are independent. The 8-bit code page is UTF-8 both ways;
/// bytes that are no UTF-8 and halves of surrogate pairs become U+FFFD. Taking over or
/// appending null is taking over or appending an empty text.
class ZUL_KERNEL_API CString {
public:
    CString() = default;
    /// Up to the terminating zero.
    CString(const char16_t* text) { SetBuffer(text); }
    CString(const char* text) { SetBuffer(text); }
    /// The first \p length characters of \p text, zeros included.
    CString(const char16_t* text, std::uint32_t length);
    /// The UTF-8 form is not copied along.
    CString(const CString& other) : m_Text(other.m_Text) {}
    CString(CString&& other) noexcept = default;
    CString& operator=(const CString& other);
    CString& operator=(CString&& other) noexcept = default;

    /// Makes a text printf-style: flags, width and precision of d i u x X c f g e s S p and %%. `%s` takes
    /// wide text (or a `CString`), `%S` narrow text. Length letters are accepted and have no effect: the
    /// arguments know their own width, and an integer of up to 32 bits prints as 32 bits. A conversion that
    /// does not suit its argument, lacks one, or is unknown is copied as text.
    template <class... Arguments>
    static CString Format(const char16_t* format, const Arguments&... arguments) {
        const CFormatArgument list[sizeof...(Arguments) + 1] = {arguments..., 0};
        return FormatList(format, list, sizeof...(Arguments));
    }

    /// Prints one number with a format that came from a user: it must hold exactly one conversion, a floating
    /// one, else the format is taken as literal text. Null or empty means "%f".
    static CString FormatNumber(const char16_t* format, double value);

    /// Reads the number that \p text starts with: a sign if there is one, digits of \p radix (2 to 36, else
    /// the result is 0), with radix 10 a decimal fraction; stops at the first foreign character. Blanks are
    /// not skipped; a text that starts with neither digit nor sign gives 0.
    static double Convert(const char16_t* text, std::uint32_t radix = 10);

    /// Up to the terminating zero; null has no characters.
    static std::uint32_t GetLength(const char16_t* text);

    /// Null equals only null. Case is ignored for the Latin, Greek and Cyrillic alphabets.
    static bool IsEqual(const char16_t* first, const char16_t* second, bool ignoreCase);

    // --- query ---

    /// Zero-terminated, never null, valid until the next change.
    const char16_t* GetBuffer() const { return m_Text.c_str(); }

    /// The text in UTF-8, kept with the string: never null, valid until the next change.
    const char* GetBufferAnsi() const;

    /// Characters of 16 bits, halves of surrogate pairs counted one by one.
    std::uint32_t GetLength() const { return static_cast<std::uint32_t>(m_Text.size()); }
    bool IsEmpty() const { return m_Text.empty(); }
    /// As the form above; operators compare the numbers of the characters.
    bool IsEqual(const char16_t* text, bool ignoreCase) const;
    bool IsEqual(const CString* text, bool ignoreCase) const;
    bool operator==(const CString& other) const { return m_Text == other.m_Text; }
    bool operator!=(const CString& other) const { return m_Text != other.m_Text; }
    bool operator<(const CString& other) const { return m_Text < other.m_Text; }

    /// Lines end with CR LF, LF or CR. Empty lines inside count; a line break at the very end opens no
    /// further line; an empty text has no line. \returns false when there is no (further) line.
    bool FindFirstLine(TTextIterator& line) const;
    bool FindNextLine(TTextIterator& line) const;

    /// The last place where \p what stands in the text; an empty \p what is never found.
    bool FindLast(TTextIterator& place, const char16_t* what) const;

    // --- change ---

    /// At the end of the text.
    void Append(const CString& text);
    void Append(const char16_t* text);

    /// Replaces one character; zero cuts the text off there. An index at or past the end does nothing.
    void SetAt(char16_t character, std::uint32_t index);

    /// Replaces the whole text. The source may lie in this string's own buffer.
    void SetBuffer(const CString& text);
    void SetBuffer(const char* text);
    void SetBuffer(const char16_t* text);

    void Clear();  ///< Empties the text.

    // --- persist: 32-bit count, then the characters ---

    bool ObjectToBuffer(CStream* stream) const;  ///< False when the stream does not take it.
    /// A count that the stream cannot hold gives an empty text and false.
    bool ObjectFromBuffer(CStream* stream);
    std::uint32_t GetPreferredSize() const { return 4 + 2 * GetLength(); }  ///< Bytes of the stored form.

private:
    static CString FormatList(const char16_t* format, const CFormatArgument* arguments, std::size_t count);
    void Assign(std::u16string&& text);

    std::u16string m_Text;
    mutable std::unique_ptr<std::string> m_Ansi;
};

}  // namespace zul
