#include "platform/software/path.h"

#include "platform/software/wide_vectors.h"

namespace device {
namespace {

Extents OfPoint(POINT point) {
    return {point.x, point.y, point.x, point.y};
}

Extents Union(const Extents& a, const Extents& b) {
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

/// The compiler puts the numbers into what vectors there are.
ZUL_IN_BOTH Extents FindIn(const POINT* points, std::size_t count) {
    using Points = std::int32_t __attribute__((vector_size(32)));
    constexpr std::size_t inVector = sizeof(Points) / sizeof(POINT);
    constexpr std::size_t ahead = 128;  // points that memory is asked for in advance
    Extents extents = OfPoint(points[0]);
    std::size_t i = 0;
    if (count >= 2 * inVector) {
        Points low, high, otherLow, otherHigh;
        std::memcpy(&low, points, sizeof low);
        high = otherLow = otherHigh = low;
        for (; i + 2 * inVector <= count; i += 2 * inVector) {
            __builtin_prefetch(points + i + ahead);
            Points one, other;
            std::memcpy(&one, points + i, sizeof one);
            std::memcpy(&other, points + i + inVector, sizeof other);
            low = one < low ? one : low;
            high = one > high ? one : high;
            otherLow = other < otherLow ? other : otherLow;
            otherHigh = other > otherHigh ? other : otherHigh;
        }
        low = otherLow < low ? otherLow : low;
        high = otherHigh > high ? otherHigh : high;
        for (std::size_t k = 0; k < 2 * inVector; k += 2)
            extents = Union(extents, {low[k], low[k + 1], high[k], high[k + 1]});
    }
    for (; i < count; ++i)
        extents = Union(extents, OfPoint(points[i]));
    return extents;
}

ZUL_WIDE_VECTORS Extents FindWide(const POINT* points, std::size_t count) {
    return FindIn(points, count);
}

}  // namespace

Extents FindExtents(const POINT* points, std::size_t count) {
    return g_HasWideVectors ? FindWide(points, count) : FindExtentsPlainly(points, count);
}

Extents FindExtentsPlainly(const POINT* points, std::size_t count) {
    return FindIn(points, count);
}

void RunExtents::Find(const POINT* points, int count) {
    m_Runs.clear();
    m_All = FindExtents(points, static_cast<std::size_t>(std::min(count, kRunSegments + 1)));
    m_Runs.push_back(m_All);
    for (int i = kRunSegments; i + 1 < count; i += kRunSegments) {
        const int run = std::min(kRunSegments, count - 1 - i) + 1;
        m_Runs.push_back(FindExtents(points + i, static_cast<std::size_t>(run)));
        m_All = Union(m_All, m_Runs.back());
    }
}

}  // namespace device
