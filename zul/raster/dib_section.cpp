#include "zul/raster/dib_section.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <utility>
#include <vector>

#include "platform/dib_header.h"
#include "zul/canvas/canvas.h"
#include "zul/kernel/client.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/stream.h"
#include "zul/raster/bmp_file.h"
#include "zul/raster/packed_dib.h"
#include "zul/tools/device_guards.h"

namespace zul {
namespace {

constexpr std::uint32_t HeaderSize = static_cast<std::uint32_t>(dib::kHeaderSize);

/// A colour table of greys, each one step lighter than the one before.
std::vector<RGBQUAD> MakeGreyRamp(std::int64_t count) {
    std::vector<RGBQUAD> ramp(static_cast<std::size_t>(count));
    const std::size_t levels = std::min<std::size_t>(ramp.size(), 256);
    for (std::size_t i = 0; i < levels; ++i) {
        const auto level = static_cast<BYTE>(i);
        ramp[i] = {level, level, level, 0};
    }
    return ramp;
}

void Fault(const CDibSection* section, const char16_t* text) {
    CClient::RaiseException(section, u"internal.assert", text);
}

}  // namespace

// --- make and hold ---

void CDibSection::DropSection() {
    if (m_Handle) ::DeleteObject(m_Handle);
    m_Handle = nullptr;
    m_Attached = false;
    m_Bits = nullptr;
    m_BitsSize = 0;
}

void CDibSection::Clear() {
    DropSection();
    CBitmap::Clear();
}

/// Has a section made for the image's header and colours, its pixels zero.
bool CDibSection::TakeSection(const CPackedDib& dib) {
    m_Handle = dib.MakeSection(false, &m_Bits);
    m_BitsSize = m_Handle ? dib::RowsSize(dib.GetHeader()) : 0;
    return m_Handle != nullptr;
}

bool CDibSection::Create(std::int32_t width, std::int32_t height, std::int32_t bitsPixel, const void* bits) {
    const CScreenDevice screen;
    CreateOn(screen.Get(), width, height, bitsPixel, bits);
    return true;
}

bool CDibSection::CreateCompatible(std::int32_t width, std::int32_t height, CCanvas* canvas) {
    const CScreenDevice screen;
    CreateOn(canvas ? canvas->GetHandle() : screen.Get(), width, height, 0, nullptr);
    return true;
}

void CDibSection::CreateOn(HDC device, std::int32_t width, std::int32_t height, std::int32_t bitsPixel,
                           const void* bits) {
    // The pixels may be the present ones of the section or of its packed image.
    const CMadeHandle<HBITMAP> former(std::exchange(m_Handle, nullptr));
    const std::vector<std::uint8_t> packed = CopyPacked(bits);
    Clear();
    if (!MakeSection(device, width, height, bitsPixel)) {
        Fault(this, u"Bitmap.\tFailed to create compatible dibsection.");
    } else if (bits) {
        const void* from = packed.empty() ? bits : packed.data();
        const std::int64_t size = packed.empty() ? m_BitsSize : static_cast<std::int64_t>(packed.size());
        std::memcpy(m_Bits, from, static_cast<std::size_t>(std::min(size, m_BitsSize)));
    }
}

/// What the packed image's buffer has from \p bits on; nothing for an address outside it.
std::vector<std::uint8_t> CDibSection::CopyPacked(const void* bits) {
    const CAnyBuffer* buffer = m_Buffer.Get();
    if (!buffer || !bits) return {};
    const auto* start = static_cast<const std::uint8_t*>(buffer->GetBuffer());
    const auto* from = static_cast<const std::uint8_t*>(bits);
    const std::less<> before;
    if (before(from, start) || !before(from, start + buffer->GetSize())) return {};
    return {from, start + buffer->GetSize()};
}

bool CDibSection::MakeSection(HDC device, std::int32_t width, std::int32_t height, std::int32_t bitsPixel) {
    CAnyBuffer* buffer = NeedBuffer();
    if (!buffer) return false;
    const BITMAPINFOHEADER header =
        MakeInfoHeader(device, width, height, ::GetDeviceCaps(device, PLANES),
                       bitsPixel >= 1 ? bitsPixel : ::GetDeviceCaps(device, BITSPIXEL));
    const std::vector<RGBQUAD> ramp = MakeGreyRamp(dib::ColorCount(header));
    CModificator bracket(buffer);
    const bool stored =
        buffer->Write(0, HeaderSize, &header) &&
        buffer->Write(HeaderSize, static_cast<std::uint32_t>(ramp.size() * sizeof(RGBQUAD)), ramp.data());
    return stored && TakeSection(GetDib());
}

// --- files and resources ---

bool CDibSection::Create(const char16_t* path) {
    Clear();
    if (!ReadFile(path)) RunError(ErrorOverflow, u"CreateDIBSection. Invalid or corrupt file", this);
    return true;
}

bool CDibSection::ReadFile(const char16_t* path) {
    CFileStream file(path, u"rb");
    CAnyBuffer* buffer = file.IsOpen() ? NeedBuffer() : nullptr;
    if (!buffer) return false;
    CModificator bracket(buffer);
    std::uint8_t fileHeader[dib::kFileHeaderSize] = {};
    const bool whole = file.Read(fileHeader, sizeof fileHeader);
    if (!buffer->Resize(HeaderSize, false)) return false;
    if (!whole || (fileHeader[0] | fileHeader[1] << 8) != dib::kFileType) return false;
    BITMAPINFOHEADER header;
    if (!file.Read(&header, HeaderSize)) return false;
    dib::Normalize(header);
    buffer->Write(0, HeaderSize, &header);

    // Nothing is made before the file has shown that it holds what its header promises. An image whose first
    // row is the top states a negative size and ends here, on purpose.
    if (!dib::IsSectionHeader(header) || header.biCompression != BI_RGB) return false;
    const std::int64_t image = dib::StatedSize(header);
    const std::int64_t colors = 4 * std::int64_t{header.biClrUsed};
    if (image <= 0 || colors + image > static_cast<std::int64_t>(file.GetRemaining())) return false;
    if (dib::TotalSize(header) > dib::kSizeLimit) return false;
    if (!buffer->Resize(static_cast<std::uint32_t>(dib::TotalSize(header)), true)) return false;
    const auto table = static_cast<std::uint8_t*>(buffer->GetBuffer()) + HeaderSize;
    if (!file.Read(table, static_cast<std::uint32_t>(colors)) || !TakeSection(GetDib())) return false;
    if (file.Read(m_Bits, static_cast<std::uint32_t>(std::min(image, m_BitsSize)))) return true;
    DropSection();
    return false;
}

bool CDibSection::Create(void* module, const char16_t* name) {
    Clear();
    const auto home = static_cast<HMODULE>(module);
    const HRSRC resource = ::FindResourceW(home, name, RT_BITMAP);
    if (!resource) {
        Fault(this, u"CreateDIBSection. Can't find specified resource");
        return true;
    }
    const void* bytes = ::LockResource(::LoadResource(home, resource));
    const std::int64_t size = ::SizeofResource(home, resource);
    CAnyBuffer* buffer = NeedBuffer();
    if (!bytes || size < dib::kHeaderSize || !buffer) return false;
    // Resources are read-only: the header is put right in a copy.
    BITMAPINFOHEADER header = dib::ReadHeader(bytes);
    dib::Normalize(header);
    // Image and colours are counted and the header is not, so the last 40 bytes stay behind, on purpose.
    const std::int64_t counted = dib::StatedSize(header) + 4 * std::int64_t{header.biClrUsed};
    const auto kept = static_cast<std::uint32_t>(std::clamp<std::int64_t>(counted, 0, size));
    if (!buffer->Write(0, kept, bytes)) return false;
    buffer->Write(0, std::min(kept, HeaderSize), &header);
    return TakeSection(CPackedDib(header, bytes, size));
}

bool CDibSection::SaveToFile(const char16_t* path) {
    const CPackedDib dib = GetDib();
    if (!dib.Exists()) return false;
    const std::int64_t table = 4 * std::int64_t{dib.GetHeader().biClrUsed};
    const std::int64_t image = dib::RowsSize(dib.GetHeader());
    if (image >= 0 && table + image <= dib::kSizeLimit) {
        CBmpFile file(path);
        if (file.IsOpen()) {
            file.WriteFileHeader(table, image);
            file.Write(dib.At(0), dib.Held(0, dib::kHeaderSize + table), dib::kHeaderSize + table);
            const TBlock block = GetBlock(dib);
            file.Write(block.Bytes, block.Size, image);
            if (file.Finish()) return true;
        }
    }
    Fault(this, u"Failed to create specified file");
    return false;
}

void CDibSection::ExtractBitsFromHandle(CCanvas*) {
    const CPackedDib dib = GetDib();
    if (!HasSection() || !dib.Exists()) return;
    // The header may have come later than the section; it decides the packed image's size, not what is read.
    const BITMAPINFOHEADER header = dib.GetHeader();
    const std::int64_t size = dib::TotalSize(header);
    const std::int64_t offset = header.biSize + 4 * std::int64_t{header.biClrUsed};
    const std::int64_t copied = std::min({dib::ImageSize(header), m_BitsSize, size - offset});
    if (size > dib::kSizeLimit) return;
    CAnyBuffer* buffer = m_Buffer.Get();
    CModificator bracket(buffer);
    if (!buffer->Resize(static_cast<std::uint32_t>(size), true) || copied <= 0) return;
    ::GdiFlush();
    buffer->Write(static_cast<std::uint32_t>(offset), static_cast<std::uint32_t>(copied), m_Bits);
}

bool CDibSection::ObjectToBuffer(CStream* stream) {
    if (!stream) return false;
    ExtractBitsFromHandle(nullptr);
    return CBitmap::ObjectToBuffer(stream);
}

}  // namespace zul
