/// \file
/// What straight and stretched transfers share: row buffers, the brush as rows, the order of visible boxes.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/software/context.h"
#include "platform/software/pixel_picks.h"
#include "platform/software/rop3.h"
#include "platform/software/stretch_axis.h"

namespace device {

/// A thread's buffers. They keep their capacity, so that transfers allocate nothing once warm.
struct RowBuffers {
    std::vector<std::uint8_t> span, packed, pattern, bits, gathered, marks, gatheredMarks;
    std::vector<Box> boxes;
    std::vector<SourceRun> columns, rows;
    std::vector<std::int32_t> picks;
    std::vector<PickStep> pickSteps;
};
RowBuffers& Buffers();

/// At least \p bytes of \p buffer; what they hold is left over from earlier use.
inline std::uint8_t* Room(std::vector<std::uint8_t>& buffer, std::size_t bytes) {
    if (buffer.size() < bytes) buffer.resize(bytes);
    return buffer.data();
}

/// Whether two contexts draw on the same pixels.
inline bool SharePixels(const Context& a, const Context& b) {
    return a.surface.top == b.surface.top;
}

/// The visible parts of \p area, in an order in which no part overwrites what a later one reads when pixels
/// move downwards (else up) and rightwards (else left) within one surface. Good until the next call.
const std::vector<Box>& VisibleBoxes(const Clip& clip, const Box& area, bool downwards, bool rightwards);

/// The selected brush as rows in the target's layout: what copying it onto an empty row leaves there.
class PatternRows {
public:
    PatternRows(Context& target, Rop3 rop);

    /// For the rows of \p box from now on.
    void Start(const Box& box, const RowSlice& slice);
    /// Null when the operation uses no pattern.
    const std::uint8_t* Row(std::int32_t y);

private:
    void Paint(const Ink& ink) { PutSpan(ink, {0, m_Lead, m_Lead + m_Width}); }

    Ink m_Ink;  ///< without a surface when no pattern is used
    Surface m_Row;
    std::int32_t m_Lead = 0, m_Left = 0, m_Width = 0;
};

}  // namespace device
