/// \file
/// Rows made of pixels that another row holds, in any order and as often as wanted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/export.h"

namespace device {

/// Sixteen bytes of the new row: which ones they are of sixteen that lie together in the old one.
struct PickStep {
    std::size_t from;  ///< byte of the old row
    std::uint8_t order[16];
};

/// Takes the pixels \p picks names, one by one: the way for any processor.
template <std::size_t Bytes>
ZUL_PLATFORM_API void GatherPixels(const std::uint8_t* span, const std::int32_t* picks, std::int32_t count,
                                   std::uint8_t* out);

/// Makes rows, all from pixels at the same places.
class ZUL_PLATFORM_API PixelPicks {
public:
    /// \p spanCount: pixels of the old rows, each of \p pixelBytes; \p picks and \p steps stay the caller's
    /// and must outlast the rows. \p rows: how many rows are expected; for few it is not worth much planning.
    void Plan(std::size_t pixelBytes, std::int32_t spanCount, const std::int32_t* picks, std::int32_t count,
              std::int32_t rows, std::vector<PickStep>& steps);

    /// \p out and \p span do not overlap. \p ahead: how far behind \p span the row starts that will be wanted
    /// next, which is asked of memory beforehand.
    void Gather(const std::uint8_t* span, std::ptrdiff_t ahead, std::uint8_t* out) const;

private:
    const std::int32_t* m_Picks = nullptr;
    std::int32_t m_Count = 0;
    std::size_t m_PixelBytes = 1;
    const PickStep* m_Steps = nullptr;
    std::size_t m_StepCount = 0;
};

}  // namespace device
