#include "zul/geometry/trigonometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>

namespace {

/// How many doubles lie between two of the same sign.
std::int64_t Distance(double a, double b) {
    std::int64_t x, y;
    std::memcpy(&x, &a, sizeof x);
    std::memcpy(&y, &b, sizeof y);
    return std::abs(x - y);
}

TEST(Trigonometry, IsWithinUnitsInTheLastPlace) {
    std::mt19937_64 random(7);
    for (int i = 0; i < 300000; ++i) {
        const double scale = std::ldexp(1.0, static_cast<int>(random() % 40) - 20);
        const double x = (static_cast<double>(random() >> 11) / 4503599627370496.0 - 1.0) * scale;
        const long double exact = x;
        ASSERT_LE(Distance(zul::Sine(x), static_cast<double>(std::sin(exact))), 1) << x;
        ASSERT_LE(Distance(zul::Cosine(x), static_cast<double>(std::cos(exact))), 1) << x;
        ASSERT_LE(Distance(zul::Arctangent(x), static_cast<double>(std::atan(exact))), 2) << x;
    }
}

// The sum was computed once; a host on which it differs shows other pictures.
TEST(Trigonometry, HasTheSameBitsOnEveryHost) {
    std::uint64_t sum = 0;
    for (int tenth = -7200; tenth <= 7200; ++tenth) {
        const double x = tenth * 3.141592653589793 / 1800.0;
        for (const double value : {zul::Sine(x), zul::Cosine(x), zul::Arctangent(tenth / 97.0)}) {
            std::uint64_t bits;
            std::memcpy(&bits, &value, sizeof bits);
            sum = sum * 1099511628211u + bits;
        }
    }
    EXPECT_EQ(sum, 15923247399269400954u);
}

TEST(Trigonometry, KeepsToItsEnds) {
    const double infinite = std::numeric_limits<double>::infinity(), none = std::nan(""),
                 right = 1.5707963267948966;
    EXPECT_EQ(zul::Arctangent(infinite), right);
    EXPECT_EQ(zul::Arctangent(-infinite), -right);
    EXPECT_EQ(zul::Arctangent(1e300), right);
    EXPECT_EQ(zul::Arctangent(1.0), right / 2);
    EXPECT_TRUE(std::signbit(zul::Arctangent(-0.0)));
    EXPECT_EQ(zul::Cosine(0.0), 1.0);
    EXPECT_EQ(zul::Sine(right), 1.0);
    for (const double x : {infinite, -infinite, none}) {
        EXPECT_TRUE(std::isnan(zul::Sine(x)));
        EXPECT_TRUE(std::isnan(zul::Cosine(x)));
    }
    EXPECT_TRUE(std::isnan(zul::Arctangent(none)));
    EXPECT_NEAR(zul::Sine(1e9), std::sin(1e9), 1e-9);
}

}  // namespace
