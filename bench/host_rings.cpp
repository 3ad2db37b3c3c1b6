#include <cstdint>
#include <optional>

#include "apps/zulmap/map_reader.h"
#include "apps/zulmap/map_space.h"
#include "bench/rings.h"
#include "bench/surface.h"

namespace zulbench {

std::vector<zul::CPoints> WorldRings() {
    const zulmap::MapData map = zulmap::ReadMaps({ZULBENCH_MAP}, [](const std::string&, std::size_t) {});
    const zulmap::MapSpace space(map.extent, std::nullopt, kWidth, kHeight, 0.0);
    std::vector<zul::CPoints> rings;
    for (const zulmap::Feature& feature : map.features) {
        for (const zulmap::Area& area : feature.areas) {
            for (const zulmap::Path& ring : area.rings) {
                const std::vector<zul::TPoint> placed = space.PlaceRing(ring);
                if (placed.size() < 3) continue;
                rings.emplace_back(false);
                rings.back().SetPoints(placed.data(), static_cast<std::uint32_t>(placed.size()));
            }
        }
    }
    return rings;
}

}  // namespace zulbench
