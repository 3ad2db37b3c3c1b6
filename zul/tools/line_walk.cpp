#include "zul/tools/line_walk.h"

#include <cmath>
#include <utility>

#include "zul/geometry/angle.h"
#include "zul/kernel/numeric.h"

namespace zul {
namespace {

std::int32_t LengthBetween(TLongPoint from, TLongPoint to) {
    if (from == to) return 0;
    double a = 0, b = 0, length = 0;
    CAngle::FindDxDy(static_cast<double>(to.X) - from.X, static_cast<double>(to.Y) - from.Y, 0.0, a, b,
                     &length);
    return ToLong(length);
}

/// The coordinate \p distance of \p length steps on the way from \p from to \p to. A difference has 32 bits,
/// a distance less than that: their product fits 64.
std::int32_t Between(std::int32_t from, std::int32_t to, std::uint64_t distance, std::uint64_t length) {
    const std::int64_t difference = std::int64_t{to} - from;
    if (difference == 0) return from;
    const std::uint64_t product = static_cast<std::uint64_t>(std::abs(difference)) * distance;
    const auto whole = static_cast<std::int64_t>(product / length);
    std::uint64_t rest = product % length;
    std::int64_t below = from + (difference < 0 ? -whole : whole);  // the result lies rest / length above it
    if (difference < 0 && rest != 0) {
        --below;
        rest = length - rest;
    }
    return SaturateToLong(2 * rest >= length ? below + 1 : below);
}

/// Narrows the distances low to high to those at which a coordinate lies within bounds. False when none is
/// left.
bool Narrow(double& low, double& high, double from, double difference, double length, double min,
            double max) {
    if (difference == 0) return min <= from && from <= max;
    double enter = (min - from) * length / difference;
    double leave = (max - from) * length / difference;
    if (enter > leave) std::swap(enter, leave);
    low = std::max(low, enter);
    high = std::min(high, leave);
    // The doubles are off by far less than a pixel.
    return low <= high + 1;
}

}  // namespace

TLineSegment::TLineSegment(TLongPoint from, TLongPoint to)
    : From(from), To(to), Length(LengthBetween(from, to)) {}

TLongPoint TLineSegment::At(std::int64_t distance) const {
    if (Length == 0) return From;
    const auto along = static_cast<std::uint64_t>(distance);
    const auto length = static_cast<std::uint64_t>(Length);
    return {Between(From.X, To.X, along, length), Between(From.Y, To.Y, along, length)};
}

TLineWindow::TLineWindow(HDC device, std::int64_t reach) {
    RECT box{};
    if (::GetClipBox(device, &box) <= NULLREGION) return;
    MinX = box.left - reach;
    MinY = box.top - reach;
    MaxX = box.right + reach;
    MaxY = box.bottom + reach;
}

bool TLineWindow::Cut(const TLineSegment& segment, std::int64_t& from, std::int64_t& to) const {
    if (MinX > MaxX) return false;
    if (Contains(segment.From) && Contains(segment.To)) {
        from = 0;
        to = segment.Length;
        return true;
    }
    double low = 0, high = segment.Length;
    const auto narrow = [&](std::int32_t start, std::int32_t end, std::int64_t min, std::int64_t max) {
        return Narrow(low, high, start, static_cast<double>(end) - start, segment.Length,
                      static_cast<double>(min), static_cast<double>(max));
    };
    if (!narrow(segment.From.X, segment.To.X, MinX, MaxX) ||
        !narrow(segment.From.Y, segment.To.Y, MinY, MaxY))
        return false;
    from = ToLong64(low) - 1;
    to = ToLong64(high) + 2;
    return true;
}

}  // namespace zul
