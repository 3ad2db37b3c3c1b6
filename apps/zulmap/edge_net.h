/// \file
/// The outlines of all areas of a map as one net of edges.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "zul/geometry/coordinates.h"

namespace zulmap {

using Ring = std::vector<zul::TPoint>;

/// Knows for every edge of every ring whether it parts two features, and hands each out once, so that a
/// common border is drawn by one line instead of by two that cross each other.
///
/// Rings run as `Area` says: outer ones counter-clockwise, holes clockwise. Then an edge parts two features
/// when another feature has it in the opposite direction; a feature that has it in the same direction merely
/// lies on top of the other, as a continent does on its countries.
class EdgeNet {
public:
    enum class Kind {
        Coast,   ///< a feature on one side
        Border,  ///< features on both
    };
    /// Takes a line of one kind.
    using LineSink = std::function<void(Kind kind, const Ring& line)>;

    /// Edges along the upright or level line through \p coordinate are no outlines but seams of the map,
    /// where its file was cut; they are never handed out. To be said before rings are added.
    void HideUpright(zul::TCoord coordinate) { m_UprightSeams.push_back(coordinate); }
    void HideLevel(zul::TCoord coordinate) { m_LevelSeams.push_back(coordinate); }

    /// All rings are added before anything is asked. Rings without an edge are ignored.
    void Add(const Ring& ring, std::uint32_t feature);
    void Finish();

    /// For each of \p featureCount features those that it has a border with, each once.
    std::vector<std::vector<std::uint32_t>> FindNeighbours(std::size_t featureCount) const;

    /// Gives \p sink those edges of a ring of the net that no earlier call gave, in lines as long as
    /// possible.
    void TakeLines(const Ring& ring, const LineSink& sink);

private:
    struct Edge {
        std::uint64_t key;  ///< both ends in the order of the ring
        std::uint32_t feature;
        bool isTaken;
    };
    /// What becomes of an edge in a line.
    enum class Use { Skip, Coast, Border };

    bool IsSeam(const zul::TPoint& from, const zul::TPoint& to) const;
    static std::uint64_t KeyOf(const zul::TPoint& from, const zul::TPoint& to);
    static std::uint64_t Reversed(std::uint64_t key);
    std::ptrdiff_t Find(std::uint64_t key) const;
    Use TakeEdge(const zul::TPoint& from, const zul::TPoint& to);

    std::vector<zul::TCoord> m_UprightSeams;
    std::vector<zul::TCoord> m_LevelSeams;
    std::vector<Edge> m_Edges;  ///< ascending by key once finished, each key once
};

/// Gives every feature one of \p colorCount colours so that neighbours differ, as far as the number of
/// colours allows, and all colours are used about equally often. Earlier features choose first.
std::vector<std::size_t> ChooseColors(const std::vector<std::vector<std::uint32_t>>& neighbours,
                                      std::size_t colorCount);

}  // namespace zulmap
