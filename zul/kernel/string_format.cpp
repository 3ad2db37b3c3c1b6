#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

#include "zul/kernel/string.h"

namespace zul {
namespace {

/// Wider fields and finer precisions than this are cut down: formats come from users, too.
constexpr std::uint32_t WidestField = 4096;

struct TConversion {
    bool Left = false;
    bool Zeros = false;
    bool Plus = false;
    bool Blank = false;
    bool Alternate = false;
    bool HasPrecision = false;
    std::uint32_t Width = 0;
    std::uint32_t Precision = 0;
    char16_t Type = 0;
};

/// A text to be put into its field: sign or prefix, then the digits or characters.
struct TField {
    std::u16string Prefix;
    std::u16string Body;
    bool MayZeroFill = false;
};

bool IsDigit(char16_t character) {
    return character >= u'0' && character <= u'9';
}

std::u16string Widen(std::string_view text) {
    return std::u16string(text.begin(), text.end());
}

std::uint32_t TakeNumber(std::u16string_view& text) {
    std::uint32_t number = 0;
    for (; !text.empty() && IsDigit(text.front()); text.remove_prefix(1)) {
        number = std::min(number * 10 + static_cast<std::uint32_t>(text.front() - u'0'), WidestField);
    }
    return number;
}

bool TakeFlag(std::u16string_view& text, TConversion& conversion) {
    if (text.empty()) return false;
    switch (text.front()) {
        case u'-':
            conversion.Left = true;
            break;
        case u'0':
            conversion.Zeros = true;
            break;
        case u'+':
            conversion.Plus = true;
            break;
        case u' ':
            conversion.Blank = true;
            break;
        case u'#':
            conversion.Alternate = true;
            break;
        default:
            return false;
    }
    text.remove_prefix(1);
    return true;
}

/// Takes a conversion off the front of \p text, which starts behind its percent sign. The type is 0 when the
/// text ends before it.
TConversion TakeConversion(std::u16string_view& text) {
    TConversion conversion;
    while (TakeFlag(text, conversion)) {
    }
    conversion.Width = TakeNumber(text);
    if (!text.empty() && text.front() == u'.') {
        text.remove_prefix(1);
        conversion.HasPrecision = true;
        conversion.Precision = TakeNumber(text);
    }
    while (!text.empty() && (text.front() == u'l' || text.front() == u'h'))
        text.remove_prefix(1);
    if (!text.empty()) {
        conversion.Type = text.front();
        text.remove_prefix(1);
    }
    return conversion;
}

bool IsKnown(char16_t type) {
    return std::u16string_view(u"diuxXcfgesSp").find(type) != std::u16string_view::npos;
}
bool IsFloating(char16_t type) {
    return type == u'f' || type == u'g' || type == u'e';
}

bool Suits(char16_t type, CFormatArgument::TKind kind) {
    switch (type) {
        case u'f':
        case u'g':
        case u'e':
            return kind == CFormatArgument::Floating;
        case u's':
            return kind == CFormatArgument::Wide;
        case u'S':
            return kind == CFormatArgument::Narrow;
        case u'p':
            return kind == CFormatArgument::Pointer || kind == CFormatArgument::Wide ||
                   kind == CFormatArgument::Narrow;
        default:
            return kind == CFormatArgument::Integer;
    }
}

std::u16string Sign(bool negative, const TConversion& conversion) {
    return negative ? u"-" : conversion.Plus ? u"+" : conversion.Blank ? u" " : u"";
}

std::u16string Digits(std::uint64_t value, int radix, const TConversion& conversion) {
    if (value == 0 && conversion.HasPrecision && conversion.Precision == 0) return {};
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, value, radix).ptr;
    std::u16string result(digits, end);
    if (conversion.Type == u'X') {
        for (char16_t& digit : result) {
            if (digit >= u'a') digit = static_cast<char16_t>(digit - u'a' + u'A');
        }
    }
    if (result.size() < conversion.Precision) result.insert(0, conversion.Precision - result.size(), u'0');
    return result;
}

TField IntegerField(const TConversion& conversion, const CFormatArgument& argument) {
    const std::int64_t wide = argument.GetInteger();
    const auto low = static_cast<std::uint32_t>(static_cast<std::uint64_t>(wide) & 0xFFFFFFFFu);
    TField field;
    field.MayZeroFill = !conversion.HasPrecision;
    if (conversion.Type == u'd' || conversion.Type == u'i') {
        const std::int64_t value = argument.IsLong() ? wide : static_cast<std::int32_t>(low);
        const auto bits = static_cast<std::uint64_t>(value);
        field.Prefix = Sign(value < 0, conversion);
        field.Body = Digits(value < 0 ? 0 - bits : bits, 10, conversion);
        return field;
    }
    const std::uint64_t value = argument.IsLong() ? static_cast<std::uint64_t>(wide) : low;
    field.Body = Digits(value, conversion.Type == u'u' ? 10 : 16, conversion);
    if (conversion.Alternate && value != 0 && conversion.Type != u'u') {
        field.Prefix = {u'0', conversion.Type};
    }
    return field;
}

/// The library's own number printing knows no locale: the decimal sign is a point on every host.
std::string PrintDouble(double value, std::chars_format form, std::uint32_t precision) {
    std::string text(std::size_t{precision} + 400, '\0');
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), value, form, static_cast<int>(precision));
    text.resize(static_cast<std::size_t>(end.ptr - text.data()));
    return text;
}

/// "%#g" keeps the zeros at the end that "%g" drops; the exponent after rounding decides between the two
/// forms.
std::string PrintGeneralWithZeros(double value, std::uint32_t precision) {
    const std::uint32_t digits = std::max(precision, 1u);
    std::string scientific = PrintDouble(value, std::chars_format::scientific, digits - 1);
    const int exponent = std::stoi(scientific.substr(scientific.find('e') + 1));
    if (exponent < -4 || exponent >= static_cast<int>(digits)) return scientific;
    return PrintDouble(value, std::chars_format::fixed,
                       static_cast<std::uint32_t>(static_cast<int>(digits) - 1 - exponent));
}

TField FloatingField(const TConversion& conversion, double value) {
    const std::uint32_t precision = conversion.HasPrecision ? conversion.Precision : 6;
    const double size = std::signbit(value) ? -value : value;
    TField field;
    field.Prefix = Sign(std::signbit(value), conversion);
    field.MayZeroFill = std::isfinite(value);
    std::string body;
    if (!std::isfinite(value)) {
        body = std::isnan(value) ? "nan" : "inf";
    } else if (conversion.Type == u'f') {
        body = PrintDouble(size, std::chars_format::fixed, precision);
    } else if (conversion.Type == u'e') {
        body = PrintDouble(size, std::chars_format::scientific, precision);
    } else if (conversion.Alternate) {
        body = PrintGeneralWithZeros(size, precision);
    } else {
        body = PrintDouble(size, std::chars_format::general, precision);
    }
    if (conversion.Alternate && std::isfinite(value) && body.find('.') == std::string::npos) {
        body.insert(std::min(body.find('e'), body.size()), 1, '.');
    }
    field.Body = Widen(body);
    return field;
}

TField TextField(const TConversion& conversion, std::u16string text) {
    if (conversion.HasPrecision && text.size() > conversion.Precision) text.resize(conversion.Precision);
    return {std::u16string(), std::move(text), false};
}

TField MakeField(const TConversion& conversion, const CFormatArgument& argument) {
    switch (conversion.Type) {
        case u'f':
        case u'g':
        case u'e':
            return FloatingField(conversion, argument.GetDouble());
        case u's':
            return TextField(conversion,
                             CString(static_cast<const char16_t*>(argument.GetAddress())).GetBuffer());
        case u'S':
            return TextField(conversion,
                             CString(static_cast<const char*>(argument.GetAddress())).GetBuffer());
        case u'c':
            return {std::u16string(), {static_cast<char16_t>(argument.GetInteger() & 0xFFFF)}, false};
        case u'p': {
            const auto address = reinterpret_cast<std::uintptr_t>(argument.GetAddress());
            return {u"0x", Digits(address, 16, conversion), false};
        }
        default:
            return IntegerField(conversion, argument);
    }
}

void AppendField(std::u16string& text, const TConversion& conversion, const TField& field) {
    const std::size_t length = field.Prefix.size() + field.Body.size();
    const std::size_t fill = conversion.Width > length ? conversion.Width - length : 0;
    const bool zeros = conversion.Zeros && !conversion.Left && field.MayZeroFill;
    if (!conversion.Left && !zeros) text.append(fill, u' ');
    text += field.Prefix;
    if (zeros) text.append(fill, u'0');
    text += field.Body;
    if (conversion.Left) text.append(fill, u' ');
}

int DigitValue(char16_t character) {
    if (IsDigit(character)) return character - u'0';
    if (character >= u'a' && character <= u'z') return character - u'a' + 10;
    if (character >= u'A' && character <= u'Z') return character - u'A' + 10;
    return 36;
}

double ReadDecimal(const char16_t* text) {
    std::string digits;
    bool any = false;
    bool large = false;  // a digit other than zero before the point
    for (; IsDigit(*text); ++text) {
        digits.push_back(static_cast<char>(*text));
        any = true;
        large = large || *text != u'0';
    }
    if (*text == u'.') {
        digits.push_back('.');
        for (++text; IsDigit(*text); ++text) {
            digits.push_back(static_cast<char>(*text));
            any = true;
        }
    }
    double value = 0.0;
    if (!any) return value;
    const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (end.ec != std::errc::result_out_of_range) return value;
    return large ? std::numeric_limits<double>::infinity() : 0.0;
}

double ReadWhole(const char16_t* text, int radix) {
    double value = 0.0;
    for (; DigitValue(*text) < radix; ++text)
        value = value * radix + DigitValue(*text);
    return value;
}

}  // namespace

CString CString::FormatList(const char16_t* format, const CFormatArgument* arguments, std::size_t count) {
    CString result;
    std::u16string_view rest = format != nullptr ? format : u"";
    std::size_t next = 0;
    while (!rest.empty()) {
        const std::size_t percent = std::min(rest.find(u'%'), rest.size());
        result.m_Text += rest.substr(0, percent);
        rest.remove_prefix(percent);
        if (rest.empty()) break;

        const std::u16string_view start = rest;
        rest.remove_prefix(1);
        const TConversion conversion = TakeConversion(rest);
        if (conversion.Type == u'%') {
            result.m_Text += u'%';
            continue;
        }
        // A wrong argument is passed over, so that those behind it still meet their own conversions.
        const CFormatArgument* const argument =
            IsKnown(conversion.Type) && next < count ? &arguments[next++] : nullptr;
        if (argument != nullptr && Suits(conversion.Type, argument->GetKind())) {
            AppendField(result.m_Text, conversion, MakeField(conversion, *argument));
        } else {
            result.m_Text += start.substr(0, start.size() - rest.size());
        }
    }
    return result;
}

CString CString::FormatNumber(const char16_t* format, double value) {
    if (GetLength(format) == 0) return Format(u"%f", value);
    std::u16string_view rest = format;
    int conversions = 0;
    bool usable = true;
    for (std::size_t percent = rest.find(u'%'); percent != std::u16string_view::npos;
         percent = rest.find(u'%')) {
        rest.remove_prefix(percent + 1);
        const char16_t type = TakeConversion(rest).Type;
        if (type == u'%') continue;
        ++conversions;
        usable = usable && IsFloating(type);
    }
    return usable && conversions == 1 ? Format(format, value) : CString(format);
}

double CString::Convert(const char16_t* text, std::uint32_t radix) {
    if (text == nullptr || radix < 2 || radix > 36) return 0.0;
    const int base = static_cast<int>(radix);
    const bool isSigned = *text == u'-' || *text == u'+';
    if (!isSigned && DigitValue(*text) >= base) return 0.0;
    const bool negative = *text == u'-';
    if (isSigned) ++text;
    const double value = base == 10 ? ReadDecimal(text) : ReadWhole(text, base);
    return negative ? -value : value;
}

}  // namespace zul
