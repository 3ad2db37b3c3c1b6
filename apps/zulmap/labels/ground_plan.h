/// \file
/// Which feature owns the ground under each part of a screen.
#pragma once

#include <cstdint>
#include <vector>

#include "apps/zulmap/labels/turned_box.h"
#include "apps/zulmap/map_data.h"
#include "zul/geometry/coordinates.h"

namespace zulmap {

/// A coarse picture of the areas, in squares of a few pixels, that tells whose ground a label would cover.
class GroundPlan {
public:
    /// Pixels along the side of a square.
    static constexpr std::int32_t kSquare = 2;

    explicit GroundPlan(zul::TSize screen);

    /// The squares whose middles the rings enclose under the alternate rule, and those of a ring too small to
    /// have any. What comes later lies on top. \p owner is not below 0.
    void Fill(const std::vector<Path>& rings, std::int32_t owner);

    /// Parts of a box; what is neither is water.
    struct Shares {
        double own;
        double foreign;
    };
    Shares Under(const TurnedBox& box, std::int32_t owner) const;

private:
    static constexpr std::int32_t kWater = -1;

    std::int32_t OwnerAt(const TDoublePoint& pixel) const;
    void FillRow(std::int32_t row, std::vector<double>& crossings, std::int32_t owner);

    std::int32_t m_Columns;
    std::int32_t m_Rows;
    std::vector<std::int32_t> m_Owners;
};

}  // namespace zulmap
