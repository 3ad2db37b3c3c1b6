#include "apps/zulmap/label_sheet/label_sheet.h"

#include "zul/tools/font.h"

namespace zulmap {
namespace {

using zul::CFont;

constexpr std::int32_t kMiddle = 0;
constexpr std::int32_t kUpperLeft = CFont::AlignLeft | CFont::AlignTop;
constexpr std::int32_t kFramed = CFont::StyleFramed;
constexpr std::int32_t kFitted = CFont::StyleInscribed;
constexpr std::int32_t kMostHalo = 7;
constexpr std::int32_t kTurnStep = 500;
constexpr std::int32_t kFullTurn = 3600;

constexpr char16_t kTwoLines[] = u"Kap\nHoorn";
constexpr char16_t kThreeLines[] = u"Kap\nArkona\nRügen";
constexpr char16_t kOneLine[] = u"Ladoga";

LabelRow MakeAlignments() {
    struct Side {
        std::int32_t bit;
        const char* name;
    };
    constexpr Side kAcross[] = {{CFont::AlignLeft, "left"}, {0, "middle"}, {CFont::AlignRight, "right"}};
    constexpr Side kDown[] = {{CFont::AlignTop, "top"}, {0, "middle"}, {CFont::AlignBottom, "bottom"}};
    LabelRow row{"Alignment", {}};
    for (const Side& down : kDown) {
        for (const Side& across : kAcross) {
            row.samples.push_back({std::string(across.name) + ", " + down.name, kTwoLines,
                                   across.bit | down.bit, CFont::StyleClipping});
        }
    }
    return row;
}

LabelRow MakeHalos() {
    LabelRow row{"Halo, in pixels", {}};
    for (std::int32_t halo = 0; halo <= kMostHalo; ++halo) {
        row.samples.push_back({std::to_string(halo), kOneLine, kMiddle, halo});
    }
    return row;
}

LabelRow MakeAngles(const char* heading, const char16_t* text, std::int32_t alignment, std::int32_t style) {
    LabelRow row{heading, {}};
    for (std::int32_t angle = 0; angle < kFullTurn; angle += kTurnStep) {
        row.samples.push_back({std::to_string(angle), text, alignment, style, angle, 20, 20});
    }
    return row;
}

LabelRow MakeStyles() {
    return {"Fit, frame, box, clip",
            {{"fitted to the width", u"Kattegat", kMiddle, kFitted, 0, 110, 70},
             {"fitted to the height", u"Elbe", kMiddle, kFitted, 0, 130, 24},
             {"three lines fitted", kThreeLines, kMiddle, kFitted, 0, 80, 76},
             {"fitted, with box", kTwoLines, kMiddle, kFitted | kFramed},
             {"framed", kThreeLines, kMiddle, kFramed},
             {"framed, lower right", kTwoLines, CFont::AlignRight | CFont::AlignBottom, kFramed},
             {"clipped", u"Nordostland\nSvalbard", kMiddle, CFont::StyleClipping, 0, 70, 30},
             {"not clipped", u"Nordostland\nSvalbard", kMiddle, 0, 0, 70, 30},
             {"box only", kTwoLines, kMiddle, 0, 0, 0, 0, false, true}}};
}

LabelRow MakeScripts() {
    return {"Characters",
            {{"Greek", u"Αιγαίο\nΠέλαγος", kMiddle, 1},
             {"Cyrillic", u"Белое\nморе", kMiddle, 1},
             {"accented Latin", u"Çeşme\nŁódź Århus", kMiddle, 1},
             {"bold", kTwoLines, kMiddle, CFont::StyleBold},
             {"italic", kTwoLines, kMiddle, CFont::StyleItalic},
             {"underlined", kTwoLines, kMiddle, CFont::StyleUnderlined},
             {"struck out", kTwoLines, kMiddle, CFont::StyleStrikedOut},
             {"opaque ground", kTwoLines, kMiddle, 0, 0, 0, 0, true},
             {"opaque, turned by 300", kOneLine, kUpperLeft, CFont::StyleUnderlined, 300, 40, 20, true}}};
}

}  // namespace

std::vector<LabelRow> MakeLabelRows() {
    return {MakeAlignments(),
            MakeStyles(),
            MakeScripts(),
            MakeHalos(),
            MakeAngles("Angle, in tenths of a degree: lines from the upper left", kTwoLines, kUpperLeft, 2),
            MakeAngles("Angle: lines from the middle", kTwoLines, kMiddle, 2),
            MakeAngles("Angle and frame", kTwoLines, kUpperLeft, kFramed)};
}

}  // namespace zulmap
