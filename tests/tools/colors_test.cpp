// Palette and gradient: the tools that are lists of colours.
#include <gtest/gtest.h>

#include "tests/canvas/canvas_testing.h"
#include "zul/geometry/points.h"

namespace {

using namespace zultest;

void Fill(zul::CPalette& palette, std::initializer_list<std::int32_t> colors) {
    for (const std::int32_t color : colors)
        palette.Append(color);
}

TEST(Palette, NearestIndexIsTheLowestOfTheClosest) {
    struct Row {
        std::int32_t color, nearest;
    };
    const Row rows[] = {
        {0x0000F0, 1},
        {0x7F7F7F, 0},
        {0x808080, 4},
        {0xFF0000, 3},
        // The component differences count unsigned and the high byte not at all.
        {static_cast<std::int32_t>(0xFF0000FF), 1},
    };
    zul::CPalette palette;
    Fill(palette, {Black, Red, Red, Blue, White});
    for (const Row& row : rows)
        EXPECT_EQ(palette.GetNearestIndex(row.color), row.nearest) << std::hex << row.color;
    palette.SetType(1);
    EXPECT_EQ(palette.GetNearestIndex(0), -1);
    EXPECT_EQ(zul::CPalette().GetNearestIndex(0), -1);
}

TEST(Palette, ColourTextsNameRedFirstAndAreReadByTheirHexadecimalDigits) {
    EXPECT_STREQ(zul::CPalette::GetColorStringToXML(Red, true).GetBufferAnsi(), "ff0000(255,0,0)");
    EXPECT_STREQ(zul::CPalette::GetColorStringToXML(0x7F123456, false).GetBufferAnsi(), "563412(86,52,18)");
    struct Row {
        const char* text;
        std::int32_t color;
    };
    const Row rows[] = {
        {"00ff00(1,2,3)", Green},       {"FF0000", Red}, {"12", 0x120000}, {"", Black},
        {"ff01020304", 0x040302},       {"#ff0000", 0},  {" ff0000", 0},   {"-1", White},
        {"fffffffffffffffffff", White},
    };
    for (const Row& row : rows)
        EXPECT_EQ(zul::CPalette::GetColorFromXML(row.text), row.color) << row.text;
}

TEST(Palette, EntriesStopBeforeTheLastOne) {
    zul::CPalette palette;
    Fill(palette, {1, 2, 3, 4});
    struct Row {
        std::int32_t start, count;
        std::vector<std::int32_t> copied;
        bool reported;
    };
    const Row rows[] = {
        {0, 10, {1, 2, 3}, false}, {1, 1, {2}, false}, {2, 5, {3}, false}, {3, 5, {}, false},
        {4, 1, {}, true},          {-1, 3, {}, false}, {0, -1, {}, false}, {0, INT32_MAX, {1, 2, 3}, false},
        {INT32_MAX, 1, {}, true},
    };
    for (const Row& row : rows) {
        Reports reports;
        std::vector<std::int32_t> out(4, -7);
        palette.GetEntries(out.data(), row.start, row.count);
        std::vector<std::int32_t> expected = row.copied;
        expected.resize(4, -7);
        EXPECT_EQ(out, expected) << row.start << ", " << row.count;
        EXPECT_EQ(reports.List.size(), row.reported ? 1u : 0u);
    }
    palette.GetEntries(nullptr, 0, 4);
    Reports reports;
    std::int32_t out = 0;
    zul::CPalette().GetEntries(&out, 0, 1);
    EXPECT_EQ(reports.Only(), "3: Out of range error : nStartIndex in <zul::CPalette::GetEntries>");
}

TEST(Palette, IndexOutsideIsReported) {
    zul::CPalette palette;
    Fill(palette, {Red});
    for (const std::int32_t index : {-1, 1, INT32_MIN}) {
        Reports reports;
        EXPECT_EQ(palette.GetColor(index), 0);
        EXPECT_EQ(reports.Only(), "3: Out of range error : Index in <zul::CPalette::GetColors>");
        palette.SetColor(index, Blue);
        palette.Delete(index);
        EXPECT_EQ(reports.List.size(), 2u) << "set reports, delete does not";
        EXPECT_EQ(palette.GetCount(), 1);
    }
}

TEST(Palette, SelectedItGivesItsColoursByNumber) {
    zul::CPalette palette;
    Surface surface(1, 1);
    const auto second = [&] {
        palette.Select(&surface.Canvas);
        surface.Canvas.SetPixel(0, 0, static_cast<std::int32_t>(PALETTEINDEX(1)));
        return surface.Canvas.GetPixel(0, 0);
    };
    const std::int32_t before = second();
    Fill(palette, {Red, Blue});
    palette.Select(nullptr);
    {
        const FullDevice full;
        Reports reports;
        EXPECT_EQ(second(), before);
        EXPECT_EQ(reports.Only(), "3: Can't create palette handle <zul::CPalette::Validate()>");
    }
    EXPECT_EQ(second(), Blue);
    palette.SetColor(1, Green);
    EXPECT_EQ(second(), Green);
    palette.SetColor(1, Blue);
    palette.SetType(1);
    EXPECT_EQ(second(), Green) << "the change of kind has the palette count as up to date";
    surface.Canvas.SetPalette(&palette);
    surface.Canvas.CreateMemoryCanvas();
    surface.Canvas.AssignBitmap(&surface.Bitmap);
    palette.Clear();
    EXPECT_EQ(second(), before) << "released with the device, and empty now";
}

TEST(Palette, RealisedOnceItColoursBitmapsOfFewColours) {
    zul::CBitmap bitmap;
    bitmap.Create(1, 1, 8, nullptr);
    zul::CCanvas canvas;
    canvas.CreateMemoryCanvas();
    canvas.AssignBitmap(&bitmap);
    zul::CPalette palette;
    const auto shown = [&](std::int32_t color) {
        palette.Clear();
        palette.Append(color);
        palette.Select(&canvas);
        palette.Realize(&canvas);
        return canvas.GetPixel(0, 0);
    };
    EXPECT_EQ(shown(0x123456), 0x123456);
    EXPECT_EQ(shown(0x654321), 0x123456);
    palette.Release(&canvas);
    EXPECT_EQ(shown(0x654321), 0x654321);
    palette.Release(&canvas);
}

TEST(Gradient, ColourComesBackWithGreenAndBlueExchanged) {
    zul::CGradient gradient;
    gradient.Append(1, 2, 0x123456);
    EXPECT_EQ(gradient.GetColor(0), 0x341256);
    const zul::TGradVert vertex = gradient.GetVertex(0);
    EXPECT_TRUE(vertex.Red == 0x5600 && vertex.Green == 0x3400 && vertex.Blue == 0x1200);
    gradient.SetPoint(0, 5, 6);
    gradient.SetColor(0, Blue);
    const zul::TGradVert changed = gradient.GetVertex(0);
    EXPECT_TRUE(changed.X == 5 && changed.Y == 6 && changed.Red == 0 && changed.Blue == 0xFF00);
}

TEST(Gradient, IndexOutsideChangesNothing) {
    zul::CGradient gradient;
    EXPECT_EQ(gradient.GetVertexes(), nullptr);
    const std::uint64_t changes = zul::CClient::GetModificationCount();
    gradient.SetVertex(0, 1, 2, 3);
    gradient.SetPoint(UINT32_MAX, 1, 2);
    gradient.SetColor(1, 2);
    EXPECT_EQ(zul::CClient::GetModificationCount(), changes);
    std::int32_t x = 9;
    gradient.GetPoint(5, &x, nullptr);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(gradient.GetColor(0), 0);
}

TEST(Gradient, RadialFanIsOpenAndReusesVertices) {
    zul::CPoints points(true);
    for (const zul::TPoint point : {zul::TPoint{10, 0}, zul::TPoint{0, 10}, zul::TPoint{-10, 0}})
        points.Append(point.X, point.Y);
    zul::CGradient gradient;
    for (int i = 0; i < 6; ++i)
        gradient.Append(-1, -1, 0);
    zul::CBuffer<std::int32_t> triangles;
    EXPECT_EQ(gradient.CreateRadial(&points, 3, 4, Red, Blue, triangles), 2);
    EXPECT_EQ(std::vector<std::int32_t>(triangles.GetBuffer(), triangles.GetBuffer() + triangles.GetCount()),
              (std::vector<std::int32_t>{0, 1, 2, 0, 2, 3}));
    EXPECT_EQ(gradient.GetCount(), 6u) << "grown, never shrunk";
    EXPECT_EQ(gradient.GetVertex(0).Blue, 0xFF00);
    EXPECT_EQ(gradient.GetVertex(3).X, -10);
    EXPECT_EQ(gradient.GetVertex(3).Red, 0xFF00);
    EXPECT_EQ(gradient.GetVertex(4).X, -1);
    EXPECT_EQ(gradient.CreateRadial(nullptr, 7, 8, Red, Blue, triangles), 0);
    EXPECT_EQ(triangles.GetCount(), 0u);
    EXPECT_EQ(gradient.GetVertex(0).X, 7) << "the centre is there";
}

}  // namespace
