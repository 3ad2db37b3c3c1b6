/// \file
/// Run-length compressed rows of 4 and 8 bits, first row at the bottom.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/software/surface.h"

namespace device {

/// Decodes onto a surface of 4 or 8 bits of the same depth as the code. Runs end at the right edge; what lies
/// above the top is dropped.
/// \returns whether the code is whole: it says that it ends, or it has come past the top row.
bool DecodeRuns(const Surface& target, const std::uint8_t* code, std::size_t size);

}  // namespace device
