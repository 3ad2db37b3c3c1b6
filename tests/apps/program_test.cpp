/// \file
/// The program as its users run it.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "apps/zulmap/picture_file.h"
#include "tests/apps/apps_testing.h"
#include "tests/apps/png_picture.h"

namespace {

namespace fs = std::filesystem;

using zulmap::ReadFile;

constexpr std::uint32_t kRed = 0xFF0000;
constexpr std::string_view kLetters = "rgbcmy";
constexpr std::uint32_t kColors[] = {kRed, 0x00FF00, 0x0000FF, 0x00FFFF, 0xFF00FF, 0xFFFF00};

/// A square with a hole in the left half, nothing in the right one; a single point far right.
constexpr char kSquare[] = R"({"type": "FeatureCollection", "features": [
    {"type": "Feature", "properties": {}, "geometry": {"type": "Polygon", "coordinates": [
        [[0, 0], [50, 0], [50, 50], [0, 50], [0, 0]],
        [[10, 10], [10, 20], [20, 20], [20, 10], [10, 10]]]}},
    {"type": "Feature", "properties": {}, "geometry": null},
    {"type": "Feature", "properties": {}, "geometry": {"type": "Point", "coordinates": [95, 45]}}]})";

/// Two areas side by side, of which only one has a name, and a point.
constexpr char kNamed[] = R"({"type": "FeatureCollection", "features": [
    {"type": "Feature", "properties": {"Name": "  Αθήνα\n ", "rank": 3}, "geometry": {"type": "Polygon",
        "coordinates": [[[0, 0], [50, 0], [50, 50], [0, 50], [0, 0]]]}},
    {"type": "Feature", "properties": {"Name": null}, "geometry": {"type": "Polygon",
        "coordinates": [[[50, 0], [100, 0], [100, 50], [50, 50], [50, 0]]]}},
    {"type": "Feature", "properties": {"rank": 1}, "geometry": {"type": "Point", "coordinates": [75, 25]}}]})";

class Program : public zulmap::FolderTest {
protected:
    struct Outcome {
        int status = -1;
        std::string out;
        std::string err;
    };

    void SetUp() override { Write("square.geojson", kSquare); }

    /// A BMP with a pixel for each letter.
    void WriteLetters(const std::string& name, const std::vector<std::string>& rows) const {
        std::vector<std::uint32_t> pixels;
        for (const std::string& row : rows) {
            std::transform(row.begin(), row.end(), std::back_inserter(pixels), ColorOf);
        }
        zulmap::WritePicture(At(name), {static_cast<std::int32_t>(rows[0].size()),
                                        static_cast<std::int32_t>(rows.size()), pixels.data()});
    }

    /// Every \p step pixels of a picture as letters, '.' for any other colour; from (\p x, \p y) on.
    static std::vector<std::string> Letters(const Picture& picture, int x, int y, int step) {
        std::vector<std::string> rows;
        for (int row = y; row < picture.height; row += step) {
            rows.emplace_back();
            for (int column = x; column < picture.width; column += step) {
                const auto found = std::find(std::begin(kColors), std::end(kColors), picture.At(column, row));
                rows.back() += found == std::end(kColors) ? '.' : kLetters[found - std::begin(kColors)];
            }
        }
        return rows;
    }

    /// Of a letter; grey when it stands for none.
    static std::uint32_t ColorOf(char letter) {
        const std::size_t found = kLetters.find(letter);
        return found == kLetters.npos ? 0x808080 : kColors[found];
    }

    std::vector<std::string> FileNames() const {
        std::vector<std::string> names;
        for (const fs::directory_entry& entry : fs::directory_iterator(m_Folder.Get())) {
            names.push_back(entry.path().filename());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    /// Runs the program in the test's directory; \p arguments as in a shell.
    Outcome Run(const std::string& arguments) const {
        const zul::CScratchPath captured, complained;
        const int result = std::system(("cd '" + At("") + "' && '" ZULMAP_PROGRAM "' " + arguments + " > '" +
                                        captured.Get().string() + "' 2> '" + complained.Get().string() + "'")
                                           .c_str());
        return {WIFEXITED(result) ? WEXITSTATUS(result) : -1, ReadFile(captured.Get()),
                ReadFile(complained.Get())};
    }

    Picture Render(const std::string& arguments) const {
        const Outcome outcome = Run("render -o out.png " + arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return ReadPng(At("out.png"));
    }
};

TEST_F(Program, PixelsLieWhereTheMapSaysSo) {
    const Picture picture =
        Render("square.geojson --size 200x100 --bbox 0,0,100,50 --pen type=0 --brush color=#ff0000");
    ASSERT_EQ(picture.width, 200);
    ASSERT_EQ(picture.height, 100);
    const std::uint32_t water = picture.At(150, 50);
    EXPECT_NE(water, kRed);
    const struct {
        int x, y;
        bool isArea;
    } rows[] = {
        {0, 0, true},     {99, 0, true},    {100, 0, false},  {0, 99, true},    {99, 99, true},
        {100, 99, false}, {19, 70, true},   {20, 70, false},  {39, 70, false},  {40, 70, true},
        {30, 59, true},   {30, 60, false},  {30, 79, false},  {30, 80, true},   {190, 10, true},
        {190, 2, false},  {190, 18, false}, {182, 10, false}, {198, 10, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(picture.At(row.x, row.y), row.isArea ? kRed : water) << row.x << ", " << row.y;
    }
}

TEST_F(Program, TheViewTurnsCounterClockwiseAboutItsCentre) {
    const Picture picture = Render(
        "square.geojson --size 100x100 --bbox 0,-25,100,75 --rotate 90 --pen type=0 --brush color=#ff0000");
    // The square lies left of the centre and so comes to lie below it; its hole goes along.
    EXPECT_EQ(picture.At(50, 75), kRed);
    EXPECT_NE(picture.At(50, 25), kRed);
    EXPECT_NE(picture.At(20, 50), kRed);
    EXPECT_NE(picture.At(60, 85), kRed);
    EXPECT_EQ(picture.At(40, 85), kRed);
}

struct PixelRow {
    int x, y;
    bool isArea;
};

constexpr char kRedAreas[] = "square.geojson --size 100x100 --pen type=0 --brush color=#ff0000 ";

TEST_F(Program, ScaleAndCentreSayWhereThingsAre) {
    // A pixel is a degree: 111319.49 metres on 2.54 / 96 centimetres.
    const Picture picture = Render(std::string(kRedAreas) + "--scale 4207350 --center 25,35");
    for (const PixelRow& row : {PixelRow{26, 60, true},
                                {24, 60, false},
                                {74, 60, true},
                                {76, 60, false},
                                {50, 34, false},
                                {50, 36, true},
                                {50, 84, true},
                                {50, 86, false}}) {
        EXPECT_EQ(picture.At(row.x, row.y) == kRed, row.isArea) << row.x << ", " << row.y;
    }
}

TEST_F(Program, PerspectiveReachesFromTheLowerEdgeToTheHorizon) {
    // The near box is 50 degrees wide and deep, the horizon 150 more away, on row 20. Weights grow from 1 to
    // 4 over 200 degrees.
    const std::string sight = kRedAreas + std::string("--perspective 16697924 ");
    const Picture north = Render(sight + "--center 25,0");
    const Picture south = Render(sight + "--center 25,50 --rotate 180");
    const std::uint32_t water = north.At(2, 30);
    for (const PixelRow& row : {PixelRow{1, 99, true},
                                {98, 99, true},
                                {50, 60, true},
                                {50, 52, false},
                                {15, 60, false},
                                {22, 60, true},
                                {78, 60, true},
                                {85, 60, false},
                                {34, 80, false},
                                {66, 80, true}}) {
        EXPECT_EQ(north.At(row.x, row.y), row.isArea ? kRed : water) << row.x << ", " << row.y;
    }
    for (const PixelRow& row : {PixelRow{1, 99, true}, {50, 52, false}, {63, 63, false}, {37, 63, true}}) {
        EXPECT_EQ(south.At(row.x, row.y), row.isArea ? kRed : water) << row.x << ", " << row.y;
    }
    EXPECT_EQ(north.At(50, 21), water);
    EXPECT_NE(north.At(50, 18), water) << "the sky";
    EXPECT_EQ(Render(sight + "--bbox 0,0,50,50").pixels, north.pixels) << "the same near box";
}

TEST_F(Program, TurningWithoutABoxShowsTheWholeMap) {
    const Picture picture =
        Render("square.geojson --size 300x300 --rotate 30 --pen type=0 --brush color=#ff0000");
    const auto area = std::count(picture.pixels.begin(), picture.pixels.end(), kRed);
    const double turnedWidth = 95.0 * 0.8660254 + 50.0 * 0.5;
    const double scale = 300.0 / turnedWidth;
    EXPECT_NEAR(static_cast<double>(area), 2400.0 * scale * scale, 2400.0 * scale * scale * 0.02);
}

TEST_F(Program, BmpAndPngHoldTheSamePicture) {
    const std::string view = "render square.geojson --size 201x99 --rotate 10 -o ";
    ASSERT_EQ(Run(view + "a.png").status, 0);
    const Outcome outcome = Run(view + "a.BMP");
    EXPECT_EQ(outcome.out.find("a.BMP 201x99 "), 0U) << outcome.out;
    EXPECT_EQ(outcome.err, "") << "progress belongs on a terminal only";
    const Picture png = ReadPng(At("a.png"));
    EXPECT_EQ(png.width, 201);
    EXPECT_EQ(png.height, 99);
    EXPECT_EQ(FileNames(), (std::vector<std::string>{"a.BMP", "a.png", "square.geojson"}));
    EXPECT_EQ(Render("--raster a.BMP,0,0,201,99 --bbox 0,0,201,99 --size 201x99").pixels, png.pixels);
    fs::create_symlink("a.png", At("link.png"));
    ASSERT_EQ(Run("render square.geojson --size 5x7 -o link.png").status, 0);
    EXPECT_TRUE(fs::is_symlink(At("link.png")));
    EXPECT_EQ(ReadPng(At("a.png")).height, 7);
}

TEST_F(Program, LinesAreDrawnWithThePen) {
    Write("line.geojson", R"({"type": "LineString", "coordinates": [[0, 25], [100, 25]]})");
    const Picture thin = Render("line.geojson --size 100x50 --bbox 0,0,100,50 --pen color=#0000ff");
    EXPECT_EQ(std::count(thin.pixels.begin(), thin.pixels.end(), 0x0000FFU), 100);
    const Picture wide = Render("line.geojson --size 100x50 --bbox 0,0,100,50 --pen 'color=#0000ff width=5'");
    for (int y = 20; y <= 30; ++y) {
        EXPECT_EQ(wide.At(50, y) == 0x0000FF, y >= 23 && y <= 27) << y;
    }
}

TEST_F(Program, CoastsBordersAndLinesHavePensOfTheirOwn) {
    Write("second.geojson",
          R"({"type": "Polygon", "coordinates": [[[50, 10], [90, 10], [90, 40], [50, 40], [50, 10]]]})");
    Write("first.geojson",
          R"({"type": "Polygon", "coordinates": [[[10, 10], [50, 10], [50, 40], [10, 40], [10, 10]]]})");
    Write("line.geojson", R"({"type": "LineString", "coordinates": [[0, 5], [100, 5]]})");
    const Picture picture = Render(
        "first.geojson second.geojson line.geojson --size 100x50 --bbox 0,0,100,50 --pen color=#00ff00 "
        "--coast-pen color=#ff0000 --border-pen 'type=3 style=23 color=#0000ff extra=#ffff00'");
    EXPECT_EQ(picture.At(10, 25), kRed);
    EXPECT_EQ(picture.At(30, 45), 0x00FF00U) << "lines keep the pen of all";
    EXPECT_EQ(picture.At(49, 25), 0x0000FFU) << "the casing of the border";
    EXPECT_EQ(picture.At(50, 25), 0xFFFF00U);
}

TEST_F(Program, RastersLieBelowTheMapWhereTheirPlaceSaysSo) {
    using Rows = std::vector<std::string>;
    WriteLetters("letters.bmp", {"rgbc", "myrg", "bcmy"});
    Write("letters.bpw", "10\n0\n0\r\n-10.0\n +15 \n25\n");  // covers 10..50, 0..30
    Write("line.geojson", R"({"type": "LineString", "coordinates": [[30, 15], [100, 15]]})");
    const struct {
        const char* arguments;
        Rows expected;
    } rows[] = {
        {"letters.bmp --bbox 0,-10,60,30", {".rgbc.", ".myrg.", ".bcmy.", "......"}},
        {"letters.bmp --bbox 0,-10,60,30 --rotate 180", {"......", ".ymcb.", ".grym.", ".cbgr."}},
        {"--raster letters.bmp,0,0,80,60 --bbox 0,0,60,40", {"mmyyrr", "mmyyrr", "bbccmm", "bbccmm"}},
        {"letters.bmp --raster letters.bmp,0,-10,40,20 --bbox 0,-10,60,30",
         {".rgbc.", "rgbcg.", "myrgy.", "bcmy.."}},
        {"--bbox 20,0,80,40 letters.bmp line.geojson --pen 'color=#ff00ff width=7'",
         {"......", "gbc...", "ymmmmm", "cmy..."}},
        {"--raster letters.bmp,-1e14,-1e14,1e14,1e14 --bbox -30,-20,30,20",
         {"yyyrrr", "yyyrrr", "yyyrrr", "yyyrrr"}},
    };
    for (const auto& row : rows) {
        const Picture picture = Render(std::string(row.arguments) + " --size 60x40");
        EXPECT_EQ(Letters(picture, 5, 5, 10), row.expected) << row.arguments;
    }
}

TEST_F(Program, ARasterLooksTheSameByBlockAndByRow) {
    WriteLetters("letters.bmp", {"rgbcmy", "myrgbc", "bcmyrg", "gggrrr"});
    const std::string view = "--raster letters.bmp,1.0125,0.5125,4.0125,3.5125 --bbox 0,0,8,4 --size 160x80";
    const Picture block = Render(view);
    EXPECT_GT(std::count(block.pixels.begin(), block.pixels.end(), kRed), 100);
    EXPECT_EQ(block.pixels, Render(view + " --rotate 1e-9").pixels);
}

TEST_F(Program, AreasTakePatternsAndPointsSymbols) {
    using Rows = std::vector<std::string>;
    WriteLetters("tile.bmp", {"rg", "by"});
    const Picture tiled = Render(
        "square.geojson --size 100x50 --bbox 0,0,100,50 --pen type=0 --brush 'type=3 pattern=tile.bmp'");
    const Rows tiles = Letters(tiled, 0, 0, 1);
    EXPECT_EQ(tiles[0].substr(0, 52), "rgrgrgrgrgrgrgrgrgrgrgrgrgrgrgrgrgrgrgrgrgrgrgrgrg..");
    EXPECT_EQ(tiles[49].substr(0, 4), "byby");

    WriteLetters("sign.bmp", {"mrm", "gbg", "mcm"});
    const std::string view = "square.geojson --size 100x50 --bbox 0,0,100,50 --brush type=0 --pen type=0 ";
    const struct {
        const char* symbol;
        Rows expected;  // about (95, 5)
    } rows[] = {
        {"--symbol sign.bmp", {".....", "..r..", ".gbg.", "..c..", "....."}},
        {"--symbol sign.bmp,0000ff", {".....", ".mrm.", ".g.g.", ".mcm.", "....."}},
    };
    for (const auto& row : rows) {
        Rows around = Letters(Render(view + row.symbol), 93, 3, 1);
        around.resize(5);
        for (std::string& line : around)
            line.resize(5);
        EXPECT_EQ(around, row.expected) << row.symbol;
    }
}

TEST_F(Program, APageHasWhiteMarginsAndTheMapBetween) {
    WriteLetters("sign.bmp", {"r"});
    const Picture page = Render(
        "square.geojson --page 'width=100 height=60 dpi=254 margin=5' --bbox 0,0,90,50 --brush color=#00ff00 "
        "--pen type=0 --symbol sign.bmp,ffffff");
    ASSERT_EQ(page.width, 1000);
    ASSERT_EQ(page.height, 600);
    const struct {
        int x, y;
        std::uint32_t color;
    } rows[] = {
        {0, 0, 0xFFFFFF},    {49, 300, 0xFFFFFF},  {50, 549, 0x00FF00}, {50, 550, 0xFFFFFF},
        {549, 60, 0x00FF00}, {950, 300, 0xFFFFFF}, {500, 49, 0xFFFFFF}, {999, 599, 0xFFFFFF},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(page.At(row.x, row.y), row.color) << row.x << ", " << row.y;
    }
    EXPECT_NE(page.At(949, 300), 0xFFFFFFU);
    const Picture dotted = Render(
        "square.geojson --page 'width=100 height=60 dpi=254 margin=0' --bbox 0,0,100,50 --symbol "
        "sign.bmp,ffffff --brush type=0");
    EXPECT_EQ(std::count(dotted.pixels.begin(), dotted.pixels.end(), kRed), 9) << "a dot of 96 an inch";
}

TEST_F(Program, MetricPensFollowTheScale) {
    Write("line.geojson", R"({"type": "LineString", "coordinates": [[0, 0.025], [0.1, 0.025]]})");
    // 0.1 degrees are 11132 metres on 100 pixels: 1113 metres are ten of them.
    const Picture picture =
        Render("line.geojson --size 100x50 --bbox 0,0,0.1,0.05 --pen 'color=#0000ff width=1113 scaled=1'");
    int rows = 0;
    for (int y = 0; y < 50; ++y) {
        rows += picture.At(50, y) == 0x0000FF;
    }
    EXPECT_EQ(rows, 10);
}

TEST_F(Program, IslandsSmallerThanAPixelStayVisible) {
    Write("islets.geojson", R"({"type": "GeometryCollection", "geometries": [
        {"type": "Polygon", "coordinates": [[[10.2, 10.2], [10.3, 10.2], [10.3, 10.3], [10.2, 10.2]]]},
        {"type": "Polygon", "coordinates": [[[30.2, 10.2], [30.2, 10.2], [30.2, 10.2], [30.2, 10.2]]]}]})");
    const Picture picture =
        Render("islets.geojson --size 50x20 --bbox 0,0,50,20 --pen color=#ff0000 --brush color=#ff0000");
    EXPECT_EQ(picture.At(10, 10), kRed);
    EXPECT_EQ(picture.At(30, 10), kRed);
    EXPECT_LE(std::count(picture.pixels.begin(), picture.pixels.end(), kRed), 4);
}

TEST_F(Program, MapsInOtherReferenceSystemsAreBroughtTogether) {
    Write("mercator.geojson", R"({"type": "FeatureCollection",
        "crs": {"type": "name", "properties": {"name": "urn:ogc:def:crs:EPSG::3857"}}, "features": [
        {"type": "Feature", "properties": {}, "geometry": {"type": "Point", "coordinates": [5565974.54, 0]}}]})");
    const Picture picture = Render(
        "square.geojson mercator.geojson --size 100x50 --bbox 0,-25,100,25 --pen type=0 --brush "
        "color=#ff0000");
    EXPECT_EQ(picture.At(50, 26), kRed);
    EXPECT_NE(picture.At(60, 26), kRed);
}

TEST_F(Program, ABoxFarFromTheDataIsOpenWater) {
    const Picture picture = Render("square.geojson --size 10x10 --bbox 1e9,1e9,1.1e9,1.1e9 --rotate 5");
    EXPECT_EQ(std::count(picture.pixels.begin(), picture.pixels.end(), picture.At(0, 0)), 100);
}

TEST_F(Program, HostileCoordinatesEndInAPicture) {
    Write("far.geojson", R"({"type": "Feature", "properties": {"name": "\ud800 far"}, "geometry":
        {"type": "MultiPolygon", "coordinates": [[[[1e15, 0], [-1e15, 1e15], [3, 1e300], [7, -1e15], [1e15, 0]]],
        [[[0, 0], [1e-300, 1], [0, 2], [0, 0]]]]}})");
    for (const char* view :
         {"", "--rotate 45", "--bbox 1e15,0,1.000001e15,1e9 --graticule 1e7", "--bbox 0,0,1e-290,1e-290",
          "--size 1x9999 --rotate 1e300", "--perspective 1e20 --rotate 33",
          "--perspective 1e6 --center 1e15,3", "--perspective 1 --bbox 0,-9,9,9 --graticule 1 --rotate 77",
          "--perspective 5e6 --scale 1e4 --size 9999x1 --center 3,0",
          "--labels name --font 'height=1000000 framed=1'", "--labels name --rotate 45 --font halo=7",
          "--labels name --bbox -1,-1,1,1 --font 'height=99999 scaled=1'"}) {
        const Picture picture = Render(std::string("far.geojson ") + view);
        EXPECT_FALSE(picture.pixels.empty()) << view;
    }
}

TEST_F(Program, LabelsStandInTheirAreas) {
    Write("names.geojson", kNamed);
    const std::string view = "names.geojson --size 400x200 --bbox 0,0,100,50 --brush color=#ffffff ";
    const Picture bare = Render(view);
    const struct {
        const char* font;
        int pixels;  // that the font colours, at least
    } rows[] = {{"color=#ff0000 halo=0", 20},
                {"color=#0000ff halo=3 halocolor=#ff0000", 60},
                {"color=#ff0000 framed=1 angle=90 halo=0", 100},
                {"color=#ff0000 name=NoSuchFace height=24 underline=1", 100}};
    for (const auto& row : rows) {
        const Picture picture = Render(view + "--labels NAME --font '" + row.font + "'");
        int colored = 0;
        int strayed = 0;
        for (int y = 0; y < 200; ++y) {
            for (int x = 0; x < 400; ++x) {
                const bool isLabel = x > 40 && x < 160 && y > 30 && y < 170;
                strayed += !isLabel && picture.At(x, y) != bare.At(x, y) ? 1 : 0;
                colored += picture.At(x, y) == kRed ? 1 : 0;
            }
        }
        EXPECT_GE(colored, row.pixels) << row.font;
        EXPECT_EQ(strayed, 0) << row.font;
    }
}

TEST_F(Program, BadCallsSayOneLineAndLeaveNothing) {
    Write("junk.geojson", "this is no map");
    Write("short.geojson", std::string(kSquare).substr(0, sizeof kSquare / 2));
    Write("empty.geojson", R"({"type": "FeatureCollection", "features": []})");
    Write("nothing.geojson",
          R"({"type": "Feature", "properties": {}, "geometry": {"type": "Polygon", "coordinates": []}})");
    Write("names.geojson", kNamed);
    WriteLetters("dot.bmp", {"r"});
    WriteLetters("turned.bmp", {"r"});
    Write("turned.wld", "1\n0.1\n0\n-1\n0\n0\n");
    WriteLetters("upside.bmp", {"r"});
    Write("upside.bmpw", "1\n0\n0\n1\n0\n0\n");
    WriteLetters("brief.bmp", {"r"});
    Write("brief.bpw", "1\n0\n0\n-1\n0\n");
    WriteLetters("far.bmp", {"r"});
    Write("far.bpw", "1\n0\n0\n-1\n1e16\n0\n");
    Write("cut.bmp", ReadFile(At("dot.bmp")).substr(0, 55));
    Write("junk.bmp", "this is no picture");
    const std::string old = "an older picture";
    Write("kept.png", old);
    fs::create_directory(At("folder.png"));
    const std::vector<std::string> before = FileNames();

    const struct {
        const char* arguments;
        const char* mention;
    } rows[] = {
        {"render missing.geojson -o out.png", "missing.geojson"},
        {"render junk.geojson -o out.png", "junk.geojson"},
        {"render short.geojson -o kept.png", "short.geojson"},
        {"render empty.geojson -o out.png", "empty.geojson"},
        {"render nothing.geojson -o out.png", "nothing.geojson"},
        {"render square.geojson -o out.png --size 0x0", "0x0"},
        {"render square.geojson -o out.png --size 32000x32000", "32000"},
        {"render square.geojson -o out.png --bbox 10,0,0,10", "10,0,0,10"},
        {"render square.geojson -o out.png --bbox nan,0,1,1", "nan"},
        {"render square.geojson -o out.png --bbox -1e308,-1e308,1e308,1e308", "large"},
        {"render square.geojson -o out.png --rotate nan", "nan"},
        {"render square.geojson -o out.png --graticule 1e-9", "net"},
        {"render square.geojson -o out.png --perspective 0", "perspective '0'"},
        {"render square.geojson -o out.png --perspective 1e-320", "small"},
        {"render square.geojson -o out.png --scale -5", "scale '-5'"},
        {"render square.geojson -o out.png --bbox 0,0,1,1 --center 5,5", "center"},
        {"render square.geojson -o nowhere/out.png", "nowhere"},
        {"render square.geojson -o folder.png", "folder.png"},
        {"render square.geojson -o \xFF.png", "UTF-8"},
        {"render square.geojson -o out.gif", "out.gif"},
        {"render square.geojson", "output"},
        {"render -o out.png", "maps"},
        {"render square.geojson -o out.png --sized 5x5", "--sized"},
        {"render dot.bmp -o out.png", "world file"},
        {"render turned.bmp -o out.png", "turned.wld"},
        {"render upside.bmp -o out.png", "upside.bmpw"},
        {"render brief.bmp -o out.png", "line 6"},
        {"render far.bmp -o out.png", "far.bpw"},
        {"render nothere.bmp -o out.png", "no such file"},
        {"render square.geojson --raster cut.bmp,0,0,1,1 -o out.png", "cut.bmp"},
        {"render square.geojson --raster junk.bmp,0,0,1,1 -o out.png", "junk.bmp"},
        {"render square.geojson --raster dot.bmp,1,0,0,1 -o out.png", "raster '1,0,0,1'"},
        {"render square.geojson --raster dot.bmp,0,0,1e16,1 -o out.png", "dot.bmp"},
        {"render square.geojson --symbol junk.bmp -o out.png", "junk.bmp"},
        {"render square.geojson --symbol dot.bmp,red -o out.png", "'red'"},
        {"render square.geojson --brush 'type=3 pattern=cut.bmp' -o out.png", "cut.bmp"},
        {"render square.geojson --page 'dpi=2400 width=5000' -o out.png", "page of"},
        {"render square.geojson --labels name -o out.png", "'name' and no other"},
        {"render names.geojson square.geojson --labels title -o out.png", "known are Name, rank"},
        {"render --raster dot.bmp,0,0,1,1 --labels name -o out.png", "'name'"},
        {"render names.geojson --font height=9 -o out.png", "--labels"},
        {"render square.geojson --page dpi=96 --size 5x5 -o out.png", "--size"},
        {"pens -o out.png --sheet colours", "colours"},
        {"pens -o out.gif", "out.gif"},
        {"labels --sheet styles", "--sheet"},
    };
    for (const auto& row : rows) {
        const Outcome outcome = Run(row.arguments);
        EXPECT_EQ(outcome.status, 2) << row.arguments;
        EXPECT_EQ(outcome.out, "") << row.arguments;
        EXPECT_EQ(outcome.err.find("zulmap: "), 0U) << row.arguments << ": " << outcome.err;
        EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << row.arguments << ": " << outcome.err;
        EXPECT_NE(outcome.err.find(row.mention, 8), outcome.err.npos) << row.arguments << ": " << outcome.err;
        EXPECT_EQ(FileNames(), before) << row.arguments;
    }
    EXPECT_EQ(ReadFile(At("kept.png")), old);
    EXPECT_EQ(Run("").status, 2);
    EXPECT_EQ(Run("paint square.geojson").status, 2);
}

}  // namespace
