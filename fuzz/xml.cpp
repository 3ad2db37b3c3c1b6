/// \file
/// Documents about the look of maps, sound and damaged: elements of tools, and a stored map's look as XML and
/// as text.
///
/// The first byte of an input chooses how the rest is read. What a tool has taken from an element it must
/// write in a form that says the same. A document is taken over as a whole or not at all, and what is written
/// of a map that took one over must say the same again.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>

#include "apps/zulmap/style_element.h"
#include "apps/zulmap/tool_error.h"
#include "apps/zulmap/world/map_records.h"
#include "apps/zulmap/world/style_command.h"
#include "fuzz/frame/fuzzing.h"
#include "zul/kernel/system/text_file.h"
#include "zul/kernel/transaction.h"
#include "zul/store/store.h"
#include "zul/tools/background.h"

namespace {

namespace fs = std::filesystem;
using fuzz::Require;
using fuzz::Scratch;

template <class T>
std::string Written(const T& tool) {
    zulsys::CTextFile file;
    Require(file.Create(Scratch().Wide().c_str()), "the file is made");
    tool.ExportParametersEx(file);
    Require(file.Disconnect(), "the file is written");
    return Scratch().Bytes();
}

template <class T>
void Read(T& tool, pugi::xml_node node) {
    zulmap::StyleElement element(node);
    tool.ImportParametersEx(&element);
}

template <class T>
void ReadElement(pugi::xml_node node, const char* name) {
    if (node.name() != std::string(name)) return;
    T tool, same;
    Read(tool, node);
    const std::string written = Written(tool);
    pugi::xml_document document;
    zulmap::ReadStyleDocument(Scratch().Path().string(), document);
    Read(same, document.first_child());
    Require(Written(same) == written, "an element comes back");
}

void ReadElements(const std::string& bytes) {
    Scratch().Fill(bytes);
    pugi::xml_document document;
    try {
        zulmap::ReadStyleDocument(Scratch().Path().string(), document);
    } catch (const zulmap::ToolError&) {
        return;
    }
    for (const pugi::xml_node node : document) {
        ReadElement<zul::CPen>(node, "Pen");
        ReadElement<zul::CBrush>(node, "Brush");
        ReadElement<zul::CFont>(node, "Font");
        ReadElement<zul::CBackground>(node, "Background");
    }
}

/// A store with a map of two layers, of the same name.
class StoredLook {
public:
    StoredLook() {
        zulmap::RegisterRecords();
        zul::CStore store;
        store.Open(zul::CString(m_Sound.c_str()).GetBuffer(), zul::CStore::Create);
        zulmap::MapRecord map;
        for (int i = 0; i < 2; ++i) {
            zulmap::MapLayer layer;
            layer.name = "a";
            auto* const record = new zulmap::LayerRecord(layer);
            record->GetControlCell()->Adopt();
            map.layers.emplace_back(record);
        }
        zul::CNamedTransaction transaction;
        store.SetRoot(zulmap::kMapRoot, &map);
        Require(transaction.Commit(), "the store is written");
    }
    StoredLook(const StoredLook&) = delete;
    StoredLook& operator=(const StoredLook&) = delete;

    /// The store, as it was at first if it has changed.
    std::string Get() {
        if (std::exchange(m_HasChanged, false))
            fs::copy_file(m_Sound, m_Store, fs::copy_options::overwrite_existing);
        return m_Store;
    }
    void Change() { m_HasChanged = true; }

private:
    std::string m_Sound = (Scratch().Directory() / "sound.zul").string();
    std::string m_Store = (Scratch().Directory() / "map.zul").string();
    bool m_HasChanged = true;
};

std::string Look(const std::string& store, const std::string& document) {
    zulmap::ExportStyle(store, document);
    std::string text(static_cast<std::size_t>(fs::file_size(document)), '\0');
    std::ifstream(document, std::ios::binary).read(text.data(), static_cast<std::streamsize>(text.size()));
    return text;
}

void ReadLook(const std::string& bytes, const char* name) {
    static StoredLook look;
    const std::string store = look.Get(), document = (Scratch().Directory() / name).string();
    static const std::string before = Look(store, (Scratch().Directory() / "before.xml").string());
    std::ofstream(document, std::ios::binary) << bytes;
    try {
        zulmap::ImportStyle(store, document);
    } catch (const zulmap::ToolError&) {
        Require(Look(store, (Scratch().Directory() / "now.xml").string()) == before,
                "all of a document or nothing");
        return;
    }
    look.Change();
    const std::string after = Look(store, document);
    zulmap::ImportStyle(store, document);
    Require(Look(store, document) == after, "a look comes back");
}

void ReadXml(const std::string& bytes) {
    ReadLook(bytes, "look.xml");
}
void ReadText(const std::string& bytes) {
    ReadLook(bytes, "look.txt");
}

}  // namespace

void fuzz::Run(const std::uint8_t* data, std::size_t size) {
    // A store takes its time.
    constexpr void (*kReaders[])(const std::string&) = {ReadElements, ReadElements, ReadElements,
                                                        ReadElements, ReadElements, ReadXml,
                                                        ReadText,     ReadElements};
    if (size > 0) kReaders[data[0] % std::size(kReaders)](std::string(data + 1, data + size));
}
