/// \file
/// Files of parameter blocks of all kinds.
///
/// The first byte of an input chooses the tool that reads the rest. Whatever a tool has taken from it, the
/// tool must be able to write, and to read again what it wrote.

#include <iterator>
#include <sstream>
#include <string>

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

constexpr void (*kReaders[])(const std::string&) = {ReadAsBlocks<zul::CPen>, ReadAsBlocks<zul::CBrush>,
                                                    ReadAsBlocks<zul::CFont>, ReadAsBlocks<zul::CBackground>};

}  // namespace

void fuzz::Run(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return;
    kReaders[data[0] % std::size(kReaders)](std::string(data + 1, data + size));
}
