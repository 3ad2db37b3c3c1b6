#include "platform/software/blit_rows.h"

#include <algorithm>

namespace device {

RowBuffers& Buffers() {
    static thread_local RowBuffers buffers;
    return buffers;
}

const std::vector<Box>& VisibleBoxes(const Clip& clip, const Box& area, bool downwards, bool rightwards) {
    std::vector<Box>& boxes = Buffers().boxes;
    boxes.clear();
    ForVisibleBoxes(clip, area, [&boxes](const Box& visible) { boxes.push_back(visible); });
    if (boxes.size() > 1 && (downwards || rightwards)) {
        std::sort(boxes.begin(), boxes.end(), [=](const Box& a, const Box& b) {
            if (a.top != b.top) return downwards ? a.top > b.top : a.top < b.top;
            return rightwards ? a.left > b.left : a.left < b.left;
        });
    }
    return boxes;
}

PatternRows::PatternRows(Context& target, Rop3 rop) {
    if (rop.UsesPattern()) m_Ink = BrushInk(target, *target.brush, R2_COPYPEN);
}

void PatternRows::Start(const Box& box, const RowSlice& slice) {
    if (m_Ink.surface == nullptr) return;
    m_Row = *m_Ink.surface;
    m_Row.top = Room(Buffers().pattern, slice.bytes);
    m_Row.stride = 0;
    m_Lead = slice.lead;
    m_Left = box.left;
    m_Width = box.right - box.left;
    if (m_Ink.tile == nullptr) Paint(MakeSolidInk(m_Row, m_Ink.mix));
}

const std::uint8_t* PatternRows::Row(std::int32_t y) {
    if (m_Ink.tile != nullptr) {
        MixTile tile = *m_Ink.tile;
        tile.originX =
            static_cast<std::int32_t>(FloorModulo(std::int64_t{tile.originX} - m_Left + m_Lead, tile.width));
        tile.originY = static_cast<std::int32_t>(FloorModulo(std::int64_t{tile.originY} - y, tile.height));
        Paint(MakePatternInk(m_Row, tile));
    }
    return m_Row.top;
}

}  // namespace device
