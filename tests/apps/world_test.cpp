/// \file
/// Maps in stores: what comes back of them, how they look, and what damage does.

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "apps/zulmap/picture_file.h"
#include "apps/zulmap/render_command.h"
#include "apps/zulmap/world/import_command.h"
#include "apps/zulmap/world/stored_map.h"
#include "apps/zulmap/world/stored_path.h"
#include "apps/zulmap/world/style_command.h"
#include "tests/apps/apps_testing.h"
#include "tests/apps/png_picture.h"

namespace zulmap {
namespace {

namespace fs = std::filesystem;

bool IsSame(const Path& a, const Path& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof a[0]) == 0;
}

TEST(StoredPath, ComesBackToTheBitFromWhereverItLies) {
    std::mt19937 random(7);
    const auto whole = [&random](double most) {
        return std::floor(std::uniform_real_distribution<double>(-most, most)(random));
    };
    const struct {
        const char* name;
        std::function<double()> coordinate;
        std::size_t most;  // bytes that 3000 points take
    } rows[] = {
        {"whole numbers", [&] { return whole(30000); }, 40000},
        {"two digits", [&] { return whole(9000) / 100.0; }, 13000},
        {"wide", [&] { return whole(2e9) / 10.0; }, 80000},
        {"steps", [&] { return -180.0 + std::max(0.0, whole(4000)) * 0.0036000360003600037; }, 30000},
        {"few off the grid", [&] { return whole(100) > 98 ? 0.1 / 3 : whole(9000) / 100.0; }, 50000},
        {"minus zero", [&] { return whole(2) < 0 ? -0.0 : whole(9) / 10.0; }, 50000},
        {"irregular", [&] { return std::sqrt(random()) - 3e4; }, 50000},
        {"far", [&] { return 1e15 - std::abs(whole(1e9)) / 8; }, 50000},
        {"tiny", [&] { return whole(9e8) * 1e-300; }, 50000},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        MapData map;
        map.features.emplace_back();
        for (const std::size_t size : {1000, 1, 1997, 2}) {
            Path& path = map.features[0].lines.emplace_back();
            while (path.size() < size) {
                path.push_back({row.coordinate(), row.coordinate()});
            }
        }
        const PointGrid grid = FindGrid(map, 0);
        std::size_t bytes = 0;
        for (const Path& path : map.features[0].lines) {
            zul::CMemoryStream stream;
            ASSERT_TRUE(WritePath(stream, path, grid));
            bytes += stream.GetSize();
            stream.SetPosition(0);
            Path back;
            ASSERT_TRUE(ReadPath(stream, back, grid));
            EXPECT_TRUE(IsSame(back, path));
            EXPECT_EQ(stream.GetRemaining(), 0U);
            for (std::size_t size = 0; size < stream.GetSize(); size += 1 + size / 9) {
                zul::CMemoryStream cut(stream.GetBuffer(), size);
                // The library's lists may end before what newer ones have behind their points.
                EXPECT_TRUE(!ReadPath(cut, back, grid) || IsSame(back, path)) << size;
            }
            for (int i = 0; i < 300; ++i) {
                std::vector<std::uint8_t> hostile(stream.GetBuffer(), stream.GetBuffer() + stream.GetSize());
                hostile[random() % std::min<std::size_t>(hostile.size(), i % 2 == 0 ? 24 : 9999)] =
                    static_cast<std::uint8_t>(random());
                zul::CMemoryStream changed(hostile.data(), hostile.size());
                if (!ReadPath(changed, back, grid)) continue;
                for (const TDoublePoint& p : back) {
                    ASSERT_TRUE(std::abs(p.X) <= kFarthestCoordinate && std::abs(p.Y) <= kFarthestCoordinate);
                }
            }
        }
        EXPECT_LE(bytes, row.most);
    }
}

/// Two layers, of areas with holes, and of lines and points, above a picture.
class World : public FolderTest {
protected:
    void SetUp() override {
        std::mt19937 random(11);
        std::ostringstream areas, lines;
        for (int i = 0; i < 100; ++i) {
            const double x = i % 10 * 10;
            const double y = i / 10 * 10.0;
            // Some touch their neighbours and some do not.
            const double right = x + 10 - static_cast<double>(random() % 3);
            areas << Opening(i) << R"("Polygon", "coordinates": [[)"
                  << Points({{x, y}, {right, y}, {right, y + 10}}) << ","
                  << Points({{x + 0.25, y + 10}, {x, y}}) << "], ["
                  << Points({{x + 3, y + 3}, {x + 3.37, y + 7.01}, {x + 6, y + 5}, {x + 3, y + 3}}) << "]]}}";
            lines << Opening(i) << R"("LineString", "coordinates": [)"
                  << Points({{x + 0.5, y + 1}, {x + 9.25, y + 6.125}, {x + 9, y + 9}}) << "]}}";
            if (i % 9 == 0)
                lines << Opening(i + 1) << R"("Point", "coordinates": )" << Points({{x + 5, y + 2}}) << "}}";
        }
        Write("areas.geojson", R"({"type": "FeatureCollection", "features": [)" + areas.str() + "]}");
        Write("lines.geojson", R"({"type": "FeatureCollection", "features": [)" + lines.str() + "]}");
        const std::vector<std::uint32_t> pixels = {0xFF8000, 0x0080FF, 0x80FF00, 0x8000FF};
        WritePicture(At("ground.bmp"), {2, 2, pixels.data()});
        m_Source.maps = {At("areas.geojson"), At("lines.geojson")};
        m_Source.rasters = {At("ground.bmp") + ",40,-20,130,70"};
        m_Stored.maps = {At("world.zul")};
        Import();
    }
    static std::string Opening(int i) {
        return std::string(i > 0 ? "," : "") + R"({"type": "Feature", "properties": {"name": "N)" +
               std::to_string(i) + R"("}, "geometry": {"type": )";
    }
    static std::string Points(const Path& path) {
        std::ostringstream text;
        for (std::size_t i = 0; i < path.size(); ++i) {
            text << (i > 0 ? "," : "") << '[' << path[i].X << ',' << path[i].Y << ']';
        }
        return text.str();
    }
    void Import() const {
        std::ostringstream report;
        zulmap::Import({m_Source.maps, m_Source.rasters, At("world.zul")}, report);
    }
    std::string Info() const {
        std::ostringstream report;
        ShowInfo(At("world.zul"), report);
        return report.str();
    }
    std::vector<std::uint32_t> Draw(RenderRequest request) const {
        std::ostringstream report;
        request.output = At("out.png");
        Render(request, report);
        return ReadPng(request.output).pixels;
    }
    /// What a program would say, "" when all is well.
    template <class Action>
    static std::string ComplaintOf(Action action) {
        try {
            action();
        } catch (const ToolError& error) {
            return error.what();
        }
        return {};
    }
    std::string Style() const {
        ExportStyle(At("world.zul"), At("now.xml"));
        return ReadFile(At("now.xml"));
    }
    std::string Take(const std::string& ending, const std::string& document) const {
        Write("new" + ending, document);
        return ComplaintOf([&] { ImportStyle(At("world.zul"), At("new" + ending)); });
    }

    RenderRequest m_Source;
    RenderRequest m_Stored;
};

std::string Replaced(std::string text, const std::string& part, const std::string& by) {
    const std::size_t at = text.find(part);
    EXPECT_NE(at, text.npos) << part;
    return at == text.npos ? text : text.replace(at, part.size(), by);
}

TEST_F(World, LooksLikeItsSourceFromEverywhere) {
    const struct {
        const char* box;
        const char* angle;
        const char* depth;
        const char* labels;
    } rows[] = {{"", "", "", ""},
                {"", "30", "", "name"},
                {"20,20,60,50", "", "", "name"},
                {"33.3,41.7,35.1,43", "77", "", ""},
                {"0.1,0.1,0.2,0.15", "", "", ""},
                {"20,20,60,50", "-20", "9e6", "name"},
                {"-500,-500,-400,-400", "", "", "name"},
                {"45,5,47,7", "200", "2e6", ""}};
    const auto blank = Draw([&] {
        RenderRequest far = m_Source;
        far.box = "-500,-500,-400,-400";
        return far;
    }());
    for (const auto& row : rows) {
        std::vector<std::uint32_t> pixels[2];
        for (const bool isStored : {false, true}) {
            RenderRequest request = isStored ? m_Stored : m_Source;
            request.size = "300x200";
            if (*row.box != 0) request.box = row.box;
            if (*row.angle != 0) request.angle = row.angle;
            if (*row.depth != 0) request.depth = row.depth;
            if (*row.labels != 0) request.labels = row.labels;
            pixels[isStored ? 1 : 0] = Draw(request);
        }
        EXPECT_FALSE(pixels[0].empty());
        EXPECT_TRUE(pixels[0] == pixels[1]) << row.box << ' ' << row.angle << ' ' << row.depth;
    }
    EXPECT_NE(blank, Draw(m_Stored));
}

TEST_F(World, OnlyWhatABoxTouchesIsRead) {
    StoredMap map(At("world.zul"), {}, {});
    std::uint64_t before = map.GetRowsRead();
    const struct {
        Box box;
        std::uint64_t parts;
    } rows[] = {{{-50, -50, -40, -40}, 0},
                {{21.5, 21.5, 22, 22}, 2},
                {{21.5, 21.5, 22, 32}, 4},
                {{-1, -1, 39, 101}, 2 * 40 + 5}};
    for (const auto& row : rows) {
        map.Read(row.box);
        EXPECT_EQ(map.GetRowsRead() - before, row.parts) << row.box.maxX;
        before = map.GetRowsRead();
    }
}

TEST_F(World, ASecondImportReplacesTheMapAndNothingElse) {
    const std::string first = Info();
    EXPECT_NE(first.find("\nsound\n"), first.npos) << first;
    zul::CStore store;
    ASSERT_TRUE(store.Open(zul::CString(At("world.zul").c_str()).GetBuffer()));
    const std::uint64_t rows = store.GetCount();
    zul::CPen pen;
    pen.SetWidth(17);
    store.SetRoot(u"of another program", &pen);
    store.Close();
    // Brushes that the style let go are no rows any more, either.
    const std::string style = Style();
    std::string shorter = style;
    const std::size_t second = shorter.find("<Brush", shorter.find("<Brush", shorter.find("<Areas>")) + 1);
    shorter.erase(second, shorter.find("</Areas>") - second);
    EXPECT_EQ(Take(".xml", shorter), "");
    ASSERT_TRUE(store.Open(zul::CString(At("world.zul").c_str()).GetBuffer()));
    EXPECT_EQ(store.GetCount(), rows + 1 - 7);
    store.Close();
    Import();
    ASSERT_TRUE(store.Open(zul::CString(At("world.zul").c_str()).GetBuffer()));
    EXPECT_EQ(store.GetCount(), rows + 1);
    const auto kept = store.GetRoot<zul::CPen>(u"of another program");
    ASSERT_TRUE(kept.IsExist());
    EXPECT_EQ(kept->GetWidth(), 17);
    EXPECT_EQ(Style(), style);
}

TEST_F(World, StyleDocumentsRoundAndChangeWhatTheySay) {
    const std::string style = Style();
    ExportStyle(At("world.zul"), At("now.txt"));
    const std::string text = ReadFile(At("now.txt"));
    const auto reds = [this] {
        const std::vector<std::uint32_t> pixels = Draw(m_Stored);
        return std::count(pixels.begin(), pixels.end(), 0xFF0000U);
    };
    EXPECT_EQ(reds(), 0);
    const std::string red = Replaced(style, "color='f2e3bc(242,227,188)'", "color='ff0000(255,0,0)'");
    EXPECT_EQ(Take(".xml", red), "");
    EXPECT_GT(reds(), 1000);
    EXPECT_EQ(Style(), red);
    EXPECT_EQ(Take(".txt", text), "");
    EXPECT_EQ(Style(), style);
    const std::size_t brushes = red.find("<Brush", red.find("<Areas>"));
    std::string more = red;
    const std::size_t first = brushes - 6;  // with its indent
    more.insert(first, more.substr(first, more.find("    </Areas>") - first));
    EXPECT_EQ(Take(".xml", more), "");
    EXPECT_EQ(Style(), more);
    EXPECT_EQ(Take(".xml", style), "");
    EXPECT_EQ(Style(), style);
    EXPECT_EQ(reds(), 0);

    std::string crowd = "<MapStyle><Layer name='areas'><Coast><Pen width='9'/></Coast><Areas>";
    for (int i = 0; i < 300; ++i) {
        crowd += "<Brush type='1' color='ff0000'/>";
    }
    const struct {
        const char* ending;
        std::string document;
        const char* complaint;
    } rows[] = {
        {".xml", Replaced(red, "'lines'", "'rivers'"), "no layer 'rivers'"},
        {".xml", Replaced(red, "'lines'", "'areas'"), "no other layer 'areas'"},
        {".xml", red.substr(0, red.size() - 3), "line "},
        {".xml", red.substr(0, 700), "line "},
        {".xml", Replaced(red, "MapStyle", "Style"), "line "},
        {".xml", "<Style/>", "MapStyle"},
        {".xml", crowd + "</Areas></Layer></MapStyle>", "that many"},
        {".xml", "<MapStyle><Layer name='areas'><Coast><Pen width='9'/><Pen/></Coast></Layer></MapStyle>",
         "more than"},
        {".xml", "<MapStyle><Layer name='areas'><Coast><Pen width='9'/></Coast><Sea/></Layer></MapStyle>",
         "'Sea'"},
        {".xml", "<MapStyle><Layer name='areas'><Coast><Brush/></Coast></Layer></MapStyle>", "has a Pen"},
        {".xml", std::string("\0\x01\xFF<MapStyle", 12), "XML"},
        {".txt", Replaced(text, "Layer : 'lines'", "Layer : 'rivers'"), "no layer 'rivers'"},
        {".txt", Replaced(text, "Labels", "Sea"), "'Sea'"},
        {".txt", Replaced(text, "EndBlock", ""), "line 4"},
        {".txt", text.substr(0, 200), "no end"},
        {".txt", Replaced(text, "Layer : 'areas'", ""), "in no layer"},
        {".txt", Replaced(text, "    Pen", "    Brush"), "has a Pen"},
        {".txt", std::string("\xFF\x01\0\n", 4), "first line"},
        {".txt", "", "empty"},
        {".doc", text, ".xml or .txt"},
    };
    for (const auto& row : rows) {
        const std::string complaint = Take(row.ending, row.document);
        EXPECT_NE(complaint.find(row.complaint), complaint.npos) << row.complaint << ": " << complaint;
        EXPECT_EQ(Style(), style) << row.complaint;
    }
}

TEST_F(World, DamagedObjectsEndInOneLine) {
    const std::string whole = ReadFile(At("world.zul"));
    const std::vector<std::uint32_t> picture = Draw(m_Stored);
    std::mt19937 random(3);
    int complaints = 0;
    for (int i = 0; i < 200; ++i) {
        Write("world.zul", whole);
        sqlite3* file = nullptr;
        ASSERT_EQ(sqlite3_open(At("world.zul").c_str(), &file), SQLITE_OK);
        // The map and its layers come last, and half of the damage is theirs.
        const std::string which =
            i % 2 == 0 ? "(SELECT max(id) - " + std::to_string(random() % 35) + " FROM objects)"
                       : "(SELECT id FROM objects LIMIT 1 OFFSET " + std::to_string(random() % 300) + ")";
        const std::string at = std::to_string(1 + random() % 60);
        const std::string changed = i % 3 == 0 ? "substr(bytes, 1, " + at + ")"
                                               : "substr(bytes, 1, " + at + ") || randomblob(" +
                                                     std::to_string(1 + random() % 4) +
                                                     ") || substr(bytes, " + at + " + 3)";
        const std::string order =
            "UPDATE objects SET bytes = CAST(" + changed + " AS BLOB) WHERE id = " + which;
        EXPECT_EQ(sqlite3_exec(file, order.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << order;
        sqlite3_close(file);
        std::string told[] = {ComplaintOf([this] { Info(); }), ComplaintOf([this] { Draw(m_Stored); }),
                              ComplaintOf([this] { Style(); }), ""};
        if (i % 5 == 0) told[3] = ComplaintOf([this] { Import(); });
        for (const std::string& line : told) {
            EXPECT_EQ(line.find('\n'), line.npos) << line;
            EXPECT_TRUE(line.empty() || line.find("world.zul") != line.npos) << line;
            complaints += line.empty() ? 0 : 1;
        }
        if (i % 5 == 0 && told[3].empty()) {
            EXPECT_EQ(Draw(m_Stored), picture);
        }
    }
    EXPECT_GT(complaints, 200);
}

TEST_F(World, StrangersAndNewerMapsAreLeftAlone) {
    const std::string stranger = "this is a file of somebody else";
    Write("world.zul", stranger);
    const auto complain = [this] {
        return std::vector<std::string>{ComplaintOf([this] { Import(); }), ComplaintOf([this] { Info(); }),
                                        ComplaintOf([this] { Draw(m_Stored); }),
                                        ComplaintOf([this] { Style(); }), Take(".xml", "<MapStyle/>")};
    };
    for (const std::string& complaint : complain()) {
        EXPECT_NE(complaint.find("no store"), complaint.npos) << complaint;
    }
    EXPECT_EQ(ReadFile(At("world.zul")), stranger);
    fs::remove(At("world.zul"));
    MapRecord newer;
    newer.version = kMapVersion + 1;
    zul::CStore store;
    ASSERT_TRUE(store.Open(zul::CString(At("world.zul").c_str()).GetBuffer(), zul::CStore::Create));
    ASSERT_TRUE(store.SetRoot(kMapRoot, &newer));
    store.Close();
    for (const std::string& complaint : complain()) {
        EXPECT_NE(complaint.find("version 2"), complaint.npos) << complaint;
    }
}

}  // namespace
}  // namespace zulmap
