/// \file
/// Lines wider than one pixel, with round caps and joins.
#pragma once

#include <cstdint>

#include "platform/software/coverage.h"
#include "platform/software/path.h"

namespace device {

/// The part of \p bounds that a pen of \p width pixels may reach from the path.
Box WideReach(const Box& bounds, const Path& path, std::int32_t width);

/// Adds what a round pen of \p width pixels (at least 2) covers on its way along a path: a disc
/// around each point and a box along each segment. Rows and columns outside the mask's bounds cost nothing;
/// coordinates may be any 32-bit values. Throws std::bad_alloc.
void CoverPath(Coverage& coverage, const Path& path, std::int32_t width);

}  // namespace device
