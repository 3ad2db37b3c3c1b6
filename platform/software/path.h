/// \file
/// What a pen follows and a fill stays within.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "platform/gdi.h"
#include "platform/software/surface.h"

namespace device {

/// What points reach over; unlike a Box it has all four sides.
struct Extents {
    std::int32_t left, top, right, bottom;

    /// Whether lines between the points may pass through the box's pixels.
    bool Meet(const Box& box) const {
        return left < box.right && right >= box.left && top < box.bottom && bottom >= box.top;
    }
    /// Whether no two points are further apart than \p most in either direction.
    bool AreNear(std::int64_t most) const {
        return std::int64_t{right} - left <= most && std::int64_t{bottom} - top <= most;
    }
    bool IsWithin(const Box& box) const {
        return left >= box.left && right < box.right && top >= box.top && bottom < box.bottom;
    }
};

/// \p count is at least 1. Takes the widest vectors that the processor has.
ZUL_PLATFORM_API Extents FindExtents(const POINT* points, std::size_t count);
/// The same for any processor.
ZUL_PLATFORM_API Extents FindExtentsPlainly(const POINT* points, std::size_t count);

/// Runs of a long list are looked at as a whole first: most are wholly visible or not at all.
constexpr int kRunSegments = 64;

/// Whether points of a run repeat the one before so often that they are better left out beforehand: looks at
/// the first few.
inline bool RepeatsPoints(const POINT* points, int count) {
    constexpr int looked = 8;
    int repeats = 0;
    for (int i = 1; i < std::min(count, looked); ++i)
        repeats += points[i].x == points[i - 1].x && points[i].y == points[i - 1].y ? 1 : 0;
    return repeats > 1;
}

/// The points of a run without those that repeat the one before.
class DistinctPoints {
public:
    /// \p count is 1 to kRunSegments + 1.
    DistinctPoints(const POINT* points, int count) {
        const auto load = [points](int i) {
            std::uint64_t point;
            static_assert(sizeof point == sizeof(POINT));
            std::memcpy(&point, points + i, sizeof point);
            return point;
        };
        std::uint64_t before = ~load(0);
        int kept = 0;
        for (int i = 0; i < count; ++i) {
            // Each is written, and written over by the next one if it is to go: no branch to mispredict.
            const std::uint64_t point = load(i);
            std::memcpy(m_Points + kept, &point, sizeof point);
            kept += point != before ? 1 : 0;
            before = point;
        }
        m_Count = kept;
    }

    const POINT* Points() const { return m_Points; }
    int Count() const { return m_Count; }

private:
    POINT m_Points[kRunSegments + 1];
    int m_Count;
};

/// What the runs of a list reach over, and the whole list. The closing segment belongs to no run.
class RunExtents {
public:
    /// Throws std::bad_alloc.
    void Find(const POINT* points, int count);

    const Extents& All() const { return m_All; }
    /// Of the segments from point \p first on, a multiple of kRunSegments.
    const Extents& Run(int first) const { return m_Runs[static_cast<std::size_t>(first / kRunSegments)]; }

private:
    Extents m_All{};
    std::vector<Extents> m_Runs;
};

/// Points joined by straight segments. The points belong to whoever made the path.
struct Path {
    const POINT* points = nullptr;
    int count = 0;
    bool closed = false;                  ///< a last segment leads back to the first point
    std::uint64_t phase = 0;              ///< pixels of a dash pattern that lie before the first point
    const RunExtents* extents = nullptr;  ///< of the points, where they are known already
};

}  // namespace device
