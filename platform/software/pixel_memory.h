/// \file
/// Memory of a bitmap: zero-filled, and sized without overflow.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>

#include "platform/dib_header.h"
#include "platform/software/surface.h"

namespace device {

struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};
using PixelMemory = std::unique_ptr<std::uint8_t[], FreeMemory>;

/// Bytes a row takes in memory, padded to 32 bits. \p width must not be negative.
inline std::int64_t RowBytes(std::int64_t width, Format format) {
    return dib::RowSize(width, BitsPerPixel(format));
}

/// Bytes of a whole bitmap, or 0 when a side is not positive or the size is over the limit.
inline std::int64_t BitmapBytes(std::int64_t width, std::int64_t height, Format format) {
    if (width <= 0 || height <= 0 || !dib::FitsLimit(width, height, BitsPerPixel(format))) return 0;
    return RowBytes(width, format) * height;
}

/// A surface over fresh zero-filled memory; its `top` is null when the size is refused or memory is short.
inline Surface MakeSurface(PixelMemory& memory, std::int32_t width, std::int32_t height, Format format,
                           bool bottomUp) {
    Surface surface;
    const std::int64_t bytes = BitmapBytes(width, height, format);
    if (bytes == 0) return surface;
    memory.reset(static_cast<std::uint8_t*>(std::calloc(static_cast<std::size_t>(bytes), 1)));
    if (memory == nullptr) return surface;
    const auto row = static_cast<std::ptrdiff_t>(RowBytes(width, format));
    surface.top = memory.get() + (bottomUp ? row * (height - 1) : 0);
    surface.stride = bottomUp ? -row : row;
    surface.width = width;
    surface.height = height;
    surface.format = format;
    return surface;
}

}  // namespace device
