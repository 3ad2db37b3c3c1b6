/// \file
/// Pens, brushes and fonts as they are typed on the command line: "width=2 color=#8a7866".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "zul/tools/brush.h"
#include "zul/tools/font.h"
#include "zul/tools/pen.h"

namespace zulmap {

/// The platform's colour, red in the lowest byte, for 0xRRGGBB.
constexpr std::int32_t Color(std::int32_t redGreenBlue) {
    return ((redGreenBlue & 0xFF) << 16) | (redGreenBlue & 0xFF00) | (redGreenBlue >> 16);
}

/// Fields and defaults are those of the library's pen.
struct PenSettings {
    std::int32_t type = 1;        ///< 0 none, 1 solid, 2 dashed, 3 extended
    std::int32_t style = 0;       ///< extended style, 0 to 42
    std::int32_t width = 1;       ///< pixels, or metres when scaled
    std::int32_t color = 0;       ///< platform order: red in the low byte
    std::int32_t extraColor = 0;  ///< second colour of two-coloured styles
    std::int32_t dashLength = 5;
    std::int32_t endType = 0;  ///< bits of the line endings
    std::int32_t scaled = 0;   ///< 1: the width is in metres
};

struct BrushSettings {
    std::int32_t type = 1;  ///< 0 none, 1 solid, 3 pattern
    std::int32_t color = 0xFFFFFF;
    std::string pattern{};  ///< the BMP file that a pattern brush tiles; empty for the other types
};

/// Text of a map. Lengths that the library's font gives no unit to are pixels.
struct FontSettings {
    std::string name = "Liberation Sans";
    std::int32_t height = 0;  ///< points, metres when scaled; 0: what fits the thing that the text is about
    std::int32_t color = Color(0x2A2420);
    std::int32_t halo = 2;  ///< 0 to 7
    std::int32_t haloColor = Color(0xFCFAF2);
    std::int32_t angle = 0;   ///< degrees, counter-clockwise
    std::int32_t framed = 0;  ///< 1: in a box, which is filled with the halo's colour when there is a halo
    std::int32_t bold = 0;
    std::int32_t italic = 0;
    std::int32_t underline = 0;
    std::int32_t strikeOut = 0;
    std::int32_t scaled = 0;  ///< 1: the height is in metres
};

/// A sheet of paper. Lengths in millimetres.
struct PageSettings {
    std::int32_t width = 210;
    std::int32_t height = 297;
    std::int32_t dpi = 150;
    std::int32_t margin = 10;  ///< on every side, not printed
};

/// Reads "#RRGGBB" or "0xRRGGBB" into the platform's order. \returns false, and \p color as it was, for any
/// other text.
bool ParseColor(std::string_view text, std::int32_t& color);

/// Reads a list of `key=value`, parted by blanks or commas, over \p settings. Keys of a pen: type, style,
/// width, color, extra, dash, end, scaled. A colour is #RRGGBB or 0xRRGGBB, every other value a whole number;
/// a text that holds blanks or commas stands in single quotes.
/// \throws ToolError for an unknown or repeated key, for a value that is malformed or out of range, and for a
/// style without type 3.
PenSettings ParsePen(std::string_view text, PenSettings settings = {});

/// Gives the library's pen all of the settings.
void UsePen(zul::CPen& pen, const PenSettings& settings);

/// As ParsePen, with the keys type, color and pattern; a pattern is a file and belongs to type 3.
BrushSettings ParseBrush(std::string_view text, BrushSettings settings = {});

/// As ParsePen, with the keys name, height, color, halo, halocolor, angle, framed, bold, italic, underline,
/// strikeout and scaled. \throws ToolError also for metres without a height
FontSettings ParseFont(std::string_view text, FontSettings settings = {});

/// Gives the library's font all of the settings but the frame. \p height: points or metres; \p degrees:
/// instead of the angle
void UseFont(zul::CFont& font, const FontSettings& settings, std::int32_t height, double degrees);

/// What a tool is set to, as far as it can be typed; values beyond what can be typed become the nearest.
PenSettings SettingsOf(const zul::CPen& pen);
BrushSettings SettingsOf(const zul::CBrush& brush);
FontSettings SettingsOf(zul::CFont& font);

/// As ParsePen, with the keys width, height, dpi and margin. \throws ToolError also when the margins leave no
/// paper between them
PageSettings ParsePage(std::string_view text, PageSettings settings = {});

}  // namespace zulmap
