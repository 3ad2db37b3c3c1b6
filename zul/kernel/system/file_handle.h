/// \file
/// The C library's file as an owning handle.
#pragma once

#include <cstdio>
#include <memory>

namespace zulsys {

/// How a file of the C library is closed.
struct FileCloser {
    /// What the file still had to write may be lost without a word.
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// Closes its file when it goes.
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

}  // namespace zulsys
