/// \file
/// The settings of tools as blocks of lines in a file.
#pragma once

#include <sstream>
#include <string>

#include "fuzz/frame/fuzzing.h"
#include "zul/kernel/system/text_file.h"

namespace fuzz {

/// Lets \p tool read \p bytes, three times over what is left of them.
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
inline std::string Readable(const std::string& block) {
    constexpr std::size_t kReadBytes = 255;
    std::string readable;
    std::istringstream lines(block);
    for (std::string line; std::getline(lines, line);)
        readable += (line.size() > kReadBytes ? "      Name : ''" : line) + "\n";
    return readable;
}

/// Whatever \p tool is set to, it must read what it writes.
template <class T>
void RequireSameBlock(const T& tool) {
    const std::string block = WrittenBlock(tool);
    T same;
    ReadBlocks(same, block);
    Require(WrittenBlock(same) == Readable(block), "what a tool writes it reads");
}

}  // namespace fuzz
