#include "apps/zulmap/world/style_command.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <string_view>
#include <vector>

#include "apps/zulmap/made_object.h"
#include "apps/zulmap/style_element.h"
#include "apps/zulmap/tool_error.h"
#include "apps/zulmap/whole_file.h"
#include "apps/zulmap/world/map_records.h"
#include "apps/zulmap/world/stored_map.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/system/text_file.h"
#include "zul/kernel/transaction.h"
#include "zul/store/store.h"

namespace zulmap {
namespace {

constexpr const char* kAreas = "Areas";
constexpr const char* kDisc = "Disc";
constexpr const char* kLabels = "Labels";
constexpr std::size_t kMostBrushes = 256;

/// A pen, brush or font, whichever it is.
struct Tool {
    const char* element;  ///< as the library calls it
    std::function<void(zulsys::CTextFile&)> exportBlock;
    std::function<void(zulsys::CTextFile&)> exportElement;
    std::function<void(zulsys::CTextFile&)> importBlock;
    std::function<void(zul::CAnyObject&)> importElement;
};

template <class T>
Tool ToolOf(const char* element, const zul::CRef<T>& reference, const std::string& store) {
    T* tool = reference.Get();
    if (tool == nullptr) throw ToolError(store + " is damaged: a layer lacks its " + element);
    return {element, [tool](zulsys::CTextFile& file) { tool->ExportParameters(file); },
            [tool](zulsys::CTextFile& file) { tool->ExportParametersEx(file); },
            [tool](zulsys::CTextFile& file) { tool->ImportParameters(file); },
            [tool](zul::CAnyObject& attributes) { tool->ImportParametersEx(&attributes); }};
}

/// What a layer uses tools for.
struct Role {
    std::string name;
    std::vector<Tool> tools;
};

std::vector<Role> RolesOf(const LayerRecord& layer, const std::string& store) {
    std::vector<Role> roles;
    for (const LayerRecord::Pen& pen : LayerRecord::GetPens()) {
        roles.push_back({pen.name, {ToolOf("Pen", layer.*pen.tool, store)}});
    }
    roles.push_back({kDisc, {ToolOf("Brush", layer.disc, store)}});
    roles.push_back({kAreas, {}});
    for (const zul::CRef<zul::CBrush>& brush : layer.areas) {
        roles.back().tools.push_back(ToolOf("Brush", brush, store));
    }
    roles.push_back({kLabels, {ToolOf("Font", layer.font, store)}});
    return roles;
}

bool IsXml(const std::string& path) {
    const std::string ending = std::filesystem::path(path).extension().string();
    if (ending != ".xml" && ending != ".txt") {
        throw ToolError("style '" + path + "' must end in .xml or .txt");
    }
    return ending == ".xml";
}

std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        const bool isPlain = code >= ' ' && c != '&' && c != '<' && c != '>' && c != '\'' && c != '"';
        escaped += isPlain ? std::string(1, c) : "&#" + std::to_string(code) + ";";
    }
    return escaped;
}

// --- writing ---

void WriteXml(zulsys::CTextFile& file, const MapRecord& map, const std::string& store) {
    file.WriteString("<?xml version='1.0' encoding='UTF-8'?>\n<MapStyle>\n");
    for (const zul::CRef<LayerRecord>& layer : map.layers) {
        file.WriteString(("  <Layer name='" + Escaped(layer->name) + "'>\n").c_str());
        for (const Role& role : RolesOf(*layer, store)) {
            file.WriteString(("    <" + role.name + ">\n").c_str());
            for (const Tool& tool : role.tools) {
                tool.exportElement(file);
            }
            file.WriteString(("    </" + role.name + ">\n").c_str());
        }
        file.WriteString("  </Layer>\n");
    }
    file.WriteString("</MapStyle>\n");
}

void WriteText(zulsys::CTextFile& file, const MapRecord& map, const std::string& store) {
    file.WriteString("MapStyle\n");
    for (const zul::CRef<LayerRecord>& layer : map.layers) {
        file.WriteString(("Layer : '" + layer->name + "'\n").c_str());
        for (const Role& role : RolesOf(*layer, store)) {
            file.WriteString(("  " + role.name + "\n").c_str());
            for (const Tool& tool : role.tools) {
                tool.exportBlock(file);
            }
        }
    }
}

// --- reading ---

/// Hands out the tools of a map one after the other, in the order of a document.
class StyleTaker {
public:
    StyleTaker(const MapRecord& map, zul::CStore& file, std::string store)
        : m_Map(map), m_File(file), m_Store(std::move(store)) {}

    void EnterLayer(const std::string& name) {
        std::size_t wanted = m_Seen[name]++;
        for (const zul::CRef<LayerRecord>& layer : m_Map.layers) {
            if (layer->name != name || wanted-- > 0) continue;
            m_Layer = layer.Get();
            m_Role.clear();
            return;
        }
        throw ToolError("there is no " + std::string(m_Seen[name] > 1 ? "other " : "") + "layer '" + name +
                        "'");
    }
    void EnterRole(const std::string& name) {
        if (m_Layer == nullptr) throw ToolError("'" + name + "' stands in no layer");
        const std::vector<Role> roles = RolesOf(*m_Layer, m_Store);
        const bool isKnown =
            std::any_of(roles.begin(), roles.end(), [&name](const Role& role) { return role.name == name; });
        if (!isKnown) throw ToolError("'" + name + "' is nothing that a layer has");
        m_Role = name;
        m_Next = 0;
    }
    Tool Take(const std::string& element) {
        if (m_Role.empty()) throw ToolError("'" + element + "' stands in nothing that a layer has");
        if (m_Role == kAreas && m_Next == m_Layer->areas.size()) AddAreaBrush();
        for (const Role& role : RolesOf(*m_Layer, m_Store)) {
            if (role.name != m_Role) continue;
            if (m_Next >= role.tools.size()) throw ToolError(m_Role + " has more than it can hold");
            const Tool& tool = role.tools[m_Next];
            if (tool.element != element)
                throw ToolError(m_Role + " has a " + tool.element + ", no '" + element + "'");
            ++m_Next;
            return tool;
        }
        throw ToolError("'" + m_Role + "' is nothing that a layer has");
    }
    void LeaveRole() {
        if (m_Role == kAreas && m_Next > 0 && m_Next < m_Layer->areas.size()) {
            const zul::CModificator modificator(m_Layer);
            for (std::size_t i = m_Next; i < m_Layer->areas.size(); ++i) {
                m_File.Remove(m_File.GetId(m_Layer->areas[i].Get()));
            }
            m_Layer->areas.resize(m_Next);
        }
        m_Role.clear();
    }

private:
    void AddAreaBrush() {
        if (m_Next == kMostBrushes) throw ToolError("areas cannot have that many brushes");
        const zul::CRef<zul::CBrush> brush = MakeReferred<zul::CBrush>();
        const zul::CModificator modificator(m_Layer);
        m_Layer->areas.push_back(brush);
    }

    const MapRecord& m_Map;
    zul::CStore& m_File;
    std::string m_Store;
    std::map<std::string, std::size_t> m_Seen;  ///< how often a layer of a name was entered
    LayerRecord* m_Layer = nullptr;
    std::string m_Role;      ///< empty: none
    std::size_t m_Next = 0;  ///< its next tool
};

void ReadXml(const std::string& path, StyleTaker& taker) {
    pugi::xml_document document;
    ReadStyleDocument(path, document);
    const pugi::xml_node root = document.child("MapStyle");
    if (!root) throw ToolError("it has no element MapStyle");
    for (const pugi::xml_node layer : root.children()) {
        if (layer.type() != pugi::node_element) continue;
        if (std::string_view(layer.name()) != "Layer")
            throw ToolError("'" + std::string(layer.name()) + "' is no Layer");
        taker.EnterLayer(layer.attribute("name").value());
        for (const pugi::xml_node role : layer.children()) {
            if (role.type() != pugi::node_element) continue;
            taker.EnterRole(role.name());
            for (const pugi::xml_node tool : role.children()) {
                if (tool.type() != pugi::node_element) continue;
                StyleElement element(tool);
                taker.Take(tool.name()).importElement(element);
            }
            taker.LeaveRole();
        }
    }
}

/// A line without the blanks around it.
std::string Trimmed(std::string_view line) {
    const std::size_t begin = std::min(line.find_first_not_of(" \t"), line.size());
    const std::size_t end = line.find_last_not_of(" \t");
    return end == line.npos ? std::string() : std::string(line.substr(begin, end + 1 - begin));
}

bool StartsWith(const std::string& text, std::string_view start) {
    return std::string_view(text).substr(0, start.size()) == start;
}

bool IsTool(const std::string& line) {
    return line == "Pen" || line == "Brush" || line == "Font";
}

constexpr std::size_t kLongestLine = 1024;

void OpenText(const std::string& path, zulsys::CTextFile& file) {
    if (!file.Connect(zul::CString(path.c_str()).GetBuffer())) throw ToolError("it cannot be read");
}

void CloseText(zulsys::CTextFile& file) {
    if (!file.Disconnect()) throw ToolError("it cannot be read to its end");
}

/// A tool that reads itself takes all lines up to the end of its block, or else up to the end of the file.
void CheckBlocks(const std::string& path) {
    zulsys::CTextFile file;
    OpenText(path, file);
    char line[kLongestLine];
    std::size_t number = 0;
    std::size_t open = 0;  // the line that opened a block; 0: none
    while (file.ReadString(line, sizeof line)) {
        ++number;
        const std::string text = Trimmed(line);
        if (text == "EndBlock") {
            open = 0;
        } else if (IsTool(text) && open == 0) {
            open = number;
        } else if (IsTool(text)) {
            break;
        }
    }
    CloseText(file);
    if (open != 0) throw ToolError("the block in line " + std::to_string(open) + " has no end");
}

void ReadText(const std::string& path, StyleTaker& taker) {
    CheckBlocks(path);
    zulsys::CTextFile file;
    OpenText(path, file);
    char line[kLongestLine];
    bool isStyle = false;
    while (file.ReadString(line, sizeof line)) {
        const std::string text = Trimmed(line);
        if (text.empty()) continue;
        if (!isStyle && text != "MapStyle") throw ToolError("its first line is not 'MapStyle'");
        if (!isStyle) {
            isStyle = true;
        } else if (StartsWith(text, "Layer : '") && text.back() == '\'') {
            constexpr std::size_t kStart = sizeof "Layer : '" - 1;
            taker.LeaveRole();
            taker.EnterLayer(text.substr(kStart, text.size() - kStart - 1));
        } else if (IsTool(text)) {
            taker.Take(text).importBlock(file);
        } else {
            taker.LeaveRole();
            taker.EnterRole(text);
        }
    }
    taker.LeaveRole();
    CloseText(file);
    if (!isStyle) throw ToolError("it is empty");
}

}  // namespace

void ExportStyle(const std::string& store, const std::string& path) {
    const bool isXml = IsXml(path);
    zul::CStore file;
    const zul::CRef<MapRecord> map = OpenStoredMap(file, store, zul::CStore::ReadOnly);
    const StoreErrors errors(store);
    PendingFile place(path);
    zulsys::CTextFile document;
    if (!document.Create(zul::CString(place.GetName().c_str()).GetBuffer())) place.Fail();
    if (isXml) {
        WriteXml(document, *map, store);
    } else {
        WriteText(document, *map, store);
    }
    if (!document.Disconnect()) place.Fail();
    place.Keep();
}

void ImportStyle(const std::string& store, const std::string& path) {
    const bool isXml = IsXml(path);
    zul::CStore file;
    const zul::CRef<MapRecord> map = OpenStoredMap(file, store, zul::CStore::ReadWrite);
    const StoreErrors errors(store);
    zul::CNamedTransaction transaction(u"style");
    StyleTaker taker(*map, file, store);
    try {
        if (isXml) {
            ReadXml(path, taker);
        } else {
            ReadText(path, taker);
        }
    } catch (const ToolError& error) {
        const std::string text = error.what();
        throw ToolError(StartsWith(text, path) ? text : path + ": " + text);
    }
    if (!transaction.Commit()) throw ToolError(store + " cannot be written");
}

}  // namespace zulmap
