#include "apps/zulmap/tool_settings.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "apps/zulmap/tool_error.h"

namespace zulmap {
namespace {

auto Fields(const PenSettings& pen) {
    return std::make_tuple(pen.type, pen.style, pen.width, pen.color, pen.extraColor, pen.dashLength,
                           pen.endType, pen.scaled);
}

TEST(ToolSettings, PensAreReadOverTheirDefaults) {
    const struct {
        const char* text;
        PenSettings pen;  // type, style, width, color, extraColor, dashLength, endType, scaled
    } rows[] = {
        {"", {}},
        {" \t ,, ", {}},
        {"width=2", {1, 0, 2, 0, 0, 5, 0, 0}},
        {"type=3 style=42 width=10000 scaled=1", {3, 42, 10000, 0, 0, 5, 0, 1}},
        {"color=#102030,extra=0xFFeeDD", {1, 0, 1, 0x302010, 0xDDEEFF, 5, 0, 0}},
        {"end=0x2a dash=0\ttype=0", {0, 0, 1, 0, 0, 0, 42, 0}},
        {"end=-2147483648", {1, 0, 1, 0, 0, 5, -2147483647 - 1, 0}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Fields(ParsePen(row.text)), Fields(row.pen)) << row.text;
    }
}

TEST(ToolSettings, BrushesAreReadOverWhatTheyWere) {
    const BrushSettings brush = ParseBrush("color=#0000ff", {0, 7});
    EXPECT_EQ(brush.type, 0);
    EXPECT_EQ(brush.color, 0xFF0000);
}

TEST(ToolSettings, FontsTakeNamesInQuotes) {
    const FontSettings font =
        ParseFont("height=9 name='DejaVu Sans, Bold'\thalo=0,halocolor=#0000ff angle=-30");
    EXPECT_EQ(font.name, "DejaVu Sans, Bold");
    EXPECT_EQ(font.height, 9);
    EXPECT_EQ(font.haloColor, 0xFF0000);
    EXPECT_EQ(font.angle, -30);
    EXPECT_EQ(ParseFont("name=Arial bold=1").name, "Arial");
}

TEST(ToolSettings, WhatIsWrongIsNamedInOneLine) {
    const struct {
        const char* text;
        const char* mention;
    } rows[] = {
        {"wide=2", "wide"},           {"=2", "''"},
        {"width=", "width"},          {"width=two", "two"},
        {"width=-1", "width"},        {"width=99999999999", "99999999999"},
        {"width=1=2", "1=2"},         {"width=1 width=1", "twice"},
        {"type=4", "type"},           {"style=43", "style"},
        {"scaled=2", "scaled"},       {"color=red", "red"},
        {"color=#-12345", "#-12345"}, {"color=#1234567", "#1234567"},
        {"color=123456", "123456"},   {"end=0x", "0x"},
        {"end=0x-5", "0x-5"},         {"style=24", "type=3"},
    };
    for (const auto& row : rows) {
        try {
            ParsePen(row.text);
            ADD_FAILURE() << row.text << " was taken";
        } catch (const ToolError& error) {
            const std::string message = error.what();
            EXPECT_NE(message.find(row.mention), message.npos) << message;
            EXPECT_EQ(message.find('\n'), message.npos) << message;
        }
    }
    for (const char* brush : {"type=3", "pattern=a.bmp", "type=2", "type=3 pattern="}) {
        EXPECT_THROW(ParseBrush(brush), ToolError) << brush;
    }
    for (const char* page : {"width=20 margin=10", "dpi=0", "height=9", "paper=a4"}) {
        EXPECT_THROW(ParsePage(page), ToolError) << page;
    }
    for (const char* font : {"name=", "name='", "name='a", "name='a'b", "name='a''b'", "height=-1",
                             "angle=361", "bold", "scaled=1", "color='#102030"}) {
        EXPECT_THROW(ParseFont(font), ToolError) << font;
    }
    EXPECT_THROW(ParseBrush("width=1"), ToolError);
}

}  // namespace
}  // namespace zulmap
