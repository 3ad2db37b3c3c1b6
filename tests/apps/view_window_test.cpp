/// \file
/// The viewer as its user meets it: a real window, moved about in with a real pointer and real keys.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "apps/zulmap/map_reader.h"
#include "apps/zulmap/render_command.h"
#include "tests/apps/apps_testing.h"
#include "tests/apps/fresh_picture.h"
#include "tests/apps/png_picture.h"

namespace {

namespace fs = std::filesystem;

constexpr int kWidth = 640;
constexpr int kHeight = 400;
constexpr char kMap[] = ZULMAP_DATA "/countries-110m.geojson";
constexpr char kPen[] = "type=3 style=12 width=2 color=#803020";

int Shell(const std::string& command) {
    const int result = std::system(command.c_str());
    return WIFEXITED(result) ? WEXITSTATUS(result) : -1;
}

using zulmap::ReadFile;

/// The X server's own picture of its screen, a file in the format of window dumps.
class ServerScreen {
public:
    ServerScreen() : m_Bytes(ReadFile(std::string(std::getenv("ZUL_XVFB_SCREEN")) + "/Xvfb_screen0")) {}

    std::uint32_t At(int x, int y) const {
        const std::size_t pixels = Header(0) + Header(19) * 12;
        const std::size_t at =
            pixels + static_cast<std::size_t>(y) * Header(12) + static_cast<std::size_t>(x) * 4;
        return Byte(at) | Byte(at + 1) << 8 | Byte(at + 2) << 16;
    }

private:
    std::uint32_t Byte(std::size_t at) const { return static_cast<std::uint8_t>(m_Bytes.at(at)); }
    std::uint32_t Header(std::size_t field) const {
        const std::size_t at = field * 4;
        return Byte(at) << 24 | Byte(at + 1) << 16 | Byte(at + 2) << 8 | Byte(at + 3);
    }

    std::string m_Bytes;
};

class ViewWindow : public zulmap::FolderTest {
protected:
    ~ViewWindow() override {
        if (m_Program != nullptr) pclose(m_Program);
    }

    void Start(const std::string& script) {
        Write("script", script);
        m_Program = popen(("cd '" + At("") + "' && exec '" ZULMAP_PROGRAM "' view '" + kMap + "' --pen '" +
                           kPen + "' --size 640x400 --script script")
                              .c_str(),
                          "r");
        ASSERT_NE(m_Program, nullptr);
    }
    /// What the script prints next.
    std::string ReadLine() {
        std::array<char, 1000> line{};
        if (std::fgets(line.data(), line.size(), m_Program) == nullptr) return {};
        return line.data();
    }
    int Finish() {
        const int result = pclose(std::exchange(m_Program, nullptr));
        return WIFEXITED(result) ? WEXITSTATUS(result) : -1;
    }

    FILE* m_Program = nullptr;
};

TEST_F(ViewWindow, EachPictureIsWhatAFreshRenderDraws) {
    // In braces pixels of the window and keys; the script waits for the last one.
    const struct {
        const char* name;
        const char* inputs;
        const char* change;  ///< what the view says of itself afterwards
    } steps[] = {
        {"band", "{300,120} mousedown 3 {320,140} {380,170} {420,200} mouseup 3 {F5}", "angle 0 depth 0"},
        {"drag", "{300,200} mousedown 1 {290,203} {270,190} {233,261} mouseup 1 {F5}", "angle 0 depth 0"},
        {"far", "{600,300} mousedown 1 {500,250} {300,150} {90,120} mouseup 1 {F5}", "angle 0 depth 0"},
        {"turned", "{r} {r} {F5}", "angle 30 depth 0"},
        {"wheel", "{200,100} click 4 click 4 click 5 {F5}", "angle 30 depth 0"},
        {"drag turned", "{300,200} mousedown 1 {290,203} {233,261} mouseup 1 {F5}", "angle 30 depth 0"},
        {"perspective", "{p} {F5}", "angle 30 depth 3"},
        {"drag in it", "{300,300} mousedown 1 {290,303} {333,311} mouseup 1 {F5}", "angle 30 depth 3"},
        {"resized", "windowsize 500 450 {F5}", "screen 500 450"},
    };
    std::string script = "idle\nsave picture.png\nprint\n";
    for (std::size_t i = 0; i < std::size(steps); ++i) {
        script += "await f5\nidle\nsave picture.png\nsave screen.png screen\nprint\n";
    }
    Start(script);
    std::string view = ReadLine();
    ASSERT_NE(view, "");
    const auto map = std::make_shared<const zulmap::MapData>(
        zulmap::ReadMaps({kMap}, [](const std::string&, std::size_t) {}));
    zulmap::MapRequest request;
    request.pen = kPen;
    const zulmap::MapStyle style = zulmap::ParseStyle(request);
    fresh::Renderer renderer(map, style);
    EXPECT_EQ(ReadPng(At("picture.png")).pixels, renderer.Draw(view));

    for (const auto& step : steps) {
        std::string inputs = step.inputs;
        for (std::size_t at = 0; (at = inputs.find('{')) != inputs.npos;) {
            const std::size_t end = inputs.find('}', at);
            std::string what = inputs.substr(at + 1, end - at - 1);
            const std::size_t comma = what.find(',');
            // Window 0 stands for real keys; another one would be sent them as messages.
            const char* command = "key --window 0 ";
            if (comma != what.npos) {
                what[comma] = ' ';
                command = "mousemove --window %1 ";
            }
            inputs.replace(at, end + 1 - at, command + what);
        }
        const std::string before = view;
        ASSERT_EQ(Shell("xdotool search --sync --onlyvisible --name '^zulmap ' " + inputs), 0) << step.name;
        view = ReadLine();
        EXPECT_NE(view, before) << step.name;
        EXPECT_NE(view.find(step.change), view.npos) << step.name << ": " << view;
        EXPECT_TRUE(ReadPng(At("picture.png")).pixels == renderer.Draw(view)) << step.name << ": " << view;
    }
    EXPECT_EQ(Finish(), 0);
}

TEST_F(ViewWindow, TheScreenShowsThePicture) {
    Start("idle\nsave screen.png screen\nprint\nawait f5\n");
    ASSERT_NE(ReadLine(), "");
    const Picture picture = ReadPng(At("screen.png"));
    ASSERT_EQ(picture.width, kWidth);
    ASSERT_EQ(picture.height, kHeight);
    const std::string geometry = At("geometry");
    ASSERT_EQ(Shell("xdotool search --sync --onlyvisible --name '^zulmap ' getwindowgeometry --shell "
                    "getmouselocation --shell > '" +
                    geometry + "'"),
              0);
    int left = -1;
    int top = -1;
    int pointerX = -1;
    int pointerY = -1;
    ASSERT_EQ(std::sscanf(ReadFile(geometry).c_str(),
                          "WINDOW=%*d\nX=%d\nY=%d\nWIDTH=%*d\nHEIGHT=%*d\nSCREEN=%*d\nX=%d\nY=%d", &left,
                          &top, &pointerX, &pointerY),
              4)
        << ReadFile(geometry);
    const ServerScreen server;
    int differences = 0;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            // The arrow lies on top.
            if (std::abs(left + x - pointerX) < 24 && std::abs(top + y - pointerY) < 24) continue;
            if (server.At(left + x, top + y) != picture.At(x, y)) ++differences;
        }
    }
    EXPECT_EQ(differences, 0);
    EXPECT_EQ(Shell("xdotool search --sync --onlyvisible --name '^zulmap ' mousemove --window %1 9 9 key "
                    "--window 0 F5"),
              0);
    EXPECT_EQ(Finish(), 0);
}

TEST_F(ViewWindow, WhatCannotBeShownIsSaidInOneLine) {
    Write("wrong", "idle\nfly\n");
    Write("unwritable", "save nowhere/a.png\n");
    const struct {
        const char* arguments;
        const char* complaint;
    } rows[] = {
        {"env -u DISPLAY -u WAYLAND_DISPLAY -u SDL_VIDEODRIVER %s view %m", "no display"},
        {"env -u WAYLAND_DISPLAY -u SDL_VIDEODRIVER DISPLAY=:9999 %s view %m", "no display"},
        {"%s view nosuch.geojson", "nosuch.geojson"},
        {"%s view %m --size 10", "size '10'"},
        {"%s view %m --script nosuch", "nosuch"},
        {"%s view %m --script wrong", "wrong, line 2: 'fly'"},
        {"%s view %m --script unwritable", "nowhere/a.png"},
        {"%s view", "maps"},
    };
    for (const auto& row : rows) {
        std::string command = row.arguments;
        command.replace(command.find("%s"), 2, "'" ZULMAP_PROGRAM "'");
        if (command.find("%m") != command.npos) command.replace(command.find("%m"), 2, kMap);
        EXPECT_EQ(Shell("cd '" + At("") + "' && " + command + " 2> errors"), 2) << row.arguments;
        const std::string errors = ReadFile(At("errors"));
        EXPECT_EQ(errors.find("zulmap: "), 0U) << errors;
        EXPECT_NE(errors.find(row.complaint), errors.npos) << errors;
        EXPECT_EQ(errors.find('\n'), errors.size() - 1) << errors;
    }
}

}  // namespace
