#include "apps/zulmap/edge_net.h"

#include <algorithm>
#include <limits>

namespace zulmap {

std::uint64_t EdgeNet::KeyOf(const zul::TPoint& from, const zul::TPoint& to) {
    const auto pack = [](const zul::TPoint& point) {
        return (static_cast<std::uint64_t>(static_cast<std::uint16_t>(point.X)) << 16) |
               static_cast<std::uint16_t>(point.Y);
    };
    return (pack(from) << 32) | pack(to);
}

std::uint64_t EdgeNet::Reversed(std::uint64_t key) {
    return (key << 32) | (key >> 32);
}

bool EdgeNet::IsSeam(const zul::TPoint& from, const zul::TPoint& to) const {
    const auto holds = [](const std::vector<zul::TCoord>& seams, zul::TCoord coordinate) {
        return std::find(seams.begin(), seams.end(), coordinate) != seams.end();
    };
    return (from.X == to.X && holds(m_UprightSeams, from.X)) ||
           (from.Y == to.Y && holds(m_LevelSeams, from.Y));
}

void EdgeNet::Add(const Ring& ring, std::uint32_t feature) {
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const zul::TPoint& next = ring[(i + 1) % ring.size()];
        if (next != ring[i] && !IsSeam(ring[i], next))
            m_Edges.push_back({KeyOf(ring[i], next), feature, false});
    }
}

void EdgeNet::Finish() {
    const auto isBefore = [](const Edge& a, const Edge& b) {
        return a.key != b.key ? a.key < b.key : a.feature < b.feature;
    };
    const auto isSame = [](const Edge& a, const Edge& b) { return a.key == b.key; };
    std::sort(m_Edges.begin(), m_Edges.end(), isBefore);
    m_Edges.erase(std::unique(m_Edges.begin(), m_Edges.end(), isSame), m_Edges.end());
}

std::ptrdiff_t EdgeNet::Find(std::uint64_t key) const {
    const auto found =
        std::lower_bound(m_Edges.begin(), m_Edges.end(), key,
                         [](const Edge& edge, std::uint64_t value) { return edge.key < value; });
    return found != m_Edges.end() && found->key == key ? found - m_Edges.begin() : -1;
}

std::vector<std::vector<std::uint32_t>> EdgeNet::FindNeighbours(std::size_t featureCount) const {
    std::vector<std::vector<std::uint32_t>> neighbours(featureCount);
    for (const Edge& edge : m_Edges) {
        const std::ptrdiff_t opposite = Find(Reversed(edge.key));
        if (opposite < 0) continue;
        const std::uint32_t other = m_Edges[static_cast<std::size_t>(opposite)].feature;
        if (other != edge.feature) neighbours[edge.feature].push_back(other);
    }
    for (std::vector<std::uint32_t>& list : neighbours) {
        std::sort(list.begin(), list.end());
        list.erase(std::unique(list.begin(), list.end()), list.end());
    }
    return neighbours;
}

EdgeNet::Use EdgeNet::TakeEdge(const zul::TPoint& from, const zul::TPoint& to) {
    const std::ptrdiff_t index = Find(KeyOf(from, to));
    if (index < 0) return Use::Skip;
    Edge& edge = m_Edges[static_cast<std::size_t>(index)];
    if (edge.isTaken) return Use::Skip;
    edge.isTaken = true;
    const std::ptrdiff_t opposite = Find(Reversed(edge.key));
    if (opposite < 0) return Use::Coast;
    Edge& other = m_Edges[static_cast<std::size_t>(opposite)];
    other.isTaken = true;
    // A spit that is too thin for the map's units runs there and back within one feature.
    return other.feature == edge.feature ? Use::Coast : Use::Border;
}

void EdgeNet::TakeLines(const Ring& ring, const LineSink& sink) {
    const std::size_t count = ring.size();
    if (count < 2) return;
    std::vector<Use> uses(count);
    for (std::size_t i = 0; i < count; ++i) {
        uses[i] = TakeEdge(ring[i], ring[(i + 1) % count]);
    }
    // Beginning where the use changes, no line is cut in two by the ring's first point.
    std::size_t start = 0;
    while (start < count && uses[start] == uses[(start + count - 1) % count]) {
        ++start;
    }
    start %= count;

    for (std::size_t i = 0; i < count;) {
        const Use use = uses[(start + i) % count];
        Ring line{ring[(start + i) % count]};
        while (i < count && uses[(start + i) % count] == use) {
            ++i;
            line.push_back(ring[(start + i) % count]);
        }
        if (use != Use::Skip) sink(use == Use::Coast ? Kind::Coast : Kind::Border, line);
    }
}

std::vector<std::size_t> ChooseColors(const std::vector<std::vector<std::uint32_t>>& neighbours,
                                      std::size_t colorCount) {
    constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();
    std::vector<std::size_t> chosen(neighbours.size(), kNone);
    std::vector<std::size_t> uses(colorCount, 0);
    std::vector<std::size_t> conflicts(colorCount);
    for (std::size_t feature = 0; feature < neighbours.size(); ++feature) {
        std::fill(conflicts.begin(), conflicts.end(), 0);
        for (const std::uint32_t neighbour : neighbours[feature]) {
            if (chosen[neighbour] != kNone) ++conflicts[chosen[neighbour]];
        }
        std::size_t best = 0;
        for (std::size_t color = 1; color < colorCount; ++color) {
            if (conflicts[color] != conflicts[best] ? conflicts[color] < conflicts[best]
                                                    : uses[color] < uses[best]) {
                best = color;
            }
        }
        chosen[feature] = best;
        ++uses[best];
    }
    return chosen;
}

}  // namespace zulmap
