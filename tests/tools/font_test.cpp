#include "zul/tools/font.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/canvas/canvas_testing.h"

namespace {

using namespace zultest;
using zul::CFont;

std::u16string FaceOf(const LOGFONTW& font) {
    std::u16string name;
    for (const auto unit : font.lfFaceName) {
        if (unit == 0) break;
        name += static_cast<char16_t>(unit);
    }
    return name;
}

class FontTest : public testing::Test {
protected:
    FontTest() { m_Canvas.CreateMemoryCanvas(); }
    LOGFONTW Validated(CFont& font) {
        font.Validate(&m_Canvas);
        return SelectedFont(m_Canvas);
    }

    NoLeaks m_Leaks;
    zul::CCanvas m_Canvas;
};

/// Half a pixel a map unit, and four metres a unit.
class MetricScaler : public zul::CScaler {
public:
    explicit MetricScaler(double turned = 0.0) {
        InitScaler({0, 0, 2000, 2000}, {1000, 1000}, {1000, 1000}, 40.0, 4.0, 0.001);
        SetRotationAngle(turned);
        m_AddAngleToFontAngle = true;
    }
};

TEST_F(FontTest, HeightsBecomePixels) {
    MetricScaler scaler;
    const struct {
        std::int32_t height;
        bool scaled, withScaler;
        LONG pixels;  // where an inch has 96
    } rows[] = {
        {12, false, false, -16}, {-12, false, true, 15},  {INT32_MIN, false, false, INT32_MAX},
        {12, true, false, -16},  {800, true, true, -100}, {56, true, true, -7},
        {24, true, true, -7},    {-800, true, true, -7},  {INT32_MAX, true, true, -(INT32_MAX / 8 + 1)},
    };
    for (const auto& row : rows) {
        m_Canvas.SetScaler(row.withScaler ? &scaler : nullptr);
        CFont font;
        font.SetHeight(row.height);
        font.SetScaled(row.scaled);
        EXPECT_EQ(Validated(font).lfHeight, row.pixels) << row.height << row.scaled << row.withScaler;
        font.Release(&m_Canvas);
    }
    EXPECT_EQ(CFont::GetHeightInPunkts(m_Canvas.GetHandle(), 17), 13);
    EXPECT_EQ(CFont::GetHeightInPunkts(m_Canvas.GetHandle(), INT32_MIN), 1610612736);
    EXPECT_EQ(CFont::GetHeightInPunkts(nullptr, 16), 0);
    EXPECT_EQ(CFont().GetLogicalHeight(nullptr), 0);
    EXPECT_EQ(CFont().MetersToLogical(nullptr), 0);
}

TEST_F(FontTest, DeviceFontIsWhatTheSettingsSayAndTellsThemBack) {
    CFont& font = m_Canvas.GetFont();
    EXPECT_EQ(FaceOf(Validated(font)), u"Microsoft Sans Serif");
    MetricScaler turned(12.34);
    m_Canvas.SetScaler(&turned);
    font.Create(u"A name of more than thirty-one characters", 9, Red, -450);
    font.SetStyle(CFont::StyleBold | CFont::StyleItalic | CFont::StyleUnderlined | CFont::StyleStrikedOut);
    const LOGFONTW made = Validated(font);
    EXPECT_EQ(FaceOf(made), u"A name of more than thirty-one ");
    EXPECT_EQ(made.lfEscapement, -450 + 123) << "this view adds its own";

    CFont copy;
    const auto handle = static_cast<HFONT>(::GetCurrentObject(m_Canvas.GetHandle(), OBJ_FONT));
    copy.FromHandle(handle, nullptr);
    EXPECT_EQ(copy.GetName(), FaceOf(made));
    EXPECT_EQ(copy.GetHeight(), 9);
    EXPECT_EQ(copy.GetAngle(), made.lfEscapement);
    EXPECT_EQ(copy.GetStyle() & ~CFont::StyleClipping, font.GetStyle());
    const std::uint64_t changes = zul::CClient::GetModificationCount();
    copy.FromHandle(handle, &m_Canvas);
    copy.FromHandle(nullptr, &m_Canvas);
    copy.FromHandle(reinterpret_cast<HFONT>(::GetStockObject(WHITE_PEN)), nullptr);
    EXPECT_EQ(zul::CClient::GetModificationCount(), changes);
}

TEST_F(FontTest, OnlyTheRightSettersHaveTheFontMadeAnew) {
    const struct {
        void (*change)(CFont& font);
        std::uint64_t made;
    } rows[] = {
        {[](CFont& font) { font.SetName(u"Liberation Sans"); }, 1},
        {[](CFont& font) { font.SetAngle(30); }, 1},
        {[](CFont& font) { font.SetFramed(true); }, 1},
        {[](CFont& font) { font.SetInscribed(true); }, 1},
        {[](CFont& font) { font.SetTextColor(Red); }, 0},
        {[](CFont& font) { font.SetOreolColor(Red); }, 0},
        {[](CFont& font) { font.SetOreol(0xFF); }, 0},
        {[](CFont& font) { font.SetAlignment(0); }, 0},
        {[](CFont& font) { font.SetClipping(false); }, 0},
        {[](CFont& font) { font.SetScaled(true); }, 0},
    };
    CFont& font = m_Canvas.GetFont();
    font.Validate(&m_Canvas);
    for (const auto& row : rows) {
        const std::uint64_t before = CFont::GetHandleCounts().Made;
        row.change(font);
        font.Validate(&m_Canvas);
        EXPECT_EQ(CFont::GetHandleCounts().Made - before, row.made) << &row - rows;
    }
}

TEST_F(FontTest, TextColourIsBlackWhereLinesAre) {
    CFont& font = m_Canvas.GetFont();
    const auto color = [&] {
        font.Validate(&m_Canvas);
        return static_cast<std::int32_t>(::GetTextColor(m_Canvas.GetHandle()));
    };
    font.SetTextColor(Red);
    EXPECT_EQ(color(), Red);
    m_Canvas.SetTextColor(Green);
    EXPECT_EQ(color(), Red);
    m_Canvas.SetBlackLinesMode(true);
    font.SetTextColor(Blue);
    EXPECT_EQ(color(), Black);
    m_Canvas.SetBlackLinesMode(false);
    font.Create(u"x", 3, Green, 0);
    EXPECT_EQ(color(), Black) << "Create forgets the colour on its way";
    font.Invalidate();
    EXPECT_EQ(color(), Green);
}

TEST_F(FontTest, HandedOutFontsLiveAsLongAsTheFont) {
    CFont font;
    const HFONT first = font.GetHandle(nullptr);
    font.SetHeight(20);
    {
        Reports reports;
        EXPECT_NE(font.GetHandle(nullptr), first);
        EXPECT_EQ(reports.Only(), "0: Handle in use");
        EXPECT_EQ(reports.List[0].Category, zul::CString(u"internal.Font"));
    }
    ThrowingScope throwing;
    font.SetHeight(21);
    font.GetHandle(nullptr, true);
    LOGFONTW told{};
    EXPECT_EQ(::GetObjectW(first, sizeof told, &told), static_cast<int>(sizeof told));
    font.SetHeight(22);
    const int before = device::LiveHandles();
    EXPECT_THROW(font.GetHandle(nullptr), zul::CInternalError);
    EXPECT_EQ(device::LiveHandles(), before);
}

TEST_F(FontTest, FailureIsReportedAndTheOldFontStays) {
    CFont& font = m_Canvas.GetFont();
    const LONG before = Validated(font).lfHeight;
    font.SetHeight(50);
    {
        FullDevice full;
        Reports reports;
        EXPECT_EQ(Validated(font).lfHeight, before);
        EXPECT_EQ(reports.Only(), "3: Can't create font handle <zul::CFont::GetHandle()>");
        ThrowingScope throwing;
        EXPECT_THROW(font.Validate(&m_Canvas), zul::CRunError);
    }
    EXPECT_NE(Validated(font).lfHeight, before);
}

TEST_F(FontTest, NoFontIsLeftBehindWhateverTheDeviceDoes) {
    const LONG own = SelectedFont(m_Canvas).lfHeight;
    CFont& font = m_Canvas.GetFont();
    font.SetHeight(77);
    EXPECT_NE(Validated(font).lfHeight, own);
    font.Release(&m_Canvas);
    EXPECT_EQ(SelectedFont(m_Canvas).lfHeight, own);
    zul::CCanvas detached;
    for (zul::CCanvas* canvas : {&m_Canvas, &detached}) {
        for (const std::int32_t height : {5, 6, 7}) {
            canvas->GetFont().SetHeight(height);
            canvas->GetFont().Validate(canvas);
            ::DeleteDC(canvas->GetHandle());
        }
    }
    font.Validate(nullptr);
    font.Release(nullptr);
}

TEST_F(FontTest, MeasuresAsACanvasDoes) {
    m_Canvas.GetFont().Create(u"Liberation Sans", 20, Red, 300);
    m_Canvas.GetFont().SetBold(true);
    CFont font;
    font.ApplyFont(&m_Canvas.GetFont());
    const zul::CString text(u"Ostsee");
    std::int32_t width = -1, height = -1;
    font.GetTextSize(&text, width, height);
    EXPECT_GT(width, height);
    EXPECT_EQ(width, m_Canvas.GetTextWidth(&text));
    EXPECT_EQ(height, m_Canvas.GetTextHeight(&text));
    EXPECT_EQ(font.GetTextWidth(&text) + font.GetTextHeight(&text), width + height);
    EXPECT_EQ(font.GetTextWidth(u"Ostseebad", 6) + font.GetTextHeight(u"Ostseebad", 6), width + height);
}

}  // namespace
