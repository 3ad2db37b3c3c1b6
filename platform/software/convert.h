/// \file
/// Pixels of one surface as pixels of another.
///
/// Rows are converted into unpacked form: a byte a pixel for the indexed formats of any depth, the format's
/// own 2, 3 or 4 bytes for the others. The road for a pair of formats is chosen once, when the converter is
/// made; the row loops have no branch on the format.
///
/// One-bit bitmaps without a table have no colours. Going to colour, 0 and 1 become the two colours that the
/// caller names. Coming from colour, the pixels that equal the source context's background colour become 1
/// and all others 0.
#pragma once

#include <array>
#include <cstdint>

#include "platform/software/context.h"

namespace device {

/// Bytes of a pixel in an unpacked row.
constexpr std::size_t UnpackedBytes(Format format) {
    return IsPacked(format) ? 1 : static_cast<std::size_t>(BitsPerPixel(format) / 8);
}

/// The colours of an indexed surface: its own or those of device-dependent bitmaps. Null where pixels have
/// none: in one-bit bitmaps without a table, and in formats that are not indexed.
const ColorTable* ColorsOf(const Surface& surface);

/// Colours that stand for the pixels of a one-bit bitmap without a table.
struct ColorPair {
    COLORREF zero, one;
};

class PixelConverter {
public:
    PixelConverter(const Context& source, const Context& target, ColorPair mono);

    /// Pixels keep their values, so that rows may be copied as they are.
    bool IsIdentity() const { return m_Identity; }

    /// Writes \p count pixels of \p row from column \p x, unpacked, to \p out.
    void Convert(const std::uint8_t* row, std::int32_t x, std::int32_t count, std::uint8_t* out) const {
        m_Loop(*this, row, x, count, out);
    }

private:
    struct Loops;
    using Loop = void (*)(const PixelConverter&, const std::uint8_t* row, std::int32_t x, std::int32_t count,
                          std::uint8_t* out);

    Loop m_Loop = nullptr;
    bool m_Identity = false;
    std::uint32_t m_Key = 0;                  ///< the source pixel that becomes 1 in a one-bit bitmap
    std::array<std::uint32_t, 256> m_Pixels;  ///< of an indexed source, in the target's layout; else unset
};

/// Writes 0xFF for each of \p count pixels of \p row from column \p x whose colour is \p key, else 0.
/// Only the low 24 bits of \p key count.
void MarkKey(const Surface& surface, ColorPair mono, COLORREF key, const std::uint8_t* row, std::int32_t x,
             std::int32_t count, std::uint8_t* out);

/// Packs unpacked pixels into bytes of 1 or 4 bits a pixel, starting \p lead pixels into the first byte.
void PackRow(Format format, const std::uint8_t* unpacked, std::int32_t count, std::int32_t lead,
             std::uint8_t* out);

}  // namespace device
