/// \file
/// Arithmetic of the headers of device-independent images: an info header, its colour table, its pixel rows.
///
/// Headers come from files, resources and stored objects, so nothing in them is trusted: every figure is
/// formed in 64 bits, where none of them can overflow, and it is the caller who compares it with the bytes
/// there are.
#pragma once

#include <cstdint>
#include <cstring>

#include "platform/gdi.h"

namespace dib {

/// A BMP file starts with its type, "BM", and takes this many bytes before the info header.
constexpr int kFileType = 0x4D42;
constexpr std::int64_t kFileHeaderSize = 14;
/// Bytes of the info header, the only one that sections are made from.
constexpr std::int64_t kHeaderSize = 40;
/// No image is handled whose rows take more bytes: a hostile header must not make the host swap.
constexpr std::int64_t kSizeLimit = std::int64_t{1} << 30;
/// Depths up to this one store numbers of colours in a table.
constexpr int kDeepestIndexed = 8;

static_assert(sizeof(BITMAPINFOHEADER) == kHeaderSize, "the stored header is the device's own record");

constexpr std::int64_t Absolute(std::int64_t value) {
    return value < 0 ? -value : value;
}

/// Bytes a row of \p width pixels takes, a multiple of four; not positive for a width that is not. \p width
/// within 32 bits, \p bitsPixel within 16.
constexpr std::int64_t RowSize(std::int64_t width, std::int64_t bitsPixel) {
    return ((width * bitsPixel + 31) & ~std::int64_t{31}) / 8;
}
constexpr std::int64_t RowSize(const BITMAPINFOHEADER& header) {
    return RowSize(header.biWidth, header.biBitCount);
}

/// Bytes of all rows, whatever the header states; beyond 2^62 that.
constexpr std::int64_t RowsSize(const BITMAPINFOHEADER& header) {
    constexpr std::int64_t most = std::int64_t{1} << 62;
    const std::int64_t row = RowSize(header);
    const std::int64_t height = Absolute(header.biHeight);
    if (height != 0 && Absolute(row) > most / height) return row < 0 ? -most : most;
    return row * height;
}

/// The image size as the header states it, read with sign.
constexpr std::int64_t StatedSize(const BITMAPINFOHEADER& header) {
    return static_cast<std::int32_t>(header.biSizeImage);
}

/// Bytes of the image: what the header states, else all rows.
constexpr std::int64_t ImageSize(const BITMAPINFOHEADER& header) {
    return header.biSizeImage != 0 ? StatedSize(header) : RowsSize(header);
}

/// The colours that a depth can number, 0 for depths without a table.
constexpr std::int64_t FullColorCount(int bitsPixel) {
    return bitsPixel < 16 ? std::int64_t{1} << bitsPixel : 0;
}

/// Entries of the colour table: what the header states, else all that the depth can number.
constexpr std::int64_t ColorCount(const BITMAPINFOHEADER& header) {
    return header.biClrUsed != 0 ? std::int64_t{header.biClrUsed} : FullColorCount(header.biBitCount);
}

/// Where the rows start, counted from the header.
constexpr std::int64_t BitsOffset(const BITMAPINFOHEADER& header) {
    return header.biSize + 4 * ColorCount(header);
}

/// Bytes of header, colour table and rows; a negative image size counts as none.
constexpr std::int64_t TotalSize(const BITMAPINFOHEADER& header) {
    const std::int64_t image = ImageSize(header);
    return BitsOffset(header) + (image > 0 ? image : 0);
}

/// Whether \p width x \p height pixels of \p bitsPixel bits, each without its sign, stay within kSizeLimit.
constexpr bool FitsLimit(std::int64_t width, std::int64_t height, std::int64_t bitsPixel) {
    constexpr std::int64_t mostPixels = 0x7FFFFFFF, mostBits = 64;
    width = Absolute(width);
    height = Absolute(height);
    bitsPixel = Absolute(bitsPixel);
    if (width > mostPixels || height > mostPixels || bitsPixel > mostBits) return false;
    const std::int64_t row = RowSize(width, bitsPixel);
    return row == 0 || height <= kSizeLimit / row;
}

constexpr bool IsDepth(std::int64_t bitsPixel) {
    return bitsPixel == 1 || bitsPixel == 4 || bitsPixel == 8 || bitsPixel == 16 || bitsPixel == 24 ||
           bitsPixel == 32;
}

/// Whether a section can have this header: a plain info header of one plane, a depth that exists, pixels
/// within the limit. The compression, which decides what lies between header and rows, is left to the caller.
constexpr bool IsSectionHeader(const BITMAPINFOHEADER& header) {
    return header.biSize == kHeaderSize && header.biPlanes == 1 && header.biWidth > 0 &&
           header.biHeight != 0 && IsDepth(header.biBitCount) &&
           FitsLimit(header.biWidth, header.biHeight, header.biBitCount);
}

/// Makes a header from outside say what it means: a full colour table where it leaves the number open, and as
/// image size the rows times the height with its sign, so that an image whose first row is the top states a
/// negative one. A size beyond 32 bits becomes 0.
inline void Normalize(BITMAPINFOHEADER& header) {
    if (header.biBitCount <= kDeepestIndexed && header.biClrUsed == 0) {
        header.biClrUsed = static_cast<DWORD>(FullColorCount(header.biBitCount));
    }
    const std::int64_t rows = RowsSize(header);
    const bool fits = Absolute(rows) <= INT32_MAX;
    const auto size = static_cast<std::int32_t>(fits ? rows : 0);
    header.biSizeImage = static_cast<DWORD>(header.biHeight < 0 ? -size : size);
}

/// The header at \p data, of whatever alignment.
inline BITMAPINFOHEADER ReadHeader(const void* data) {
    BITMAPINFOHEADER header;
    std::memcpy(&header, data, sizeof header);
    return header;
}

}  // namespace dib
