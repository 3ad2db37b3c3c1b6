/// \file
/// Which source pixels fall on which target pixel when a side of a rectangle is stretched.
///
/// Both sides start at an anchor and run to the right (down) or, where the extent is negative, to the left
/// (up), the anchor pixel included. Counting steps from the anchors, step i of s source pixels and step k of
/// d target pixels:
///
///   enlarging (d >= s)  i = floor(((2 k + 1) s - 1) / (2 d)): the source pixel below the centre of the
///                       target pixel; a centre on a border takes the lower one
///   reducing  (d < s)   the steps up to floor((2 s (k + 1) - d) / (2 d)) that no smaller k has
///
/// A side that the target cuts off still maps as a whole. So does one that reaches beyond its source, but a
/// mirrored one slides: see Slide(). Arithmetic is exact for all 32-bit extents.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace device {

/// Source pixels in the order of the walk; none when the count is 0.
struct SourceRun {
    std::int32_t first = 0;
    std::int32_t count = 0;
    std::int32_t step = 1;  ///< to the next pixel: 1 or -1

    std::int32_t Last() const { return first + (count - 1) * step; }
    std::int32_t Low() const { return std::min(first, Last()); }
    std::int32_t High() const { return std::max(first, Last()); }
};

class StretchAxis {
public:
    /// \p limit: the pixels that the source really has, 0 <= x < limit. Extents must not be 0.
    StretchAxis(std::int32_t target, std::int32_t targetExtent, std::int32_t source,
                std::int32_t sourceExtent, std::int32_t limit);

    /// Target pixels covered: TargetLow() <= x < TargetHigh(), cut to 32 bits.
    std::int32_t TargetLow() const { return m_TargetLow; }
    std::int32_t TargetHigh() const { return m_TargetHigh; }
    /// The existing source pixels that fall on a covered target pixel.
    SourceRun SourcesOf(std::int32_t target) const;
    /// The same for the target pixels first <= x < end, all of them covered.
    void FindSources(std::int32_t first, std::int32_t end, std::vector<SourceRun>& runs) const;

private:
    bool Enlarges() const { return m_TargetCount >= m_SourceCount; }
    /// The target's step on which a target pixel lies; those of covered pixels are 0 and more.
    std::int64_t StepOf(std::int32_t target) const {
        return (m_TargetBack ? m_Target - target : target - m_Target) + m_Slide;
    }
    /// Those of the source's steps \p first to \p last that lie on existing pixels.
    SourceRun ExistingSteps(std::int64_t first, std::int64_t last) const;
    /// How many steps towards its start a mirrored side moves because part of its source is missing; other
    /// sides stay. The gap belongs at the end of the target that mirrors the missing part, but the platform
    /// leaves it at the other one, whole target pixels wide. Kept on purpose: callers see that picture there.
    ///
    ///   source box     . A B C    the first of four pixels lies outside the bitmap
    ///   expected   C C B B A A . .
    ///   drawn      . . C C B B A A   2 steps away from the start: -2
    std::int64_t Slide() const;
    /// The last source step that falls on target step \p k; -1 for \p k -1.
    std::int64_t LastStep(std::int64_t k) const;

    std::int64_t m_Target, m_TargetCount;
    std::int64_t m_Source, m_SourceCount;
    std::int64_t m_Limit;
    bool m_TargetBack, m_SourceBack;
    std::int64_t m_Slide;
    std::int32_t m_TargetLow = 0, m_TargetHigh = 0;
};

}  // namespace device
