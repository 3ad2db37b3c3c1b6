#include <algorithm>
#include <cstring>

#include "platform/dib_header.h"
#include "zul/raster/dib_section.h"
#include "zul/raster/packed_dib.h"

namespace zul {
namespace {

/// Bytes that a pixel's number is read from, 0 for depths that are not known. 24 bits look one byte too far,
/// on purpose.
std::int64_t ReadBytes(int bitsPixel) {
    switch (bitsPixel) {
        case 1:
        case 4:
        case 8:
            return 1;
        case 16:
            return 2;
        case 24:
        case 32:
            return 4;
        default:
            return 0;
    }
}

/// What becomes of the byte that holds pixel \p x. Four bits lose half of the byte and gain one bit, on
/// purpose.
std::uint8_t ChangedByte(int bitsPixel, std::uint8_t byte, std::int32_t x, std::uint32_t color) {
    switch (bitsPixel) {
        case 1: {
            const int mask = 0x80 >> (x % 8);
            return static_cast<std::uint8_t>((byte & ~mask) | ((color & 1) != 0 ? mask : 0));
        }
        case 4:
            if (x % 2 == 0) return static_cast<std::uint8_t>((byte & 0xF0) | (color != 0 ? 1 : 0));
            return static_cast<std::uint8_t>((byte & 0x0F) | ((color & 0xFF) != 0 ? 1 : 0));
        case 24:
            return static_cast<std::uint8_t>(byte | (color & 0xFF));
        default:
            return static_cast<std::uint8_t>(color & 0xFF);
    }
}

/// Where a pixel starts, counted from the first row; -1 for a place left of or above the first pixel, and
/// when the header's rows are no rows.
std::int64_t ByteOf(const BITMAPINFOHEADER& header, std::int32_t x, std::int32_t y) {
    const std::int64_t row = dib::RowSize(header);
    if (x < 0 || y < 0 || row < 0 || row > dib::kSizeLimit) return -1;
    return y * row + std::int64_t{x} * header.biBitCount / 8;
}

}  // namespace

// --- query ---

std::int32_t CDibSection::GetWidth() {
    return GetDib().GetHeader().biWidth;
}

std::int32_t CDibSection::GetHeight() {
    return GetDib().GetHeader().biHeight;
}

void CDibSection::GetSize(std::int32_t& width, std::int32_t& height) {
    width = GetWidth();
    height = GetHeight();
}

void* CDibSection::GetDIBBits() {
    if (!HasSection()) return nullptr;
    ::GdiFlush();
    return m_Bits;
}

// --- pixels ---

CDibSection::TBlock CDibSection::GetBlock(const CPackedDib& dib) const {
    if (HasSection()) {
        ::GdiFlush();
        return {static_cast<const std::uint8_t*>(m_Bits), m_BitsSize};
    }
    const std::int64_t offset = dib.GetBitsOffset();
    return {dib.At(offset), dib.Held(offset, dib::ImageSize(dib.GetHeader()))};
}

std::int32_t CDibSection::GetPixel(std::int32_t x, std::int32_t y) {
    const CPackedDib dib = GetDib();
    if (!dib.Exists()) return 0;
    const int bits = dib.GetHeader().biBitCount;
    const std::int64_t wanted = ReadBytes(bits);
    if (wanted == 0) return -1;
    const TBlock block = GetBlock(dib);
    const std::int64_t from = ByteOf(dib.GetHeader(), x, y);
    if (from < 0 || from >= block.Size) return 0;
    std::uint32_t value = 0;
    const std::int64_t read = std::min(wanted, block.Size - from);
    for (std::int64_t i = 0; i < read; ++i)
        value |= std::uint32_t{block.Bytes[from + i]} << (8 * i);
    switch (bits) {
        case 1:
            return static_cast<std::int32_t>(value >> (7 - x % 8) & 1);
        case 4:
            return static_cast<std::int32_t>(value >> (4 * (x % 2)) & 15);
        case 8:
            return static_cast<std::int8_t>(value);
        case 16:
            return static_cast<std::int16_t>(value);
        case 24:
            return value != 0 ? 1 : 0;
        default:
            return static_cast<std::int32_t>(value);
    }
}

void CDibSection::SetPixel(std::int32_t x, std::int32_t y, std::int32_t color) {
    const CPackedDib dib = GetDib();
    const int bits = dib.GetHeader().biBitCount;
    const TBlock block = GetBlock(dib);
    const std::int64_t from = ByteOf(dib.GetHeader(), x, y);
    if (ReadBytes(bits) == 0 || from < 0 || from >= block.Size) return;
    const auto wide = static_cast<std::uint32_t>(color);
    std::uint8_t bytes[4] = {
        ChangedByte(bits, block.Bytes[from], x, wide), static_cast<std::uint8_t>(wide >> 8 & 0xFF),
        static_cast<std::uint8_t>(wide >> 16 & 0xFF), static_cast<std::uint8_t>(wide >> 24)};
    const std::int64_t changed = bits == 24 ? 1 : ReadBytes(bits);
    const auto count = static_cast<std::uint32_t>(std::min(changed, block.Size - from));
    if (HasSection()) {
        std::memcpy(static_cast<std::uint8_t*>(m_Bits) + from, bytes, count);
    } else {
        m_Buffer.Get()->Write(static_cast<std::uint32_t>(dib.GetBitsOffset() + from), count, bytes);
    }
}

}  // namespace zul
