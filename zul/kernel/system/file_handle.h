/// \file
/// The C library's file as an owning handle.
#pragma once

#include <cstdio>
#include <memory>

namespace zulsys {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// Closes its file when it goes.
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

}  // namespace zulsys
