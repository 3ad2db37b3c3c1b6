/// \file
/// Images that the software device loads, and what a host can settle about them. BMP files are read at 1, 4,
/// 8, 16, 24 and 32 bits, with core, info, V4 and V5 headers, colour masks of any place and width, and
/// run-length rows. Where a file breaks the rules but its rows are all there, it is shown: sizes stated
/// wrong, colours too many or too few (the missing ones are black), runs over the edge. Anything cut short is
/// refused.
#pragma once

#include <cstdint>

#include "platform/export.h"

namespace device {

/// The most bytes that an image may take which its file does not hold: a few bytes of header, or of runs, can
/// ask for any size. An image as large as its file is read whatever the limit.
constexpr std::int64_t kDefaultImageLimit = std::int64_t{256} << 20;
/// Sets the limit for all threads; a negative one counts as 0.
ZUL_PLATFORM_API void SetImageLimit(std::int64_t bytes);
ZUL_PLATFORM_API std::int64_t GetImageLimit();  ///< Bytes.

}  // namespace device
