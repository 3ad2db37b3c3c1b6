/// \file
/// Slow and plain expectations for block transfers: one pixel, one bit at a time.
#pragma once

#include <cstdint>
#include <vector>

#include "tests/platform/board.h"

/// A board together with what the test knows about it.
struct Side {
    Layout layout;
    std::vector<std::uint32_t> table;  ///< 0x00RRGGBB of an indexed section
    Board board;

    Side(const Layout& of, std::vector<std::uint32_t> colors, int width, int height, bool bottomUp = false)
        : layout(of), table(std::move(colors)), board(of, width, height, bottomUp, table) {}

    bool HasColors() const { return layout.bits > 1 || layout.section; }
};

/// Colours for an indexed layout, one of them twice where there are many; none for the other layouts.
inline std::vector<std::uint32_t> NoisyTable(const Layout& layout, std::mt19937& random) {
    std::vector<std::uint32_t> table;
    if (layout.bits > 8 || !layout.section) return table;
    for (int i = 0; i < 1 << layout.bits; ++i)
        table.push_back(static_cast<std::uint32_t>(random()) & 0xFFFFFFu);
    if (table.size() > 2) table[9] = table[2];
    return table;
}

/// 0x00RRGGBB and 0x00BBGGRR into one another.
inline std::uint32_t SwapRedBlue(std::uint32_t color) {
    return (color & 0xFF00u) | (color >> 16 & 0xFFu) | (color & 0xFFu) << 16;
}

/// 0x00RRGGBB of a pixel.
inline std::uint32_t ColorOf(const Side& side, std::uint32_t raw) {
    if (side.layout.bits <= 8) return side.table[raw];
    if (side.layout.bits >= 24) return raw & 0xFFFFFFu;
    const unsigned green = side.layout.fields565 ? 6 : 5;
    const std::uint32_t r = raw >> (5 + green) & 31, g = raw >> 5 & ((1u << green) - 1), b = raw & 31;
    return (r * 33 / 4) << 16 | (green == 6 ? g * 65 / 16 : g * 33 / 4) << 8 | b * 33 / 4;
}

inline std::uint32_t NearestIn(const std::vector<std::uint32_t>& table, std::uint32_t color) {
    std::size_t best = 0;
    int least = 1 << 30;
    for (std::size_t i = 0; i < table.size(); ++i) {
        int sum = 0;
        for (int shift = 0; shift < 24; shift += 8) {
            const int step =
                static_cast<int>(table[i] >> shift & 255) - static_cast<int>(color >> shift & 255);
            sum += step * step;
        }
        if (sum < least) {
            least = sum;
            best = i;
        }
    }
    return static_cast<std::uint32_t>(best);
}

/// The pixel of a side with colours that stands for 0x00RRGGBB.
inline std::uint32_t PixelFor(const Side& side, std::uint32_t color) {
    if (side.layout.bits <= 8) return NearestIn(side.table, color);
    if (side.layout.bits >= 24) return color;
    const std::uint32_t r = color >> 19 & 31, b = color >> 3 & 31;
    return side.layout.fields565 ? r << 11 | (color >> 10 & 63) << 5 | b
                                 : r << 10 | (color >> 11 & 31) << 5 | b;
}

/// What a source pixel becomes on its way to the target. The colours of the pixels of a one-bit bitmap
/// without a table are the target's text and background colour unless \p blackAndWhite.
inline std::uint32_t Translated(const Side& from, const Side& to, std::uint32_t raw,
                                bool blackAndWhite = false) {
    const bool same = from.layout.bits == to.layout.bits && from.layout.section == to.layout.section &&
                      from.layout.fields565 == to.layout.fields565 && from.table == to.table;
    if (same) return raw;
    if (!to.HasColors()) {
        return raw == PixelFor(from, SwapRedBlue(GetBkColor(from.board.Dc()))) ? 1 : 0;
    }
    if (!from.HasColors()) {
        if (blackAndWhite) return PixelFor(to, raw == 0 ? 0x000000u : 0xFFFFFFu);
        const HDC dc = to.board.Dc();
        return PixelFor(to, SwapRedBlue(raw == 0 ? GetTextColor(dc) : GetBkColor(dc)));
    }
    const std::uint32_t color = ColorOf(from, raw);
    // Direct colours reach 8-bit tables through cells of 8 x 8 x 8 colours, by the cell's middle.
    if (to.layout.bits == 8 && from.layout.bits > 8) return PixelFor(to, (color & 0xF8F8F8u) | 0x040404u);
    return PixelFor(to, color);
}

/// Bytes of each row that hold no pixel.
inline std::vector<std::uint8_t> Padding(const Board& board, int bits) {
    std::vector<std::uint8_t> bytes;
    const std::size_t used = static_cast<std::size_t>((board.Width() * bits + 7) / 8);
    for (std::size_t i = 0; i < board.Bytes(); ++i) {
        if (i % board.Stride() >= used) bytes.push_back(board.Memory()[i]);
    }
    return bytes;
}

/// Random numbers from low to high.
struct Dice {
    std::mt19937 random;
    explicit Dice(unsigned seed) : random(seed) {}
    int operator()(int low, int high) { return Between(random, low, high); }
};
