#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <thread>
#include <vector>

#include "platform/gdi.h"
#include "platform/software/display.h"
#include "tests/platform/board.h"

namespace {

constexpr COLORREF kInk = RGB(255, 255, 255);

LOGFONTW Asked(int height, int angle = 0, const char16_t* face = u"Liberation Sans") {
    LOGFONTW font{};
    font.lfHeight = height;
    font.lfEscapement = angle;
    font.lfQuality = NONANTIALIASED_QUALITY;
    std::char_traits<char16_t>::copy(font.lfFaceName, face, std::char_traits<char16_t>::length(face));
    return font;
}

/// A font in a context, put back when it ends.
class Selected {
public:
    Selected(HDC dc, const LOGFONTW& asked) : m_Dc(dc), m_Font(CreateFontIndirectW(&asked)) {
        m_Old = SelectObject(dc, m_Font);
    }
    ~Selected() {
        SelectObject(m_Dc, m_Old);
        DeleteObject(m_Font);
    }
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;

private:
    HDC m_Dc;
    HFONT m_Font;
    HGDIOBJ m_Old;
};

SIZE Measure(HDC dc, const std::u16string& text) {
    SIZE size{-1, -1};
    EXPECT_TRUE(
        GetTextExtentExPointW(dc, text.data(), static_cast<int>(text.size()), 0, nullptr, nullptr, &size));
    return size;
}

void Write(HDC dc, int x, int y, const std::u16string& text) {
    EXPECT_TRUE(ExtTextOutW(dc, x, y, 0, nullptr, text.data(), static_cast<UINT>(text.size()), nullptr));
}

/// What white text leaves on black.
std::vector<std::uint32_t> Written(const Layout& layout, const LOGFONTW& font, const std::u16string& text,
                                   int x, int y, HRGN clip = nullptr, int side = 200) {
    const Board board(layout, side, side, false, {0x000000, 0xFFFFFF});
    const Selected selected(board.Dc(), font);
    SetBkMode(board.Dc(), TRANSPARENT);
    SetBkColor(board.Dc(), 0);
    SetTextColor(board.Dc(), kInk);
    SelectClipRgn(board.Dc(), clip);
    Write(board.Dc(), x, y, text);
    return board.Picture();
}

constexpr Layout kTrueColor{"Bgrx32", 32, true};

TEST(Text, CellsAreAsHighAsThePlatformMakesThem) {
    constexpr struct {
        int asked, cell;
    } kCells[] = {{-7, 7},   {-8, 9},  {-10, 11}, {-12, 14}, {-13, 15}, {-16, 17}, {-24, 27}, {-40, 44},
                  {-72, 80}, {-1, 1},  {0, 16},   {1, 1},    {2, 2},    {7, 6},    {8, 7},    {10, 10},
                  {12, 12},  {13, 14}, {16, 16},  {17, 17},  {20, 20},  {24, 23},  {40, 41},  {72, 72}};
    const HDC dc = CreateCompatibleDC(nullptr);
    for (const auto& row : kCells) {
        const Selected selected(dc, Asked(row.asked, 450));
        EXPECT_EQ(Measure(dc, u"x").cy, row.cell) << row.asked;
    }
    DeleteDC(dc);
}

TEST(Text, ExtentsAddUpWhateverTheAngleAndEdges) {
    const HDC dc = CreateCompatibleDC(nullptr);
    const std::u16string text = u"A\U0001D538\u0416b";  // its second character takes two units
    SIZE upright{};
    for (const int angle : {0, 333, 900, -1}) {
        LOGFONTW font = Asked(-16, angle);
        if (angle == 333) font.lfQuality = DEFAULT_QUALITY;
        const Selected selected(dc, font);
        int ends[5] = {}, fit = -1;
        SIZE size{};
        for (int room = -1; room < 70; ++room) {
            ASSERT_TRUE(GetTextExtentExPointW(dc, text.data(), 5, room, &fit, ends, &size));
            EXPECT_EQ(fit,
                      room < 0 ? 5 : std::count_if(ends, ends + 5, [=](int end) { return end <= room; }));
        }
        EXPECT_EQ(ends[0], Measure(dc, u"A").cx);
        EXPECT_EQ(ends[1], ends[2]);
        EXPECT_EQ(ends[4], ends[3] + Measure(dc, u"b").cx);
        EXPECT_EQ(ends[4], size.cx);
        if (angle == 0) upright = size;
        EXPECT_EQ(size.cx, upright.cx);
        EXPECT_EQ(size.cy, upright.cy);
    }
    DeleteDC(dc);
}

TEST(Text, RefusesWhatMakesNoSense) {
    const HDC dc = CreateCompatibleDC(nullptr);
    SIZE size{7, 7};
    EXPECT_TRUE(GetTextExtentExPointW(dc, nullptr, 0, 0, nullptr, nullptr, &size));
    EXPECT_EQ(size.cx, 0);
    EXPECT_EQ(size.cy, 0);
    size = {7, 7};
    EXPECT_FALSE(GetTextExtentExPointW(dc, u"a", -1, 0, nullptr, nullptr, &size));
    EXPECT_FALSE(GetTextExtentExPointW(dc, nullptr, 1, 0, nullptr, nullptr, &size));
    EXPECT_EQ(size.cx, 7);
    EXPECT_FALSE(GetTextExtentExPointW(dc, u"a", 1, 0, nullptr, nullptr, nullptr));
    EXPECT_TRUE(ExtTextOutW(dc, 0, 0, 0, nullptr, nullptr, 0, nullptr));
    EXPECT_FALSE(ExtTextOutW(dc, 0, 0, 0, nullptr, nullptr, 1, nullptr));
    EXPECT_FALSE(ExtTextOutW(dc, 0, 0, 2, nullptr, u"a", 1, nullptr));
    EXPECT_EQ(CreateFontIndirectW(nullptr), nullptr);
    DeleteDC(dc);
}

TEST(Text, HardEdgesCoverTheSamePixelsAtEveryDepthAndOnlyWithinTheClip) {
    const HRGN clip = CreateRectRgn(20, 30, 61, 90), more = CreateRectRgn(90, 0, 117, 200);
    CombineRgn(clip, clip, more, RGN_OR);
    for (const int height : {-7, -40, -150, -3000}) {  // the last two are drawn without the cache
        for (const int angle : {0, 300}) {
            LOGFONTW font = Asked(height, angle);
            font.lfUnderline = font.lfItalic = 1;
            // The largest shows a part of its first letter.
            const bool huge = height < -1000;
            const int x = !huge ? 12 : angle == 0 ? -700 : -1163, y = huge ? -900 : 70;
            const auto whole = Written(kTrueColor, font, u"Map: \u03A9\u0416\u00E9", x, y);
            EXPECT_GT(std::count(whole.begin(), whole.end(), 0xFFFFFFu), 20) << height << ' ' << angle;
            for (const Layout& layout : kLayouts) {
                const auto all = Written(layout, font, u"Map: \u03A9\u0416\u00E9", x, y);
                const auto part = Written(layout, font, u"Map: \u03A9\u0416\u00E9", x, y, clip);
                int wrong = 0;
                for (int at = 0; at < 200 * 200; ++at) {
                    const auto i = static_cast<std::size_t>(at);
                    wrong += (all[i] != 0) != (whole[i] != 0) || (whole[i] != 0 && whole[i] != 0xFFFFFF);
                    wrong += part[i] != (PtInRegion(clip, at % 200, at / 200) ? all[i] : 0);
                }
                EXPECT_EQ(wrong, 0) << layout << " height " << height << " angle " << angle;
            }
        }
    }
    DeleteObject(clip);
    DeleteObject(more);
}

TEST(Text, OpaqueCellsTurnAboutTheReferencePoint) {
    const Board board(kTrueColor, 200, 200);
    SetBkColor(board.Dc(), RGB(0, 0, 255));
    SetTextColor(board.Dc(), RGB(255, 0, 0));
    for (int angle = -900; angle <= 4500; angle += 50) {
        board.Wipe();
        const Selected selected(board.Dc(), Asked(-20, angle));
        const SIZE cell = Measure(board.Dc(), u"Hill");
        Write(board.Dc(), 100, 100, u"Hill");
        const double turn = angle * std::acos(-1.0) / 1800, c = std::cos(turn), s = std::sin(turn);
        for (int y = 0; y < 200; ++y) {
            for (int x = 0; x < 200; ++x) {
                const double dx = x + 0.5 - 100, dy = y + 0.5 - 100;
                const double along = dx * c - dy * s, down = dx * s + dy * c;
                // How far inside the cell; its sides may be out by a pixel.
                const double depth = std::min({along, cell.cx - along, down, cell.cy - down});
                if (std::abs(depth) < 1.5) continue;
                ASSERT_EQ(board.Raw(x, y) != 0, depth > 0) << angle << " at " << x << ", " << y;
            }
        }
    }
}

TEST(Text, InkTurnsCounterClockwise) {
    const std::u16string text = u"Lfb";
    double restX = 0, restY = 0;
    for (int angle = 0; angle <= 3500; angle += 100) {
        LOGFONTW font = Asked(-32, angle);
        font.lfUnderline = font.lfStrikeOut = 1;
        const auto picture = Written(kTrueColor, font, text, 100, 100);
        double count = 0, sumX = 0, sumY = 0;
        for (int at = 0; at < 200 * 200; ++at) {
            if (picture[static_cast<std::size_t>(at)] == 0) continue;
            ++count, sumX += at % 200 + 0.5 - 100, sumY += at / 200 + 0.5 - 100;
        }
        const double turn = angle * std::acos(-1.0) / 1800, c = std::cos(turn), s = std::sin(turn);
        const double x = sumX / count, y = sumY / count;
        if (angle == 0) restX = x, restY = y;
        EXPECT_NEAR(x * c - y * s, restX, 1) << angle;
        EXPECT_NEAR(x * s + y * c, restY, 1) << angle;
    }
}

TEST(Text, SmoothEdgesHoldAsMuchInkAsHardOnes) {
    for (const int height : {-24, -100, -170}) {
        LOGFONTW font = Asked(height);
        const auto hard = Written(kTrueColor, font, u"Bay", 2, 2, nullptr, 400);
        font.lfQuality = DEFAULT_QUALITY;
        const auto smooth = Written(kTrueColor, font, u"Bay", 2, 2, nullptr, 400);
        const auto three = Written({"Bgr24", 24, true}, font, u"Bay", 2, 2, nullptr, 400);
        EXPECT_EQ(smooth, three);
        double hardSum = 0, smoothSum = 0;
        int grey = 0;
        for (std::size_t i = 0; i < smooth.size(); ++i) {
            const std::uint32_t level = smooth[i] & 0xFF;
            ASSERT_EQ(smooth[i], level * 0x010101u);
            grey += level != 0 && level != 255;
            hardSum += hard[i] & 0xFF;
            smoothSum += level;
        }
        EXPECT_GT(grey, 50);
        EXPECT_NEAR(smoothSum / hardSum, 1, 0.12) << height;
    }
}

TEST(Text, SmoothEdgesMixTheColourWithWhatLiesBelow) {
    constexpr COLORREF kColor = RGB(200, 33, 117);
    std::mt19937 random(11);
    for (const int height : {-13, -60, -200}) {  // single pixels, runs of them, and without the cache
        for (const Layout& layout : kLayouts) {
            if (layout.bits < 8) continue;
            LOGFONTW font = Asked(height, 130);
            font.lfQuality = DEFAULT_QUALITY;
            const auto coverage = Written(kTrueColor, font, u"Bay \u0416", 9, 140);
            const Board plain(layout, 1, 1);
            SetPixel(plain.Dc(), 0, 0, kColor);
            Board board(layout, 200, 200, layout.bits != 24);
            board.Noise(random);
            board.ClipSomehow(random);
            const auto before = board.Picture();
            const Selected selected(board.Dc(), font);
            SetBkMode(board.Dc(), TRANSPARENT);
            SetTextColor(board.Dc(), kColor);
            Write(board.Dc(), 9, 140, u"Bay \u0416");
            const auto after = board.Picture();
            const bool six = layout.fields565;
            const int greens = layout.bits != 16 ? 8 : six ? 6 : 5, others = layout.bits != 16 ? 8 : 5;
            const auto channel = [&](std::uint32_t below, std::uint32_t above, int at, int bits,
                                     double part) {
                const std::uint32_t kept = below >> at & ((1u << bits) - 1);
                const std::uint32_t wide = (kept << (8 - bits) | kept >> (2 * bits - 8)) & 255u;
                return static_cast<std::uint32_t>(std::lround(wide + (above * 1.0 - wide) * part)) >>
                       (8 - bits) << at;
            };
            int wrong = 0;
            for (std::size_t i = 0; i < after.size(); ++i) {
                const std::uint32_t cover = coverage[i] & 255u;
                const int x = static_cast<int>(i % 200), y = static_cast<int>(i / 200);
                if (cover == 0 || !board.Shows(x, y)) {
                    wrong += after[i] != before[i];
                } else if (layout.bits > 8) {
                    const double part = cover / 255.0;
                    wrong += after[i] != (channel(before[i], 117, 0, others, part) |
                                          channel(before[i], 33, others, greens, part) |
                                          channel(before[i], 200, others + greens, others, part));
                } else if (cover == 255) {
                    wrong += after[i] != plain.Raw(0, 0);
                }
            }
            EXPECT_EQ(wrong, 0) << layout << " height " << height;
        }
    }
}

TEST(Text, CharactersThatTheFaceLacksComeFromAnother) {
    const LOGFONTW font = Asked(-40);
    const auto missing = Written(kTrueColor, font, u"\uE123", 20, 20);  // of private use
    for (const char16_t* character : {u"\u2603", u"\u0531", u"\u03C9", u"\u0416", u"\u0159"}) {
        const auto drawn = Written(kTrueColor, font, character, 20, 20);
        EXPECT_NE(drawn, missing);
        EXPECT_GT(std::count(drawn.begin(), drawn.end(), 0xFFFFFFu), 40);
    }
}

/// Puts the settings of all text back as they were.
class SettingsKeeper {
public:
    ~SettingsKeeper() { device::SetTextSettings(m_Settings); }

private:
    device::TextSettings m_Settings = device::GetTextSettings();
};

TEST(Text, NeitherASmallCacheNorOtherThreadsChangeThePicture) {
    const SettingsKeeper keeper;
    // More sizes and angles than are kept at all, of letters in several pages, the second time from the end.
    const auto pictures = [] {
        std::vector<std::vector<std::uint32_t>> all;
        for (int i = 0; i < 280; ++i) {
            const int size = i < 140 ? i : 279 - i;
            all.push_back(Written(kTrueColor, Asked(-8 - size % 20, size % 2 * size),
                                  u"Map \u0416\u0414\u03A9\U0001D538", 2, 40, nullptr, 60));
        }
        return all;
    };
    const auto expected = pictures();
    EXPECT_EQ(expected[3], expected[276]);
    for (const std::size_t bytes : {std::size_t{1} << 20, std::size_t{20000}, std::size_t{0}}) {
        device::SetTextSettings({bytes, true});
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([&] { EXPECT_EQ(pictures(), expected) << bytes; });
        for (std::thread& thread : threads)
            thread.join();
    }
}

TEST(Text, ACacheMayShrinkToNothing) {
    const SettingsKeeper keeper;
    const HDC dc = CreateCompatibleDC(nullptr);
    const auto width = [dc](std::size_t bytes, const std::u16string& text) {
        device::SetTextSettings({bytes, true});
        return Measure(dc, text).cx;
    };
    const std::u16string first = u"A\u0416\u03A9", second = u"\u0531", third = u"\u2603";
    const auto wide = width(1 << 20, first + second + third);
    const Selected other(dc, Asked(-77));
    // Three pages fit; the fourth takes the place of one, and then none has room.
    const int bare = width(10000, first), more = width(10000, second), last = width(0, third);
    EXPECT_EQ(bare + more + last, width(1 << 20, first + second + third));
    EXPECT_NE(bare + more + last, wide);
    DeleteDC(dc);
}

TEST(Text, WithoutFontFilesBoxesStandForCharacters) {
    const SettingsKeeper keeper;
    device::SetTextSettings({1 << 20, false});
    for (const int height : {-1, -16, -300, 40}) {
        const Board board(kTrueColor, 400, 400);
        const Selected selected(board.Dc(), Asked(height));
        const SIZE one = Measure(board.Dc(), u"a"), five = Measure(board.Dc(), u"a bcd");
        EXPECT_EQ(five.cx, 5 * one.cx);
        EXPECT_NEAR(one.cy, std::abs(height), std::abs(height) * 0.2 + 1);
        const auto box = Written(kTrueColor, Asked(height), u"a", 2, 2, nullptr, 400);
        const auto blank = Written(kTrueColor, Asked(height), u" ", 2, 2, nullptr, 400);
        EXPECT_NE(std::count(box.begin(), box.end(), 0u), 400 * 400) << height;
        EXPECT_EQ(std::count(blank.begin(), blank.end(), 0u), 400 * 400);
    }
}

}  // namespace
