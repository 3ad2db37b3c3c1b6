#include "zul/tools/font.h"

#include <gtest/gtest.h>

#include "tests/canvas/canvas_testing.h"

namespace {

using namespace zultest;
using zul::CFont;

class FontTest : public testing::Test {
protected:
    FontTest() { m_Canvas.CreateMemoryCanvas(); }
    LOGFONTW Validated(CFont& font) {
        font.Validate(&m_Canvas);
        return SelectedFont(m_Canvas);
    }

    zul::CCanvas m_Canvas;
};

/// Half a pixel a map unit, four metres a unit.
struct MetricScaler : zul::CScaler {
    explicit MetricScaler(double turned) {
        InitScaler({0, 0, 2000, 2000}, {1000, 1000}, {1000, 1000}, 40.0, 4.0, 0.001);
        SetRotationAngle(turned);
        m_AddAngleToFontAngle = true;
    }
};

TEST_F(FontTest, HeightsBecomePixels) {
    MetricScaler scaler(0.0);
    const struct {
        std::int32_t height;
        bool scaled, withScaler;
        LONG pixels;  // where an inch has 96
    } rows[] = {
        {12, false, false, -16}, {-12, false, true, 15},  {INT32_MIN, false, false, INT32_MAX},
        {12, true, false, -16},  {800, true, true, -100}, {56, true, true, -7},
        {24, true, true, -7},    {-800, true, true, -7},  {INT32_MAX, true, true, -(INT32_MAX / 8 + 1)}};
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
    EXPECT_EQ(CFont().GetLogicalHeight(nullptr) + CFont().MetersToLogical(nullptr), 0);
}

TEST_F(FontTest, DeviceFontIsWhatTheSettingsSayAndTellsThemBack) {
    MetricScaler turned(12.34);
    m_Canvas.SetScaler(&turned);
    CFont& font = m_Canvas.GetFont();
    CFont copy;
    Validated(font);
    copy.FromHandle(font.GetHandle(&m_Canvas), nullptr);
    EXPECT_EQ(copy.GetName(), std::u16string(u"Microsoft Sans Serif"));
    font.Create(u"A name of more than thirty-one characters", 9, Red, -450);
    font.SetStyle(CFont::StyleBold | CFont::StyleItalic | CFont::StyleUnderlined | CFont::StyleStrikedOut);
    EXPECT_EQ(Validated(font).lfEscapement, -450 + 123) << "this view adds its own";
    copy.FromHandle(font.GetHandle(&m_Canvas), nullptr);
    EXPECT_EQ(copy.GetName(), std::u16string(u"A name of more than thirty-one "));
    EXPECT_EQ(copy.GetHeight(), 9);
    EXPECT_EQ(copy.GetAngle(), -450 + 123);
    EXPECT_EQ(copy.GetStyle(), font.GetStyle() | CFont::StyleClipping);
    const std::uint64_t changes = zul::CClient::GetModificationCount();
    copy.FromHandle(nullptr, &m_Canvas);
    copy.FromHandle(reinterpret_cast<HFONT>(::GetStockObject(WHITE_PEN)), nullptr);
    EXPECT_EQ(zul::CClient::GetModificationCount(), changes);
}

TEST_F(FontTest, OnlyTheRightSettersHaveTheFontMadeAnew) {
    using Change = void (*)(CFont&);
    const Change renewing[] = {
        [](CFont& font) { font.SetName(u"Liberation Sans"); }, [](CFont& font) { font.SetAngle(30); },
        [](CFont& font) { font.SetFramed(true); }, [](CFont& font) { font.SetInscribed(true); }};
    const Change others[] = {
        [](CFont& font) { font.SetTextColor(Red); },  [](CFont& font) { font.SetOreol(5); },
        [](CFont& font) { font.SetOreolColor(Red); }, [](CFont& font) { font.SetClipping(false); },
        [](CFont& font) { font.SetAlignment(0); },    [](CFont& font) { font.SetScaled(true); }};
    CFont& font = m_Canvas.GetFont();
    const auto made = [&](Change change) {
        font.Validate(&m_Canvas);
        const std::uint64_t before = CFont::GetHandleCounts().Made;
        change(font);
        font.Validate(&m_Canvas);
        return CFont::GetHandleCounts().Made - before;
    };
    for (const Change& change : renewing)
        EXPECT_EQ(made(change), 1u) << &change - renewing;
    for (const Change& change : others)
        EXPECT_EQ(made(change), 0u) << &change - others;
}

TEST_F(FontTest, TextColourIsBlackWhereLinesAre) {
    CFont& font = m_Canvas.GetFont();
    const auto color = [&] {
        font.Validate(&m_Canvas);
        return static_cast<std::int32_t>(::GetTextColor(m_Canvas.GetHandle()));
    };
    m_Canvas.SetBlackLinesMode(true);
    font.SetTextColor(Blue);
    EXPECT_EQ(color(), Black);
    m_Canvas.SetBlackLinesMode(false);
    font.Create(u"x", 3, Green, 0);
    EXPECT_EQ(color(), Black) << "Create forgets the colour on its way";
    m_Canvas.SetTextColor(Red);
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
    font.SetHeight(22);
    EXPECT_THROW(font.GetHandle(nullptr), zul::CInternalError);
    LOGFONTW told{};
    EXPECT_EQ(::GetObjectW(first, sizeof told, &told), static_cast<int>(sizeof told));
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
    }
    EXPECT_NE(Validated(font).lfHeight, before);
    font.Release(&m_Canvas);
    // Nothing is left behind either when the device goes first.
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

}  // namespace
