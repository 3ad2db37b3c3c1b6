/// \file
/// Every narrowing of a number in the library goes through one of these, so that a reader sees what happens
/// to values that do not fit, and every host does the same.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace zul {

/// The low 16 bits, read as a signed coordinate.
constexpr std::int16_t WrapToCoord(std::int64_t value) {
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(static_cast<std::uint64_t>(value) & 0xFFFFu));
}

/// The low 32 bits, read as a signed integer.
constexpr std::int32_t WrapToLong(std::int64_t value) {
    return static_cast<std::int32_t>(
        static_cast<std::uint32_t>(static_cast<std::uint64_t>(value) & 0xFFFFFFFFu));
}

/// The nearest coordinate.
constexpr std::int16_t SaturateToCoord(std::int64_t value) {
    constexpr std::int64_t low = std::numeric_limits<std::int16_t>::min();
    constexpr std::int64_t high = std::numeric_limits<std::int16_t>::max();
    return static_cast<std::int16_t>(value < low ? low : value > high ? high : value);
}

/// The nearest 32-bit integer.
constexpr std::int32_t SaturateToLong(std::int64_t value) {
    constexpr std::int64_t low = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t high = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(value < low ? low : value > high ? high : value);
}

/// Truncates toward zero; NaN gives 0, values beyond 32 bits the nearest limit.
inline std::int32_t ToLong(double value) {
    if (std::isnan(value)) return 0;
    if (value <= -2147483648.0) return std::numeric_limits<std::int32_t>::min();
    if (value >= 2147483647.0) return std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(value);
}

/// Truncates toward zero; NaN gives 0, values beyond 64 bits the nearest limit.
inline std::int64_t ToLong64(double value) {
    if (std::isnan(value)) return 0;
    if (value < -9223372036854775808.0) return std::numeric_limits<std::int64_t>::min();
    if (value >= 9223372036854775808.0) return std::numeric_limits<std::int64_t>::max();
    return static_cast<std::int64_t>(value);
}

/// Truncates toward zero and keeps the low 16 bits, as the overflow reports of the geometry expect; NaN gives
/// 0, values beyond 64 bits the nearest coordinate.
inline std::int16_t ToCoord(double value) {
    if (std::isnan(value)) return 0;
    if (value < -9223372036854775808.0) return std::numeric_limits<std::int16_t>::min();
    if (value >= 9223372036854775808.0) return std::numeric_limits<std::int16_t>::max();
    return WrapToCoord(static_cast<std::int64_t>(value));
}

/// The first half of the rounding rule: halves go away from zero once the result is truncated. Zero takes the
/// negative branch.
constexpr double AddHalfIfPositive(double value) {
    return value > 0.0 ? value + 0.5 : value - 0.5;
}

/// The same rule with zero in the positive branch.
constexpr double AddHalfUnlessNegative(double value) {
    return value < 0.0 ? value - 0.5 : value + 0.5;
}

/// Rounds to the nearest integer, halves away from zero; NaN gives 0, values beyond 32 bits the nearest
/// limit.
inline std::int32_t RoundToLong(double value) {
    return ToLong(AddHalfIfPositive(value));
}

}  // namespace zul
