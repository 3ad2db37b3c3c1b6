#include "platform/software/stretch_axis.h"

#include <algorithm>

#include "platform/software/extent.h"

namespace device {

namespace {

std::int64_t Magnitude(std::int32_t extent) {
    return extent < 0 ? -std::int64_t{extent} : extent;
}

}  // namespace

StretchAxis::StretchAxis(std::int32_t target, std::int32_t targetExtent, std::int32_t source,
                         std::int32_t sourceExtent, std::int32_t limit)
    : m_Target(target),
      m_TargetCount(Magnitude(targetExtent)),
      m_Source(source),
      m_SourceCount(Magnitude(sourceExtent)),
      m_Limit(limit),
      m_TargetBack(targetExtent < 0),
      m_SourceBack(sourceExtent < 0),
      m_Slide(Slide()) {
    ExtentRange(target, targetExtent, m_TargetLow, m_TargetHigh);
}

std::int64_t StretchAxis::Slide() const {
    if (m_TargetBack == m_SourceBack) return 0;
    const std::int64_t before = m_SourceBack ? m_Source - (m_Limit - 1) : -m_Source;
    const std::int64_t after = m_SourceCount - (m_SourceBack ? m_Source + 1 : m_Limit - m_Source);
    // Also keeps the products below within 64 bits.
    const std::int64_t first = std::clamp<std::int64_t>(before, 0, m_SourceCount);
    const std::int64_t last = std::clamp<std::int64_t>(after, 0, m_SourceCount);
    // Kept on purpose: the platform overlooks a source that starts one pixel beyond its last one.
    if (m_SourceBack && first == 1 && last == 0) return 0;
    return first * m_TargetCount / m_SourceCount - (last * m_TargetCount + m_SourceCount - 1) / m_SourceCount;
}

std::int64_t StretchAxis::LastStep(std::int64_t k) const {
    if (k < 0) return -1;
    const auto s = static_cast<std::uint64_t>(m_SourceCount), d = static_cast<std::uint64_t>(m_TargetCount);
    // A single target pixel that is reached without mirroring misses the last source pixel. Kept on
    // purpose: the platform does so.
    if (d == 1 && s > 1 && !m_TargetBack && !m_SourceBack) return m_SourceCount - 2;
    // At most 2 * 2^31 * 2^31: the products fit 64 unsigned bits.
    return static_cast<std::int64_t>((2 * s * (static_cast<std::uint64_t>(k) + 1) - d) / (2 * d));
}

SourceRun StretchAxis::ExistingSteps(std::int64_t first, std::int64_t last) const {
    const std::int64_t low = m_SourceBack ? m_Source - m_Limit + 1 : -m_Source;
    const std::int64_t high = m_SourceBack ? m_Source : m_Limit - 1 - m_Source;
    first = std::max(first, low);
    last = std::min(last, high);
    SourceRun run;
    if (first > last) return run;
    run.step = m_SourceBack ? -1 : 1;
    run.first = static_cast<std::int32_t>(m_SourceBack ? m_Source - first : m_Source + first);
    run.count = static_cast<std::int32_t>(last - first + 1);
    return run;
}

SourceRun StretchAxis::SourcesOf(std::int32_t target) const {
    const std::int64_t k = StepOf(target);
    if (k < 0 || k >= m_TargetCount) return {};
    if (Enlarges()) {
        const std::int64_t step = ((2 * k + 1) * m_SourceCount - 1) / (2 * m_TargetCount);
        return ExistingSteps(step, step);
    }
    return ExistingSteps(LastStep(k - 1) + 1, LastStep(k));
}

void StretchAxis::FindSources(std::int32_t first, std::int32_t end, std::vector<SourceRun>& runs) const {
    runs.resize(static_cast<std::size_t>(end - first));
    if (!Enlarges()) {
        for (SourceRun& run : runs)
            run = SourcesOf(first++);
        return;
    }
    // From pixel to pixel the quotient changes by one at most, so that one division does for all.
    const std::int64_t divisor = 2 * m_TargetCount,
                       way = m_TargetBack ? -2 * m_SourceCount : 2 * m_SourceCount;
    const std::int64_t dividend = (2 * StepOf(first) + 1) * m_SourceCount - 1;
    std::int64_t step = dividend / divisor, rest = dividend % divisor;
    for (SourceRun& run : runs) {
        run = ExistingSteps(step, step);
        rest += way;
        if (rest >= divisor) {
            rest -= divisor;
            ++step;
        } else if (rest < 0) {
            rest += divisor;
            --step;
        }
    }
}

}  // namespace device
