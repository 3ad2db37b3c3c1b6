/// \file
/// Arithmetic of packed device-independent bitmaps.
#pragma once

#include <cstdint>

#include "platform/gdi.h"

namespace zul {

/// Reads a packed image: a 40-byte header, its colour table, its pixel rows, one behind the other in memory
/// that somebody else owns. Nothing in the header is trusted: all sizes are formed in 64 bits, and Fits and
/// GetBits tell what really lies inside the memory.
class CPackedDib {
public:
    static constexpr std::int64_t HeaderSize = 40;
    /// No image that the library handles takes more bytes.
    static constexpr std::int64_t SizeLimit = std::int64_t{1} << 30;

    /// \p data may be null and \p size anything; fewer than 40 bytes hold no image.
    CPackedDib(const void* data, std::int64_t size);

    bool Exists() const { return m_Data != nullptr; }
    /// Zero in every field when there is no image.
    const BITMAPINFOHEADER& GetHeader() const { return m_Header; }
    /// Entries of the colour table as the header announces them, 0 when there is no image.
    std::int64_t GetColorCount() const;
    /// Bytes a pixel row, a multiple of four; not positive for a width that is not.
    std::int64_t GetRowSize() const;
    /// Bytes of all rows: the header's own figure, read with sign, else rows times height.
    std::int64_t GetImageSize() const;
    std::int64_t GetColorTableOffset() const { return m_Header.biSize; }
    std::int64_t GetBitsOffset() const { return m_Header.biSize + 4 * GetColorCount(); }
    /// Bytes of the whole image; a negative image size counts as none.
    std::int64_t GetDibSize() const;
    /// The address \p offset bytes behind the header, null when it lies outside the memory.
    const std::uint8_t* At(std::int64_t offset) const;

    /// Whether the device can be asked for a section with this header: uncompressed, one plane, a depth that
    /// exists, pixels within the limit.
    bool IsSectionHeader() const;
    /// A section in the device's memory with the image's pixels; null when the header does not allow one or
    /// the device refuses. As many bytes are copied as the header's image size, the section and the memory
    /// all have; a header that leaves the image size 0 gives a section of zeros, on purpose.
    HBITMAP MakeSection() const;

    /// Whether \p width x \p height pixels of \p bitsPixel bits stay within SizeLimit.
    static bool FitsLimit(std::int64_t width, std::int64_t height, std::int64_t bitsPixel);

private:
    const std::uint8_t* m_Data;
    std::int64_t m_Size;
    BITMAPINFOHEADER m_Header{};
};

}  // namespace zul
