#include "zul/scaler/length.h"

#include <gtest/gtest.h>

#include "zul/kernel/string.h"

namespace zul {
namespace {

TEST(Length, PrintsKilometresWhenTheFormatAsksForThem) {
    struct TRow {
        double metres;
        const char16_t* format;
        const char* expected;
    };
    const TRow rows[] = {
        {1500.0, u"KM", "1.500000"},
        {12345.0, u"%.1fKM", "12.3"},
        {2500.0, u"%.2f KM", "2.50 "},
        {1500.0, u"%.1fkm", "1500.0km"},  // metres: the mark is upper case
        {1500.0, u"%.1fKMh", "1500.0KMh"},
        {1500.0, u"M", "M"},
        {1500.0, u"", "1500.000000"},
        {1500.0, nullptr, "1500.000000"},
        {1500.0, u"%s KM", "%s "},    // no conversion for a number: the
                                      // format itself is the text
        {1500.0, u"%f%nKM", "%f%n"},  // two conversions neither
        {-0.5, u"%.0fKM", "-0"},
    };
    for (const TRow& row : rows) {
        CLength length(row.metres);
        CString text(u"before");
        EXPECT_TRUE(length.ToString(text, row.format));
        EXPECT_STREQ(text.GetBufferAnsi(), row.expected);
    }
}

}  // namespace
}  // namespace zul
