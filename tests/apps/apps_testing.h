/// \file
/// What the program's tests share: a folder of a test's own, and which places a ring encloses.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "apps/zulmap/map_data.h"
#include "tests/kernel/kernel_testing.h"

namespace zulmap {

inline std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// A folder that goes with the test.
class FolderTest : public testing::Test {
protected:
    FolderTest() { std::filesystem::create_directories(m_Folder.Get()); }

    std::string At(const std::string& name) const { return (m_Folder.Get() / name).string(); }
    void Write(const std::string& name, const std::string& text) const {
        std::ofstream(At(name), std::ios::binary) << text;
    }

    zul::CScratchPath m_Folder;
};

/// Under the alternate rule, by counting crossings to the right.
inline bool IsInside(const TDoublePoint& p, const Path& ring) {
    bool isInside = false;
    for (std::size_t i = 0, last = ring.size() - 1; i < ring.size(); last = i++) {
        const TDoublePoint& a = ring[i];
        const TDoublePoint& b = ring[last];
        if ((a.Y > p.Y) != (b.Y > p.Y) && p.X < (b.X - a.X) * (p.Y - a.Y) / (b.Y - a.Y) + a.X) {
            isInside = !isInside;
        }
    }
    return isInside;
}

}  // namespace zulmap
