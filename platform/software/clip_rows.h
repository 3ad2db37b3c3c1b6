/// \file
/// Spans of a figure that is put row by row from top to bottom.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "platform/software/ink.h"

namespace device {

/// Puts spans where a clip allows them and remembers where the last one met it, so that a clip of many boxes
/// is not searched anew for each span. Rows must not come before those of earlier calls. Spans reach the ink
/// in lots, the last of them when this ends.
class ClipRows {
public:
    ClipRows(const Ink& ink, const Clip& clip) : m_Ink(ink), m_Clip(clip) {}
    ~ClipRows() { Flush(); }
    ClipRows(const ClipRows&) = delete;
    ClipRows& operator=(const ClipRows&) = delete;

    /// x0 <= x < x1 of row \p y; any coordinates.
    void Put(std::int32_t y, std::int64_t x0, std::int64_t x1) {
        if (m_Clip.count == 1) {
            if (y >= m_Clip.bounds.top && y < m_Clip.bounds.bottom) PutWithin(m_Clip.bounds, y, x0, x1);
        } else {
            PutAmong(y, x0, x1);
        }
    }

private:
    static constexpr std::size_t kLot = 64;

    void PutAmong(std::int32_t y, std::int64_t x0, std::int64_t x1) {
        const Box* const end = m_Clip.boxes + m_Clip.count;
        if (m_Band != end && m_Band->bottom <= y) {
            m_Near = m_Band =
                std::partition_point(m_Band, end, [y](const Box& box) { return box.bottom <= y; });
        }
        while (m_Near != m_Band && m_Near[-1].right > x0)
            --m_Near;
        while (m_Near != end && m_Near->top <= y && m_Near->right <= x0)
            ++m_Near;
        for (const Box* box = m_Near; box != end && box->top <= y && box->left < x1; ++box)
            PutWithin(*box, y, x0, x1);
    }

    void PutWithin(const Box& box, std::int32_t y, std::int64_t x0, std::int64_t x1) {
        const auto left = static_cast<std::int32_t>(std::max<std::int64_t>(x0, box.left));
        const auto right = static_cast<std::int32_t>(std::min<std::int64_t>(x1, box.right));
        if (left >= right) return;
        m_Lot[m_Count++] = {y, left, right};
        if (m_Count == kLot) Flush();
    }

    void Flush() {
        if (m_Count != 0) m_Ink.spans(m_Ink, m_Lot, m_Count);
        m_Count = 0;
    }

    const Ink& m_Ink;
    const Clip& m_Clip;
    const Box* m_Band = m_Clip.boxes;  ///< the first box that is not wholly above the last row
    const Box* m_Near = m_Clip.boxes;  ///< where the last span met the band, or just behind the band
    std::size_t m_Count = 0;
    Span m_Lot[kLot];  ///< the first m_Count await the ink
};

}  // namespace device
