/// \file
/// Ternary raster operations on rows of bytes.
///
/// An operation is the truth table over pattern, source and destination in bits 16 to 23 of its code. For any
/// table the new destination is `(d & a) ^ x`, where a and x depend on source and pattern only. As sums
/// modulo two both are `c ^ (s & cs) ^ (p & cp) ^ (p & s & cps)` with four constants that are all zeros or
/// all ones. Bits do not see their neighbours, so one loop over bytes serves all operations at all depths.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "platform/gdi.h"
#include "platform/software/surface.h"

namespace device {

/// The truth table alone: bit 4 p + 2 s + d is the result for the bits p, s and d.
struct Rop3 {
    std::uint8_t table = 0;

    static constexpr Rop3 FromCode(DWORD code) { return {static_cast<std::uint8_t>((code >> 16) & 0xFFu)}; }
    constexpr bool UsesPattern() const { return (((table >> 4) ^ table) & 0x0F) != 0; }
    constexpr bool UsesSource() const { return (((table >> 2) ^ table) & 0x33) != 0; }
    /// The binary operation (R2_*) between pattern and destination that one without a source comes down to.
    constexpr int Binary() const { return static_cast<int>((table & 3u) | ((table >> 2) & 0xCu)) + 1; }
};

/// What is left of an operation when a null brush is selected: it uses the pattern no more.
Rop3 WithoutBrush(Rop3 rop);

/// The bytes of a row that hold the pixels left <= x < right, and which bits of the outer two are theirs.
struct RowSlice {
    std::ptrdiff_t offset = 0;  ///< of the first byte in the row
    std::size_t bytes = 0;
    std::int32_t lead = 0;  ///< pixels that stand before `left` in the first byte
    std::uint8_t firstMask = 0xFF, lastMask = 0xFF;
};
/// \p left < \p right.
RowSlice SliceOf(Format format, std::int32_t left, std::int32_t right);

/// A raster operation ready to run on rows. Rows of source and pattern are laid out as the destination's
/// slice is: first byte beside first byte, pixel beside pixel.
class RowMixer {
public:
    explicit RowMixer(Rop3 rop);

    bool IsCopy() const { return m_Loop == nullptr; }
    /// \p row: the start of the destination's row. \p pattern may be null where the operation does not use
    /// it. A copy allows \p source to overlap the destination, other operations do not.
    void Run(std::uint8_t* row, const RowSlice& slice, const std::uint8_t* source,
             const std::uint8_t* pattern) const;

private:
    /// The constants of a sum: alone, with the source, with the pattern, with both.
    struct Sum {
        std::uint8_t one = 0, source = 0, pattern = 0, both = 0;
    };
    using Loop = void (*)(const RowMixer& mixer, std::uint8_t* destination, const std::uint8_t* source,
                          const std::uint8_t* pattern, std::size_t bytes);

    static Sum SumOf(Rop3 rop, bool destination);
    template <unsigned Table>
    static void MixSource(const RowMixer&, std::uint8_t*, const std::uint8_t*, const std::uint8_t*,
                          std::size_t);
    /// For operations without a pattern, by the low half of their tables.
    template <std::size_t... Tables>
    static constexpr std::array<Loop, sizeof...(Tables)> SourceLoops(std::index_sequence<Tables...>);
    static void MixBoth(const RowMixer&, std::uint8_t*, const std::uint8_t*, const std::uint8_t*,
                        std::size_t);

    Sum m_Keep, m_Flip;
    Loop m_Loop = nullptr;  ///< null: plain copy
};

}  // namespace device
