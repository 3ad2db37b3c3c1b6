#include "apps/zulmap/path_cutting.h"

#include <algorithm>
#include <cstddef>

namespace zulmap {
namespace {

/// The half-plane on one side of an upright or level line.
struct Side {
    double TDoublePoint::*across;  ///< the coordinate that decides
    double TDoublePoint::*along;
    double bound;
    bool keepsGreater;

    bool Keeps(const TDoublePoint& point) const {
        return keepsGreater ? point.*across >= bound : point.*across <= bound;
    }
    TDoublePoint Crossing(const TDoublePoint& a, const TDoublePoint& b) const {
        TDoublePoint point{};
        point.*across = bound;
        point.*along = a.*along + (b.*along - a.*along) * ((bound - a.*across) / (b.*across - a.*across));
        return point;
    }
};

/// Cuts a path down to a half-plane. What lies beyond is replaced by a way along its edge.
Path CutBySide(const Path& path, bool closed, const Side& side) {
    Path kept;
    kept.reserve(path.size() + 8);
    for (std::size_t i = 0; i < path.size(); ++i) {
        const TDoublePoint& point = path[i];
        if (i > 0 || closed) {
            const TDoublePoint& previous = i > 0 ? path[i - 1] : path.back();
            if (side.Keeps(previous) != side.Keeps(point)) kept.push_back(side.Crossing(previous, point));
        }
        if (side.Keeps(point)) kept.push_back(point);
    }
    return kept;
}

}  // namespace

double TwiceSignedArea(const Path& ring) {
    double sum = 0.0;
    for (std::size_t i = 0, last = ring.size() - 1; i < ring.size(); last = i++) {
        // Relative to the first point: far from the origin the products would swallow a small ring.
        sum += (ring[last].X - ring[0].X) * (ring[i].Y - ring[0].Y) -
               (ring[i].X - ring[0].X) * (ring[last].Y - ring[0].Y);
    }
    return sum;
}

void Orient(Path& ring, bool isOuter) {
    if ((TwiceSignedArea(ring) > 0.0) != isOuter) std::reverse(ring.begin(), ring.end());
}

Path CutByBox(Path path, bool closed, const Box& box) {
    const Side sides[] = {
        {&TDoublePoint::X, &TDoublePoint::Y, box.minX, true},
        {&TDoublePoint::X, &TDoublePoint::Y, box.maxX, false},
        {&TDoublePoint::Y, &TDoublePoint::X, box.minY, true},
        {&TDoublePoint::Y, &TDoublePoint::X, box.maxY, false},
    };
    for (const Side& side : sides) {
        path = CutBySide(path, closed, side);
    }
    return path;
}

}  // namespace zulmap
