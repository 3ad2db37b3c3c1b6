/// \file
/// Lays a sheet of pens out and draws it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "apps/zulmap/pens/pen_sheet.h"
#include "zul/canvas/canvas.h"
#include "zul/geometry/coordinates.h"
#include "zul/scaler/scaler.h"

namespace zulmap {

/// A sheet's places, in pixels from its top left corner.
///
///     title
///                      | block                    | block
///                      | sample    sample         | sample    sample
///     label  caption   |   ----      ---/         |   ----      ---/      a row
///     label  caption   |   ----      ---/         |   ----      ---/
///     note
class SheetPainter {
public:
    /// \param sheet  outlives the painter
    explicit SheetPainter(const PenSheet& sheet);

    zul::TSize GetSize() const { return m_Size; }
    /// The place of one sample with the room around it, which no other sample touches; right and bottom
    /// excluded.
    zul::TLongRect GetCell(std::size_t row, std::size_t block, std::size_t sample) const;

    /// Covers the canvas's whole device, which is as large as GetSize() says. Leaves its own settings in the
    /// canvas's tools and the canvas without a scaler.
    void Paint(zul::CCanvas& canvas) const;

private:
    /// A column of samples, counted over all blocks.
    struct Column {
        std::int32_t left;
        std::int32_t width;
    };

    const Column& GetColumn(std::size_t block, std::size_t sample) const;
    std::int32_t GetRowTop(std::size_t row) const;
    void PaintGround(zul::CCanvas& canvas) const;
    void PaintHeadings(zul::CCanvas& canvas) const;
    void PaintLabels(zul::CCanvas& canvas) const;
    void PaintBlock(zul::CCanvas& canvas, std::size_t block) const;

    const PenSheet& m_Sheet;
    std::int32_t m_LabelRight = 0;
    std::int32_t m_CaptionLeft = 0;
    std::vector<Column> m_Columns;
    zul::TSize m_Size{};
};

}  // namespace zulmap
