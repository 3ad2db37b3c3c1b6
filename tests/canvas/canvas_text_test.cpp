#include <gtest/gtest.h>

#include <cmath>

#include "tests/canvas/canvas_testing.h"
#include "zul/scaler/projective_scaler.h"

namespace {

using namespace zultest;
using zul::CFont;
using zul::CString;

constexpr int kSide = 200;

void SetSmooth(bool smooth) {
    device::DisplaySettings settings;
    settings.smoothText = smooth;
    device::SetDisplay(settings);
}

class TextTest : public testing::Test {
protected:
    /// Where a line was put.
    struct Put {
        double x, y;
    };

    TextTest() {
        SetUpSquare(m_Map, kSide, 1);
        m_Font.Create(u"Liberation Sans", 9, Black, 0);
        m_Font.SetStyle(0);
    }
    /// The corners are pixels, also for a map of one unit a pixel.
    std::vector<Put> Drawn(const CString& text, zul::TLongRect box) {
        if (m_Canvas.GetScaler() && m_Canvas.IsPretranslation()) {
            box = {box.MinX, kSide - box.MaxY, box.MaxX, kSide - box.MinY};
        }
        device::Recorder recorder;
        m_Canvas.OutText(box.MinX, box.MinY, box.MaxX, box.MaxY, &text);
        std::vector<Put> lines;
        for (const device::RecordedCall& call : recorder.Calls()) {
            if (call.name != "ExtTextOutW") continue;
            lines.push_back({static_cast<double>(call.arguments[1]), static_cast<double>(call.arguments[2])});
        }
        return lines;
    }
    zul::TSize SizeOf(const CString& text) {
        zul::TSize size{};
        m_Canvas.GetTextSize(&text, size.Width, size.Height);
        return size;
    }
    bool HasClip() { return m_Canvas.GetRegion().GetHandle() != nullptr; }

    zul::CScaler m_Map;
    Surface m_Surface{kSide, kSide};
    zul::CCanvas& m_Canvas = m_Surface.Canvas;
    CFont& m_Font = m_Canvas.GetFont();
};

TEST_F(TextTest, LinesStandWhereTheAlignmentSays) {
    const CString text(u"Kap\r\nFinisterre\n\nSo");
    const CString lines[] = {u"Kap", u"Finisterre", u"", u"So"};
    const zul::TLongRect box{31, 41, 161, 150};
    for (zul::CScaler* scaler : {static_cast<zul::CScaler*>(nullptr), &m_Map}) {
        m_Canvas.SetScaler(scaler);
        const int cell = SizeOf(u"So").Height;
        for (const int across : {CFont::AlignLeft | CFont::AlignRight, 2, int{CFont::AlignRight}}) {
            for (const int down : {CFont::AlignTop | CFont::AlignBottom, 0x10, int{CFont::AlignBottom}}) {
                m_Font.SetAlignment(across | down);
                const std::vector<Put> put = Drawn(text, box);
                ASSERT_EQ(put.size(), 4u);
                for (int i = 0; i < 4; ++i) {
                    const int room = 130 - SizeOf(lines[i]).Width, rest = 109 - 4 * cell;
                    const int x = 31 + (across & 1 ? 0 : across & 4 ? room : room / 2);
                    const int y = 41 + i * cell + (down & 8 ? 0 : down & 0x20 ? rest : rest / 2);
                    EXPECT_NEAR(put[i].x, x, across & 5 ? 0 : 1) << i;
                    EXPECT_NEAR(put[i].y, y, down & 0x28 ? 0 : 1) << i;
                }
            }
        }
    }
    m_Canvas.SetPretranslation(false);
    m_Font.SetAlignment(9);
    EXPECT_EQ(Drawn(text, box)[3].y, 41 - 3 * SizeOf(u"So").Height) << "an idle scaler turns lines upwards";
}

TEST_F(TextTest, TurnedLinesTurnAboutTheCornerCounterClockwise) {
    for (const bool isMap : {false, true}) {
        m_Canvas.SetScaler(isMap ? &m_Map : nullptr);
        m_Canvas.SetPretranslation(isMap);
        for (std::int32_t angle = -3600; angle <= 3600; angle += 450) {
            m_Font.SetAngle(angle);
            const int cell = SizeOf(u"a").Height, pivot = isMap ? 80 : 120;
            const int lift = angle % 900 == 0 ? 0 : cell / 8 + cell / 32;
            const std::vector<Put> put = Drawn(u"a\nb", {90, 80, 130, 120});
            ASSERT_EQ(put.size(), 2u);
            const double turn = angle / 1800.0 * std::acos(-1.0);
            for (int i = 0; i < 2; ++i) {
                const int below = 80 - lift + i * cell - pivot;
                EXPECT_NEAR(put[i].x, 90 + below * std::sin(turn), 1.5) << angle;
                EXPECT_NEAR(put[i].y, pivot + below * std::cos(turn), 1.5) << angle;
            }
        }
    }
}

TEST_F(TextTest, TurnedViewsCarryTheMiddleAlong) {
    m_Map.SetRotationAngle(35.0);
    m_Canvas.SetScaler(&m_Map);
    m_Font.SetAlignment(0);
    std::int32_t x = 130, y = 70;
    m_Canvas.PreparePoint(x, y);
    const std::vector<Put> put = Drawn(u"Kap", {110, kSide - 80, 150, kSide - 60});
    ASSERT_EQ(put.size(), 1u);
    EXPECT_NEAR(put[0].x, x - SizeOf(u"Kap").Width / 2.0, 2.0);
    EXPECT_NEAR(put[0].y, y - SizeOf(u"Kap").Height / 2.0, 2.0);
}

TEST_F(TextTest, HaloIsTheTextMovedInFourDirections) {
    const CString text(u"öß");
    SetSmooth(false);
    Surface bare(14, 12), surface(34, 32);
    SetSmooth(true);
    bare.Canvas.GetFont().Create(u"Liberation Sans", 7, Black, 0);
    bare.Canvas.OutText(&text, 1, 0);
    const Picture letters = bare.Look();
    EXPECT_EQ(letters, (Picture{"..............", "..#.#..###....", "......#...#...", "..##..#..#....",
                                ".#..#.#.#.....", ".#..#.#..#....", ".#..#.#...#...", "..##..#.##....",
                                "..............", "..............", "..............", ".............."}));
    surface.Canvas.GetFont().ApplyFont(&bare.Canvas.GetFont());
    surface.Canvas.GetFont().SetOreolColor(Green);
    for (int halo = 0; halo <= 7; ++halo) {
        surface.Wipe();
        surface.Canvas.GetFont().SetOreol(halo);
        surface.Canvas.OutText(&text, 11, 10);
        Picture expected = surface.Blank();
        const auto paint = [&](int dx, int dy, char letter) {
            for (int i = 0; i < 12 * 14; ++i)
                if (letters[i / 14][i % 14] == '#') expected[10 + i / 14 + dy][10 + i % 14 + dx] = letter;
        };
        for (int i = 1; i <= halo; ++i)
            paint(i, 0, 'g'), paint(-i, 0, 'g'), paint(0, i, 'g'), paint(0, -i, 'g');
        paint(0, 0, '#');
        EXPECT_EQ(surface.Look(), expected) << halo;
    }
    surface.Canvas.SetBlackLinesMode(true);
    device::Recorder recorder;
    surface.Canvas.OutText(&text, 0, 0);
    EXPECT_EQ(recorder.Count("ExtTextOutW"), 1);
}

TEST_F(TextTest, FittingTakesTheSmallerRatioAndPutsTheHeightBack) {
    struct Heights : zul::CModificationObserver {
        void OnModified(const zul::TModification& change) noexcept override {
            List.push_back(change.NewValue);
        }
        std::vector<double> List;
    };
    m_Font.SetInscribed(true);
    const std::int64_t w = SizeOf(u"Finisterre").Width, h = 2 * SizeOf(u"Finisterre").Height;
    const CString text(u"x\nFinisterre");
    const std::int64_t most = 9LL * INT32_MAX / std::max(w, h);
    const struct {
        const CString text;
        std::int64_t width, height, fitted;
    } rows[] = {{text, 2 * w, 9 * h, 18},     {text, 9 * w, 3 * h, 27}, {text, w, h, 9},
                {text, w - 1, h, 8},          {text, 4 * w, -h, -9},    {u"\n\n", 50, 50, 9},
                {text, INT32_MAX, 5 * h, 45}, {text, 0, h, 0},          {text, INT32_MAX, INT32_MAX, most}};
    for (const auto& row : rows) {
        Heights heights;
        zul::CClient::AddObserver(&heights);
        m_Canvas.OutText(0, 0, static_cast<std::int32_t>(row.width), static_cast<std::int32_t>(row.height),
                         &row.text);
        zul::CClient::RemoveObserver(&heights);
        const auto fitted = static_cast<double>(row.fitted);
        EXPECT_EQ(heights.List, fitted == 9 ? std::vector<double>{} : (std::vector<double>{fitted, 9}));
    }
    FullDevice full;
    ThrowingScope throwing;
    EXPECT_THROW(m_Canvas.OutText(0, 0, 1000, 1000, &text), zul::CRunError);
    EXPECT_EQ(m_Font.GetHeight(), 9) << "also when there is no device font to be had";
}

TEST_F(TextTest, ClippingEndsWithTheText) {
    const CString text(u"Finisterre");
    const auto look = [&](bool clipping, std::int32_t angle) {
        m_Surface.Wipe();
        m_Font.SetClipping(clipping);
        m_Font.SetAngle(angle);
        m_Canvas.OutText(90, 90, 110, 110, &text);
        EXPECT_FALSE(HasClip());
        return m_Surface.Look();
    };
    Picture expected = look(false, 0);
    EXPECT_NE(look(true, 0), expected);
    for (int i = 0; i < kSide * kSide; ++i) {
        const int x = i % kSide, y = i / kSide;
        if (x < 90 || x >= 110 || y < 90 || y >= 110) expected[y][x] = '.';
    }
    EXPECT_EQ(look(true, 0), expected);
    EXPECT_EQ(look(true, 1), look(false, 1)) << "turned text is not clipped";
    m_Font.SetAngle(0);
    m_Canvas.GetRegion().Create(0, 0, 100, 200, &m_Canvas, zul::CRegion::CombineReplace);
    m_Canvas.OutText(90, 90, 110, 110, &text);
    zul::TLongRect box{};
    m_Canvas.GetRegion().GetRegionBox(box, &m_Canvas);
    EXPECT_EQ(box.MaxX, 100) << "the clip of before is back";
}

TEST_F(TextTest, OutlinesAreWhatStyleAndBackgroundAskFor) {
    const CString text(u"a\nlonger\nlonger");
    using Outline = std::pair<std::string, Numbers>;
    const auto calls = [&] {
        device::Recorder recorder;
        m_Canvas.OutText(20, 30, 150, 120, &text);
        std::string names;
        for (const device::RecordedCall& call : recorder.Calls()) {
            if (call.name == "Rectangle" || call.name == "Polygon") names += call.name[0];
            if (call.name == "ExtTextOutW") names += 't';
        }
        return Outline(names, Last(recorder, "Rectangle"));
    };
    const zul::TSize size = SizeOf(u"longer");
    m_Font.SetFramed(true);
    EXPECT_EQ(calls(), Outline("tRtt", {16, 26, 24 + size.Width + 1, 34 + 3 * size.Height + 1}));
    EXPECT_EQ(m_Canvas.GetBrush().GetType(), zul::CBrush::BrushNone);
    m_Font.SetAngle(900);
    EXPECT_EQ(calls().first, "tPtt");
    m_Canvas.SetPretranslation(false);
    EXPECT_EQ(calls().first, "tRtt");
    m_Font.SetInscribed(true);
    EXPECT_EQ(calls(), Outline("Rttt", {20, 30, 151, 121}));
    m_Font.SetStyle(0);
    m_Canvas.GetBackground().SetRop(zul::CBackground::RopXor);
    EXPECT_EQ(calls(), Outline("R", {20, 30, 151, 121}));
}

TEST_F(TextTest, HiddenLineEndsEverythingAsItStands) {
    zul::CProjectiveScaler far;
    SetUpSquare(far, kSide, 1);
    far.SetInscriptionClippingFraction(0.5);
    far.InitPerspective(nullptr);
    m_Canvas.SetScaler(&far);
    m_Font.SetStyle(CFont::StyleInscribed | CFont::StyleClipping);
    const CString text(u"Kap\nKap");
    for (const bool isHidden : {false, true}) {
        std::int32_t y = isHidden ? 20 : 180, x = 100;
        far.ScreenToMapL(x, y);
        device::Recorder recorder;
        m_Canvas.OutText(x - 40, y - 10, x + 40, y + 10, &text);
        EXPECT_EQ(recorder.Count("ExtTextOutW"), isHidden ? 0 : 2);
        EXPECT_EQ(HasClip(), isHidden);
        EXPECT_EQ(m_Font.GetHeight() != 9, isHidden);
    }
}

TEST_F(TextTest, MeasuringStopsAtTheEndOfTheText) {
    const CString kap(u"Kap"), empty;
    const int width = SizeOf(kap).Width;
    EXPECT_EQ(m_Canvas.GetTextWidth(u"Kap", INT32_MAX), width);
    EXPECT_EQ(m_Canvas.GetTextWidth(u"Kapstadt", 3), width);
    EXPECT_EQ(m_Canvas.GetTextHeight(u"Kapstadt", 3), m_Canvas.GetTextHeight(&kap));
    EXPECT_EQ(m_Font.GetTextWidth(&kap), width);
    EXPECT_EQ(m_Font.GetTextWidth(u"Kapstadt", 3), width);
    EXPECT_EQ(m_Font.GetTextHeight(&kap), m_Canvas.GetTextHeight(&kap));
    zul::TSize three{};
    m_Font.GetTextSize(u"Kapstadt", 3, three.Width, three.Height);
    EXPECT_TRUE(three.Width == width && three.Height == m_Font.GetTextHeight(u"Kapstadt", 3));
    for (const std::int32_t length : {0, -1, INT32_MIN})
        EXPECT_EQ(m_Canvas.GetTextWidth(u"Kap", length), 0);
    for (std::u16string text = u"x"; text.size() < 14; text += u'y') {
        for (std::size_t zero = 0; zero <= text.size(); ++zero) {
            std::u16string cut = text;
            if (zero < cut.size()) cut[zero] = 0;
            const auto size = static_cast<std::uint32_t>(cut.size());
            EXPECT_EQ(SizeOf(CString(cut.data(), size)).Width, SizeOf(text.substr(0, zero).c_str()).Width);
        }
    }
    EXPECT_EQ(m_Canvas.GetTextHeight(&empty) + m_Canvas.GetTextWidth(nullptr, 3), 0);
    zul::CCanvas detached;
    Reports reports;
    EXPECT_EQ(detached.GetTextHeight(u"Kap", 3), 0);
    detached.OutText(0, 0, 9, 9, &kap);
    EXPECT_TRUE(reports.List.empty());
    EXPECT_EQ(detached.GetTextHeight(&kap), 0);
    EXPECT_EQ(reports.Only(), "0: Device == NULL");
}

}  // namespace
