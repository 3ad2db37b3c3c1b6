/// \file
/// The world's areas, which the rows of whole frames draw.
#pragma once

#include <string>
#include <vector>

#include "zul/geometry/points.h"

namespace zulbench {

/// All rings of the world's countries, laid over the whole map space; the last point of a ring is not its
/// first. \throws std::runtime_error when they cannot be read
std::vector<zul::CPoints> WorldRings();

/// A plain file of rings, for builds that have no reader of maps. \throws std::runtime_error
void WriteRings(const std::string& path, const std::vector<zul::CPoints>& rings);
std::vector<zul::CPoints> ReadRings(const std::string& path);

}  // namespace zulbench
