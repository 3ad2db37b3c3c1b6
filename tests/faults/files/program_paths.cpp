// The program, whole: from its command line to its exit status.
#include <fcntl.h>
#include <stdio_ext.h>
#include <sys/mman.h>
#include <unistd.h>

#include <filesystem>
#include <iostream>
#include <regex>
#include <sstream>
#include <stdexcept>

#include "apps/zulmap/picture_file.h"
#include "apps/zulmap/world/import_command.h"
#include "apps/zulmap/world/style_command.h"
#include "tests/faults/files/file_faults.h"

int zulmap_main(int argc, char** argv);  // of apps/zulmap/main.cpp

namespace faults {
namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

constexpr int kFailed = 2;
const std::string kOld = "what stood there before";

/// Leads standard output to an open file, or to memory, and standard error to memory.
class Redirection {
public:
    explicit Redirection(int output) {
        ::dup2(output >= 0 ? output : m_Memory, STDOUT_FILENO);
        ::dup2(m_Errors, STDERR_FILENO);
    }
    ~Redirection() {
        std::fflush(stdout);
        std::cout.clear();
        std::clearerr(stdout);
        __fpurge(stdout);  // what could not be written is not for the next one
        ::dup2(m_Output, STDOUT_FILENO);
        ::dup2(m_FormerErrors, STDERR_FILENO);
        for (const int file : {m_Output, m_Memory, m_Errors, m_FormerErrors})
            ::close(file);
    }
    Redirection(const Redirection&) = delete;
    Redirection& operator=(const Redirection&) = delete;

    std::string ReadErrors() const {
        std::string text(1000, '\0');
        const ssize_t size = ::pread(m_Errors, text.data(), text.size(), 0);
        text.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
        return text;
    }

private:
    int m_Output = ::dup(STDOUT_FILENO);
    int m_FormerErrors = ::dup(STDERR_FILENO);
    int m_Memory = ::memfd_create("output", 0);
    int m_Errors = ::memfd_create("errors", 0);
};

/// Whether the complaint is one line that names a file.
bool IsClear(const std::string& complaint) {
    static const std::regex Clear(
        "zulmap: [^\n]*(\\.(geojson|csv|bmp|bpw|png|zul|xml|txt)|standard output)[^\n]*\n");
    return std::regex_match(complaint, Clear);
}

/// Runs the program. \returns whether it says that all is well.
bool Zulmap(const Words& words, int output = -1) {
    std::string name = "zulmap";
    Words copies = words;
    std::vector<char*> arguments = {name.data()};
    for (std::string& word : copies)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    int status = 0;
    std::string complaint;
    {
        const Redirection redirection(output);
        status = zulmap_main(static_cast<int>(arguments.size()) - 1, arguments.data());
        complaint = redirection.ReadErrors();
    }
    if (status == 0 && complaint.empty()) return true;
    if (status != kFailed || !IsClear(complaint))
        throw std::runtime_error("it ends with " + std::to_string(status) + " and says '" + complaint + "'");
    return false;
}

/// What a store holds, without the figures of its file, and how it looks.
std::string MapIn(const std::string& store) try {
    std::ostringstream told;
    zulmap::ShowInfo(store, told);
    zulmap::ExportStyle(store, "../style.txt");
    return std::regex_replace(told.str(), std::regex("[0-9.]+ (bytes|rows)"), "") + ReadWhole("../style.txt");
} catch (const std::exception& error) {
    return error.what();
}

void MakeInputs() {
    WriteWhole("map.geojson", R"({"type": "FeatureCollection", "features": [
        {"type": "Feature", "properties": {"name": "left"}, "geometry": {"type": "Polygon",
            "coordinates": [[[0, 0], [50, 0], [50, 50], [0, 50], [0, 0]]]}},
        {"type": "Feature", "properties": {"name": "right"}, "geometry": {"type": "Point", "coordinates": [95, 45]}}]})" +
                                  std::string(9000, ' '));
    std::string table = "name,WKT\n";
    for (int i = 0; i < 400; ++i)
        table += "place " + std::to_string(i) + ",POINT(" + std::to_string(i % 90) + " " +
                 std::to_string(i % 50) + ")\n";
    WriteWhole("places.csv", table);
    const std::vector<std::uint32_t> pixels(64 * 64, 0xFF8000);
    zulmap::WritePicture("pixels.bmp", {64, 64, pixels.data()});
    WriteWhole("script.txt", "idle\nkey +\nidle\nsave out.png\n" + std::string(5000, '\n') + "quit\n");
    WriteWhole("pixels.bpw", "1\n0\n0\n-1\n0.5\n49.5\n");
}

Path Command(const std::string& name, const Words& words, const Words& outputs, bool areThere = false) {
    return {"zulmap: " + name, [words, outputs, areThere] {
                MakeInputs();
                for (const std::string& file : outputs) {
                    if (areThere) WriteWhole(file, kOld);
                }
                const auto made = [outputs] {
                    std::string all;
                    for (const std::string& file : outputs)
                        all += fs::exists(file) ? ReadWhole(file) : "none";
                    return all;
                };
                return Run{[words] { return Zulmap(words); }, made};
            }};
}

/// A document of the map's look with other widths, too long for one read.
void MakeStyle(const std::string& file, const std::string& width) {
    zulmap::ExportStyle("map.zul", file);
    WriteWhole(file,
               std::regex_replace(ReadWhole(file), std::regex(width), width + "1") + std::string(9000, '\n'));
}

/// A command on a store, which is there before.
Path OnMap(const std::string& name, const Words& words, const std::string& output = "", bool isThere = true) {
    return {"zulmap: " + name, [words, output, isThere] {
                MakeInputs();
                if (isThere) Zulmap({"import", "places.csv", "-o", "map.zul"});
                if (isThere) {
                    MakeStyle("style.xml", "width='");
                    MakeStyle("style.txt", "Width : ");
                }
                if (!output.empty()) WriteWhole(output, kOld);
                const auto made = [output] {
                    return (output.empty() ? "" : ReadWhole(output)) + MapIn("map.zul");
                };
                return Run{[words] { return Zulmap(words); }, made};
            }};
}

/// A command that tells what it is asked on standard output, which is a file.
Path Telling(const std::string& name, const Words& words) {
    Path path = OnMap(name, words);
    path.setUp = [words, onMap = path.setUp] {
        Run run = onMap();
        const int output = ::open("told.txt", O_WRONLY | O_CREAT, 0600);
        run.act = [words, output] { return Zulmap(words, output); };
        run.end = [output] { ::close(output); };
        return run;
    };
    return path;
}

}  // namespace

void WarmUp() {
    MakeInputs();
    Zulmap({"render", "map.geojson", "places.csv", "--labels", "name", "-o", "out.png"});
}

std::vector<Path> ProgramPaths() {
    // Windows come without a screen.
    ::setenv("SDL_VIDEODRIVER", "dummy", 1);
    return {
        Command("picture of a map",
                {"render", "map.geojson", "--labels", "name", "--size", "60x30", "-o", "out.png"},
                {"out.png"}),
        Command("picture over an old one", {"render", "places.csv", "--size", "60x30", "-o", "out.bmp"},
                {"out.bmp"}, true),
        Command("picture of rasters",
                {"render", "pixels.bmp", "--raster", "pixels.bmp,0,0,9,9", "--symbol", "pixels.bmp",
                 "--brush", "type=3 pattern=pixels.bmp", "map.geojson", "--size", "60x30", "-o", "out.png"},
                {"out.png"}),
        Command("sheet of pens", {"pens", "--sheet", "endings", "-o", "out.png"}, {"out.png"}, true),
        Command("sheet of labels", {"labels", "-o", "out.bmp"}, {"out.bmp"}),
        Command("pictures of a view", {"view", "map.geojson", "--size", "80x60", "--script", "script.txt"},
                {"out.png"}, true),
        OnMap("picture of a stored map", {"render", "map.zul", "--size", "60x30", "-o", "out.png"},
              "out.png"),
        OnMap("new store", {"import", "map.geojson", "pixels.bmp", "-o", "map.zul"}, "", false),
        OnMap("store over an old map", {"import", "map.geojson", "pixels.bmp", "-o", "map.zul"}),
        Telling("store described", {"info", "map.zul"}),
        OnMap("look written as XML", {"style", "map.zul", "--export", "out.xml"}, "out.xml"),
        OnMap("look written as text", {"style", "map.zul", "--export", "out.txt"}, "out.txt"),
        OnMap("look read as XML", {"style", "map.zul", "--import", "style.xml"}),
        OnMap("look read as text", {"style", "map.zul", "--import", "style.txt"}),
    };
}

}  // namespace faults
