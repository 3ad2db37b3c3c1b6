#include "apps/zulmap/antimeridian.h"

#include <cmath>
#include <cstddef>
#include <iterator>
#include <utility>

#include "apps/zulmap/path_cutting.h"

namespace zulmap {
namespace {

constexpr double kHalfTurn = 180.0;
constexpr double kFullTurn = 360.0;
constexpr double kPole = 90.0;

/// A ring that winds about the globe more often than this is no ring on a globe.
constexpr double kMostTurns = 4.0;

bool IsJump(const TDoublePoint& from, const TDoublePoint& to) {
    return std::abs(to.X - from.X) > kHalfTurn;
}

bool HasJump(const Path& path, bool closed) {
    for (std::size_t i = closed ? 0 : 1; i < path.size(); ++i) {
        if (IsJump(path[i > 0 ? i - 1 : path.size() - 1], path[i])) return true;
    }
    return false;
}

/// What has to be added to the second longitude so that the edge is no jump: whole turns.
double Turn(const TDoublePoint& from, const TDoublePoint& to) {
    return IsJump(from, to) ? -std::round((to.X - from.X) / kFullTurn) * kFullTurn : 0.0;
}

/// A ring whose longitudes go on beyond 180 degrees instead of jumping.
Path Unroll(const Path& ring) {
    Path unrolled{ring.front()};
    double turn = 0.0;
    double latitudes = 0.0;
    for (std::size_t i = 1; i < ring.size(); ++i) {
        turn += Turn(ring[i - 1], ring[i]);
        unrolled.push_back({ring[i].X + turn, ring[i].Y});
        latitudes += ring[i].Y;
    }
    turn += Turn(ring.back(), ring.front());
    if (turn != 0.0) {
        // It does not come back to where it began: it goes around the pole on its side of the equator.
        const TDoublePoint first = ring.front();
        const double pole = std::copysign(kPole, latitudes);
        unrolled.push_back({first.X + turn, first.Y});
        unrolled.push_back({first.X + turn, pole});
        unrolled.push_back({first.X, pole});
    }
    return unrolled;
}

/// The parts of a ring on either side of the meridian, all within -180 to 180 degrees.
std::vector<Path> CutRing(const Path& ring, bool isOuter) {
    Path unrolled = Unroll(ring);
    Orient(unrolled, isOuter);
    Box box;
    for (const TDoublePoint& point : unrolled) {
        box.Include(point);
    }
    if (box.Width() > kMostTurns * kFullTurn) return {ring};
    std::vector<Path> parts;
    const double firstTurn = std::floor((box.minX + kHalfTurn) / kFullTurn) * kFullTurn;
    for (double turn = firstTurn; turn - kHalfTurn < box.maxX; turn += kFullTurn) {
        Path part = CutByBox(unrolled, true, {turn - kHalfTurn, box.minY, turn + kHalfTurn, box.maxY});
        Box partBox;
        for (TDoublePoint& point : part) {
            point.X -= turn;
            partBox.Include(point);
        }
        // A ring that only touches the meridian leaves a part without width on the other side.
        if (partBox.minX < partBox.maxX) parts.push_back(std::move(part));
    }
    return parts;
}

std::vector<Path> CutLine(const Path& line) {
    std::vector<Path> parts{{line.front()}};
    for (std::size_t i = 1; i < line.size(); ++i) {
        const TDoublePoint& from = line[i - 1];
        const TDoublePoint& to = line[i];
        if (IsJump(from, to)) {
            const double seam = std::copysign(kHalfTurn, from.X);
            const double way = to.X + Turn(from, to) - from.X;
            const double share = way == 0.0 ? 0.0 : (seam - from.X) / way;
            const double latitude = from.Y + (to.Y - from.Y) * share;
            // Longitudes counted from 0 to 360 jump elsewhere: there the line merely ends and begins anew.
            const bool isAtSeam = share >= 0.0 && share <= 1.0;
            if (isAtSeam) parts.back().push_back({seam, latitude});
            parts.push_back(isAtSeam ? Path{{-seam, latitude}} : Path{});
        }
        parts.back().push_back(to);
    }
    return parts;
}

void Append(std::vector<Path> parts, std::vector<Path>& to) {
    to.insert(to.end(), std::make_move_iterator(parts.begin()), std::make_move_iterator(parts.end()));
}

void CutArea(Area& area) {
    std::vector<Path> rings;
    for (std::size_t i = 0; i < area.rings.size(); ++i) {
        Path& ring = area.rings[i];
        Append(HasJump(ring, true) ? CutRing(ring, i == 0) : std::vector<Path>{std::move(ring)}, rings);
    }
    area.rings = std::move(rings);
}

}  // namespace

void CutAtAntimeridian(MapData& map) {
    for (Feature& feature : map.features) {
        for (Area& area : feature.areas) {
            CutArea(area);
            for (const Path& ring : area.rings) {
                for (const TDoublePoint& point : ring) {
                    map.extent.Include(point);
                }
            }
        }
        std::vector<Path> lines;
        for (Path& line : feature.lines) {
            Append(HasJump(line, false) ? CutLine(line) : std::vector<Path>{std::move(line)}, lines);
        }
        feature.lines = std::move(lines);
    }
}

}  // namespace zulmap
