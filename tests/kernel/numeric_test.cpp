#include "zul/kernel/numeric.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

TEST(NumericTest, DoublesNarrowAsTheirHelperSays) {
    const struct {
        double Value;
        std::int32_t Long;
        std::int16_t Coord;
        std::int32_t Rounded;
    } rows[] = {
        {-0.0, 0, 0, 0},
        {-0.5, 0, 0, -1},
        {-2.5, -2, -2, -3},
        {32767.9, 32767, 32767, 32768},
        {-32769.0, -32769, 32767, -32769},
        {4294967301.0, INT32_MAX, 5, INT32_MAX},
        {-9.3e18, INT32_MIN, -32768, INT32_MIN},
        {Infinity, INT32_MAX, 32767, INT32_MAX},
        {NotANumber, 0, 0, 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ToLong(row.Value), row.Long) << row.Value;
        EXPECT_EQ(ToCoord(row.Value), row.Coord) << row.Value;
        EXPECT_EQ(RoundToLong(row.Value), row.Rounded) << row.Value;
    }
}

TEST(NumericTest, DoublesNarrowTo64Bits) {
    EXPECT_EQ(ToLong64(-1.9), -1);
    EXPECT_EQ(ToLong64(9223372036854775808.0), INT64_MAX);
    EXPECT_EQ(ToLong64(-9223372036854775808.0), INT64_MIN);
    EXPECT_EQ(ToLong64(NotANumber), 0);
}

TEST(NumericTest, TheTwoHalfRulesDifferAtZeroOnly) {
    EXPECT_EQ(AddHalfIfPositive(0.0), -0.5);
    EXPECT_EQ(AddHalfUnlessNegative(0.0), 0.5);
    for (const double value : {1e-9, -1e-9})
        EXPECT_EQ(AddHalfIfPositive(value), AddHalfUnlessNegative(value)) << value;
}

TEST(NumericTest, IntegersWrapOrSaturate) {
    const struct {
        std::int64_t Value;
        std::int16_t Wrapped16, Nearest16;
        std::int32_t Wrapped32, Nearest32;
    } rows[] = {
        {-40000, 25536, -32768, -40000, -40000},
        {0x180000001, 1, 32767, INT32_MIN + 1, INT32_MAX},
        {INT64_MAX, -1, 32767, -1, INT32_MAX},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(WrapToCoord(row.Value), row.Wrapped16) << row.Value;
        EXPECT_EQ(SaturateToCoord(row.Value), row.Nearest16) << row.Value;
        EXPECT_EQ(WrapToLong(row.Value), row.Wrapped32) << row.Value;
        EXPECT_EQ(SaturateToLong(row.Value), row.Nearest32) << row.Value;
    }
}

}  // namespace
}  // namespace zul
