#include "zul/geometry/trigonometry.h"

#include <cmath>
#include <initializer_list>

namespace zul {

namespace {

/// A right angle. The parts of the first three have 33 bits, so that 20-bit multiples of two are exact.
constexpr double kRightAngle = 0x1.921fb54442d18p+0, kRightAngleRest = 0x1.1a62633145c07p-54;
constexpr double kHighPart = 0x1.921fb544p+0, kMiddlePart = 0x1.0b4611a6p-34,
                 kLowPart = 0x1.3198a2e037073p-69;
constexpr double kLargest = 524288.0;

/// An angle of at most half a right one, with what its double cannot hold, and the right angles taken off.
struct TReduced {
    double Angle, Rest;
    int Quarter;
};

TReduced Reduce(double radians) {
    const double count = std::nearbyint(radians / kRightAngle);
    const double rough = radians - count * kHighPart;
    const double step = count * kMiddlePart;
    const double finer = rough - step;
    const double back = finer - rough;  // what was taken off, as it was rounded
    const double lost = (rough - (finer - back)) - (step + back);
    const double rest = lost - count * kLowPart;
    const double angle = finer + rest;
    return {angle, (finer - angle) + rest, static_cast<int>(static_cast<long long>(count) & 3)};
}

double SineOf(const TReduced& reduced) {
    const double x = reduced.Angle, z = x * x;
    double series = 1.0 / 355687428096000.0;
    for (const double factorial :
         {-1307674368000.0, 6227020800.0, -39916800.0, 362880.0, -5040.0, 120.0, -6.0})
        series = series * z + 1.0 / factorial;
    return x + (x * z * series + reduced.Rest * (1.0 - z / 2));
}

double CosineOf(const TReduced& reduced) {
    const double x = reduced.Angle, z = x * x, half = z / 2;
    double series = -1.0 / 6402373705728000.0;
    for (const double factorial :
         {20922789888000.0, -87178291200.0, 479001600.0, -3628800.0, 40320.0, -720.0, 24.0})
        series = series * z + 1.0 / factorial;
    const double rough = 1.0 - half;
    return rough + (((1.0 - rough) - half) + (z * z * series - x * reduced.Rest));
}

/// The sine of an angle that many right angles further on.
double SineAfter(const TReduced& reduced, int quarters) {
    const int quarter = (reduced.Quarter + quarters) & 3;
    const double value = (quarter & 1) != 0 ? CosineOf(reduced) : SineOf(reduced);
    return (quarter & 2) != 0 ? -value : value;
}

bool IsSmall(double radians) {
    return radians >= -kLargest && radians <= kLargest;
}

/// Arc tangents of eighths from 0 to 1, each with what its double cannot hold.
constexpr double kOfEighths[][2] = {
    {0.0, 0.0},
    {0x1.fd5ba9aac2f6ep-4, -0x1.cd37686760c17p-59},
    {0x1.f5b75f92c80ddp-3, 0x1.8ab6e3cf7afbdp-57},
    {0x1.6f61941e4def1p-2, -0x1.c63aae6f6e918p-56},
    {0x1.dac670561bb4fp-2, 0x1.a2b7f222f65e2p-56},
    {0x1.1e00babdefeb4p-1, -0x1.928df287a668fp-58},
    {0x1.4978fa3269ee1p-1, 0x1.2419a87f2a458p-56},
    {0x1.700a7c5784634p-1, -0x1.8c34d25aadef6p-56},
    {0x1.921fb54442d18p-1, 0x1.1a62633145c07p-55},
};

}  // namespace

double Sine(double radians) {
    return IsSmall(radians) ? SineAfter(Reduce(radians), 0) : std::sin(radians);
}

double Cosine(double radians) {
    return IsSmall(radians) ? SineAfter(Reduce(radians), 1) : std::cos(radians);
}

double Arctangent(double slope) {
    const double x = std::fabs(slope);
    if (!(x < 0x1p60)) return std::isnan(slope) ? slope : std::copysign(kRightAngle, slope);
    // atan x = atan c + atan t with t = (x - c) / (1 + c x); above 1 the same of 1 / x, taken off a right
    // angle.
    const bool steep = x > 1.0;
    const int eighth = static_cast<int>(std::nearbyint((steep ? 1.0 / x : x) * 8));
    const double c = eighth / 8.0;
    const double t = steep ? (1.0 - c * x) / (x + c) : (x - c) / (1.0 + c * x);
    const double z = t * t;
    double series = 1.0 / 13;
    for (const double odd : {-11.0, 9.0, -7.0, 5.0, -3.0})
        series = series * z + 1.0 / odd;
    const double high = kOfEighths[eighth][0], low = kOfEighths[eighth][1] + t * z * series;
    if (!steep) return std::copysign(high + (low + t), slope);
    const double rough = kRightAngle - high, lost = (kRightAngle - rough) - high;
    return std::copysign(rough + (lost + (kRightAngleRest - low) - t), slope);
}

}  // namespace zul
