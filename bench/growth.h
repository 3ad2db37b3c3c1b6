/// \file
/// How time grows with the work.
#pragma once

#include <string>

namespace zulbench {

/// Times the work at rising amounts of points, pixels, clip rectangles and figures, prints what was measured
/// and writes a plot for each into \p folder, which exists. Minutes.
/// \throws std::runtime_error when a plot cannot be written
void MeasureGrowth(const std::string& folder);

}  // namespace zulbench
