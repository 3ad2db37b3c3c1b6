/// \file
/// Spans of a figure that is put row by row from top to bottom.
#pragma once

#include <algorithm>
#include <cstdint>

#include "platform/software/ink.h"

namespace device {

/// Puts spans where a clip allows them and remembers where the last one met it, so that a clip of many boxes
/// is not searched anew for each span. Rows must not come before those of earlier calls.
class ClipRows {
public:
    ClipRows(const Ink& ink, const Clip& clip) : m_Ink(ink), m_Clip(clip) {}

    /// x0 <= x < x1 of row \p y; any coordinates.
    void Put(std::int32_t y, std::int64_t x0, std::int64_t x1) {
        const Box* const end = m_Clip.boxes + m_Clip.count;
        if (m_Band != end && m_Band->bottom <= y) {
            m_Near = m_Band =
                std::partition_point(m_Band, end, [y](const Box& box) { return box.bottom <= y; });
        }
        while (m_Near != m_Band && m_Near[-1].right > x0)
            --m_Near;
        while (m_Near != end && m_Near->top <= y && m_Near->right <= x0)
            ++m_Near;
        for (const Box* box = m_Near; box != end && box->top <= y && box->left < x1; ++box) {
            const std::int64_t left = std::max<std::int64_t>(x0, box->left);
            const std::int64_t right = std::min<std::int64_t>(x1, box->right);
            if (left < right) {
                m_Ink.span(m_Ink, y, static_cast<std::int32_t>(left), static_cast<std::int32_t>(right));
            }
        }
    }

private:
    const Ink& m_Ink;
    const Clip& m_Clip;
    const Box* m_Band = m_Clip.boxes;  ///< the first box that is not wholly above the last row
    const Box* m_Near = m_Clip.boxes;  ///< where the last span met the band, or just behind the band
};

}  // namespace device
