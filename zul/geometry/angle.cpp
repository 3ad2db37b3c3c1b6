#include "zul/geometry/angle.h"

#include <cmath>

#include "zul/geometry/trigonometry.h"
#include "zul/kernel/numeric.h"

namespace zul {

namespace {

constexpr double Pi = 3.141592653589793;

}  // namespace

double CAngle::DegreeToRadian(double degrees) {
    return degrees * Pi / 180.0;
}

double CAngle::RadianToDegree(double radians) {
    return radians * 180.0 / Pi;
}

double CAngle::GetAngle360(double degrees) {
    return degrees - std::floor(degrees / 360.0) * 360.0;
}

double CAngle::GetAngle180(double degrees) {
    return degrees > 180.0 ? degrees - 360.0 : degrees;
}

void CAngle::FindDxDy(double a, double b, double length, std::int32_t& outA, std::int32_t& outB,
                      std::int32_t* outLength) {
    const double h = std::sqrt(a * a + b * b);
    outA = RoundToLong(a * length / h);
    outB = RoundToLong(-(b * length) / h);
    if (outLength) *outLength = RoundToLong(h);
}

void CAngle::FindDxDy(double a, double b, double length, double& outA, double& outB, double* outLength) {
    const double h = std::sqrt(a * a + b * b);
    outA = a * length / h;
    outB = -(b * length) / h;
    if (outLength) *outLength = RoundToLong(h);
}

void CAngle::FindDxDy(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, double length,
                      std::int32_t& ax, std::int32_t& ay, std::int32_t& bx, std::int32_t& by,
                      std::int32_t degrees, bool mirror) {
    const auto shifted = [](std::int32_t from, double offset) {
        return WrapToLong(std::int64_t{from} + RoundToLong(offset));
    };
    // A vertical line has an infinite slope, whose arc tangent is a right angle.
    const double base = Arctangent((static_cast<double>(y2) - y1) / (static_cast<double>(x2) - x1));
    double angle = DegreeToRadian(degrees);
    // 3.14 on purpose, not pi: the wings of stored maps are placed with it.
    if (x2 < x1) angle = 3.14 - angle;

    ax = shifted(x2, length * Cosine(angle + base));
    ay = shifted(y2, length * Sine(angle + base));
    if (mirror) angle = -angle;
    bx = shifted(x2, length * Cosine(angle + base));
    by = shifted(y2, length * Sine(angle + base));
}

}  // namespace zul
