#include "bench/rings.h"

#include <cstdint>
#include <fstream>
#include <stdexcept>

namespace zulbench {

// Each ring as a count of 32 bits and its points, as they lie in memory.

void WriteRings(const std::string& path, const std::vector<zul::CPoints>& rings) {
    std::ofstream file(path, std::ios::binary);
    for (const zul::CPoints& ring : rings) {
        const std::uint32_t count = ring.GetCount();
        file.write(reinterpret_cast<const char*>(&count), sizeof count);
        file.write(reinterpret_cast<const char*>(ring.GetPoints()),
                   static_cast<std::streamsize>(count * sizeof(zul::TPoint)));
    }
    file.close();
    if (!file) throw std::runtime_error("cannot write " + path);
}

std::vector<zul::CPoints> ReadRings(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::vector<zul::CPoints> rings;
    std::uint32_t count = 0;
    while (file.read(reinterpret_cast<char*>(&count), sizeof count)) {
        std::vector<zul::TPoint> points(count);
        if (!file.read(reinterpret_cast<char*>(points.data()),
                       static_cast<std::streamsize>(count * sizeof(zul::TPoint))))
            break;
        rings.emplace_back(false);
        rings.back().SetPoints(points.data(), count);
    }
    if (rings.empty() || !file.eof()) throw std::runtime_error("cannot read the rings of " + path);
    return rings;
}

}  // namespace zulbench
