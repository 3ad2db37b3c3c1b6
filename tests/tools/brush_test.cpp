#include "zul/tools/brush.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/canvas/canvas_testing.h"

namespace {

using namespace zultest;
using zul::CBrush;

class BrushTest : public testing::Test {
protected:
    BrushTest() { m_Canvas.CreateMemoryCanvas(); }

    zul::CCanvas m_Canvas;
};

TEST_F(BrushTest, MakesWhatItsTypeAsksFor) {
    zul::CBitmap pattern;
    ASSERT_TRUE(pattern.Create(8, 8, 1, nullptr));
    struct Row {
        int type;
        bool withPattern, linesOnly;
        UINT style;
    };
    const Row rows[] = {
        {CBrush::BrushNone, false, false, BS_NULL},
        {CBrush::BrushSolid, false, false, BS_SOLID},
        {CBrush::BrushPattern, true, false, BS_PATTERN},
        {CBrush::BrushPattern, false, false, BS_NULL},
        {99, false, false, BS_SOLID},
        {CBrush::BrushSolid, false, true, BS_NULL},
        {CBrush::BrushPattern, true, true, BS_NULL},
    };
    for (const Row& row : rows) {
        CBrush brush;
        brush.SetColor(Red);
        brush.SetType(row.type);
        if (row.withPattern) brush.SetPattern(&pattern);
        m_Canvas.SetLinesOnlyMode(row.linesOnly);
        Reports reports;
        brush.Validate(&m_Canvas);
        EXPECT_EQ(SelectedBrush(m_Canvas).lbStyle, row.style) << row.type << row.withPattern << row.linesOnly;
        if (row.style == BS_SOLID) {
            EXPECT_EQ(SelectedBrush(m_Canvas).lbColor, static_cast<COLORREF>(Red));
        }
        EXPECT_TRUE(reports.List.empty());
        brush.Release(&m_Canvas);
    }
    EXPECT_EQ(SelectedBrush(m_Canvas).lbColor, static_cast<COLORREF>(White))
        << "the device's own brush is back";
}

TEST_F(BrushTest, PatternThatDiesIsNoPattern) {
    CBrush& brush = m_Canvas.GetBrush();
    brush.SetType(CBrush::BrushPattern);
    brush.SetPattern(std::make_unique<zul::CBitmap>().get());
    EXPECT_EQ(brush.GetPattern(), nullptr);
    brush.Validate(&m_Canvas);
    EXPECT_EQ(SelectedBrush(m_Canvas).lbStyle, BS_NULL);
}

TEST_F(BrushTest, OriginReachesTheDeviceWithoutANewBrush) {
    const auto origin = [this] {
        POINT point{-1, -1};
        ::GetBrushOrgEx(m_Canvas.GetHandle(), &point);
        return std::pair<int, int>(point.x, point.y);
    };
    CBrush& brush = m_Canvas.GetBrush();
    brush.Validate(&m_Canvas);
    brush.SetOrigin(5, 6);
    device::Recorder recorder;
    brush.Validate(&m_Canvas);
    EXPECT_EQ(origin(), std::make_pair(5, 6));
    EXPECT_EQ(recorder.Count("CreateSolidBrush"), 0);

    brush.SetOrigin(7, 8);
    brush.Create(CBrush::BrushSolid, Red, 4);
    brush.Validate(&m_Canvas);
    EXPECT_EQ(origin(), std::make_pair(5, 6)) << "Create forgets the origin on its way";
}

TEST_F(BrushTest, RemakingABrushThatWasHandedOutRaises) {
    CBrush brush;
    const HBRUSH first = brush.GetHandle(nullptr);
    EXPECT_EQ(brush.GetHandle(nullptr), first);
    brush.SetColor(Red);
    {
        Reports reports;
        const HBRUSH second = brush.GetHandle(nullptr);
        EXPECT_NE(second, first);
        EXPECT_EQ(reports.Only(), "0: Handle is in use");
        EXPECT_EQ(reports.List[0].Category, zul::CString(u"internal.Brush"));
        EXPECT_NE(::GetObjectType(first), 0u) << "may still be in use";
    }
    brush.SetColor(Green);
    ThrowingScope throwing;
    EXPECT_THROW(brush.GetHandle(nullptr), zul::CInternalError);
}

TEST_F(BrushTest, FailureIsReportedAndTheOldBrushStays) {
    CBrush& brush = m_Canvas.GetBrush();
    brush.SetColor(Red);
    brush.Validate(&m_Canvas);
    const HBRUSH old = brush.GetHandle(&m_Canvas);
    brush.SetColor(Green);
    {
        FullDevice full;
        Reports reports;
        EXPECT_EQ(brush.GetHandle(&m_Canvas), old);
        EXPECT_EQ(reports.Only(), "3: Can't create brush handle <zul::CBrush::Validate()>");
    }
    {
        FullDevice full;
        ThrowingScope throwing;
        EXPECT_THROW(brush.Validate(&m_Canvas), zul::CRunError);
    }
    brush.Validate(&m_Canvas);
    EXPECT_EQ(SelectedBrush(m_Canvas).lbColor, static_cast<COLORREF>(Green));
}

TEST_F(BrushTest, SystemColourBrushIsTakenAtOnceAndWithoutRecord) {
    CBrush& brush = m_Canvas.GetBrush();
    brush.SetType(CBrush::BrushNone);
    brush.Validate(&m_Canvas);
    const std::uint64_t changes = zul::CClient::GetModificationCount();
    device::Recorder recorder;
    for (const int kind : {1, -1, 6, 1000}) {
        brush.CreateSysColorBrush(static_cast<CBrush::TSysType>(kind), &m_Canvas);
        EXPECT_EQ(SelectedBrush(m_Canvas).lbColor, ::GetSysColor(COLOR_BTNFACE)) << kind;
    }
    EXPECT_EQ(recorder.Count("GetSysColorBrush"), 1);
    EXPECT_EQ(recorder.Last("GetSysColorBrush")->arguments[0], 0x4000000F);
    EXPECT_EQ(zul::CClient::GetModificationCount(), changes);
    EXPECT_EQ(static_cast<COLORREF>(brush.GetColor()), ::GetSysColor(COLOR_BTNFACE));
    EXPECT_EQ(brush.GetType(), CBrush::BrushSolid);
    recorder.Clear();
    brush.Validate(&m_Canvas);
    EXPECT_EQ(recorder.Count("SelectObject"), 0) << "it is valid already";
    brush.Release(&m_Canvas);
    EXPECT_EQ(SelectedBrush(m_Canvas).lbColor, static_cast<COLORREF>(White));
}

TEST_F(BrushTest, DetachedCanvasHoldsNoBrushTwice) {
    zul::CCanvas detached;
    const int before = device::LiveHandles();
    for (const std::int32_t color : {Red, Green, Blue}) {
        detached.GetBrush().SetColor(color);
        detached.GetBrush().Validate(&detached);
        EXPECT_EQ(device::LiveHandles(), before + 1);
    }
    detached.GetBrush().Validate(nullptr);
    detached.GetBrush().Release(nullptr);
}

}  // namespace
