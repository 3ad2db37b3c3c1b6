#include "apps/zulmap/labels/inner_place.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <queue>

#include "apps/zulmap/path_cutting.h"

namespace zulmap {
namespace {

/// More room than this is as good as this.
constexpr double kAmple = 1.75;

/// What the way from the middle of the area to its edge costs, in rooms.
constexpr double kPull = 0.5;

constexpr double kPrecision = 0.01;

/// Cells along the longer side of the area at first, at most; then cells at all.
constexpr double kMostColumns = 32.0;
constexpr int kMostCells = 20000;

/// The distance of the origin to a straight line between two points, measured by squares.
double DistanceToEdge(const TDoublePoint& a, const TDoublePoint& b) {
    const double dx = b.X - a.X;
    const double dy = b.Y - a.Y;
    const auto at = [&](double t) { return std::max(std::abs(a.X + t * dx), std::abs(a.Y + t * dy)); };
    // Convex along the line, so least at an end or where the coordinates are alike.
    double least = std::min(at(0.0), at(1.0));
    const double alike = (a.Y - a.X) / (dx - dy);
    const double opposite = -(a.X + a.Y) / (dx + dy);
    if (alike > 0.0 && alike < 1.0) least = std::min(least, at(alike));
    if (opposite > 0.0 && opposite < 1.0) least = std::min(least, at(opposite));
    return least;
}

class Search {
public:
    Search(const std::vector<Path>& rings, HalfSize box, double least) : m_Least(least) {
        double weight = 0.0;
        TDoublePoint sum{};
        for (const Path& ring : rings) {
            if (ring.empty()) continue;
            m_Rings.emplace_back();
            for (const TDoublePoint& point : ring) {
                m_Rings.back().push_back({point.X / box.width, point.Y / box.height});
                m_Bounds.Include(m_Rings.back().back());
            }
            AddMoment(m_Rings.back(), weight, sum);
        }
        m_Middle = weight != 0.0 ? TDoublePoint{sum.X / weight, sum.Y / weight} : TDoublePoint{};
        m_Size = std::max(m_Bounds.Width(), m_Bounds.Height()) / 2.0;
    }

    std::optional<InnerPlace> Find() {
        if (m_Bounds.IsEmpty() || !(m_Size > 0.0)) return {};
        if (std::min(m_Bounds.Width(), m_Bounds.Height()) < 2.0 * m_Least) return {};
        Try(m_Middle, 0.0);
        const double shorter = std::min(m_Bounds.Width(), m_Bounds.Height());
        const double half = std::max(shorter, 2.0 * m_Size / kMostColumns) / 2.0;
        for (double x = m_Bounds.minX + half; x - half < m_Bounds.maxX; x += 2.0 * half) {
            for (double y = m_Bounds.minY + half; y - half < m_Bounds.maxY; y += 2.0 * half) {
                Try({x, y}, half);
            }
        }
        for (int count = 0; !m_Cells.empty() && count < kMostCells; ++count) {
            const Cell cell = m_Cells.top();
            m_Cells.pop();
            if (cell.promise <= m_BestWorth + kPrecision) break;
            const double quarter = cell.half / 2.0;
            for (const double x : {-quarter, quarter}) {
                for (const double y : {-quarter, quarter}) {
                    Try({cell.center.X + x, cell.center.Y + y}, quarter);
                }
            }
        }
        return m_Best;
    }

private:
    struct Cell {
        TDoublePoint center;
        double half;
        double promise;  ///< no place in it is worth more

        bool operator<(const Cell& other) const { return promise < other.promise; }
    };

    static void AddMoment(const Path& ring, double& weight, TDoublePoint& sum) {
        const TDoublePoint& origin = ring.front();
        for (std::size_t i = 0, last = ring.size() - 1; i < ring.size(); last = i++) {
            const TDoublePoint a{ring[last].X - origin.X, ring[last].Y - origin.Y};
            const TDoublePoint b{ring[i].X - origin.X, ring[i].Y - origin.Y};
            const double twice = a.X * b.Y - b.X * a.Y;
            weight += twice;
            sum.X += twice * (origin.X + (a.X + b.X) / 3.0);
            sum.Y += twice * (origin.Y + (a.Y + b.Y) / 3.0);
        }
    }

    /// The distance of a point to the nearest edge, below 0 outside the area.
    double RoomAt(const TDoublePoint& point) const {
        bool isInside = false;
        double least = std::numeric_limits<double>::infinity();
        for (const Path& ring : m_Rings) {
            TDoublePoint a{ring.back().X - point.X, ring.back().Y - point.Y};
            for (const TDoublePoint& corner : ring) {
                const TDoublePoint b{corner.X - point.X, corner.Y - point.Y};
                if ((a.Y > 0.0) != (b.Y > 0.0) && (a.X - a.Y * (b.X - a.X) / (b.Y - a.Y)) > 0.0) {
                    isInside = !isInside;
                }
                // Most edges are farther away than one that was seen before.
                const bool isFar = std::min(a.X, b.X) >= least || std::max(a.X, b.X) <= -least ||
                                   std::min(a.Y, b.Y) >= least || std::max(a.Y, b.Y) <= -least;
                if (!isFar) least = std::min(least, DistanceToEdge(a, b));
                a = b;
            }
        }
        return isInside ? least : -least;
    }

    double PullAt(const TDoublePoint& point, double nearer) const {
        const double distance =
            std::max(std::abs(point.X - m_Middle.X), std::abs(point.Y - m_Middle.Y)) - nearer;
        return kPull * std::max(0.0, distance) / m_Size;
    }

    void Try(const TDoublePoint& center, double half) {
        const double room = RoomAt(center);
        const double worth = std::min(room, kAmple) - PullAt(center, 0.0);
        if (room > 0.0 && room >= m_Least && worth > m_BestWorth) {
            m_BestWorth = worth;
            m_Best = InnerPlace{center, room};
        }
        if (room + half < m_Least || room + half <= 0.0 || half < kPrecision) return;
        const double promise = std::min(room + half, kAmple) - PullAt(center, half);
        if (promise > m_BestWorth + kPrecision) m_Cells.push({center, half, promise});
    }

    double m_Least;
    std::vector<Path> m_Rings;
    Box m_Bounds;
    TDoublePoint m_Middle{};
    double m_Size = 0.0;  ///< half the longer side of the bounds
    std::priority_queue<Cell> m_Cells;
    double m_BestWorth = -std::numeric_limits<double>::infinity();
    std::optional<InnerPlace> m_Best;
};

}  // namespace

std::optional<InnerPlace> FindInnerPlace(const std::vector<Path>& rings, HalfSize box, double least) {
    std::optional<InnerPlace> place = Search(rings, box, least).Find();
    if (place) place->center = {place->center.X * box.width, place->center.Y * box.height};
    return place;
}

}  // namespace zulmap
