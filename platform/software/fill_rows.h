/// \file
/// Long rows of one pixel.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/export.h"

namespace device {

/// Pixels of 1, 2, 3 and 4 bytes all fill this many without a rest, and so do vectors.
constexpr std::size_t kFillBlock = 96;

/// Rows of memory, the first at `first`, each of `bytes` bytes: kFillBlock or more, a whole number of pixels.
struct FilledRows {
    std::uint8_t* first;
    std::ptrdiff_t stride;
    std::size_t bytes;
    std::int32_t count;
};

/// Puts one pixel all over the rows. \p block: the pixel, repeated over kFillBlock bytes. Takes the widest
/// vectors that the processor has.
ZUL_PLATFORM_API void FillRows(const FilledRows& rows, const std::uint8_t* block, std::size_t pixelBytes);
/// The same for any processor.
ZUL_PLATFORM_API void FillRowsPlainly(const FilledRows& rows, const std::uint8_t* block,
                                      std::size_t pixelBytes);

}  // namespace device
