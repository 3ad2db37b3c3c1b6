/// \file
/// What stands on the sheet that shows how the library sets text into rectangles.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zulmap {

/// A text in a rectangle of its own.
struct LabelSample {
    std::string caption;
    const char16_t* text;
    std::int32_t alignment;  ///< bits of zul::CFont::TAlignment
    std::int32_t style;      ///< bits of zul::CFont::TFontStyle
    std::int32_t angle = 0;  ///< tenths of a degree
    std::int32_t width = 0;  ///< pixels of the rectangle; 0: as wide and high as its neighbours
    std::int32_t height = 0;
    bool isOpaque = false;
    bool isBoxOnly = false;  ///< the background's exclusive-or operation
};

/// Samples side by side.
struct LabelRow {
    std::string heading;
    std::vector<LabelSample> samples;
};

/// The rows of the sheet. They are drawn several times, in different coordinates.
std::vector<LabelRow> MakeLabelRows();

}  // namespace zulmap
