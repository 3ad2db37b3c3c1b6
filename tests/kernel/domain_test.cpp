#include "zul/kernel/domain.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

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
        {u"-12", true, -12, true, -12},
        {u"+7", true, 7, true, 7},
        {u"1.5e3", true, 1500, false, 0},
        {u".5", true, 0.5, false, 0},
        {u"9223372036854775807", true, 9223372036854775807.0, true, INT64_MAX},
        {u"9223372036854775808", true, 9223372036854775808.0, false, 0},
        {u"1e999", false, 0, false, 0},
        {u"", false, 0, false, 0},
        {u"-", false, 0, false, 0},
        {u"+-1", false, 0, false, 0},
        {u" 1", false, 0, false, 0},
        {u"1 ", false, 0, false, 0},
        {u"12m", false, 0, false, 0},
        {u"inf", false, 0, false, 0},
        {u"-nan", false, 0, false, 0},
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
    EXPECT_LT(half.Compare(&one), 0);
    EXPECT_GT(two.Compare(&one), 0);
    EXPECT_LT(one.Compare(&two), 0);
    EXPECT_GT(large.Compare(&almost), 0);
    EXPECT_EQ(one.Compare(nullptr), 0);
    EXPECT_EQ(none.Compare(&one), 0);
    EXPECT_EQ(huge.GetIntegerValue(), INT64_MAX);
    EXPECT_EQ(none.GetIntegerValue(), 0);
    one.SetValue(&two);
    EXPECT_EQ(one.GetValue(), 2.0);
    two.SetValue(&half);
    EXPECT_EQ(two.GetValue(), 0);
    two.SetValue(static_cast<CAnyDomain*>(nullptr));
    CAnyDomain plain;
    two.SetValue(&plain);
    EXPECT_EQ(two.GetValue(), 0);
    EXPECT_EQ(plain.Compare(&two), 0);
}

TEST(DomainTest, TextForms) {
    CString text(u"before");
    CAnyDomain plain;
    EXPECT_FALSE(plain.ToString(text, nullptr));
    EXPECT_FALSE(plain.GetInscription(text));
    EXPECT_EQ(text, CString(u"before"));
    CFloat number(2.5);
    EXPECT_TRUE(number.ToString(text, u"%.2f m"));
    EXPECT_EQ(text, CString(u"2.50 m"));
    EXPECT_TRUE(number.GetInscription(text));
    EXPECT_EQ(text, CString(u"2.500000"));
    CInteger integer(INT64_MIN);
    EXPECT_TRUE(integer.ToString(text, u"%s"));
    EXPECT_EQ(text, CString(u"-9223372036854775808"));
}

TEST(DomainTest, OnlyARealChangeIsAModification) {
    CFloat number(2.5);
    CInteger integer(3);
    const std::uint64_t before = CClient::GetModificationCount();
    number.SetValue(2.5);
    number.FromString(u"2.50", nullptr);
    integer.SetValue(std::int64_t{3});
    EXPECT_EQ(CClient::GetModificationCount(), before);
    number.FromString(u"1", nullptr);
    integer.SetValue(&number);
    EXPECT_EQ(CClient::GetModificationCount(), before + 2);
}

TEST(DomainTest, IsStoredInEightBytesAndUntouchedByAShortStream) {
    CFloat number(-2.5);
    CInteger integer(-3);
    CMemoryStream stream;
    ASSERT_TRUE(number.ObjectToBuffer(&stream));
    ASSERT_TRUE(integer.ObjectToBuffer(&stream));
    ASSERT_EQ(stream.GetSize(), 16u);
    EXPECT_EQ(std::memcmp(stream.GetBuffer() + 8, "\xFD\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 8), 0);
    stream.SetPosition(0);
    CFloat otherNumber;
    CInteger otherInteger;
    EXPECT_TRUE(otherNumber.ObjectFromBuffer(&stream));
    EXPECT_TRUE(otherInteger.ObjectFromBuffer(&stream));
    EXPECT_EQ(otherNumber.GetValue(), -2.5);
    EXPECT_EQ(otherInteger.GetValue(), -3);
    CMemoryStream cut("1234567", 7);
    EXPECT_FALSE(otherNumber.ObjectFromBuffer(&cut));
    EXPECT_FALSE(otherInteger.ObjectFromBuffer(&cut));
    EXPECT_FALSE(otherNumber.ObjectFromBuffer(nullptr));
    EXPECT_EQ(otherNumber.GetValue(), -2.5);
    EXPECT_EQ(otherInteger.GetValue(), -3);
}

}  // namespace
}  // namespace zul
