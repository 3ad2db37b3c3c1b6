/// \file
/// What stands on the sheets that show the library's pens.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "apps/zulmap/tool_settings.h"

namespace zulmap {

/// A line of samples, all drawn with one pen.
struct SheetRow {
    std::string label;         ///< what to type for it, such as "24" or "0x2A"
    std::string_view caption;  ///< what it looks like
    PenSettings pen;
};

/// A column of samples within each block.
struct SheetSample {
    enum class Figure { Straight, Bent, Closed };

    std::string_view heading;
    Figure figure;
    std::int32_t width;     ///< pixels in a block of full size
    std::int32_t endType;   ///< line endings that the sample adds to those of its row
    std::int32_t type = 0;  ///< of its pen; 0 leaves the row's own
};

/// All samples once more, drawn otherwise.
struct SheetBlock {
    std::string_view heading;
    std::int32_t percent;   ///< of the samples' full width
    std::int32_t penWidth;  ///< pixels; 0 leaves the row's own width
    double metresInPixel;   ///< 0: the block has no scale, as widths in pixels need none
};

struct PenSheet {
    std::string_view title;
    std::string note;
    std::vector<SheetRow> rows;
    std::vector<SheetSample> samples;
    std::vector<SheetBlock> blocks;
};

/// The sheet called \p name: "styles" has every extended style, "endings" the line endings, "metres" widths
/// in metres at three scales. \throws ToolError for any other name.
PenSheet MakePenSheet(std::string_view name);

}  // namespace zulmap
