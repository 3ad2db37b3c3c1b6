/// \file
/// The one road by which figures reach pixels.
///
/// A primitive chooses its Ink once, from the tool, the raster operation and the surface; after that it only
/// puts boxes with `PutBox`, rows of a figure through `ClipRows`, or walks a thin line with the format's
/// `MixPixel`.
///
/// Every binary raster operation with a known source pixel comes down to `d = (d & keep) ^ flip`, so one loop
/// per pixel format serves all sixteen of them; copying (keep == 0) has a loop of its own.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/software/surface.h"

namespace device {

/// A raster operation with its source pixel folded in: d = (d & keep) ^ flip.
/// Both masks are in the surface's own pixel layout, within its depth.
struct Mix {
    std::uint32_t keep = 0;
    std::uint32_t flip = 0;

    bool IsCopy() const { return keep == 0; }
};

/// \param rop2 R2_BLACK to R2_WHITE.
/// \param pixel the source in the layout of \p format.
Mix MakeMix(int rop2, std::uint32_t pixel, Format format);

/// The device's clip: boxes that do not overlap, sorted in bands by top and then by left, as region code
/// keeps them: boxes of one band share top and bottom, bands do not overlap. Already cut to the surface.
struct Clip {
    const Box* boxes = nullptr;
    std::int32_t count = 0;
    Box bounds;  ///< of all boxes

    /// The first box that has row \p y or one below it; the end when there is none.
    const Box* FirstBelow(std::int32_t y) const {
        return std::partition_point(boxes, boxes + count, [y](const Box& box) { return box.bottom <= y; });
    }
};

/// A pattern ready for one surface: its rows as bytes to mix, `d = (d & keep) ^ flip` byte by byte, repeated
/// from its origin. A row is a whole number of bytes at every depth: a narrow pattern stands in it several
/// times. The first byte of a row is the one in which the origin's pixel lies, so that the bytes hold good
/// for every origin with the same place within its byte.
struct MixTile {
    std::int32_t width = 0, height = 0;     ///< pixels; a row takes `rowBytes`
    std::int32_t originX = 0, originY = 0;  ///< device pixel on which the pattern's corner falls
    std::size_t rowBytes = 0;
    const std::uint8_t* keep = nullptr;  ///< null: nothing is kept, the tile is copied
    const std::uint8_t* flip = nullptr;
};

/// The remainder that is not negative; \p divisor is positive.
constexpr std::int64_t FloorModulo(std::int64_t value, std::int64_t divisor) {
    const std::int64_t rest = value % divisor;
    return rest < 0 ? rest + divisor : rest;
}

/// The pixels left <= x < right of row y.
struct Span {
    std::int32_t y, left, right;
};

/// What a primitive draws with on one surface.
struct Ink {
    const Surface* surface = nullptr;
    Mix mix;                        ///< of a solid ink
    const MixTile* tile = nullptr;  ///< of a pattern ink; null for a solid one

    /// Puts spans, none of which is empty. The caller has clipped them to the surface.
    void (*spans)(const Ink& ink, const Span* spans, std::size_t count) = nullptr;
    /// The same for a whole box.
    void (*box)(const Ink& ink, const Box& box) = nullptr;
};

Ink MakeSolidInk(const Surface& surface, Mix mix);
Ink MakePatternInk(const Surface& surface, const MixTile& tile);
/// An ink that leaves every pixel as it is.
Ink MakeEmptyInk(const Surface& surface);

/// Repeats the first \p filled bytes over \p total.
void RepeatBytes(std::uint8_t* bytes, std::size_t filled, std::size_t total);

/// Puts one span, as `spans` does.
inline void PutSpan(const Ink& ink, const Span& span) {
    ink.spans(ink, &span, 1);
}

/// Calls `visit(visible)` for the visible parts of \p area from top to bottom; any coordinates.
template <class Visit>
inline void ForVisibleBoxes(const Clip& clip, const Box& area, Visit&& visit) {
    const Box* const end = clip.boxes + clip.count;
    for (const Box* box = clip.FirstBelow(area.top); box != end && box->top < area.bottom; ++box) {
        const Box visible = Intersect(area, *box);
        if (!visible.IsEmpty()) visit(visible);
    }
}

/// Puts a box where the clip allows it; any coordinates.
inline void PutBox(const Ink& ink, const Clip& clip, const Box& target) {
    ForVisibleBoxes(clip, target, [&ink](const Box& visible) { ink.box(ink, visible); });
}

// --- single pixels, per format: for loops that walk a line ---

/// `Load` and `Store` read and write the pixel at column x of a row.
template <Format F>
struct Pixels;

template <>
struct Pixels<Format::Mono> {
    static std::uint32_t Load(const std::uint8_t* row, std::int32_t x) {
        return (row[x >> 3] >> (7 - (x & 7))) & 1u;
    }
    static void Store(std::uint8_t* row, std::int32_t x, std::uint32_t pixel) {
        const unsigned shift = 7u - (static_cast<unsigned>(x) & 7u);
        row[x >> 3] = static_cast<std::uint8_t>((row[x >> 3] & ~(1u << shift)) | ((pixel & 1u) << shift));
    }
};

template <>
struct Pixels<Format::Indexed4> {
    static std::uint32_t Load(const std::uint8_t* row, std::int32_t x) {
        return (x & 1) != 0 ? row[x >> 1] & 15u : row[x >> 1] >> 4u;
    }
    static void Store(std::uint8_t* row, std::int32_t x, std::uint32_t pixel) {
        const std::uint8_t old = row[x >> 1];
        row[x >> 1] = static_cast<std::uint8_t>((x & 1) != 0 ? (old & 0xF0u) | (pixel & 15u)
                                                             : (old & 0x0Fu) | ((pixel & 15u) << 4u));
    }
};

template <>
struct Pixels<Format::Indexed8> {
    static std::uint32_t Load(const std::uint8_t* row, std::int32_t x) { return row[x]; }
    static void Store(std::uint8_t* row, std::int32_t x, std::uint32_t pixel) {
        row[x] = static_cast<std::uint8_t>(pixel);
    }
};

template <>
struct Pixels<Format::Rgb565> {
    static std::uint32_t Load(const std::uint8_t* row, std::int32_t x) {
        std::uint16_t pixel;
        std::memcpy(&pixel, row + std::ptrdiff_t{x} * 2, 2);
        return pixel;
    }
    static void Store(std::uint8_t* row, std::int32_t x, std::uint32_t pixel) {
        const auto narrow = static_cast<std::uint16_t>(pixel);
        std::memcpy(row + std::ptrdiff_t{x} * 2, &narrow, 2);
    }
};

template <>
struct Pixels<Format::Rgb555> : Pixels<Format::Rgb565> {};

template <>
struct Pixels<Format::Bgr24> {
    static std::uint32_t Load(const std::uint8_t* row, std::int32_t x) {
        const std::uint8_t* p = row + std::ptrdiff_t{x} * 3;
        return p[0] | (std::uint32_t{p[1]} << 8) | (std::uint32_t{p[2]} << 16);
    }
    static void Store(std::uint8_t* row, std::int32_t x, std::uint32_t pixel) {
        std::uint8_t* p = row + std::ptrdiff_t{x} * 3;
        p[0] = static_cast<std::uint8_t>(pixel);
        p[1] = static_cast<std::uint8_t>(pixel >> 8);
        p[2] = static_cast<std::uint8_t>(pixel >> 16);
    }
};

template <>
struct Pixels<Format::Bgrx32> {
    static std::uint32_t Load(const std::uint8_t* row, std::int32_t x) {
        std::uint32_t pixel;
        std::memcpy(&pixel, row + std::ptrdiff_t{x} * 4, 4);
        return pixel;
    }
    static void Store(std::uint8_t* row, std::int32_t x, std::uint32_t pixel) {
        std::memcpy(row + std::ptrdiff_t{x} * 4, &pixel, 4);
    }
};

template <Format F>
inline void MixPixel(std::uint8_t* row, std::int32_t x, Mix mix) {
    Pixels<F>::Store(row, x, (Pixels<F>::Load(row, x) & mix.keep) ^ mix.flip);
}

/// Calls \p visitor with the format as a compile-time constant:
/// `VisitFormat(surface.format, [&](auto f) { Loop<f.value>(...); });`
template <Format F>
struct FormatConstant {
    static constexpr Format value = F;
};
template <class Visitor>
inline void VisitFormat(Format format, Visitor&& visitor) {
    switch (format) {
        case Format::Mono:
            visitor(FormatConstant<Format::Mono>{});
            break;
        case Format::Indexed4:
            visitor(FormatConstant<Format::Indexed4>{});
            break;
        case Format::Indexed8:
            visitor(FormatConstant<Format::Indexed8>{});
            break;
        case Format::Rgb555:
            visitor(FormatConstant<Format::Rgb555>{});
            break;
        case Format::Rgb565:
            visitor(FormatConstant<Format::Rgb565>{});
            break;
        case Format::Bgr24:
            visitor(FormatConstant<Format::Bgr24>{});
            break;
        case Format::Bgrx32:
            visitor(FormatConstant<Format::Bgrx32>{});
            break;
    }
}

/// The pixel at a place of the surface, which must lie on it.
inline std::uint32_t LoadPixel(const Surface& surface, std::int32_t x, std::int32_t y) {
    std::uint32_t pixel = 0;
    VisitFormat(surface.format,
                [&](auto format) { pixel = Pixels<decltype(format)::value>::Load(surface.Row(y), x); });
    return pixel;
}

}  // namespace device
