/// \file
/// Packed device-independent bitmaps in memory.
#pragma once

#include <cstdint>

#include "platform/dib_header.h"

namespace zul {

/// Reads a packed image: a 40-byte header, its colour table, its pixel rows, one behind the other in memory
/// that somebody else owns. Nothing in the header is trusted: sizes are those of `platform/dib_header.h`, and
/// At tells what really lies inside the memory.
class CPackedDib {
public:
    /// \p data may be null and \p size anything; fewer than 40 bytes hold no image.
    CPackedDib(const void* data, std::int64_t size);
    /// The same with \p header in place of the image's own.
    CPackedDib(const BITMAPINFOHEADER& header, const void* data, std::int64_t size);

    bool Exists() const { return m_Data != nullptr; }
    /// Zero in every field when there is no image.
    const BITMAPINFOHEADER& GetHeader() const { return m_Header; }
    /// Entries of the colour table as the header announces them, 0 when there is no image.
    std::int64_t GetColorCount() const { return m_Data ? dib::ColorCount(m_Header) : 0; }
    /// Bytes of the whole image, 0 when there is none.
    std::int64_t GetDibSize() const { return m_Data ? dib::TotalSize(m_Header) : 0; }
    std::int64_t GetColorTableOffset() const { return m_Header.biSize; }
    std::int64_t GetBitsOffset() const { return dib::BitsOffset(m_Header); }
    /// The address \p offset bytes behind the header, null when it lies outside the memory.
    const std::uint8_t* At(std::int64_t offset) const;
    /// How many of \p size bytes from \p offset on lie inside the memory.
    std::int64_t Held(std::int64_t offset, std::int64_t size) const;

    /// A section in the device's memory with the image's colours and, when \p copyPixels, its rows; null when
    /// the header does not allow one or the device refuses. As many bytes are copied as the header's image
    /// size, the section and the memory all have; a header that leaves the image size 0 gives a section of
    /// zeros, on purpose. \p pixels, where given, receives the section's memory.
    HBITMAP MakeSection(bool copyPixels, void** pixels = nullptr) const;

private:
    const std::uint8_t* m_Data;
    std::int64_t m_Size;
    BITMAPINFOHEADER m_Header{};
};

/// The header of an uncompressed image that a device shows at its own size. \p device: null or an open one.
BITMAPINFOHEADER MakeInfoHeader(HDC device, std::int32_t width, std::int32_t height, std::int32_t planes,
                                std::int32_t bitsPixel);

}  // namespace zul
