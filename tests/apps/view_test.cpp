/// \file
/// The viewer without its window.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <iterator>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "apps/zulmap/map_reader.h"
#include "apps/zulmap/map_scheme.h"
#include "apps/zulmap/tool_error.h"
#include "apps/zulmap/tool_settings.h"
#include "apps/zulmap/view/view_script.h"
#include "apps/zulmap/view/viewer.h"
#include "tests/apps/fresh_picture.h"

using zulmap::ViewInput;

namespace {

constexpr zul::TSize kScreen{320, 200};

std::shared_ptr<zul::CDibSection> MakeNoise(std::int32_t width, std::int32_t height) {
    auto noise = std::make_shared<zul::CDibSection>();
    noise->Create(width, height, 32, nullptr);
    auto* pixels = static_cast<std::uint32_t*>(noise->GetDIBBits());
    std::mt19937 random(1);
    std::generate_n(pixels, width * height, [&random] { return random() & 0xC0C0C0U; });
    return noise;
}

/// Countries over a raster, and a few towns.
std::shared_ptr<const zulmap::MapData> World() {
    zulmap::MapData world = zulmap::ReadMaps({ZULMAP_DATA "/countries-110m.geojson"},
                                             [](const std::string&, std::size_t) {}, {}, {"name"});
    world.rasters.push_back({MakeNoise(31, 23), 31, 23, {-60.3, -40.7, 80.1, 70.9}});
    world.features.push_back({{}, {}, {{-10.0, 5.0}, {30.0, -20.0}, {0.5, 60.0}}, "Town"});
    world.scheme = zulmap::MakeScheme(world);
    return std::make_shared<const zulmap::MapData>(std::move(world));
}

ViewInput At(ViewInput::Kind kind, int x, int y, ViewInput::Button button = ViewInput::Button::Left) {
    ViewInput input;
    input.kind = kind;
    input.at = {x, y};
    input.button = button;
    return input;
}

ViewInput Key(const std::string& key) {
    ViewInput input;
    input.kind = ViewInput::Kind::Key;
    input.key = key;
    return input;
}

void Wheel(zulmap::Viewer& viewer, int x, int y, int steps) {
    ViewInput input = At(ViewInput::Kind::Wheel, x, y);
    input.steps = steps;
    viewer.Handle(input);
}

void Drag(zulmap::Viewer& viewer, zul::TLongPoint from, zul::TLongPoint to) {
    viewer.Handle(At(ViewInput::Kind::Press, from.X, from.Y));
    viewer.Handle(At(ViewInput::Kind::Release, to.X, to.Y));
}

std::size_t CountDifferences(const fresh::Pixels& a, const fresh::Pixels& b) {
    if (a.size() != b.size()) return std::max(a.size(), b.size());
    std::size_t count = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        count += a[i] != b[i] ? 1U : 0U;
    }
    return count;
}

/// A user who cannot make up his mind.
class Restless {
public:
    Restless(zulmap::Viewer& viewer, std::uint32_t seed) : m_Viewer(viewer), m_Random(seed) {}

    std::string Act() {
        const zul::TSize screen = m_Viewer.GetView().GetScreen();
        const int x = Below(screen.Width);
        const int y = Below(screen.Height);
        switch (Below(8)) {
            case 0:
                Wheel(m_Viewer, x, y, Below(7) - 2);
                return "wheel";
            case 1: {
                static const char* const keys[] = {"left", "up", "+", "-", "home", "r",
                                                   "p",    ".",  "o", "h", "c",    "escape"};
                const std::string key = keys[Below(static_cast<int>(std::size(keys)))];
                m_Viewer.Handle(Key(key));
                return key;
            }
            case 2: {
                ViewInput input;
                input.kind = Below(4) == 0 ? ViewInput::Kind::Resize : ViewInput::Kind::Abandon;
                input.size = {200 + Below(200), 100 + Below(200)};
                m_Viewer.Handle(input);
                return "resize or abandon";
            }
            case 3:
                m_Viewer.Handle(At(ViewInput::Kind::Press, x, y, ViewInput::Button::Right));
                m_Viewer.Handle(At(ViewInput::Kind::Release, x + Below(90), y + Below(60)));
                return "band";
            default:
                m_Viewer.Handle(At(ViewInput::Kind::Press, x, y));
                for (int i = Below(6); i >= 0; --i) {
                    m_Viewer.Handle(At(ViewInput::Kind::Move, x + Below(120) - 60, y + Below(80) - 40));
                    Rest();
                }
                m_Viewer.Handle(At(ViewInput::Kind::Release, x + Below(120) - 60, y + Below(80) - 40));
                return "drag";
        }
    }

    /// Where there is much to see, and scrolling is more than drawing anew.
    void StandUpright() {
        m_Viewer.Handle(Key("n"));
        if (m_Viewer.GetView().IsPerspective()) m_Viewer.Handle(Key("p"));
        m_Viewer.Handle(Key("home"));
        const zul::TSize screen = m_Viewer.GetView().GetScreen();
        Wheel(m_Viewer, Below(screen.Width), Below(screen.Height), 3 + Below(8));
        m_Viewer.Work();
    }

    /// As much time as it happens to take until the next input.
    void Rest() {
        for (int i = Below(12); i > 0; --i) {
            m_Viewer.Work(zulmap::TimeSlice(std::chrono::microseconds(50)));
        }
        if (Below(2) == 0) m_Viewer.Compose();
    }

    int Below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(m_Random); }

private:
    zulmap::Viewer& m_Viewer;
    std::mt19937 m_Random;
};

class ViewerDraws : public testing::TestWithParam<const char*> {};

TEST_P(ViewerDraws, WhatAFreshRenderDrawsWhateverCameBefore) {
    zulmap::MapStyle style;
    if (GetParam() == std::string("pattern")) {
        style.brush = zulmap::BrushSettings{zul::CBrush::BrushPattern, 0};
        style.pattern = MakeNoise(8, 8);
    } else if (GetParam() == std::string("labels")) {
        style.hasLabels = true;
        style.font = zulmap::ParseFont("framed=1 italic=1");
    } else if (*GetParam() != '\0') {
        style.pen = zulmap::ParsePen(GetParam());
    }
    style.graticule = 20.0;
    style.symbol = zulmap::Symbol{MakeNoise(9, 7), 0xC0C0C0};
    zulmap::LoadedMap source(World());
    zulmap::Viewer viewer(source, style, kScreen);
    fresh::Renderer renderer(World(), style);
    Restless user(viewer, 7);
    for (int round = 0; round < 40; ++round) {
        if (user.Below(2) == 0) user.StandUpright();
        const std::string history = user.Act() + ", " + user.Act();
        user.Rest();
        viewer.Work();
        const std::string view = viewer.GetView().Describe();
        ASSERT_EQ(CountDifferences(fresh::PixelsOf(viewer.GetMapPicture()), renderer.Draw(view)), 0U)
            << history << '\n'
            << view;
    }
    // Off with the overlays: the screen is the map again, nothing of a band or a panel is left.
    viewer.Compose();
    if (viewer.HasOverlays()) viewer.Handle(Key("o"));
    if (viewer.HasHelp()) viewer.Handle(Key("h"));
    viewer.Compose();
    EXPECT_EQ(fresh::PixelsOf(viewer.GetScreen()), fresh::PixelsOf(viewer.GetMapPicture()));
}

INSTANTIATE_TEST_SUITE_P(Styles, ViewerDraws,
                         testing::Values("", "pattern", "labels", "type=2 color=#ff0000",
                                         "width=6 color=#8a7866", "type=3 style=9 width=2 color=#803020",
                                         "type=3 style=37 width=4 end=41 extra=#2030ff"));

TEST(Viewer, ScrollingPaintsOnlyWhatComesIn) {
    const zulmap::MapStyle style;
    zulmap::LoadedMap source(World());
    zulmap::Viewer viewer(source, style, kScreen);
    Wheel(viewer, 160, 100, 6);
    viewer.Work();
    const std::int64_t before = viewer.GetFrame().GetPaintedPixels();
    Drag(viewer, {100, 100}, {90, 107});
    viewer.Work();
    EXPECT_EQ(viewer.GetFrame().GetPaintedPixels() - before, 10 * 200 + 310 * 7);
}

TEST(Viewer, ScrollingStopsAtTheMapEdge) {
    const zulmap::MapStyle style;
    zulmap::LoadedMap source(World());
    zulmap::Viewer viewer(source, style, kScreen);
    const std::string whole = viewer.GetView().Describe();
    Drag(viewer, {100, 100}, {200, 150});
    EXPECT_EQ(viewer.GetView().Describe(), whole);
    Wheel(viewer, 0, 0, 3);
    Drag(viewer, {0, 0}, {3000, 3000});
    const TDoublePoint corner = viewer.GetView().GetPlace({0, 0});
    EXPECT_NEAR(corner.X, -180.0, 0.6);
    EXPECT_NEAR(corner.Y, 90.0, 0.6);
}

TEST(Viewer, ThePlaceUnderThePointerStaysWhenZooming) {
    const zulmap::MapStyle style;
    for (const char* keys : {"", "rr"}) {
        zulmap::LoadedMap source(World());
        zulmap::Viewer viewer(source, style, kScreen);
        Wheel(viewer, 160, 100, 5);
        for (const char* key = keys; *key != '\0'; ++key) {
            viewer.Handle(Key(std::string(1, *key)));
        }
        const zul::TLongPoint pixel{220, 60};
        const TDoublePoint before = viewer.GetView().GetPlace(pixel);
        Wheel(viewer, pixel.X, pixel.Y, 4);
        const TDoublePoint after = viewer.GetView().GetPlace(pixel);
        EXPECT_NEAR(before.X, after.X, 0.3) << keys;
        EXPECT_NEAR(before.Y, after.Y, 0.3) << keys;
    }
}

TEST(Viewer, LimitsHoldUntilTheyAreCleared) {
    const zulmap::MapStyle style;
    zulmap::LoadedMap source(World());
    zulmap::Viewer viewer(source, style, kScreen);
    Wheel(viewer, 160, 100, 6);
    const double scale = viewer.GetView().GetMetresInSm();
    viewer.Handle(Key("i"));
    viewer.Handle(Key("u"));
    const std::string held = viewer.GetView().Describe();
    for (const int steps : {1, -1, 20, -20}) {
        Wheel(viewer, 100, 50, steps);
        EXPECT_EQ(viewer.GetView().Describe(), held) << steps;
    }
    viewer.Handle(Key("c"));
    Wheel(viewer, 100, 50, 1);
    EXPECT_LT(viewer.GetView().GetMetresInSm(), scale);
    for (int i = 0; i < 5; ++i) {
        Wheel(viewer, 100, 50, 20);
    }
    const std::string closest = viewer.GetView().Describe();
    Wheel(viewer, 100, 50, 1);
    EXPECT_EQ(viewer.GetView().Describe(), closest);
}

TEST(ViewScript, SaysWhichLineIsWrong) {
    for (const char* line :
         {"fly 1 2", "press 1", "press 1 x", "drag 1 2 3 4 5", "wheel 1 2", "key", "save a.gif",
          "save a.png map", "save", "resize 0 5", "resize 5", "move 1 99999999999", "quit now"}) {
        std::istringstream file("# a remark\n\nidle\n" + std::string(line) + "\nquit\n");
        try {
            const zulmap::ViewScript script(file, "s.txt");
            ADD_FAILURE() << line;
        } catch (const zulmap::ToolError& error) {
            EXPECT_EQ(std::string(error.what()).find("s.txt, line 4: "), 0U) << error.what();
        }
    }
}

}  // namespace
