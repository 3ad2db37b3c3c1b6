// The program's commands, when memory runs out; of `import` what comes behind GDAL, which ends the process
// then.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <stdexcept>

#include "apps/zulmap/label_sheet/label_sheet_painter.h"
#include "apps/zulmap/pens/sheet_painter.h"
#include "apps/zulmap/render_command.h"
#include "apps/zulmap/sheet_file.h"
#include "apps/zulmap/tool_report.h"
#include "apps/zulmap/view/view_script.h"
#include "apps/zulmap/view/viewer.h"
#include "apps/zulmap/whole_file.h"
#include "apps/zulmap/world/import_command.h"
#include "apps/zulmap/world/style_command.h"
#include "tests/faults/memory_faults.h"
#include "tests/faults/stored_state.h"
#include "zul/kernel/library.h"

namespace faults {
namespace {

namespace fs = std::filesystem;

void Write(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

/// A stored map and documents of its look, made once.
class CTemplate {
public:
    CTemplate() {
        fs::create_directories(m_Folder);
        Write(m_Folder / "map.geojson", R"({"type": "FeatureCollection", "features": [
            {"type": "Feature", "properties": {"name": "a land of its own"}, "geometry": {"type": "Polygon",
                "coordinates": [[[0, 0], [50, 0], [50, 50], [0, 50], [0, 0]]]}},
            {"type": "Feature", "properties": {"name": "river"}, "geometry": {"type": "LineString",
                "coordinates": [[5, 5], [95, 45], [95, 5]]}},
            {"type": "Feature", "properties": {"name": "town"}, "geometry": {"type": "Point",
                "coordinates": [75, 45]}}]})");
        std::ostringstream told;
        zulmap::Import({{(m_Folder / "map.geojson").string()}, {}, GetMap()}, told);
        const std::vector<std::uint32_t> pixels(9 * 9, 0xFF8000);
        const std::string picture = (m_Folder / "pixels.bmp").string();
        zulmap::WritePicture(picture, {9, 9, pixels.data()});
        zulmap::FieldRequest fields;
        fields.withValues = true;
        m_OtherMap = zulmap::ReadMaps(
            {(m_Folder / "map.geojson").string()}, [](const std::string&, std::size_t) {},
            {{picture, {0, 0, 9, 9}}}, fields);
        m_OtherMap.features.back().values.front() = "a town that has another name";
        MakeStyle("style.xml", "width='");
        MakeStyle("style.txt", "Width : ");
    }
    ~CTemplate() { fs::remove_all(m_Folder); }
    CTemplate(const CTemplate&) = delete;
    CTemplate& operator=(const CTemplate&) = delete;

    const fs::path& GetFolder() const { return m_Folder; }
    /// Another map than the stored one, as it was read, with a raster.
    const zulmap::MapData& GetOtherMap() const { return m_OtherMap; }

private:
    /// A document of the map's look with other widths.
    void MakeStyle(const std::string& name, const std::string& width) const {
        const std::string path = (m_Folder / name).string();
        zulmap::ExportStyle(GetMap(), path);
        std::string text = zulmap::ReadFile(path);
        for (std::size_t at = text.find(width); at != text.npos; at = text.find(width, at + width.size()))
            text.insert(at + width.size(), "1");
        Write(path, text);
    }
    std::string GetMap() const { return (m_Folder / "map.zul").string(); }

    const fs::path m_Folder =
        fs::temp_directory_path() / ("zulmap-faults-" + std::to_string(std::random_device()()));
    zulmap::MapData m_OtherMap;
};

/// A folder with the map and, where the output goes, something else.
class CProgram : public CStage {
public:
    explicit CProgram(const CTemplate& like)
        : OtherMap(like.GetOtherMap()),
          m_Folder(like.GetFolder().string() + "-" + std::to_string(std::random_device()())) {
        fs::copy(like.GetFolder(), m_Folder);
        Write(m_Folder / "script.txt", "key +\nidle\nkey h\nsave " + At("out.png") + '\n');
        Wipe();
    }
    ~CProgram() override {
        std::error_code ignored;
        fs::remove_all(m_Folder, ignored);
    }
    std::string State() override {
        std::ostringstream told;
        zulmap::ShowInfo(At("map.zul"), told);
        zulmap::ExportStyle(At("map.zul"), At("look.txt"));
        std::string text = WithoutFile(told.str()) + zulmap::ReadFile(At("look.txt"));
        fs::remove(At("look.txt"));
        for (const auto& entry : fs::directory_iterator(m_Folder)) {
            const std::string name = entry.path().filename().string();
            if (name[0] == '~' || name.rfind("new.", 0) == 0) text += name.substr(0, 7) + " is there ";
        }
        return HashOf(text.data(), text.size()) + (Outputs() == m_Old ? "old" : "new");
    }
    std::string Picture() override {
        const std::string outputs = Outputs();
        const std::string told = m_Sink.Get();
        return HashOf(outputs.data(), outputs.size()) + told.substr(std::min(told.find('\n'), told.size()));
    }
    void Wipe() override {
        for (const char* name : kOutputs)
            Write(At(name), "what stood there before");
        fs::remove(At("new.zul"));
        m_Old = Outputs();
        m_Sink.Clear();
    }

    std::string At(const std::string& name) const { return (m_Folder / name).string(); }
    /// What the tool tells of a store, without the first line, which is about the file.
    static std::string WithoutFile(const std::string& told) { return told.substr(told.find('\n')); }

    const zulmap::MapData& OtherMap;
    /// Takes what is told, without memory of its own.
    std::ostream& Tell() {
        m_Sink.Clear();
        return m_Report;
    }

private:
    class CSink : public std::streambuf {
    public:
        CSink() { Clear(); }
        void Clear() { setp(m_Text, m_Text + sizeof m_Text); }
        std::string Get() const { return {pbase(), pptr()}; }

    private:
        char m_Text[4000];
    };

    static constexpr const char* kOutputs[] = {"out.png", "out.bmp", "out.xml", "out.txt"};

    std::string Outputs() const {
        std::string text;
        for (const char* name : kOutputs)
            text += zulmap::ReadFile(At(name));
        return text;
    }

    const fs::path m_Folder;
    std::string m_Old;
    CSink m_Sink;
    std::ostream m_Report{&m_Sink};
};

void Render(CProgram& s) {
    zulmap::RenderRequest request;
    request.maps = {s.At("map.zul")};
    request.size = "90x60";
    request.labels = "name";
    request.graticule = "10";
    request.output = s.At("out.png");
    std::ostringstream told;
    zulmap::Render(request, told);
}

void View(CProgram& s) {
    zulmap::MapRequest request;
    request.maps = {s.At("map.zul")};
    request.labels = "name";
    std::istringstream file(zulmap::ReadFile(s.At("script.txt")));
    zulmap::ViewScript script(file, "script.txt");
    zulmap::CountingErrorHandler errors;
    const zul::CErrorHandlerScope scope(&errors);
    const zulmap::MapStyle style = zulmap::ParseStyle(request);
    const std::unique_ptr<zulmap::MapSource> source =
        zulmap::OpenMaps(request, [](const std::string&, std::size_t) {});
    zulmap::Viewer viewer(*source, style, {90, 60});
    std::ostringstream told;
    while (!script.IsDone()) {
        viewer.Work();
        viewer.Compose();
        if (const auto input = script.Next(viewer, errors, told)) viewer.Handle(*input);
    }
}

void Pens(CProgram& s) {
    std::ostringstream told;
    const zulmap::PenSheet sheet = zulmap::MakePenSheet("endings");
    zulmap::WriteSheet<zulmap::SheetPainter>(s.At("out.bmp"), told, sheet);
}

void Labels(CProgram& s) {
    std::ostringstream told;
    zulmap::WriteSheet<zulmap::LabelSheetPainter>(s.At("out.png"), told);
}

void WritePicture(const std::string& output) {
    constexpr std::int32_t width = 33, height = 7;
    std::vector<std::uint32_t> pixels(width * height);
    for (std::uint32_t i = 0; i < pixels.size(); ++i)
        pixels[i] = i * 2654435761U >> 8;
    zulmap::WritePicture(output, {width, height, pixels.data()});
}

const struct {
    const char* Name;
    void (*Call)(CProgram&);
    std::uint64_t Step = 1;
} ProgramCalls[] = {
    {"write PNG", [](CProgram& s) { WritePicture(s.At("out.png")); }},
    {"write BMP", [](CProgram& s) { WritePicture(s.At("out.bmp")); }},
    {"render a stored map", Render, 61},
    {"view a stored map", View, 149},
    {"draw pens", Pens, 211},
    {"draw labels", Labels, 2003},
    {"describe a store", [](CProgram& s) { zulmap::ShowInfo(s.At("map.zul"), s.Tell()); }, 31},
    {"import into a new store", [](CProgram& s) { zulmap::StoreMap(s.OtherMap, s.At("new.zul"), s.Tell()); },
     31},
    {"import over a map", [](CProgram& s) { zulmap::StoreMap(s.OtherMap, s.At("map.zul"), s.Tell()); }, 31},
    {"export a look as XML", [](CProgram& s) { zulmap::ExportStyle(s.At("map.zul"), s.At("out.xml")); }, 31},
    {"export a look as text", [](CProgram& s) { zulmap::ExportStyle(s.At("map.zul"), s.At("out.txt")); }, 31},
    {"import a look as XML", [](CProgram& s) { zulmap::ImportStyle(s.At("map.zul"), s.At("style.xml")); },
     43},
    {"import a look as text", [](CProgram& s) { zulmap::ImportStyle(s.At("map.zul"), s.At("style.txt")); },
     43},
};

TEST(MemoryFaults, OfTheProgram) {
    AutoRegister();
    const CTemplate like;
    std::vector<TPath> paths;
    for (const auto& row : ProgramCalls) {
        const auto call = [&row](CStage& stage) {
            try {
                row.Call(static_cast<CProgram&>(stage));
                return true;
            } catch (const std::exception&) {
                return false;
            }
        };
        paths.push_back(
            {row.Name, [&like] { return std::make_unique<CProgram>(like); }, call, true, row.Step});
    }
    FailEachAllocation(paths);
}

}  // namespace
}  // namespace faults
