#include "apps/zulmap/pens/pen_sheet.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "apps/zulmap/tool_error.h"
#include "zul/tools/pen.h"

namespace zulmap {
namespace {

constexpr std::int32_t kBlue = Color(0x1F4A7A);
constexpr std::int32_t kAmber = Color(0xF2AD33);
constexpr std::int32_t kDashLength = 8;

// Bits of a line's endings.
constexpr std::int32_t kDotFirst = 1;
constexpr std::int32_t kDotLast = 2;
constexpr std::int32_t kArrowFirst = 4;
constexpr std::int32_t kArrowLast = 8;
constexpr std::int32_t kWide = 16;
constexpr std::int32_t kFilled = 32;
constexpr std::int32_t kLength = 1 << 16;  // times the multiple of the line's width
constexpr std::int32_t kAngle = 1 << 24;   // times the degrees between shaft and wing

constexpr std::int32_t kDotAndArrow = kDotFirst | kArrowLast | kFilled;

struct Caption {
    std::int32_t number;
    std::string_view text;
};

constexpr Caption kStyles[] = {
    {0, "dashes"},
    {7, "ticks"},
    {8, "line with ticks"},
    {9, "line with double ticks"},
    {10, "dashes with a tick"},
    {11, "dashes begun by a tick"},
    {12, "dashes between ticks"},
    {13, "dashes with two ticks"},
    {14, "dashes with three ticks"},
    {19, "dashes in two colours"},
    {20, "wide dashes"},
    {21, "wide dashes in two colours"},
    {23, "cased"},
    {24, "line with crosses"},
    {25, "dashes and crosses"},
    {26, "arrows back"},
    {27, "line with arrows back"},
    {28, "arrows on"},
    {29, "line with arrows on"},
    {30, "line with pairs of arrows"},
    {31, "cased with a centre line"},
    {32, "cased with ticks"},
    {33, "cased with dashes"},
    {34, "line with ticks on one side"},
    {35, "line with ticks on the other"},
    {36, "line with ticks by turns"},
    {37, "line with double ticks by turns"},
    {38, "dashes with two on one side"},
    {39, "dashes with two on the other"},
    {40, "dashes with a tick on each side"},
    {41, "dashes with two on each side"},
    {42, "thin casing"},
};

constexpr Caption kEndings[] = {
    {0, "none"},
    {kDotFirst, "dot at the start"},
    {kDotLast, "dot at the end"},
    {kDotFirst | kDotLast, "dots"},
    {kArrowFirst, "arrow at the start"},
    {kArrowLast, "arrow at the end"},
    {kArrowFirst | kArrowLast, "arrows"},
    {kDotFirst | kArrowLast, "dot and arrow"},
    {kDotFirst | kDotLast | kArrowFirst | kArrowLast, "arrows win over dots"},
    {kArrowFirst | kArrowLast | kWide, "wide"},
    {kArrowFirst | kArrowLast | kFilled, "filled"},
    {kArrowFirst | kArrowLast | kWide | kFilled, "wide and filled"},
    {kArrowLast | kFilled | 3 * kLength | 35 * kAngle, "3 widths long at 35 degrees"},
    {kArrowLast | kFilled | 5 * kLength | 20 * kAngle, "5 widths long at 20 degrees"},
    {kArrowLast | kFilled | 9 * kLength, "9 widths long"},
    {kArrowLast | 4 * kLength | 50 * kAngle, "4 widths long at 50 degrees"},
};

struct MetricLine {
    std::string_view label;
    std::string_view caption;
    std::int32_t type;
    std::int32_t style;
    std::int32_t metres;
};

constexpr MetricLine kMetricLines[] = {
    {"3 m", "solid", zul::CPen::PenSolid, 0, 3},
    {"6 m", "solid", zul::CPen::PenSolid, 0, 6},
    {"3 m", "dashes", zul::CPen::PenExtended, 0, 3},
    {"6 m", "dashes", zul::CPen::PenExtended, 0, 6},
    {"3 m", "line with ticks", zul::CPen::PenExtended, 8, 3},
    {"6 m", "line with ticks", zul::CPen::PenExtended, 8, 6},
    {"3 m", "dashes in two colours", zul::CPen::PenExtended, 19, 3},
    {"6 m", "dashes in two colours", zul::CPen::PenExtended, 19, 6},
    {"3 m", "wide dashes", zul::CPen::PenExtended, 20, 3},
    {"3 m", "cased", zul::CPen::PenExtended, 23, 3},
    {"6 m", "cased", zul::CPen::PenExtended, 23, 6},
    {"3 m", "cased with a centre line", zul::CPen::PenExtended, 31, 3},
    {"3 m", "cased with dashes", zul::CPen::PenExtended, 33, 3},
    {"4 m", "line with arrows on", zul::CPen::PenExtended, 29, 4},
    {"3 m", "line with ticks by turns", zul::CPen::PenExtended, 36, 3},
    {"8 m", "thin casing", zul::CPen::PenExtended, 42, 8},
};

constexpr std::int32_t kStraightWidth = 160;
constexpr std::int32_t kBentWidth = 92;
constexpr std::int32_t kClosedWidth = 84;
constexpr std::int32_t kEndedWidth = 120;

PenSettings SamplePen(std::int32_t type, std::int32_t style) {
    PenSettings pen;
    pen.type = type;
    pen.style = style;
    pen.color = kBlue;
    pen.extraColor = kAmber;
    pen.dashLength = kDashLength;
    return pen;
}

std::vector<SheetSample> AllSamples() {
    using Figure = SheetSample::Figure;
    return {{"straight", Figure::Straight, kStraightWidth, 0},
            {"bent", Figure::Bent, kBentWidth, 0},
            {"closed", Figure::Closed, kClosedWidth, 0},
            {"endings", Figure::Straight, kEndedWidth, kDotAndArrow}};
}

std::vector<SheetBlock> PixelWidths() {
    return {{"width 1", 60, 1, 0.0}, {"width 2", 80, 2, 0.0}, {"width 4", 100, 4, 0.0}};
}

std::string_view CaptionOf(std::int32_t style) {
    const auto* row = std::find_if(std::begin(kStyles), std::end(kStyles),
                                   [style](const Caption& caption) { return caption.number == style; });
    return row == std::end(kStyles) ? "solid" : row->text;
}

PenSheet MakeStyles() {
    PenSheet sheet{
        "Pen styles",
        "Dash length " + std::to_string(kDashLength) + "; endings are for style 0 and solid lines.",
        {},
        AllSamples(),
        PixelWidths()};
    for (std::int32_t style = 0; style < zul::CPen::GetExtendedStylesCount(); ++style) {
        sheet.rows.push_back(
            {std::to_string(style), CaptionOf(style), SamplePen(zul::CPen::PenExtended, style)});
    }
    return sheet;
}

std::string Hexadecimal(std::int32_t number) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%X", static_cast<unsigned>(number));
    return text;
}

PenSheet MakeEndings() {
    using Figure = SheetSample::Figure;
    // Closed figures have endings with an extended pen only.
    constexpr std::int32_t extended = zul::CPen::PenExtended;
    PenSheet sheet{"Line endings",
                   "Dashed samples and closed ones are of style 0",
                   {},
                   {{"straight", Figure::Straight, kStraightWidth, 0},
                    {"bent", Figure::Bent, kBentWidth, 0},
                    {"dashed", Figure::Bent, kBentWidth, 0, extended},
                    {"closed", Figure::Closed, kClosedWidth, 0, extended}},
                   PixelWidths()};
    for (const Caption& ending : kEndings) {
        PenSettings pen = SamplePen(zul::CPen::PenSolid, 0);
        pen.endType = ending.number;
        sheet.rows.push_back({Hexadecimal(ending.number), ending.text, pen});
    }
    return sheet;
}

PenSheet MakeMetres() {
    // On a screen of 96 pixels an inch, a pixel at 1 : 15000 is 15000 * 0.0254 / 96 metres.
    constexpr double metresAt15000 = 15000.0 * 0.0254 / 96.0;
    PenSheet sheet{"Widths in metres",
                   "Dash length " + std::to_string(kDashLength),
                   {},
                   AllSamples(),
                   {{"1 : 15000", 80, 0, metresAt15000},
                    {"1 : 7500", 80, 0, metresAt15000 / 2},
                    {"1 : 3750", 100, 0, metresAt15000 / 4}}};
    for (const MetricLine& line : kMetricLines) {
        PenSettings pen = SamplePen(line.type, line.style);
        pen.width = line.metres;
        pen.scaled = 1;
        sheet.rows.push_back({std::string(line.label), line.caption, pen});
    }
    return sheet;
}

constexpr struct {
    std::string_view name;
    PenSheet (*make)();
} kSheets[] = {{"styles", MakeStyles}, {"endings", MakeEndings}, {"metres", MakeMetres}};

}  // namespace

PenSheet MakePenSheet(std::string_view name) {
    std::string names;
    for (const auto& sheet : kSheets) {
        if (sheet.name == name) return sheet.make();
        names += (names.empty() ? "" : ", ") + std::string(sheet.name);
    }
    throw ToolError("sheet '" + std::string(name) + "' is unknown; known are " + names);
}

}  // namespace zulmap
