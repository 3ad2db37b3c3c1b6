#include "platform/software/ink.h"

#include <utility>

#include "platform/software/color.h"

namespace device {

namespace {

/// Bytes of a pixel that shares none with another; 0 for those that do.
constexpr std::size_t BytesPerPixel(Format format) {
    return static_cast<std::size_t>(BitsPerPixel(format) / 8);
}

/// Whether all bytes of a pixel are the same, so that memset can fill with it.
bool IsOneByte(std::uint32_t pixel, std::size_t bytes) {
    for (std::size_t i = 1; i < bytes; ++i) {
        if (((pixel >> (8 * i)) & 0xFFu) != (pixel & 0xFFu)) return false;
    }
    return true;
}

// --- runs: pixels that follow one another in memory ---

/// Three-byte pixels are put down in blocks of 16, which are a whole number of machine words.
constexpr std::size_t kBlockPixels = 16;
constexpr std::size_t kBlockBytes = kBlockPixels * 3;

void RepeatPixel24(std::uint8_t (&block)[kBlockBytes], std::uint32_t pixel) {
    for (std::int32_t i = 0; i < static_cast<std::int32_t>(kBlockPixels); ++i) {
        Pixels<Format::Bgr24>::Store(block, i, pixel);
    }
}

/// Runs longer than this are put by copying what has been put already: the copy is the host's fastest loop.
constexpr std::size_t kSeedPixels = 64;
constexpr std::size_t kMostCopied = 16384;  // stays in the first cache

/// Repeats the first \p filled bytes over \p total.
void Repeat(std::uint8_t* bytes, std::size_t filled, std::size_t total) {
    std::size_t piece = filled;
    while (filled < total) {
        const std::size_t copied = std::min(piece, total - filled);
        std::memcpy(bytes + filled, bytes, copied);
        filled += copied;
        if (piece < kMostCopied) piece *= 2;
    }
}

template <Format F>
void CopyRun(std::uint8_t* bytes, std::size_t count, std::uint32_t pixel) {
    constexpr std::size_t size = BytesPerPixel(F);
    if (size == 1 || IsOneByte(pixel, size)) {
        std::memset(bytes, static_cast<int>(pixel & 0xFFu), count * size);
        return;
    }
    const auto seed = static_cast<std::int32_t>(std::min(count, kSeedPixels));
    for (std::int32_t i = 0; i < seed; ++i)
        Pixels<F>::Store(bytes, i, pixel);
    if (count > kSeedPixels) Repeat(bytes, kSeedPixels * size, count * size);
}

template <class Word>
void MixWords(std::uint8_t* bytes, std::size_t count, Word keep, Word flip) {
    for (std::size_t i = 0; i < count; ++i) {
        Word word;
        std::memcpy(&word, bytes + i * sizeof(Word), sizeof(Word));
        word = static_cast<Word>((word & keep) ^ flip);
        std::memcpy(bytes + i * sizeof(Word), &word, sizeof(Word));
    }
}

template <Format F>
void MixRun(std::uint8_t* bytes, std::size_t count, Mix mix) {
    constexpr std::size_t size = BytesPerPixel(F);
    if constexpr (size == 1) {
        MixWords(bytes, count, static_cast<std::uint8_t>(mix.keep), static_cast<std::uint8_t>(mix.flip));
    } else if constexpr (size == 2) {
        MixWords(bytes, count, static_cast<std::uint16_t>(mix.keep), static_cast<std::uint16_t>(mix.flip));
    } else if constexpr (size == 4) {
        MixWords(bytes, count, mix.keep, mix.flip);
    } else if constexpr (size == 3) {
        if (count >= 2 * kBlockPixels) {
            std::uint8_t keep[kBlockBytes], flip[kBlockBytes];
            RepeatPixel24(keep, mix.keep);
            RepeatPixel24(flip, mix.flip);
            for (; count >= kBlockPixels; count -= kBlockPixels, bytes += kBlockBytes) {
                for (std::size_t i = 0; i < kBlockBytes; ++i) {
                    bytes[i] = static_cast<std::uint8_t>((bytes[i] & keep[i]) ^ flip[i]);
                }
            }
        }
        for (std::size_t i = 0; i < count; ++i)
            MixPixel<F>(bytes, static_cast<std::int32_t>(i), mix);
    }
}

// --- solid inks ---

template <Format F, bool Copy>
inline void PutRun(std::uint8_t* bytes, std::size_t count, Mix mix) {
    if constexpr (Copy) {
        CopyRun<F>(bytes, count, mix.flip);
    } else {
        MixRun<F>(bytes, count, mix);
    }
}

/// Mixes the bits of one byte that \p mask selects.
inline void MixBits(std::uint8_t* byte, unsigned mask, unsigned keep, unsigned flip) {
    *byte = static_cast<std::uint8_t>((*byte & (keep | ~mask)) ^ (flip & mask));
}

/// Pixels x0 <= x < x1 of a row whose pixels share bytes: a part of a byte at each end, whole bytes between.
template <Format F, bool Copy>
inline void PutPacked(std::uint8_t* row, std::int32_t x0, std::int32_t x1, Mix mix) {
    constexpr auto bits = static_cast<unsigned>(BitsPerPixel(F));
    constexpr unsigned repeat = F == Format::Mono ? 0xFFu : 0x11u;
    constexpr std::int32_t perByte = static_cast<std::int32_t>(8 / bits);
    const unsigned keep = mix.keep * repeat, flip = mix.flip * repeat;
    std::uint8_t* first = row + x0 / perByte;
    std::uint8_t* last = row + x1 / perByte;  // holds the first pixel that is not put
    const unsigned firstMask = 0xFFu >> (static_cast<unsigned>(x0 % perByte) * bits);
    const unsigned lastMask = 0xFFu & ~(0xFFu >> (static_cast<unsigned>(x1 % perByte) * bits));
    if (first == last) {
        MixBits(first, firstMask & lastMask, keep, flip);
        return;
    }
    if (firstMask != 0xFFu) MixBits(first++, firstMask, keep, flip);
    PutRun<Format::Indexed8, Copy>(first, static_cast<std::size_t>(last - first), {keep, flip});
    if (lastMask != 0) MixBits(last, lastMask, keep, flip);
}

template <Format F, bool Copy>
inline void PutRow(std::uint8_t* row, std::int32_t x0, std::int32_t x1, Mix mix) {
    if constexpr (!IsPacked(F)) {
        PutRun<F, Copy>(row + static_cast<std::size_t>(x0) * BytesPerPixel(F),
                        static_cast<std::size_t>(x1 - x0), mix);
    } else {
        PutPacked<F, Copy>(row, x0, x1, mix);
    }
}

template <Format F, bool Copy>
void SolidSpan(const Ink& ink, std::int32_t y, std::int32_t x0, std::int32_t x1) {
    PutRow<F, Copy>(ink.surface->Row(y), x0, x1, ink.mix);
}

template <Format F, bool Copy>
void SolidBox(const Ink& ink, const Box& box) {
    const Surface& surface = *ink.surface;
    if constexpr (!IsPacked(F)) {
        const std::ptrdiff_t row = static_cast<std::ptrdiff_t>(BytesPerPixel(F)) * surface.width;
        if (box.right - box.left == surface.width && (surface.stride == row || surface.stride == -row)) {
            std::uint8_t* lowest = surface.Row(surface.stride > 0 ? box.top : box.bottom - 1);
            PutRun<F, Copy>(
                lowest,
                static_cast<std::size_t>(surface.width) * static_cast<std::size_t>(box.bottom - box.top),
                ink.mix);
            return;
        }
    }
    std::uint8_t* row = surface.Row(box.top);
    if constexpr (!IsPacked(F) && Copy) {
        const auto pixels = static_cast<std::size_t>(box.right - box.left);
        if (pixels > kSeedPixels) {
            std::uint8_t* const first = row + static_cast<std::size_t>(box.left) * BytesPerPixel(F);
            CopyRun<F>(first, pixels, ink.mix.flip);
            std::uint8_t* bytes = first + surface.stride;
            for (std::int32_t y = box.top + 1; y < box.bottom; ++y, bytes += surface.stride) {
                std::memcpy(bytes, first, pixels * BytesPerPixel(F));
            }
            return;
        }
    }
    for (std::int32_t y = box.top; y < box.bottom; ++y, row += surface.stride) {
        PutRow<F, Copy>(row, box.left, box.right, ink.mix);
    }
}

void NoSpan(const Ink&, std::int32_t, std::int32_t, std::int32_t) {}
void NoBox(const Ink&, const Box&) {}

// --- pattern inks ---

std::int64_t FloorDivide(std::int64_t value, std::int64_t divisor) {
    return (value - FloorModulo(value, divisor)) / divisor;
}

/// The byte of the tile's row that belongs to a byte of the surface's row.
template <Format F>
std::size_t TilePhase(const MixTile& tile, std::int64_t byte) {
    std::int64_t origin = tile.originX;
    if constexpr (!IsPacked(F)) {
        origin *= static_cast<std::int64_t>(BytesPerPixel(F));
    } else {
        origin = FloorDivide(origin, 8 / BitsPerPixel(F));
    }
    return static_cast<std::size_t>(FloorModulo(byte - origin, static_cast<std::int64_t>(tile.rowBytes)));
}

/// Which bytes of a row pixels take, and which bits of the outer two are theirs.
struct ByteRange {
    std::ptrdiff_t first, end;
    unsigned firstMask, lastMask;
};

template <Format F>
ByteRange BytesOf(std::int32_t x0, std::int32_t x1) {
    if constexpr (!IsPacked(F)) {
        constexpr auto size = static_cast<std::ptrdiff_t>(BytesPerPixel(F));
        return {x0 * size, x1 * size, 0xFFu, 0xFFu};
    } else {
        constexpr auto bits = static_cast<unsigned>(BitsPerPixel(F));
        constexpr std::int32_t perByte = static_cast<std::int32_t>(8 / bits);
        const auto lead = static_cast<unsigned>(x0 % perByte),
                   rest = static_cast<unsigned>(-x1 & (perByte - 1));
        return {x0 / perByte, (std::ptrdiff_t{x1} + perByte - 1) / perByte, 0xFFu >> (lead * bits),
                0xFFu & (0xFFu << (rest * bits))};
    }
}

void MixBytes(std::uint8_t* __restrict bytes, const std::uint8_t* __restrict keep,
              const std::uint8_t* __restrict flip, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        bytes[i] = static_cast<std::uint8_t>((bytes[i] & keep[i]) ^ flip[i]);
    }
}

/// Mixes the bits of one byte under a mask.
void MixMasked(std::uint8_t* byte, const MixTile& tile, std::size_t at, unsigned mask) {
    MixBits(byte, mask, tile.keep == nullptr ? 0 : tile.keep[at], tile.flip[at]);
}

template <Format F>
void TileSpan(const Ink& ink, std::int32_t y, std::int32_t x0, std::int32_t x1) {
    const MixTile& tile = *ink.tile;
    const std::size_t tileRow =
        static_cast<std::size_t>(FloorModulo(std::int64_t{y} - tile.originY, tile.height)) * tile.rowBytes;
    const ByteRange range = BytesOf<F>(x0, x1);
    std::uint8_t* byte = ink.surface->Row(y) + range.first;
    auto left = static_cast<std::size_t>(range.end - range.first);
    std::size_t phase = TilePhase<F>(tile, range.first);
    if constexpr (IsPacked(F)) {
        const unsigned firstMask = left == 1 ? range.firstMask & range.lastMask : range.firstMask;
        if (firstMask != 0xFFu) {
            MixMasked(byte++, tile, tileRow + phase, firstMask);
            if (++phase == tile.rowBytes) phase = 0;
            if (--left == 0) return;
        }
        if (range.lastMask != 0xFFu) {
            --left;
            MixMasked(byte + left, tile, tileRow + (phase + left) % tile.rowBytes, range.lastMask);
        }
    }
    while (left > 0) {
        const std::size_t run = std::min(left, tile.rowBytes - phase);
        const std::size_t at = tileRow + phase;
        if (tile.keep == nullptr) {
            std::memcpy(byte, tile.flip + at, run);
        } else {
            MixBytes(byte, tile.keep + at, tile.flip + at, run);
        }
        byte += run;
        left -= run;
        phase = 0;
    }
}

template <Format F>
void TileBox(const Ink& ink, const Box& box) {
    for (std::int32_t y = box.top; y < box.bottom; ++y)
        TileSpan<F>(ink, y, box.left, box.right);
}

}  // namespace

Mix MakeMix(int rop2, std::uint32_t pixel, Format format) {
    // One less than the operation's number is its truth table, the source in bit 1 and the destination in
    // bit 0 of the row number.
    const auto table = static_cast<unsigned>(rop2 - 1);
    const auto row = [&](unsigned destination) {
        const std::uint32_t whereOne = (table >> (2u + destination)) & 1u ? pixel : 0u;
        const std::uint32_t whereZero = (table >> destination) & 1u ? ~pixel : 0u;
        return whereOne | whereZero;
    };
    const std::uint32_t mask = PixelMask(format);
    const std::uint32_t flip = row(0) & mask;
    return {(flip ^ row(1)) & mask, flip};
}

Ink MakeEmptyInk(const Surface& surface) {
    Ink ink;
    ink.surface = &surface;
    ink.mix = {PixelMask(surface.format), 0};
    ink.span = NoSpan;
    ink.box = NoBox;
    return ink;
}

Ink MakeSolidInk(const Surface& surface, Mix mix) {
    if (mix.keep == PixelMask(surface.format) && mix.flip == 0) return MakeEmptyInk(surface);
    Ink ink;
    ink.surface = &surface;
    ink.mix = mix;
    VisitFormat(surface.format, [&](auto format) {
        constexpr Format F = decltype(format)::value;
        ink.span = mix.IsCopy() ? SolidSpan<F, true> : SolidSpan<F, false>;
        ink.box = mix.IsCopy() ? SolidBox<F, true> : SolidBox<F, false>;
    });
    return ink;
}

Ink MakePatternInk(const Surface& surface, const MixTile& tile) {
    Ink ink;
    ink.surface = &surface;
    ink.tile = &tile;
    VisitFormat(surface.format, [&](auto format) {
        constexpr Format F = decltype(format)::value;
        ink.span = TileSpan<F>;
        ink.box = TileBox<F>;
    });
    return ink;
}

}  // namespace device
