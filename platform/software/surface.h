/// \file
/// Surfaces: pixels in memory, and what is known about their layout. No call of this file allocates.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace device {

/// A rectangle of device pixels: left and top belong to it, right and bottom do not.
struct Box {
    std::int32_t left = 0, top = 0, right = 0, bottom = 0;

    bool IsEmpty() const { return left >= right || top >= bottom; }
};

inline Box Intersect(const Box& a, const Box& b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

/// Pixel layouts. In the indexed ones the leftmost pixel stands in the highest bits of a byte.
enum class Format : std::uint8_t {
    Mono,      ///< 1 bit
    Indexed4,  ///< 4 bits
    Indexed8,  ///< 8 bits
    Rgb555,    ///< 16 bits, red in bits 10 to 14
    Rgb565,    ///< 16 bits, red in bits 11 to 15
    Bgr24,     ///< 3 bytes: blue, green, red
    Bgrx32,    ///< 32 bits, 0x00RRGGBB
};

/// Whether pixels are numbers of colours in a table.
constexpr bool IsIndexed(Format format) {
    return format <= Format::Indexed8;
}

constexpr int BitsPerPixel(Format format) {
    switch (format) {
        case Format::Mono:
            return 1;
        case Format::Indexed4:
            return 4;
        case Format::Indexed8:
            return 8;
        case Format::Rgb555:
        case Format::Rgb565:
            return 16;
        case Format::Bgr24:
            return 24;
        case Format::Bgrx32:
            return 32;
    }
    return 0;
}

/// Whether several pixels share a byte.
constexpr bool IsPacked(Format format) {
    return BitsPerPixel(format) < 8;
}

/// The layout of a bitmap of 1, 4, 8, 16 (565), 24 or 32 bits; none for another depth.
std::optional<Format> FormatOfDepth(std::int64_t bitsPerPixel);

/// Colours of an indexed surface as 0x00BBGGRR, padded with black to 2^depth entries.
struct ColorTable {
    std::array<std::uint32_t, 256> colors{};
    std::int32_t count = 0;
    std::uint32_t stamp = 0;  ///< another one whenever a palette has changed the colours in their place
};

/// A view of a bitmap's pixels. Row 0 is always the top one: bottom-up memory has a negative stride.
struct Surface {
    std::uint8_t* top = nullptr;  ///< first byte of row 0
    std::ptrdiff_t stride = 0;    ///< bytes from a row to the one below it
    std::int32_t width = 0, height = 0;
    Format format = Format::Mono;
    const ColorTable* table = nullptr;  ///< indexed formats that carry their own colours; else null

    std::uint8_t* Row(std::int32_t y) const { return top + stride * y; }
    Box Bounds() const { return {0, 0, width, height}; }
};

}  // namespace device
