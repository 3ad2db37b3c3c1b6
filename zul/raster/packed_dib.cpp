#include "zul/raster/packed_dib.h"

#include <algorithm>
#include <cstring>

#include "zul/kernel/numeric.h"
#include "zul/tools/device_guards.h"

namespace zul {
namespace {

/// A header with a full colour table behind it: the device reads one at every indexed depth, whatever the
/// image brings along.
struct TSectionInfo {
    BITMAPINFOHEADER Header;
    RGBQUAD Colors[256];
};

/// A header's 16-bit field; what does not fit becomes a value that no device accepts.
WORD ToWord(std::int32_t value) {
    return value >= 0 && value < 0xFFFF ? static_cast<WORD>(value) : WORD{0xFFFF};
}

std::int32_t PixelsPerMetre(HDC device, int pixels, int millimetres) {
    const int length = ::GetDeviceCaps(device, millimetres);
    return length == 0 ? 0 : ToLong(static_cast<double>(::GetDeviceCaps(device, pixels)) / length * 1000.0);
}

}  // namespace

CPackedDib::CPackedDib(const void* data, std::int64_t size)
    : m_Data(data && size >= dib::kHeaderSize ? static_cast<const std::uint8_t*>(data) : nullptr),
      m_Size(m_Data ? size : 0) {
    if (m_Data) m_Header = dib::ReadHeader(m_Data);
}

CPackedDib::CPackedDib(const BITMAPINFOHEADER& header, const void* data, std::int64_t size)
    : CPackedDib(data, size) {
    if (m_Data) m_Header = header;
}

const std::uint8_t* CPackedDib::At(std::int64_t offset) const {
    return offset >= 0 && offset < m_Size ? m_Data + offset : nullptr;
}

std::int64_t CPackedDib::Held(std::int64_t offset, std::int64_t size) const {
    return offset < 0 ? 0 : std::max<std::int64_t>(std::min(size, m_Size - offset), 0);
}

HBITMAP CPackedDib::MakeSection(bool copyPixels, void** pixels) const {
    if (pixels) *pixels = nullptr;
    if (!dib::IsSectionHeader(m_Header) || m_Header.biCompression != BI_RGB) return nullptr;
    TSectionInfo info{};
    info.Header = m_Header;
    info.Header.biClrUsed = 0;
    if (m_Header.biBitCount <= dib::kDeepestIndexed) {
        const std::int64_t full = dib::FullColorCount(m_Header.biBitCount);
        const std::int64_t table = GetColorTableOffset();
        const std::int64_t brought = Held(table, 4 * std::min(full, GetColorCount())) / 4 * 4;
        if (brought > 0) std::memcpy(info.Colors, m_Data + table, static_cast<std::size_t>(brought));
        info.Header.biClrUsed = static_cast<DWORD>(full);
    }

    void* memory = nullptr;
    const CScreenDevice screen;
    const HBITMAP section = ::CreateDIBSection(screen.Get(), reinterpret_cast<const BITMAPINFO*>(&info),
                                               DIB_RGB_COLORS, &memory, nullptr, 0);
    if (section && memory && copyPixels) {
        const std::int64_t offset = GetBitsOffset();
        const std::int64_t copied =
            Held(offset, std::min(dib::StatedSize(m_Header), dib::RowsSize(m_Header)));
        if (copied > 0) std::memcpy(memory, m_Data + offset, static_cast<std::size_t>(copied));
    }
    if (section && pixels) *pixels = memory;
    return section;
}

BITMAPINFOHEADER MakeInfoHeader(HDC device, std::int32_t width, std::int32_t height, std::int32_t planes,
                                std::int32_t bitsPixel) {
    BITMAPINFOHEADER header{};
    header.biSize = static_cast<DWORD>(dib::kHeaderSize);
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = ToWord(planes);
    header.biBitCount = ToWord(bitsPixel);
    header.biCompression = BI_RGB;
    header.biXPelsPerMeter = PixelsPerMetre(device, HORZRES, HORZSIZE);
    header.biYPelsPerMeter = PixelsPerMetre(device, VERTRES, VERTSIZE);
    const std::int64_t rows = dib::RowsSize(header);
    if (rows > 0 && rows <= INT32_MAX) header.biSizeImage = static_cast<DWORD>(rows);
    return header;
}

}  // namespace zul
