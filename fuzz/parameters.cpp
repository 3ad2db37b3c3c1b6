/// \file
/// Files of parameter blocks of all kinds.
///
/// The first byte of an input chooses the tool that reads the rest. Whatever a tool has taken from it, the
/// tool must be able to write, and to read again what it wrote.

#include <iterator>
#include <string>

#include "fuzz/frame/fuzzing.h"
#include "fuzz/frame/tool_blocks.h"
#include "zul/tools/background.h"
#include "zul/tools/brush.h"
#include "zul/tools/font.h"
#include "zul/tools/pen.h"

namespace {

template <class T>
void ReadAsBlocks(const std::string& bytes) {
    T tool;
    fuzz::ReadBlocks(tool, bytes);
    fuzz::RequireSameBlock(tool);
}

constexpr void (*kReaders[])(const std::string&) = {ReadAsBlocks<zul::CPen>, ReadAsBlocks<zul::CBrush>,
                                                    ReadAsBlocks<zul::CFont>, ReadAsBlocks<zul::CBackground>};

}  // namespace

void fuzz::Run(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return;
    kReaders[data[0] % std::size(kReaders)](std::string(data + 1, data + size));
}
