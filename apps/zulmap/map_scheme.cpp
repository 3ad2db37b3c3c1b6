#include "apps/zulmap/map_scheme.h"

#include <algorithm>
#include <numeric>

#include "apps/zulmap/edge_net.h"
#include "apps/zulmap/map_space.h"
#include "apps/zulmap/path_cutting.h"

namespace zulmap {
namespace {

double SizeOf(const Feature& feature) {
    double size = 0.0;
    for (const Area& area : feature.areas) {
        size = std::accumulate(area.rings.begin(), area.rings.end(), size,
                               [](double sum, const Path& ring) { return sum + TwiceSignedArea(ring); });
    }
    return size;
}

/// What lies inside another is drawn after it.
std::vector<std::uint32_t> OrderBySize(const std::vector<Feature>& features) {
    std::vector<double> sizes(features.size());
    std::transform(features.begin(), features.end(), sizes.begin(), SizeOf);
    std::vector<std::uint32_t> order(features.size());
    std::iota(order.begin(), order.end(), 0U);
    std::stable_sort(order.begin(), order.end(),
                     [&sizes](std::uint32_t a, std::uint32_t b) { return sizes[a] > sizes[b]; });
    return order;
}

}  // namespace

MapScheme MakeScheme(const MapData& map) {
    MapScheme scheme;
    scheme.order = OrderBySize(map.features);
    // Borders are where the same edges are, which the units of the whole map tell well enough.
    const MapSpace space(map.extent, {}, 1, 1, 0.0);
    EdgeNet net;
    for (std::size_t place = 0; place < scheme.order.size(); ++place) {
        for (const Area& area : map.features[scheme.order[place]].areas) {
            for (const Path& ring : area.rings) {
                net.Add(space.PlaceRing(ring), static_cast<std::uint32_t>(place));
            }
        }
    }
    net.Finish();
    scheme.colors = ChooseColors(net.FindNeighbours(scheme.order.size()), MapScheme::kColors);
    return scheme;
}

}  // namespace zulmap
