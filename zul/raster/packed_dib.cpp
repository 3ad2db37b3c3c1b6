#include "zul/raster/packed_dib.h"

#include <algorithm>
#include <cstring>

#include "zul/tools/device_guards.h"

namespace zul {
namespace {

constexpr int MaxColors = 256;

bool IsDepth(int bits) {
    return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

std::int64_t Absolute(std::int64_t value) {
    return value < 0 ? -value : value;
}

}  // namespace

CPackedDib::CPackedDib(const void* data, std::int64_t size)
    : m_Data(data && size >= HeaderSize ? static_cast<const std::uint8_t*>(data) : nullptr),
      m_Size(m_Data ? size : 0) {
    static_assert(sizeof m_Header == HeaderSize, "the stored header is the device's own record");
    if (m_Data) std::memcpy(&m_Header, m_Data, sizeof m_Header);
}

std::int64_t CPackedDib::GetColorCount() const {
    if (!m_Data) return 0;
    if (m_Header.biClrUsed) return m_Header.biClrUsed;
    return m_Header.biBitCount < 16 ? std::int64_t{1} << m_Header.biBitCount : 0;
}

std::int64_t CPackedDib::GetRowSize() const {
    // At most 2^31 pixels of 2^16 bits: far from the end of 64 bits.
    const std::int64_t bits = std::int64_t{m_Header.biWidth} * m_Header.biBitCount + 31;
    return (bits & ~std::int64_t{31}) / 8;
}

std::int64_t CPackedDib::GetImageSize() const {
    if (m_Header.biSizeImage) return static_cast<std::int32_t>(m_Header.biSizeImage);
    const std::int64_t row = GetRowSize();
    const std::int64_t height = Absolute(m_Header.biHeight);
    constexpr std::int64_t Limit = std::int64_t{1} << 62;
    if (height && Absolute(row) > Limit / height) return row < 0 ? -Limit : Limit;
    return row * height;
}

std::int64_t CPackedDib::GetDibSize() const {
    return GetBitsOffset() + std::max<std::int64_t>(GetImageSize(), 0);
}

const std::uint8_t* CPackedDib::At(std::int64_t offset) const {
    return offset >= 0 && offset < m_Size ? m_Data + offset : nullptr;
}

bool CPackedDib::FitsLimit(std::int64_t width, std::int64_t height, std::int64_t bitsPixel) {
    constexpr std::int64_t MaxSide = INT32_MAX;
    if (Absolute(width) > MaxSide || Absolute(height) > MaxSide || Absolute(bitsPixel) > 64) return false;
    const std::int64_t row = (Absolute(width) * Absolute(bitsPixel) + 31) / 32 * 4;
    return row == 0 || Absolute(height) <= SizeLimit / row;
}

bool CPackedDib::IsSectionHeader() const {
    return m_Header.biSize == HeaderSize && m_Header.biCompression == BI_RGB && m_Header.biPlanes == 1 &&
           IsDepth(m_Header.biBitCount) && m_Header.biWidth > 0 && m_Header.biHeight != 0 &&
           FitsLimit(m_Header.biWidth, m_Header.biHeight, m_Header.biBitCount);
}

HBITMAP CPackedDib::MakeSection() const {
    if (!IsSectionHeader()) return nullptr;
    // The device reads a full colour table at every indexed depth, whatever the image brings along.
    struct {
        BITMAPINFOHEADER Header;
        RGBQUAD Colors[MaxColors];
    } info{};
    info.Header = m_Header;
    info.Header.biClrUsed = 0;
    if (m_Header.biBitCount <= 8) {
        const std::int64_t full = std::int64_t{1} << m_Header.biBitCount;
        const std::int64_t held = (m_Size - GetColorTableOffset()) / 4;
        const std::int64_t colors = std::min({full, GetColorCount(), held});
        std::memcpy(info.Colors, m_Data + GetColorTableOffset(), static_cast<std::size_t>(colors) * 4);
        info.Header.biClrUsed = static_cast<DWORD>(full);
    }

    void* pixels = nullptr;
    const CScreenDevice screen;
    const HBITMAP section = ::CreateDIBSection(screen.Get(), reinterpret_cast<const BITMAPINFO*>(&info),
                                               DIB_RGB_COLORS, &pixels, nullptr, 0);
    const std::int64_t stated = static_cast<std::int32_t>(m_Header.biSizeImage);
    const std::int64_t whole = GetRowSize() * Absolute(m_Header.biHeight);
    const std::int64_t copied = std::min({stated, whole, m_Size - GetBitsOffset()});
    if (section && pixels && copied > 0) {
        std::memcpy(pixels, m_Data + GetBitsOffset(), static_cast<std::size_t>(copied));
    }
    return section;
}

}  // namespace zul
