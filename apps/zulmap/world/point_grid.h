/// \file
/// Coordinates as whole numbers of a grid that the source of a map was rounded to.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "apps/zulmap/map_data.h"

namespace zulmap {

/// The places that coordinates of one axis can have: the n-th is `origin + n * step` or, when there is a
/// divisor, `n / divisor`, in the arithmetic of doubles, bit for bit.
struct GridAxis {
    double origin = 0.0;
    double step = 0.0;
    double divisor = 0.0;

    double At(std::int64_t n) const {
        return divisor != 0.0 ? static_cast<double>(n) / divisor : origin + static_cast<double>(n) * step;
    }
    /// The n whose place is exactly this; none when no place is, or one beyond 32 bits.
    std::optional<std::int32_t> Find(double value) const;
};

/// Sources have few digits: decimal fractions, or steps from one corner. Whoever finds that grid again keeps
/// every bit of the coordinates in small whole numbers.
struct PointGrid {
    GridAxis x;
    GridAxis y;
};

/// The grid that all, or nearly all, points of the layer lie on; one without places if there is none.
PointGrid FindGrid(const MapData& map, std::uint32_t layer);

}  // namespace zulmap
