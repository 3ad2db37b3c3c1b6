/// \file
/// From a file's coordinates to 16-bit map units.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "apps/zulmap/map_data.h"
#include "zul/geometry/coordinates.h"

namespace zulmap {

/// Lays the 16-bit map space over the part of a map that a picture shows, as finely as it can.
///
///     +----------------------------------+   the map space, -32767 .. 32767 both ways
///     |   +--------------------------+   |
///     |   |  held: what is drawn     |   |   the turned view and an eighth more on every side;
///     |   |   +------------------+   |   |   geometry outside is cut off before it is rounded
///     |   |   |   view           |   |   |   the wanted box, widened to the picture's shape; its
///     |   |   +------------------+   |   |   centre is map unit (0, 0), about which the view turns
///     |   +--------------------------+   |
///     +----------------------------------+
///
/// The unit is the smallest with which the view and the data inside "held" keep within the space. A turned
/// view turns its points in 16 bits too, where they would wrap: then not the sides but the farthest corners
/// of both keep within the space.
class MapSpace {
public:
    /// \param data    all there is to draw, not empty
    /// \param wanted  what the picture is to show at least, before it is turned; none: all data, turned
    /// \param width, height  the picture in pixels, positive
    /// \param degrees  finite; turns the view counter-clockwise
    /// \throws ToolError when the view is too large or too small to be divided into units
    MapSpace(const Box& data, const std::optional<Box>& wanted, std::int32_t width, std::int32_t height,
             double degrees);

    /// The whole space in units of a given size, for a view that moves over it: all that the 16 bits reach
    /// is held, or \p reach units from the centre on every side.
    static MapSpace Around(const TDoublePoint& center, double unit, double reach = zul::MaxCoord);

    /// The view in map units, symmetrical about (0, 0).
    zul::TLongRect GetVisibleBox() const;
    /// The view in the file's coordinates.
    Box GetView() const;
    /// Where map unit (0, 0) lies in the file's coordinates.
    const TDoublePoint& GetCenter() const { return m_Center; }
    /// What is drawn of the map, in the file's coordinates.
    const Box& GetHeld() const { return m_Held; }
    /// Units of the file in one map unit.
    double GetUnit() const { return m_Unit; }

    /// The points of a line in map units, consecutive equal ones once. Empty when nothing of it is held;
    /// where a line leaves what is held and comes back it is led along the edge of it, outside the view.
    std::vector<zul::TPoint> PlaceLine(const Path& line) const;
    /// The same for a ring that closes itself; the last point differs from the first.
    std::vector<zul::TPoint> PlaceRing(const Path& ring) const;

private:
    MapSpace() = default;
    zul::TPoint Round(const TDoublePoint& point) const;
    std::vector<zul::TPoint> Place(const Path& path, bool closed) const;

    TDoublePoint m_Center{};
    double m_HalfWidth = 0.0;  ///< of the view, in the file's units
    double m_HalfHeight = 0.0;
    Box m_Held;
    double m_Unit = 1.0;
};

/// What to show of a map when nobody says. One that goes around the globe goes on to the poles, with or
/// without land there.
Box WholeOf(const MapFacts& map);

/// The points of one area as one ring that encloses, under the alternate fill rule, what the rings enclose
/// together: each hole hangs on the outer ring by a bridge there and back, which has no width and so no
/// inside. \param rings  the outer ring first; empty ones are left out
std::vector<zul::TPoint> StitchRings(const std::vector<std::vector<zul::TPoint>>& rings);

}  // namespace zulmap
