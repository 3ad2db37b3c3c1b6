#include "platform/software/ink.h"

#include <type_traits>

#include "platform/software/color.h"
#include "platform/software/fill_rows.h"

namespace device {

void RepeatBytes(std::uint8_t* bytes, std::size_t filled, std::size_t total) {
    constexpr std::size_t kMostCopied = 16384;  // stays in the first cache
    std::size_t piece = filled;
    while (filled < total) {
        const std::size_t copied = std::min(piece, total - filled);
        std::memcpy(bytes + filled, bytes, copied);
        filled += copied;
        if (piece < kMostCopied) piece *= 2;
    }
}

namespace {

/// Bytes of a pixel that shares none with another; 0 for those that do.
constexpr std::size_t BytesPerPixel(Format format) {
    return static_cast<std::size_t>(BitsPerPixel(format) / 8);
}

// --- runs: pixels that follow one another in memory ---

/// Pixels are put down in blocks, which are a whole number of machine words.
template <Format F>
constexpr std::size_t kBlockBytes = BytesPerPixel(F) == 3 ? 48 : 16;

template <Format F>
void RepeatPixel(std::uint8_t (&block)[kBlockBytes<F>], std::uint32_t pixel) {
    constexpr auto pixels = static_cast<std::int32_t>(kBlockBytes<F> / BytesPerPixel(F));
    for (std::int32_t i = 0; i < pixels; ++i)
        Pixels<F>::Store(block, i, pixel);
}

/// Runs longer than this many bytes are worth the widest vectors.
constexpr std::size_t kMostBlocks = 384;

/// Puts runs of one pixel. \p F has whole bytes a pixel.
template <Format F>
class CopyRuns {
public:
    explicit CopyRuns(Mix mix) : m_Pixel(mix.flip) { RepeatPixel<F>(m_Block, m_Pixel); }

    void Put(std::uint8_t* bytes, std::size_t count) const {
        const std::size_t size = count * kSize;
        if (size > kMostBlocks) {
            PutLong({bytes, 0, size, 1});
        } else if (size >= kBlock) {
            PutBlocks(bytes, size);
        } else {
            for (std::size_t i = 0; i < count; ++i)
                Pixels<F>::Store(bytes, static_cast<std::int32_t>(i), m_Pixel);
        }
    }

    /// Rows of more than kMostBlocks bytes.
    void PutLong(const FilledRows& rows) const {
        std::uint8_t block[kFillBlock];
        for (std::size_t i = 0; i < kFillBlock; i += kBlock)
            std::memcpy(block + i, m_Block, kBlock);
        FillRows(rows, block, kSize);
    }

private:
    static constexpr std::size_t kSize = BytesPerPixel(F);
    static constexpr std::size_t kBlock = kBlockBytes<F>;

    /// \p size is at least a block.
    void PutBlocks(std::uint8_t* bytes, std::size_t size) const {
        // The last block may overlap the one before: both begin with a whole pixel.
        std::uint8_t* const last = bytes + size - kBlock;
        for (; bytes < last; bytes += kBlock)
            std::memcpy(bytes, m_Block, kBlock);
        std::memcpy(last, m_Block, kBlock);
    }

    std::uint32_t m_Pixel;
    std::uint8_t m_Block[kBlock];
};

template <class Word>
void MixWords(std::uint8_t* bytes, std::size_t count, Word keep, Word flip) {
    for (std::size_t i = 0; i < count; ++i) {
        Word word;
        std::memcpy(&word, bytes + i * sizeof(Word), sizeof(Word));
        word = static_cast<Word>((word & keep) ^ flip);
        std::memcpy(bytes + i * sizeof(Word), &word, sizeof(Word));
    }
}

/// The same for a mix with what is there.
template <Format F>
class MixRuns {
public:
    explicit MixRuns(Mix mix) : m_Mix(mix) {}

    void Put(std::uint8_t* bytes, std::size_t count) const {
        constexpr std::size_t size = BytesPerPixel(F);
        if constexpr (size == 1) {
            MixWords(bytes, count, static_cast<std::uint8_t>(m_Mix.keep),
                     static_cast<std::uint8_t>(m_Mix.flip));
        } else if constexpr (size == 2) {
            MixWords(bytes, count, static_cast<std::uint16_t>(m_Mix.keep),
                     static_cast<std::uint16_t>(m_Mix.flip));
        } else if constexpr (size == 4) {
            MixWords(bytes, count, m_Mix.keep, m_Mix.flip);
        } else {
            PutBlocks(bytes, count);
        }
    }

private:
    /// Pixels that are no machine words.
    void PutBlocks(std::uint8_t* bytes, std::size_t count) const {
        constexpr std::size_t block = kBlockBytes<F>, pixels = block / BytesPerPixel(F);
        if (count >= 2 * pixels) {
            std::uint8_t keep[block], flip[block];
            RepeatPixel<F>(keep, m_Mix.keep);
            RepeatPixel<F>(flip, m_Mix.flip);
            for (; count >= pixels; count -= pixels, bytes += block) {
                for (std::size_t i = 0; i < block; ++i)
                    bytes[i] = static_cast<std::uint8_t>((bytes[i] & keep[i]) ^ flip[i]);
            }
        }
        for (std::size_t i = 0; i < count; ++i)
            MixPixel<F>(bytes, static_cast<std::int32_t>(i), m_Mix);
    }

    Mix m_Mix;
};

// --- solid inks ---

/// What puts runs of whole bytes with a mix, chosen once for many of them.
template <Format F, bool Copy>
using Runs = std::conditional_t<Copy, CopyRuns<F>, MixRuns<F>>;

/// Mixes the bits of one byte that \p mask selects.
inline void MixBits(std::uint8_t* byte, unsigned mask, unsigned keep, unsigned flip) {
    *byte = static_cast<std::uint8_t>((*byte & (keep | ~mask)) ^ (flip & mask));
}

/// Puts rows of pixels with whole bytes.
template <Format F, bool Copy>
class SolidRows {
public:
    explicit SolidRows(Mix mix) : m_Runs(mix) {}

    void Put(std::uint8_t* row, std::int32_t x0, std::int32_t x1) const {
        m_Runs.Put(row + static_cast<std::size_t>(x0) * BytesPerPixel(F), static_cast<std::size_t>(x1 - x0));
    }
    void PutRun(std::uint8_t* bytes, std::size_t count) const { m_Runs.Put(bytes, count); }
    /// Rows of more than kMostBlocks bytes, to be copied.
    void PutLong(const FilledRows& rows) const { m_Runs.PutLong(rows); }

private:
    Runs<F, Copy> m_Runs;
};

/// Puts rows of pixels that share bytes: a part of a byte at each end, whole bytes between.
template <Format F, bool Copy>
class PackedRows {
public:
    explicit PackedRows(Mix mix)
        : m_Keep(mix.keep * kRepeat), m_Flip(mix.flip * kRepeat), m_Runs({m_Keep, m_Flip}) {}

    void Put(std::uint8_t* row, std::int32_t x0, std::int32_t x1) const {
        std::uint8_t* first = row + x0 / kPerByte;
        std::uint8_t* last = row + x1 / kPerByte;  // holds the first pixel that is not put
        const unsigned firstMask = 0xFFu >> (static_cast<unsigned>(x0 % kPerByte) * kBits);
        const unsigned lastMask = 0xFFu & ~(0xFFu >> (static_cast<unsigned>(x1 % kPerByte) * kBits));
        if (first == last) {
            MixBits(first, firstMask & lastMask, m_Keep, m_Flip);
            return;
        }
        if (firstMask != 0xFFu) MixBits(first++, firstMask, m_Keep, m_Flip);
        m_Runs.Put(first, static_cast<std::size_t>(last - first));
        if (lastMask != 0) MixBits(last, lastMask, m_Keep, m_Flip);
    }

private:
    static constexpr auto kBits = static_cast<unsigned>(BitsPerPixel(F));
    static constexpr unsigned kRepeat = F == Format::Mono ? 0xFFu : 0x11u;
    static constexpr std::int32_t kPerByte = static_cast<std::int32_t>(8 / kBits);

    unsigned m_Keep, m_Flip;
    Runs<Format::Indexed8, Copy> m_Runs;
};

template <Format F, bool Copy>
using Rows = std::conditional_t<IsPacked(F), PackedRows<F, Copy>, SolidRows<F, Copy>>;

template <Format F, bool Copy>
void SolidSpans(const Ink& ink, const Span* spans, std::size_t count) {
    const Surface& surface = *ink.surface;
    const Rows<F, Copy> rows(ink.mix);
    for (const Span* span = spans; span != spans + count; ++span)
        rows.Put(surface.Row(span->y), span->left, span->right);
}

template <Format F, bool Copy>
void SolidBox(const Ink& ink, const Box& box) {
    const Surface& surface = *ink.surface;
    const Rows<F, Copy> rows(ink.mix);
    if constexpr (!IsPacked(F)) {
        const std::ptrdiff_t row = static_cast<std::ptrdiff_t>(BytesPerPixel(F)) * surface.width;
        if (box.right - box.left == surface.width && (surface.stride == row || surface.stride == -row)) {
            rows.PutRun(
                surface.Row(surface.stride > 0 ? box.top : box.bottom - 1),
                static_cast<std::size_t>(surface.width) * static_cast<std::size_t>(box.bottom - box.top));
            return;
        }
    }
    std::uint8_t* row = surface.Row(box.top);
    if constexpr (!IsPacked(F) && Copy) {
        const std::size_t bytes = static_cast<std::size_t>(box.right - box.left) * BytesPerPixel(F);
        if (bytes > kMostBlocks) {
            rows.PutLong({row + static_cast<std::size_t>(box.left) * BytesPerPixel(F), surface.stride, bytes,
                          box.bottom - box.top});
            return;
        }
    }
    for (std::int32_t y = box.top; y < box.bottom; ++y, row += surface.stride)
        rows.Put(row, box.left, box.right);
}

void NoSpans(const Ink&, const Span*, std::size_t) {}
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
void TileSpans(const Ink& ink, const Span* spans, std::size_t count) {
    for (const Span* span = spans; span != spans + count; ++span)
        TileSpan<F>(ink, span->y, span->left, span->right);
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
    ink.spans = NoSpans;
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
        ink.spans = mix.IsCopy() ? SolidSpans<F, true> : SolidSpans<F, false>;
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
        ink.spans = TileSpans<F>;
        ink.box = TileBox<F>;
    });
    return ink;
}

}  // namespace device
