#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <random>

#include "tests/kernel/kernel_testing.h"
#include "zul/kernel/numeric.h"
#include "zul/kernel/string.h"

namespace zul {
namespace {

enum TColourPart { Red = 7 };

TEST(StringFormatTest, PrintsEachConversion) {
    const CString wide(u"\u0416\u0443\u043a");
    const struct {
        CString Got;
        const char* Expected;
    } rows[] = {
        {CString::Format(u"      Width : %d\n", 3), "      Width : 3\n"},
        {CString::Format(u"%06x(%d,%d,%d)", 0x563412, 86, 52, 18), "563412(86,52,18)"},
        {CString::Format(u"%06x", -1), "ffffffff"},
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
        {CString::Format(u"%d and %d", 1), "1 and %d"},
        {CString::Format(u"%s and %d", 1, 2), "%s and 2"},
        {CString::Format(u"%5.1d and %S", 1.5, u"x"), "%5.1d and %S"},
        {CString::Format(u"%"), "%"},
        {CString::Format(u"%-08.3l"), "%-08.3l"},
        {CString::Format(u""), ""},
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
        {u"42", 10, 42},
        {u"+3.75e2", 10, 3.75},
        {u"1.2.3", 10, 1.2},
        {u" 5", 10, 0},
        {u".5", 10, 0},
        {u"-.5", 10, -0.5},
        {u"-", 10, 0},
        {u"--4", 10, 0},
        {u"", 10, 0},
        {nullptr, 10, 0},
        {u"9007199254740993", 10, 9007199254740992.0},
        {u"ff0000(255,0,0)", 16, 16711680},
        {u"-1F", 16, -31},
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
