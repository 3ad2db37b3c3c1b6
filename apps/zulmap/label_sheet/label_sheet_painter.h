/// \file
/// Lays the sheet of labels out and draws it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "apps/zulmap/label_sheet/label_sheet.h"
#include "zul/canvas/canvas.h"
#include "zul/geometry/coordinates.h"

namespace zulmap {

/// Every row once in pixels, once on a map and once on a turned map. A sample has a small picture of its own,
/// with its rectangle outlined on a ground and its name below, so that none reaches into another.
class LabelSheetPainter {
public:
    enum Block : std::size_t { Pixels, Map, TurnedMap, BlockCount };

    LabelSheetPainter();

    const std::vector<LabelRow>& GetRows() const { return m_Rows; }
    zul::TSize GetSize() const { return m_Size; }
    /// Where the picture of a sample stands; right and bottom excluded.
    zul::TLongRect GetCell(std::size_t block, std::size_t row, std::size_t sample) const;

    /// Covers the canvas's whole device, which is as large as GetSize() says and has no scaler. Leaves its
    /// own settings in the canvas's tools.
    void Paint(zul::CCanvas& canvas) const;

private:
    std::int32_t GetBlockTop(std::size_t block) const;

    std::vector<LabelRow> m_Rows;
    zul::TSize m_Size{};
};

}  // namespace zulmap
