#include <gtest/gtest.h>

#include <numeric>
#include <random>

#include "tests/canvas/canvas_testing.h"

namespace {

using namespace zultest;
using zul::CPen;
using zul::TLongPoint;
using Line = std::vector<TLongPoint>;

struct Style {
    int style, width, dash;
    int endType = 0;
};

void Select(Surface& surface, const Style& style) {
    CPen& pen = surface.Canvas.GetPen();
    pen.Create(CPen::PenExtended, style.style, style.width, Red, style.endType, style.dash, Green);
    pen.Validate(&surface.Canvas);
}

Line Moved(Line line, int dx, int dy) {
    for (TLongPoint& point : line)
        point = {point.X + dx, point.Y + dy};
    return line;
}

void Put(Surface& surface, const Line& line, bool closed) {
    const auto count = static_cast<std::int32_t>(line.size());
    if (closed) {
        surface.Canvas.Polygon(line.data(), count);
    } else {
        surface.Canvas.Polyline(line.data(), count);
    }
}

Picture Drawn(const Style& style, const Line& line, bool closed = false, int size = 120,
              int rop = zul::CBackground::RopCopy) {
    Surface surface(size, size);
    surface.Canvas.GetBackground().SetRop(rop);
    surface.Canvas.GetBrush().SetType(zul::CBrush::BrushNone);
    Select(surface, style);
    Put(surface, line, closed);
    return surface.Look();
}

/// "r15 .3 r15": what a row of pixels consists of.
std::string Runs(const std::string& row) {
    std::string runs;
    for (std::size_t i = 0, end; i < row.size(); i = end) {
        end = std::min(row.find_first_not_of(row[i], i), row.size());
        runs += (i ? " " : "") + std::string(1, row[i]) + std::to_string(end - i);
    }
    return runs;
}

std::string Column(const Picture& picture, std::size_t x) {
    std::string column;
    for (const std::string& row : picture)
        column += row[x];
    return column;
}

TEST(ExtendedPen, DashesAndTicksMeasureInPixels) {
    struct Row {
        Style style;
        Line line;
        int above;  ///< the row looked at lies so far above the line
        const char* runs;
    };
    const Line east = {{10, 60}, {80, 60}}, west = {{80, 60}, {10, 60}};
    const Line down = {{60, 10}, {60, 80}}, up = {{60, 80}, {60, 10}};
    const Row rows[] = {
        {{0, 3, 5}, east, 0, ".10 r15 .3 r15 .3 r15 .3 r15 .41"},
        {{0, 3, 5}, west, 0, ".12 r15 .3 r15 .3 r15 .3 r15 .39"},
        {{0, 1, 8}, east, 0, ".10 r8 .2 r8 .2 r8 .2 r8 .2 r8 .2 r8 .2 r8 .42"},
        {{19, 1, 20}, east, 0, ".10 g20 r20 g20 r10 .40"},
        {{20, 2, 10}, east, 0, ".9 r72 .39"},
        {{20, 2, 10}, east, 2, ".11 r18 .22 r18 .51"},
        {{7, 1, 20}, east, 1, ".13 r1 .20 r1 .20 r1 .20 r1 .43"},
        // Of an odd width a pixel longer where the coordinate is greater; the last one of a stroke is not
        // drawn.
        {{7, 1, 20}, east, -3, ".13 r1 .20 r1 .20 r1 .20 r1 .43"},
        {{7, 1, 20}, west, 2, ".13 r1 .20 r1 .20 r1 .20 r1 .43"},
        {{7, 1, 20}, down, 47, ".58 r5 .57"},
        {{7, 1, 20}, up, -16, ".59 r5 .56"},
        {{34, 1, 20}, east, 2, ".13 r1 .20 r1 .20 r1 .20 r1 .43"},
        {{34, 2, 11}, east, 4, ".16 r2 .22 r2 .22 r2 .54"},
        {{35, 2, 11}, east, -3, ".16 r2 .22 r2 .22 r2 .54"},
        {{34, 2, 11}, east, -3, ".120"},
        {{12, 3, 6}, east, 3, ".10 r3 .12 r3 .3 r3 .12 r3 .3 r3 .12 r3 .3 r3 .44"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << "style " << row.style.style << " width " << row.style.width);
        EXPECT_EQ(Runs(Drawn(row.style, row.line)[static_cast<std::size_t>(60 - row.above)]), row.runs);
    }
    Line south = east;
    for (TLongPoint& point : south)
        std::swap(point.X, point.Y);
    EXPECT_EQ(Runs(Column(Drawn(rows[0].style, south), 60)), rows[0].runs);
}

TEST(ExtendedPen, ScrolledFramesShowTheSameMarksOnTheSameGround) {
    constexpr int Large = 250, Small = 90, Border = 150, Scroll = 37, Unit = 5;
    std::mt19937 random(37);
    for (int i = 0; i < 43 * 6; ++i) {
        const Style style{i % 43, 1 + i / 43 % 4, 1 + static_cast<int>(random() % 14), 8 + 1};
        const bool closed = random() % 3 == 0;
        Line line(3 + random() % 20);
        for (TLongPoint& point : line)
            point = {static_cast<int>(random() % 300) - 100, static_cast<int>(random() % 300) - 100};
        // This picture has all of what the frames show a part of.
        const Picture whole = Drawn(style, Moved(line, Border, Border), closed, Large);

        Surface frame(Small, Small);
        zul::CScaler scaler;
        scaler.InitScaler({-9999, -9999, 9999, 9999}, {Small, Small}, {Small, Small}, 40.0, 1.0, 0.001);
        scaler.SetVisibleBox(0, 0, Small * Unit, Small * Unit, true);
        frame.Canvas.SetScaler(&scaler);
        frame.Canvas.SetListClipping(false);
        frame.Canvas.GetBrush().SetType(zul::CBrush::BrushNone);
        zul::CPoints points(false);
        for (const TLongPoint& point : line)
            points.Append(static_cast<zul::TCoord>(point.X * Unit),
                          static_cast<zul::TCoord>((Small - point.Y) * Unit));
        Select(frame, style);
        for (const std::size_t scrolled : {0, Scroll}) {
            std::int32_t dx = -Scroll, dy = Scroll;  // the ground moves right and down
            if (scrolled != 0) scaler.Scroll(&frame.Canvas, dx, dy);
            frame.Wipe();
            if (closed) {
                frame.Canvas.Polygon(&points);
            } else {
                frame.Canvas.Polyline(&points);
            }
            const Picture part = frame.Look();
            for (std::size_t y = 0; y < Small; ++y)
                ASSERT_EQ(part[y], whole[y + Border - scrolled].substr(Border - scrolled, Small))
                    << "style " << style.style << " width " << style.width << " dash " << style.dash
                    << " case " << i << " row " << y << " scrolled " << scrolled;
        }
    }
}

TEST(ExtendedPen, LinesFromFarAwayKeepStep) {
    for (int style = 0; style < 43; ++style) {
        for (const int width : {1, 3}) {
            // All steps of a dash length of 8 divide this.
            const int period = 55440 * width;
            const Line near = {{-90, 20}, {700, 20}, {700, 60}, {-90, 60}};
            Line far = near;
            far[0].X -= 2000000000 / period * period;
            // On the way back from afar, too.
            far.insert(far.begin() + 1, {-90 - period, 20});
            far.insert(far.begin() + 3, {{700 + period * 9, 20}, {700, 20}});
            EXPECT_EQ(Drawn({style, width, 8}, far), Drawn({style, width, 8}, near)) << style;
        }
    }
}

TEST(ExtendedPen, CornersAndRepeatedPointsDoNotInterrupt) {
    std::mt19937 random(5);
    for (int style = 0; style < 43; ++style) {
        Line cut = {{5, 60}};
        while (cut.back().X < 115)
            cut.push_back({std::min<int>(115, cut.back().X + static_cast<int>(random() % 7)), 60});
        const Style pen{style, 1 + style % 3, 7};
        EXPECT_EQ(Drawn(pen, cut), Drawn(pen, {{5, 60}, {115, 60}})) << style;

        const Line ring = {{20, 15}, {98, 25}, {90, 95}, {33, 80}};
        Line walked = ring;
        walked.push_back(ring[0]);
        EXPECT_EQ(Drawn(pen, ring, true), Drawn(pen, walked)) << style << ": the closing segment";
        Line twice;
        for (const TLongPoint& point : ring)
            twice.insert(twice.end(), 2, point);
        EXPECT_EQ(Drawn(pen, ring, true, 120, zul::CBackground::RopXor),
                  Drawn(pen, twice, true, 120, zul::CBackground::RopXor))
            << style << ": repeated points under exclusive-or";
    }
}

TEST(ExtendedPen, SinglePointsDrawNothing) {
    Surface surface(40, 40);
    for (const auto type : {CPen::PenSolid, CPen::PenExtended}) {
        surface.Canvas.GetPen().Create(type, 0, 3, Red, 3, 5, 0);
        surface.Canvas.GetPen().Validate(&surface.Canvas);
        const TLongPoint point{20, 20};
        for (const TLongPoint* points : {&point, static_cast<const TLongPoint*>(nullptr)})
            for (const int count : {1, 0, -1, INT32_MIN}) {
                surface.Canvas.Polyline(points, count);
                surface.Canvas.GetPen().Polygon(points, count);
                surface.Canvas.GetPen().DrawEndings(points, count, true);
            }
    }
    EXPECT_EQ(surface.Look(), surface.Blank());
}

/// Device objects that a figure needs beside those of the pen itself, at one time.
int Needed(int style) {
    const std::string ownOnly = " 19 20 21 23 31 33 42 ", twoPens = " 7 10 11 12 13 14 25 38 39 40 41 ";
    const std::string name = " " + std::to_string(style) + " ";
    if (style == 0) return 2;  // the pen and the brush of the endings
    return ownOnly.find(name) != std::string::npos ? 0 : twoPens.find(name) != std::string::npos ? 2 : 1;
}

TEST(ExtendedPen, FailureLeavesTheDeviceAsItWas) {
    const Line line = {{5, 5}, {30, 9}, {12, 30}};
    for (int style = 0; style < 43; ++style) {
        Surface surface(40, 40);
        Select(surface, {style, 2, 4, 5});
        if (surface.Canvas.GetPen().GetType() != CPen::PenExtended) continue;
        surface.Canvas.GetBrush().Validate(&surface.Canvas);
        const HDC device = surface.Canvas.GetHandle();
        const HGDIOBJ pen = ::GetCurrentObject(device, OBJ_PEN),
                      brush = ::GetCurrentObject(device, OBJ_BRUSH);
        FullDevice full;
        for (int room = 0; room <= 2; ++room) {
            if (room != 0) full.FreeOne();
            Reports reports;
            Put(surface, line, true);
            const bool failed = !reports.List.empty();
            if (failed) {
                EXPECT_EQ(reports.Only(), "3: Can't create pen handle <zul::CPen::DrawPoly()>") << style;
            }
            EXPECT_EQ(failed, room < Needed(style)) << style;
            ThrowingScope throwing;
            if (failed) {
                EXPECT_THROW(Put(surface, line, true), zul::CRunError);
            }
            EXPECT_EQ(::GetCurrentObject(device, OBJ_PEN), pen) << style;
            EXPECT_EQ(::GetCurrentObject(device, OBJ_BRUSH), brush) << style;
            POINT position{};
            ::MoveToEx(device, 0, 0, &position);
            EXPECT_TRUE(position.x == 5 && position.y == 5) << style;
        }
    }
}

TEST(ExtendedPen, EndingsAreWhatTheEndTypeSays) {
    struct Row {
        std::uint32_t endType;
        bool closed;
        int width;
        const char* call;  ///< the last of this name
        Numbers numbers;
        int calls;
    };
    const Line line = {{10, 10}, {90, 10}, {90, 70}};
    const Row rows[] = {
        {0, false, 2, "Ellipse", {}, 0},
        {1, false, 1, "Ellipse", {7, 7, 13, 13}, 1},
        {1, false, 2, "Ellipse", {6, 6, 14, 14}, 1},
        {2, false, 3, "Ellipse", {84, 64, 96, 76}, 1},
        {3, true, 2, "Ellipse", {6, 6, 14, 14}, 2},
        {2 | 8, false, 2, "Ellipse", {}, 0},                     // the arrow wins
        {8, false, 2, "Polyline", {2, 93, 56, 90, 70}, 3},       // 14 long, 12 degrees
        {8 | 16, false, 2, "Polyline", {2, 97, 58, 90, 70}, 3},  // 30 degrees
        {8 | 32 | 10 << 16 | 45u << 24, false, 1, "Polygon", {3, 90, 70, 83, 63, 97, 63}, 1},
        {4 | 32 | 10 << 16 | 90u << 24, false, 1, "Polygon", {3, 10, 10, 10, 20, 10, 0}, 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.endType);
        Surface surface(100, 80);
        CPen& pen = surface.Canvas.GetPen();
        pen.Create(CPen::PenSolid, 0, row.width, Red, static_cast<std::int32_t>(row.endType), 5, 0);
        pen.Validate(&surface.Canvas);
        device::Recorder recorder;
        surface.Canvas.Polyline(line.data(), 3);
        if (row.closed) {
            recorder.Clear();
            pen.DrawEndings(line.data(), 3, true);
        }
        EXPECT_EQ(Last(recorder, row.call).size(), row.numbers.size());
        EXPECT_EQ(Last(recorder, row.call), row.numbers);
        EXPECT_EQ(recorder.Count(row.call), row.calls);
    }
}

TEST(ExtendedPen, FiguresOfTheCanvasReachThePen) {
    Surface surface(60, 60);
    Select(surface, {23, 1, 5});
    surface.Canvas.Rectangle(40, 40, 10, 10);
    const Picture rectangle = surface.Look();
    EXPECT_EQ(Runs(rectangle[25]), ".9 r1 g1 r1 .27 r1 g1 r1 .18");
    surface.Wipe();
    surface.Canvas.GetBrush().Create(zul::CBrush::BrushSolid, Blue, 0);
    surface.Canvas.Rectangle(10, 10, 40, 40);
    EXPECT_EQ(Runs(surface.Look()[25]), ".9 r1 g1 r1 b27 r1 g1 r1 .18") << "filled once, by the base line";
    surface.Wipe();
    surface.Canvas.MoveTo(5, 5);
    surface.Canvas.LineTo(50, 5);
    surface.Canvas.LineTo(5, 50);
    EXPECT_EQ(Letter(surface.Canvas.GetPixel(5, 30)), 'g') << "both lines start at the same place";
}

}  // namespace
