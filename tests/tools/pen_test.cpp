#include "zul/tools/pen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "tests/canvas/canvas_testing.h"

namespace {

using namespace zultest;
using zul::CCanvas;
using zul::CPen;

/// Style, width and colour of a device pen.
using MadePen = std::array<std::int64_t, 3>;

struct PenRow {
    int type, style, width;
    std::vector<MadePen> pens;  ///< in the order they are made; the first is the one selected
};

// Colour red, second colour green throughout.
const PenRow PenRows[] = {
    {CPen::PenNone, 0, 4, {{PS_NULL, 0, 0}}},
    {CPen::PenSolid, 0, 0, {{PS_SOLID, 1, Red}}},
    {CPen::PenDashed, 0, 1, {{PS_DASH, 1, Red}}},
    {77, 0, 2, {{PS_SOLID, 2, Red}}},
    {CPen::PenExtended, 0, 2, {{PS_NULL, 2, Red}}},
    {CPen::PenExtended, 8, 2, {{PS_SOLID, 2, Red}}},
    {CPen::PenExtended, 12, 2, {}},  // the stock white one
    {CPen::PenExtended, 38, 2, {{PS_NULL, 1, 0}}},
    {CPen::PenExtended, 19, 2, {{PS_SOLID, 2, Red}, {PS_SOLID, 2, Green}}},
    {CPen::PenExtended, 20, 2, {{PS_SOLID, 2, Red}, {PS_SOLID, 4, Red}}},
    {CPen::PenExtended, 21, 2, {{PS_SOLID, 2, Red}, {PS_SOLID, 4, Green}}},
    {CPen::PenExtended, 33, 2, {{PS_SOLID, 6, Red}, {PS_SOLID, 2, Green}}},
    {CPen::PenExtended, 31, 2, {{PS_SOLID, 10, Red}, {PS_SOLID, 6, Green}, {PS_SOLID, 2, Red}}},
    {CPen::PenExtended, 42, INT32_MAX, {{PS_SOLID, INT32_MAX, Red}, {PS_SOLID, INT32_MAX, Green}}},
};

TEST(Pen, ValidateMakesWhatTypeAndStyleAskForAndReleaseEndsIt) {
    CCanvas canvas;
    canvas.CreateMemoryCanvas();
    const HGDIOBJ former = ::GetCurrentObject(canvas.GetHandle(), OBJ_PEN);
    const int before = device::LiveHandles();
    // Once with a release after each pen, once from pen to pen.
    for (const bool release : {true, false}) {
        for (const PenRow& row : PenRows) {
            SCOPED_TRACE(testing::Message() << "type " << row.type << " style " << row.style);
            canvas.GetPen().Create(static_cast<CPen::TPenType>(row.type), row.style, row.width, Red, 0, 5,
                                   Green);
            device::Recorder recorder;
            canvas.GetPen().Validate(&canvas);
            std::vector<MadePen> made;
            for (const device::RecordedCall& call : recorder.Calls())
                if (call.name == "CreatePen")
                    made.push_back({call.arguments[0], call.arguments[1], call.arguments[2]});
            EXPECT_EQ(made, row.pens);
            EXPECT_EQ(device::LiveHandles() - before, static_cast<int>(made.size()));
            if (made.empty() || made[0][0] != PS_NULL) {
                const std::int64_t color = made.empty() ? White : made[0][2];
                EXPECT_EQ(SelectedPen(canvas).lopnColor, color);
            }
            if (!release) continue;
            canvas.GetPen().Release(&canvas);
            EXPECT_EQ(device::LiveHandles(), before);
            EXPECT_EQ(::GetCurrentObject(canvas.GetHandle(), OBJ_PEN), former);
        }
    }
}

TEST(Pen, StyleWithoutPensTurnsSolidForGood) {
    for (const int style : {-1, 1, 2, 3, 4, 5, 6, 15, 16, 17, 18, 22, 43, 1000000}) {
        CCanvas canvas;
        canvas.CreateMemoryCanvas();
        CPen pen;
        pen.Create(CPen::PenExtended, style, 3, Red, 0, 5, 0);
        const std::uint64_t changes = zul::CClient::GetModificationCount();
        pen.Validate(&canvas);
        EXPECT_EQ(pen.GetType(), CPen::PenSolid) << style;
        EXPECT_EQ(zul::CClient::GetModificationCount(), changes + 1) << style;
        EXPECT_EQ(SelectedPen(canvas).lopnWidth.x, 3) << style;
        pen.Release(&canvas);
    }
}

TEST(Pen, OnlyTheRightSettersHaveThePenMadeAnew) {
    struct Row {
        const char* name;
        void (*change)(CPen&);
        bool remakesSolid, remakesExtended;
    };
    const Row rows[] = {
        {"width", [](CPen& pen) { pen.SetWidth(9); }, true, true},
        {"colour", [](CPen& pen) { pen.SetColor(Blue); }, true, true},
        {"style", [](CPen& pen) { pen.SetStyle(9); }, true, true},
        {"second colour", [](CPen& pen) { pen.SetExtraColor(Blue); }, false, true},
        {"dash length", [](CPen& pen) { pen.SetDashLength(9); }, false, true},
        {"ending", [](CPen& pen) { pen.SetEndType(9); }, false, false},
        {"unit", [](CPen& pen) { pen.SetScaled(true); }, false, false},
        {"same colour", [](CPen& pen) { pen.SetColor(Red); }, false, false},
    };
    for (const Row& row : rows) {
        for (const bool extended : {false, true}) {
            CCanvas canvas;
            canvas.CreateMemoryCanvas();
            CPen pen;
            pen.Create(extended ? CPen::PenExtended : CPen::PenSolid, 8, 2, Red, 0, 5, 0);
            pen.Validate(&canvas);
            row.change(pen);
            device::Recorder recorder;
            pen.Validate(&canvas);
            EXPECT_EQ(recorder.Count("CreatePen") > 0, extended ? row.remakesExtended : row.remakesSolid)
                << row.name << (extended ? " extended" : " solid");
            pen.Release(&canvas);
        }
    }
}

TEST(Pen, MetricWidthFollowsTheScaler) {
    struct Row {
        double pixelsPerMetre;
        std::int32_t width, pixels;
    };
    const Row rows[] = {{1.5, 3, 5}, {1.5, -3, -5}, {0.1, 3, 0}, {2.0, 1 << 30, 0x7FFFFFFF}, {1.0, 7, 7}};
    for (const Row& row : rows) {
        zul::CScaler scaler, unset;
        // 100 map units of one metre each fill the screen.
        const auto screen = static_cast<std::int32_t>(100 * row.pixelsPerMetre);
        scaler.InitScaler({0, 0, 100, 100}, {screen, screen}, {screen, screen}, 40.0, 1.0, 0.001);
        CCanvas canvas;
        canvas.CreateMemoryCanvas();
        canvas.SetScaler(&scaler);
        CPen pen;
        EXPECT_EQ(pen.CalculatePixelWidth(&canvas, row.width), row.width) << "pixels stay pixels";
        pen.SetScaled(true);
        EXPECT_EQ(pen.CalculatePixelWidth(&canvas, row.width), row.pixels);
        pen.SetWidth(row.width);
        pen.Validate(&canvas);
        EXPECT_NE(SelectedPen(canvas).lopnWidth.x, 0) << "at least one pixel";
        canvas.SetScaler(&unset);
        EXPECT_EQ(pen.CalculatePixelWidth(&canvas, row.width), 0);
        EXPECT_EQ(pen.CalculatePixelWidth(nullptr, row.width), row.width)
            << "a pixel a metre without a scaler";
    }
}

TEST(Pen, BlackLinesModeActsOnlyWhileThePenIsMade) {
    CCanvas canvas;
    canvas.CreateMemoryCanvas();
    canvas.SetBlackLinesMode(true);
    for (const auto type : {CPen::PenSolid, CPen::PenExtended}) {
        CPen pen;
        pen.Create(type, 23, 1, Red, 0, 5, Green);
        pen.Validate(&canvas);
        EXPECT_EQ(SelectedPen(canvas).lopnColor, 0u);
        EXPECT_EQ(pen.GetColor(), Red);
        pen.Release(&canvas);
    }
}

TEST(Pen, StyleQuestionsOfTheDialogs) {
    const std::vector<int> withoutEndings = {-1, 0, 1, 3, 7, 15, 31, 43};
    const std::vector<int> withExtraColor = {19, 21, 22, 23, 31, 32, 33, 42};
    const std::vector<int> withoutDashes = {-1, 23, 31, 42, 43};
    const auto contains = [](const std::vector<int>& list, int value) {
        return std::find(list.begin(), list.end(), value) != list.end();
    };
    for (int style = -1; style <= 43; ++style) {
        EXPECT_EQ(CPen::NeedEndings(style), !contains(withoutEndings, style)) << style;
        EXPECT_EQ(CPen::NeedExtraColor(style), contains(withExtraColor, style)) << style;
        EXPECT_EQ(CPen::NeedDashLength(style), !contains(withoutDashes, style)) << style;
        CPen pen;
        pen.SetStyle(style);
        EXPECT_TRUE(pen.IsEnabledEndings()) << style;
        pen.SetType(CPen::PenExtended);
        EXPECT_EQ(pen.IsEnabledEndings(), style >= 0 && style <= 5) << style;
    }
}

TEST(Pen, FailureToMakeThePenIsReportedAndLeavesItToBeMade) {
    struct Row {
        int type, style, typeAfterwards;
        const char* report;
    };
    const Row rows[] = {
        {CPen::PenSolid, 0, CPen::PenSolid, "3: Can't create pen handle <zul::CPen::Validate()>"},
        {CPen::PenExtended, 31, CPen::PenExtended,
         "3: Can't create pen handle <zul::CPen::ValidateKelvornPen()>"},
        {CPen::PenExtended, 3, CPen::PenSolid, "3: Can't create pen handle <zul::CPen::Validate()>"},
    };
    for (const Row& row : rows) {
        CCanvas canvas;
        canvas.CreateMemoryCanvas();
        CPen& pen = canvas.GetPen();
        pen.Create(static_cast<CPen::TPenType>(row.type), row.style, 1, Red, 0, 5, Green);
        {
            FullDevice full;
            {
                Reports reports;
                pen.Validate(&canvas);
                EXPECT_EQ(reports.Only(), row.report);
            }
            ThrowingScope throwing;
            canvas.SetBlackLinesMode(true);
            EXPECT_THROW(pen.Validate(&canvas), zul::CRunError);
            canvas.SetBlackLinesMode(false);
        }
        EXPECT_EQ(pen.GetType(), row.typeAfterwards);
        EXPECT_EQ(pen.GetColor(), Red) << "still black after the throw";
        pen.Validate(&canvas);
        EXPECT_EQ(SelectedPen(canvas).lopnColor, static_cast<COLORREF>(Red));
    }
}

TEST(Pen, HalfMadeExtendedPenIsThrownAway) {
    CCanvas canvas;
    canvas.CreateMemoryCanvas();
    CPen pen;
    pen.Create(CPen::PenExtended, 31, 1, Red, 0, 5, Green);
    FullDevice full;
    for (int made = 1; made <= 2; ++made) {
        full.FreeOne();
        const int before = device::LiveHandles();
        Reports reports;
        pen.Validate(&canvas);
        EXPECT_EQ(reports.List.size(), 1u) << made << " of 3 pens";
        EXPECT_EQ(device::LiveHandles(), before);
        EXPECT_EQ(SelectedPen(canvas).lopnColor, 0u) << "the device keeps its own";
    }
}

TEST(Pen, ValidatedOnADetachedCanvasItIsStillFreed) {
    CCanvas canvas;
    for (const std::int32_t color : {Red, Green}) {
        canvas.GetPen().SetColor(color);
        canvas.GetPen().Validate(&canvas);
    }
    canvas.GetPen().Validate(nullptr);
    canvas.GetPen().Release(nullptr);
    canvas.GetPen().Release(&canvas);
}

TEST(Pen, ApplyCopiesEverySettingAndSurvivesNullAndItself) {
    CPen from, to;
    from.Create(CPen::PenExtended, 21, 7, Red, 3, 8, Green);
    from.SetScaled(true);
    EXPECT_FALSE(to.IsEqualSettings(&from));
    to.ApplyPen(&from);
    const std::uint64_t changes = zul::CClient::GetModificationCount();
    to.ApplyPen(&from);
    to.ApplyPen(nullptr);
    to.ApplyPen(&to);
    EXPECT_TRUE(to.IsEqualSettings(&from));
    EXPECT_FALSE(to.IsEqualSettings(nullptr));
    EXPECT_EQ(zul::CClient::GetModificationCount(), changes) << "equal settings are no change";
}

}  // namespace
