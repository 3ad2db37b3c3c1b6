#include "zul/kernel/domain.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/kernel/kernel_testing.h"
#include "zul/kernel/client.h"

namespace zul {
namespace {

TEST(DomainTest, TextBecomesANumberOnlyAsAWhole) {
    const struct {
        const char16_t* Text;
        bool IsFloat;
        double Float;
        bool IsInteger;
        std::int64_t Integer;
    } rows[] = {
        {u"12", true, 12, true, 12},
        {u"1.5e3", true, 1500, false, 0},
        {u"9223372036854775808", true, 9223372036854775808.0, false, 0},
        {u"1e999", false, 0, false, 0},
        {u"", false, 0, false, 0},
        {u"+-1", false, 0, false, 0},
        {u"1 ", false, 0, false, 0},
        {u"inf", false, 0, false, 0},
        {u"\u0661", false, 0, false, 0},
    };
    for (const auto& row : rows) {
        CFloat number(-1.0);
        CInteger integer(-1);
        EXPECT_EQ(number.IsValidString(row.Text, nullptr), row.IsFloat) << CString(row.Text).GetBufferAnsi();
        EXPECT_EQ(integer.IsValidString(row.Text, nullptr), row.IsInteger)
            << CString(row.Text).GetBufferAnsi();
        number.FromString(row.Text, nullptr);
        integer.FromString(row.Text, nullptr);
        EXPECT_EQ(number.GetValue(), row.IsFloat ? row.Float : -1.0);
        EXPECT_EQ(integer.GetValue(), row.IsInteger ? row.Integer : -1);
    }
}

TEST(DomainTest, NumbersCompareAndConvert) {
    CFloat half(0.5), one(1.0), huge(1e300), none(std::nan(""));
    CInteger two(2), large(INT64_MAX), almost(INT64_MAX - 1);
    CAnyDomain plain;
    EXPECT_LT(half.Compare(&one), 0);
    EXPECT_GT(two.Compare(&one), 0);
    EXPECT_GT(large.Compare(&almost), 0);
    for (CAnyDomain* unordered : {static_cast<CAnyDomain*>(nullptr), static_cast<CAnyDomain*>(&none), &plain})
        EXPECT_EQ(one.Compare(unordered), 0);
    EXPECT_EQ(huge.GetIntegerValue(), INT64_MAX);
    two.SetValue(static_cast<CAnyDomain*>(nullptr));
    two.SetValue(&plain);
    EXPECT_EQ(two.GetValue(), 2);
}

TEST(DomainTest, TextForms) {
    CString text;
    EXPECT_FALSE(CAnyDomain().GetInscription(text));
    EXPECT_TRUE(CFloat(2.5).GetInscription(text));
    EXPECT_EQ(text, CString(u"2.500000"));
    EXPECT_TRUE(CInteger(INT64_MIN).ToString(text, u"%s"));
    EXPECT_EQ(text, CString(u"-9223372036854775808"));
}

TEST(DomainTest, OnlyARealChangeIsAModification) {
    CFloat number(2.5);
    CInteger integer(2);
    const std::uint64_t before = CClient::GetModificationCount();
    number.FromString(u"2.50", nullptr);
    integer.SetValue(&number);
    EXPECT_EQ(CClient::GetModificationCount(), before);
    number.FromString(u"1", nullptr);
    integer.SetValue(&number);
    EXPECT_EQ(integer.GetValue(), 1);
    EXPECT_EQ(CClient::GetModificationCount(), before + 2);
}

}  // namespace
}  // namespace zul
