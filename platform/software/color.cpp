#include "platform/software/color.h"

namespace device {

namespace {

constexpr std::uint32_t Rgb(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
    return red | (green << 8) | (blue << 16);
}

/// The sixteen colours that every indexed display has had.
constexpr std::uint32_t kSixteen[16] = {
    Rgb(0, 0, 0),       Rgb(128, 0, 0),   Rgb(0, 128, 0),   Rgb(128, 128, 0),
    Rgb(0, 0, 128),     Rgb(128, 0, 128), Rgb(0, 128, 128), Rgb(192, 192, 192),
    Rgb(128, 128, 128), Rgb(255, 0, 0),   Rgb(0, 255, 0),   Rgb(255, 255, 0),
    Rgb(0, 0, 255),     Rgb(255, 0, 255), Rgb(0, 255, 255), Rgb(255, 255, 255),
};

/// The default palette: between the dark half and the bright half of the sixteen stand four more.
constexpr std::uint32_t kPaletteMiddle[4] = {Rgb(192, 220, 192), Rgb(166, 202, 240), Rgb(255, 251, 240),
                                             Rgb(160, 160, 164)};

/// System colours by index, as the reference host has them.
constexpr std::uint32_t kSystem[kSystemColors] = {
    0xFFFFFF, 0x956F25, 0xFA9632, 0x808080, 0xFFFFFF, 0xFFFFFF, 0x9E9E9E, 0x000000,
    0x000000, 0x000000, 0xFFFFFF, 0xFFFFFF, 0x808080, 0xFA9630, 0xFFFFFF, 0xF5F5F5,
    0xA6A6A6, 0xA6A6A6, 0x000000, 0xC8C8C8, 0xFFFFFF, 0x6A6A6A, 0xE3E3E3, 0x000000,
    0xFFFFFF, 0xFFFFFF, 0xE0E0E0, 0xFA9632, 0x808080, 0xFA9630, 0xFFFFFF,
};

ColorTable MakeMono() {
    ColorTable table;
    table.count = 2;
    table.colors[1] = Rgb(255, 255, 255);
    return table;
}

ColorTable MakeSixteen() {
    ColorTable table;
    table.count = 16;
    std::copy(std::begin(kSixteen), std::end(kSixteen), table.colors.begin());
    return table;
}

/// The dark half of the sixteen first and the bright half last, so that inverting an index inverts the
/// colour roughly; between them a 6 x 6 x 6 cube and a ramp of greys.
ColorTable MakeTwoHundredFiftySix() {
    ColorTable table;
    table.count = 256;
    std::copy(kSixteen, kSixteen + 8, table.colors.begin());
    std::copy(kSixteen + 8, kSixteen + 16, table.colors.end() - 8);
    std::size_t next = 8;
    for (std::uint32_t red = 0; red < 6; ++red) {
        for (std::uint32_t green = 0; green < 6; ++green) {
            for (std::uint32_t blue = 0; blue < 6; ++blue) {
                table.colors[next++] = Rgb(red * 51, green * 51, blue * 51);
            }
        }
    }
    for (std::uint32_t level = 10; next < 248; level += 10)
        table.colors[next++] = Rgb(level, level, level);
    return table;
}

/// Bayer's matrix: the lowest bits of the place decide first.
constexpr std::array<std::uint8_t, 256> MakeDitherRanks() {
    std::array<std::uint8_t, 256> ranks{};
    for (unsigned place = 0; place < ranks.size(); ++place) {
        const unsigned column = place & 15u, row = place >> 4;
        unsigned rank = 0;
        for (unsigned bit = 0; bit < 4; ++bit) {
            rank = (rank << 2) | ((((column ^ row) >> bit) & 1u) << 1) | ((row >> bit) & 1u);
        }
        ranks[place] = static_cast<std::uint8_t>(rank);
    }
    return ranks;
}

}  // namespace

const std::array<std::uint8_t, 256> kDitherRanks = MakeDitherRanks();

std::uint32_t PixelMask(Format format) {
    const int bits = BitsPerPixel(format);
    return bits == 32 ? 0xFFFFFFFFu : (1u << bits) - 1u;
}

std::uint32_t DefaultPaletteColor(int index) {
    if (index < 8) return kSixteen[index];
    return index < 12 ? kPaletteMiddle[index - 8] : kSixteen[index - 4];
}

std::uint32_t NearestEntry(const ColorTable& table, std::uint32_t color) {
    std::uint32_t best = 0;
    std::int32_t least = 3 * 255 * 255 + 1;
    for (std::int32_t i = 0; i < table.count && least > 0; ++i) {
        const std::int32_t distance = ColorDistance(table.colors[static_cast<std::size_t>(i)], color);
        if (distance < least) {
            least = distance;
            best = static_cast<std::uint32_t>(i);
        }
    }
    return best;
}

const ColorTable& DeviceColors(Format format) {
    static const ColorTable sixteen = MakeSixteen();
    static const ColorTable twoHundredFiftySix = MakeTwoHundredFiftySix();
    return format == Format::Indexed4 ? sixteen : twoHundredFiftySix;
}

const ColorTable& BlackAndWhite() {
    static const ColorTable mono = MakeMono();
    return mono;
}

std::uint32_t SystemColor(int index) {
    return index >= 0 && index < kSystemColors ? kSystem[index] : 0;
}

bool IsDitheredBright(std::uint32_t color, std::int32_t x, std::int32_t y) {
    const std::uint32_t red = color & 0xFFu, green = (color >> 8) & 0xFFu, blue = (color >> 16) & 0xFFu;
    const std::uint32_t hundredfoldBrightness = 30 * red + 59 * green + 11 * blue;
    return hundredfoldBrightness >= 100 * (256 - DitherRank(x, y));
}

}  // namespace device
