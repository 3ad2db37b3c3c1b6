/// \file
/// When mapping in single precision gives the result of doubles. Internal to this folder.
///
/// A screen coordinate in single precision is wrong by a known small part of a pixel. Unless it lies that
/// close to the middle between two pixels it rounds as the exact one does. So vectors are mapped with
/// singles, twice as many at a time, and the few that hold a doubtful coordinate once more with doubles.
#pragma once

#include <algorithm>
#include <cmath>

#include "zul/scaler/mapping_kernels.h"

namespace zul {

struct TSingleMap {
    explicit TSingleMap(const TLinearMap& map) {
        constexpr double mostExact = 1 << 23;  // to which a coordinate may be added without rounding
        constexpr double twoRoundings =
            1.0 / (1 << 23);  // may be wrong by that part, and next to nothing more
        constexpr double ample = 1.0625;
        constexpr double mostDoubt = 1.0 / 64;
        const double origin = std::max(std::fabs(map.left), std::fabs(map.bottom));
        const double doubt = ample * twoRoundings * (origin + 32768) * std::fabs(map.k);
        usable = origin <= mostExact && doubt <= mostDoubt;
        if (!usable) return;
        left = static_cast<float>(map.left);
        bottom = static_cast<float>(map.bottom);
        k = static_cast<float>(map.k);
        certain = static_cast<float>(0.5 - doubt);
    }

    bool usable = false;  ///< otherwise too many coordinates are doubtful, or all
    float left = 0, bottom = 0, k = 0;
    float certain = 0;  ///< no farther from its pixel a coordinate is not doubtful
};

}  // namespace zul
