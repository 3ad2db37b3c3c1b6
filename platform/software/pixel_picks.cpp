#include "platform/software/pixel_picks.h"

#include <algorithm>
#include <cstring>

#include "platform/software/wide_vectors.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace device {
namespace {

constexpr std::size_t kStepBytes = sizeof(PickStep::order);
/// Planning takes about as long as this many rows without a plan.
constexpr std::int32_t kFewRows = 6;

#if defined(__x86_64__)
/// Puts each step's bytes \p wayBytes behind those of the step before.
ZUL_WIDE_VECTORS void TakeSteps(const std::uint8_t* span, const PickStep* steps, std::size_t count,
                                std::size_t wayBytes, std::ptrdiff_t ahead, std::uint8_t* out) {
    const auto load = [](const std::uint8_t* bytes) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
    };
    std::size_t i = 0;
    for (; wayBytes == kStepBytes && i + 2 <= count; i += 2, out += 2 * kStepBytes) {
        __builtin_prefetch(span + steps[i].from + ahead);
        const __m256i bytes = _mm256_set_m128i(load(span + steps[i + 1].from), load(span + steps[i].from));
        const __m256i order = _mm256_set_m128i(load(steps[i + 1].order), load(steps[i].order));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), _mm256_shuffle_epi8(bytes, order));
    }
    for (; i < count; ++i, out += wayBytes) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out),
                         _mm_shuffle_epi8(load(span + steps[i].from), load(steps[i].order)));
    }
}
#else
void TakeSteps(const std::uint8_t* span, const PickStep* steps, std::size_t count, std::size_t wayBytes,
               std::ptrdiff_t, std::uint8_t* out) {
    for (std::size_t i = 0; i < count; ++i, out += wayBytes)
        for (std::size_t k = 0; k < kStepBytes; ++k)
            out[k] = span[steps[i].from + steps[i].order[k]];
}
#endif

}  // namespace

template <std::size_t Bytes>
void GatherPixels(const std::uint8_t* span, const std::int32_t* picks, std::int32_t count,
                  std::uint8_t* out) {
    for (std::int32_t i = 0; i < count; ++i) {
        std::memcpy(out + static_cast<std::size_t>(i) * Bytes,
                    span + static_cast<std::size_t>(picks[i]) * Bytes, Bytes);
    }
}

template ZUL_PLATFORM_API void GatherPixels<1>(const std::uint8_t*, const std::int32_t*, std::int32_t,
                                               std::uint8_t*);
template ZUL_PLATFORM_API void GatherPixels<2>(const std::uint8_t*, const std::int32_t*, std::int32_t,
                                               std::uint8_t*);
template ZUL_PLATFORM_API void GatherPixels<3>(const std::uint8_t*, const std::int32_t*, std::int32_t,
                                               std::uint8_t*);
template ZUL_PLATFORM_API void GatherPixels<4>(const std::uint8_t*, const std::int32_t*, std::int32_t,
                                               std::uint8_t*);

void PixelPicks::Plan(std::size_t pixelBytes, std::int32_t spanCount, const std::int32_t* picks,
                      std::int32_t count, std::int32_t rows, std::vector<PickStep>& steps) {
    m_Picks = picks;
    m_Count = count;
    m_PixelBytes = pixelBytes;
    m_StepCount = 0;
    if (!g_HasWideVectors || rows < kFewRows) return;
    steps.clear();
    const auto inStep = static_cast<std::int32_t>(kStepBytes / pixelBytes);
    const auto touched = static_cast<std::int32_t>((kStepBytes + pixelBytes - 1) / pixelBytes);
    // A step writes all its bytes, even those that make no whole pixel. Where pixels lie too far from one
    // another for a step, the rest of the row is gathered singly.
    for (std::int32_t i = 0; i + touched <= count; i += inStep) {
        const auto ends = std::minmax_element(picks + i, picks + i + inStep);
        const std::int32_t low = std::min(*ends.first, spanCount - touched);
        if (low < 0 || *ends.second - low >= inStep) break;
        PickStep& step = steps.emplace_back();
        step.from = static_cast<std::size_t>(low) * pixelBytes;
        std::memset(step.order, 0, sizeof step.order);
        std::uint8_t* order = step.order;
        for (std::int32_t k = i; k < i + inStep; ++k)
            for (std::size_t byte = 0; byte < pixelBytes; ++byte)
                *order++ =
                    static_cast<std::uint8_t>(static_cast<std::size_t>(picks[k] - low) * pixelBytes + byte);
    }
    m_Steps = steps.data();
    m_StepCount = steps.size();
}

void PixelPicks::Gather(const std::uint8_t* span, std::ptrdiff_t ahead, std::uint8_t* out) const {
    static constexpr decltype(&GatherPixels<1>) gathers[] = {GatherPixels<1>, GatherPixels<2>,
                                                             GatherPixels<3>, GatherPixels<4>};
    const std::size_t inStep = kStepBytes / m_PixelBytes, done = inStep * m_StepCount;
    if (m_StepCount != 0) TakeSteps(span, m_Steps, m_StepCount, inStep * m_PixelBytes, ahead, out);
    gathers[m_PixelBytes - 1](span, m_Picks + done, m_Count - static_cast<std::int32_t>(done),
                              out + done * m_PixelBytes);
}

}  // namespace device
