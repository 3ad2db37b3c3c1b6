/// \file
/// Parameter files and style documents of all kinds.
///
/// The first byte of an input chooses how the rest is read: as a file of parameter blocks by one of the
/// tools, or as an XML document by all of them. Whatever a tool has taken from it, the tool must be able to
/// write, and to read again what it wrote.

#include <iterator>
#include <sstream>
#include <string>

#include "apps/zulmap/style_element.h"
#include "apps/zulmap/tool_error.h"
#include "fuzz/frame/fuzzing.h"
#include "zul/kernel/system/text_file.h"
#include "zul/tools/background.h"
#include "zul/tools/brush.h"
#include "zul/tools/font.h"
#include "zul/tools/pen.h"

namespace {

using fuzz::Require;

constexpr std::size_t kReadBytes = 255;  // of a line

const fuzz::ScratchFile& Scratch() {
    static const fuzz::ScratchFile scratch;
    return scratch;
}

template <class T>
void ReadBlocks(T& tool, const std::string& bytes) {
    Scratch().Fill(bytes);
    zulsys::CTextFile file;
    Require(file.Connect(Scratch().Wide().c_str()), "the file opens");
    for (int i = 0; i < 3; ++i)
        tool.ImportParameters(file);
}

template <class T>
std::string WrittenBlock(const T& tool) {
    zulsys::CTextFile file;
    Require(file.Create(Scratch().Wide().c_str()), "the file is made");
    tool.ExportParameters(file);
    Require(file.Disconnect(), "the file is written");
    return Scratch().Bytes();
}

/// What comes back of a block: a name that does not fit a line is lost.
std::string Readable(const std::string& block) {
    std::string readable;
    std::istringstream lines(block);
    for (std::string line; std::getline(lines, line);)
        readable += (line.size() > kReadBytes ? "      Name : ''" : line) + "\n";
    return readable;
}

template <class T>
void CheckBlock(const T& tool) {
    const std::string block = WrittenBlock(tool);
    T same;
    ReadBlocks(same, block);
    Require(WrittenBlock(same) == Readable(block), "what a tool writes it reads");
}

template <class T>
void ReadAsBlocks(const std::string& bytes) {
    T tool;
    ReadBlocks(tool, bytes);
    CheckBlock(tool);
}

template <class T>
void ReadAsElement(pugi::xml_node node, const char* name) {
    if (node.name() != std::string(name)) return;
    T tool, same;
    zulmap::StyleElement element(node);
    tool.ImportParametersEx(&element);
    CheckBlock(tool);

    zulsys::CTextFile file;
    Require(file.Create(Scratch().Wide().c_str()), "the file is made");
    tool.ExportParametersEx(file);
    Require(file.Disconnect(), "the file is written");
    pugi::xml_document document;
    zulmap::ReadStyleDocument(Scratch().Path().string(), document);
    zulmap::StyleElement written(document.first_child());
    same.ImportParametersEx(&written);
    Require(WrittenBlock(same) == WrittenBlock(tool), "an element comes back");
}

void ReadAsDocument(const std::string& bytes) {
    Scratch().Fill(bytes);
    pugi::xml_document document;
    try {
        zulmap::ReadStyleDocument(Scratch().Path().string(), document);
    } catch (const zulmap::ToolError&) {
        return;
    }
    for (const pugi::xml_node node : document) {
        ReadAsElement<zul::CPen>(node, "Pen");
        ReadAsElement<zul::CBrush>(node, "Brush");
        ReadAsElement<zul::CFont>(node, "Font");
        ReadAsElement<zul::CBackground>(node, "Background");
    }
}

constexpr void (*kReaders[])(const std::string&) = {ReadAsBlocks<zul::CPen>,  ReadAsBlocks<zul::CBrush>,
                                                    ReadAsBlocks<zul::CFont>, ReadAsBlocks<zul::CBackground>,
                                                    ReadAsDocument,           ReadAsDocument};

}  // namespace

void fuzz::Run(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return;
    kReaders[data[0] % std::size(kReaders)](std::string(data + 1, data + size));
}
