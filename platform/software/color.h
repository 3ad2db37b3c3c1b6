/// \file
/// Colours and the pixels that stand for them. Colours are 0x00BBGGRR.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/software/surface.h"

namespace device {

/// Bits of a pixel that a raster operation changes: all that the format stores.
std::uint32_t PixelMask(Format format);

/// A channel of \p bits widened to 8 by repeating its high bits below.
constexpr std::uint32_t WidenChannel(std::uint32_t value, unsigned bits) {
    return ((value << (8 - bits)) | (value >> (2 * bits - 8))) & 0xFFu;
}

/// A colour in one of the formats without a table: Rgb555, Rgb565, Bgr24, Bgrx32. Low bits are cut off.
inline std::uint32_t PackColor(Format format, std::uint32_t color) {
    const std::uint32_t red = color & 0xFFu, green = (color >> 8) & 0xFFu, blue = (color >> 16) & 0xFFu;
    if (format == Format::Rgb565) return ((red >> 3) << 11) | ((green >> 2) << 5) | (blue >> 3);
    if (format == Format::Rgb555) return ((red >> 3) << 10) | ((green >> 3) << 5) | (blue >> 3);
    return (red << 16) | (green << 8) | blue;
}

/// The colour of a pixel in one of the formats without a table.
inline std::uint32_t UnpackColor(Format format, std::uint32_t pixel) {
    std::uint32_t red = (pixel >> 16) & 0xFFu, green = (pixel >> 8) & 0xFFu, blue = pixel & 0xFFu;
    if (format == Format::Rgb565) {
        red = WidenChannel((pixel >> 11) & 31u, 5);
        green = WidenChannel((pixel >> 5) & 63u, 6);
        blue = WidenChannel(pixel & 31u, 5);
    } else if (format == Format::Rgb555) {
        red = WidenChannel((pixel >> 10) & 31u, 5);
        green = WidenChannel((pixel >> 5) & 31u, 5);
        blue = WidenChannel(pixel & 31u, 5);
    }
    return red | (green << 8) | (blue << 16);
}

/// The palette that every context starts with.
constexpr int kDefaultPaletteColors = 20;
std::uint32_t DefaultPaletteColor(int index);

/// The sum of the squared differences of the channels.
inline std::int32_t ColorDistance(std::uint32_t a, std::uint32_t b) {
    std::int32_t sum = 0;
    for (unsigned shift = 0; shift < 24; shift += 8) {
        const std::int32_t difference =
            static_cast<std::int32_t>((a >> shift) & 0xFFu) - static_cast<std::int32_t>((b >> shift) & 0xFFu);
        sum += difference * difference;
    }
    return sum;
}

/// The entry with this very colour, else the one at the least squared distance; the first of equals.
std::uint32_t NearestEntry(const ColorTable& table, std::uint32_t color);

/// The colours of device-dependent bitmaps of 4 and 8 bits, which have no table of their own.
const ColorTable& DeviceColors(Format format);
/// True colour goes into 256 colours through a table of 32 levels a channel: the middle of a colour's level.
constexpr std::uint32_t LevelColor(std::uint32_t color) {
    return (color & 0xF8F8F8u) | 0x040404u;
}

/// Black and white: what a device-dependent one-bit bitmap shows.
const ColorTable& BlackAndWhite();

/// How many system colours there are, and each; black for an index that is none.
constexpr int kSystemColors = 31;
std::uint32_t SystemColor(int index);

/// Row by row.
extern const std::array<std::uint8_t, 256> kDitherRanks;
/// The rank of a place in the cell of an ordered dither, 0 to 255; cells of 16 x 16 pixels repeat. The four
/// high bits are those of a cell of 4 x 4.
inline std::uint32_t DitherRank(std::int32_t x, std::int32_t y) {
    return kDitherRanks[static_cast<std::size_t>((y & 15) << 4 | (x & 15))];
}

/// Whether the ordered dither of one-bit targets lights the pixel at a place of its 16 x 16 cell.
bool IsDitheredBright(std::uint32_t color, std::int32_t x, std::int32_t y);

}  // namespace device
