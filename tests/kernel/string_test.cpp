#include "zul/kernel/string.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "tests/kernel/kernel_testing.h"
#include "zul/kernel/numeric.h"

namespace zul {
namespace {

std::vector<std::u16string> LinesOf(const CString& text) {
    std::vector<std::u16string> lines;
    TTextIterator line;
    for (bool more = text.FindFirstLine(line); more; more = text.FindNextLine(line)) {
        lines.emplace_back(text.GetBuffer() + line.Position, line.Length);
    }
    return lines;
}

TEST(StringTest, LinesEndAtEveryKindOfBreak) {
    using Lines = std::vector<std::u16string>;
    const struct {
        const char16_t* Text;
        Lines Expected;
    } rows[] = {
        {u"", {}},
        {u"one\r\ntwo\rthree\nfour", {u"one", u"two", u"three", u"four"}},
        {u"a\r\n\r\nb\r\n", {u"a", u"", u"b"}},
        {u"\r\r\n", {u"", u""}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(LinesOf(row.Text), row.Expected) << CString(row.Text).GetBufferAnsi();
}

TEST(StringTest, TextPassesThroughUtf8AndBack) {
    const struct {
        const char16_t* Wide;
        const char* Narrow;
    } rows[] = {
        {u"\u007F\u0080\u07FF\u0800\uFFFF", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"},
        {u"\U00010000\U0010FFFF", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
    };
    for (const auto& row : rows) {
        EXPECT_STREQ(CString(row.Wide).GetBufferAnsi(), row.Narrow);
        EXPECT_EQ(CString(row.Narrow), CString(row.Wide));
    }
}

TEST(StringTest, BrokenEncodingsAreReplaced) {
    const struct {
        const char* Narrow;
        const char16_t* Expected;
    } bytes[] = {
        {"\x80\xC3(", u"\uFFFD\uFFFD("},
        {"\xE2\x82", u"\uFFFD\uFFFD"},
        {"\xC0\xAF", u"\uFFFD\uFFFD"},                      // overlong
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},            // a surrogate
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // past the last code point
    };
    for (const auto& row : bytes)
        EXPECT_EQ(CString(row.Narrow), CString(row.Expected));

    const char16_t lone[] = {u'a', 0xD800, u'b', 0xDC00, 0xD83D, 0};
    EXPECT_STREQ(CString(lone).GetBufferAnsi(),
                 "a\xEF\xBF\xBD"
                 "b\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(StringTest, TheNarrowTextFollowsEveryChange) {
    CString text(u"one");
    EXPECT_STREQ(text.GetBufferAnsi(), "one");
    text.Append(u"-two");
    text.SetAt(u'!', 3);
    EXPECT_STREQ(text.GetBufferAnsi(), "one!two");
    text.SetAt(0, 4);
    text.SetAt(u'x', 4);
    text.SetAt(0, UINT32_MAX);
    EXPECT_STREQ(text.GetBufferAnsi(), "one!");
}

TEST(StringTest, ASourceInsideTheOwnBufferIsTakenOver) {
    CString text(u"folder/name.bmp, a text too long for the small buffer");
    text.SetBuffer(text.GetBuffer() + 7);
    EXPECT_EQ(text, CString(u"name.bmp, a text too long for the small buffer"));
    text.SetBuffer(text.GetBufferAnsi() + 10);
    EXPECT_EQ(text, CString(u"a text too long for the small buffer"));
    text.Append(text.GetBuffer() + 24);
    EXPECT_EQ(text, CString(u"a text too long for the small buffersmall buffer"));
    text.SetBuffer(text);
    text.Append(text);
    EXPECT_EQ(text.GetLength(), 96u);
}

TEST(StringTest, NullCountsAsEmptyWhenTakenOverAndEqualsNothing) {
    CString text(static_cast<const char16_t*>(nullptr));
    EXPECT_STREQ(text.GetBufferAnsi(), "");
    text.Append(static_cast<const char16_t*>(nullptr));
    text.SetBuffer(static_cast<const char*>(nullptr));
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_FALSE(text.IsEqual(static_cast<const char16_t*>(nullptr), true));
    EXPECT_FALSE(text.IsEqual(static_cast<const CString*>(nullptr), false));
    EXPECT_FALSE(CString::IsEqual(nullptr, u"", false));
}

TEST(StringTest, CaseCountsOnlyWhenAsked) {
    const struct {
        const char16_t *First, *Second;
        bool Exact, Loose;
    } rows[] = {
        {u"\u0416\u0443\u043A\u0401", u"\u0436\u0423\u041A\u0451", false, true},
        {u"KM\u00C9", u"km\u00E9", false, true},
        {u"\u00D7", u"\u00F7", false, false},  // the signs for times and divided by are no letters
        {u"@", u"`", false, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(CString::IsEqual(row.First, row.Second, false), row.Exact);
        EXPECT_EQ(CString::IsEqual(row.First, row.Second, true), row.Loose);
    }
}

TEST(StringTest, FindLastGivesTheLastPlace) {
    TTextIterator place;
    const CString name(u"Name : 'O'Brien'");
    ASSERT_TRUE(name.FindLast(place, u"'O"));
    EXPECT_EQ(place.Position, 7u);
    EXPECT_EQ(place.Length, 2u);
    ASSERT_TRUE(name.FindLast(place, u"'"));
    EXPECT_EQ(place.Position, 15u);
    for (const char16_t* absent : {u"\"", u"", static_cast<const char16_t*>(nullptr)})
        EXPECT_FALSE(name.FindLast(place, absent));
}

enum TColourPart { Red = 7 };

TEST(StringFormatTest, PrintsEachConversion) {
    const CString wide(u"\u0416\u0443\u043a");
    const struct {
        CString Got;
        const char* Expected;
    } rows[] = {
        {CString::Format(u"%06x(%d,%d,%d)", 0x563412, 86, 52, 18), "563412(86,52,18)"},
        {CString::Format(u"%x", std::int64_t{-1}), "ffffffffffffffff"},
        {CString::Format(u"%u %d", std::uint32_t{4294967295u}, std::uint32_t{4294967295u}), "4294967295 -1"},
        {CString::Format(u"%lld %ld %hd", INT64_MIN, INT32_MIN, 70000),
         "-9223372036854775808 -2147483648 70000"},
        {CString::Format(u"%i %d %d", true, Red, u'A'), "1 7 65"},
        {CString::Format(u"%c%c", u'A', 0x42), "AB"},
        {CString::Format(u"%06f %f", std::numeric_limits<double>::infinity(), -std::nan("")), "   inf -nan"},
        {CString::Format(u"%s|%5s|%-5s|%.2s", wide, u"ab", u"ab", u"abcdef"),
         "\xD0\x96\xD1\x83\xD0\xBA|   ab|ab   |ab"},
        {CString::Format(u"color='%S'", wide.GetBufferAnsi()), "color='\xD0\x96\xD1\x83\xD0\xBA'"},
        {CString::Format(u"100%% of %d", 5), "100% of 5"},
    };
    for (const auto& row : rows)
        EXPECT_STREQ(row.Got.GetBufferAnsi(), row.Expected);
}

TEST(StringFormatTest, CopiesWhatItCannotPrint) {
    const struct {
        CString Got;
        const char* Expected;
    } rows[] = {
        {CString::Format(u"%s and %d", 1, 2), "%s and 2"},
        {CString::Format(u"%5.1d and %S", 1.5, u"x"), "%5.1d and %S"},
        {CString::Format(u"%"), "%"},
        {CString::Format(u"%-08.3l"), "%-08.3l"},
        {CString::Format(nullptr), ""},
        {CString::Format(u"[%s%S]", static_cast<const char16_t*>(nullptr), static_cast<const char*>(nullptr)),
         "[]"},
    };
    for (const auto& row : rows)
        EXPECT_STREQ(row.Got.GetBufferAnsi(), row.Expected);
}

TEST(StringFormatTest, FieldsOfHostileWidthAreCutDown) {
    EXPECT_EQ(CString::Format(u"%999999999999d", 1).GetLength(), 4096u);
    EXPECT_LE(CString::Format(u"%.4000000000f", 1e308).GetLength(), 4096u + 310u);
    EXPECT_LE(CString::Format(u"%.99999d%.99999e%#.99999g", 1, 1e-300, 1e-300).GetLength(), 3 * 4500u);
}

// The C library prints the same in its plain locale, which the tests run in.
TEST(StringFormatTest, NumbersPrintAsTheCLibraryPrintsThem) {
    std::mt19937 random(20261);
    const char* const flags[] = {"", "-", "0", "+", " ", "#", "+0", "-#", "# ", "-0"};
    for (int i = 0; i < 20000; ++i) {
        std::string format = "%";
        format += flags[random() % std::size(flags)];
        if (random() % 2 != 0) format += std::to_string(random() % 30);
        if (random() % 2 != 0) format += "." + std::to_string(random() % 12);
        const char type = "diuxXfeg"[random() % 8];
        format += type;
        const auto shift = static_cast<int>(random() % 32);
        const auto check = [&format](auto value) {
            char expected[512];
            std::snprintf(expected, sizeof expected, format.c_str(), value);
            const CString got = CString::Format(CString(format.c_str()).GetBuffer(), value);
            ASSERT_STREQ(got.GetBufferAnsi(), expected) << format << " of " << value;
        };
        if (type == 'f' || type == 'e' || type == 'g') {
            check(std::ldexp(static_cast<double>(random()) - 2147483648.0, shift * 4 - 80));
        } else if (type == 'x' || type == 'X' || format.find('#') == std::string::npos) {
            check(static_cast<std::int32_t>(random()) >> shift);  // C leaves '#' with d, i, u undefined
        }
        if (HasFatalFailure()) return;
    }
}

TEST(StringFormatTest, AUsersFormatNeedsExactlyOneFloatingConversion) {
    const struct {
        const char16_t* Format;
        const char* Expected;
    } rows[] = {
        {nullptr, "2.500000"},           {u"", "2.500000"}, {u"%.1f", "2.5"},
        {u"%g m, 100%%", "2.5 m, 100%"}, {u"%", "%"},       {u"100%% m", "100%% m"},
        {u"%.2f %n", "%.2f %n"},
    };
    for (const auto& row : rows) {
        EXPECT_STREQ(CString::FormatNumber(row.Format, 2.5).GetBufferAnsi(), row.Expected);
    }
}

TEST(StringConvertTest, ReadsTheLeadingNumber) {
    const struct {
        const char16_t* Text;
        std::uint32_t Radix;
        double Expected;
    } rows[] = {
        {u"+3.75e2", 10, 3.75},
        {u" 5", 10, 0},
        {u"-.5", 10, -0.5},
        {u"--4", 10, 0},
        {nullptr, 10, 0},
        {u"9007199254740993", 10, 9007199254740992.0},
        {u"-fF0000(255,0,0)", 16, -16711680},
        {u"g1", 16, 0},
        {u"1.8", 16, 1},
        {u"5", 37, 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(CString::Convert(row.Text, row.Radix), row.Expected) << CString(row.Text).GetBufferAnsi();
    }
}

TEST(StringConvertTest, VeryLongNumbersSaturate) {
    const std::u16string nines(400, u'9');
    const std::u16string tiny = u"0." + std::u16string(400, u'0') + u"1";
    EXPECT_TRUE(std::isinf(CString::Convert(nines.c_str())));
    EXPECT_EQ(ToLong(CString::Convert((u"-" + nines).c_str())), INT32_MIN);
    EXPECT_EQ(CString::Convert(tiny.c_str()), 0.0);
    EXPECT_TRUE(std::isinf(CString::Convert(std::u16string(400, u'f').c_str(), 16)));
}

}  // namespace
}  // namespace zul
