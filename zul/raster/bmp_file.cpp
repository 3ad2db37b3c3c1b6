#include "zul/raster/bmp_file.h"

#include <algorithm>
#include <cstring>

#include "platform/crt.h"
#include "platform/dib_header.h"

namespace zul {

CBmpFile::CBmpFile(const char16_t* path) : m_Place(path), m_File(zul_wfopen(m_Place.GetPath(), u"wb")) {}

void CBmpFile::WriteFileHeader(std::int64_t colorTableSize, std::int64_t imageSize) {
    const std::int64_t offset = dib::kFileHeaderSize + dib::kHeaderSize + colorTableSize;
    std::uint8_t header[dib::kFileHeaderSize] = {};
    const auto put = [&header](std::size_t position, std::int64_t value, std::size_t bytes) {
        for (std::size_t i = 0; i < bytes; ++i)
            header[position + i] = static_cast<std::uint8_t>(value >> (8 * i) & 0xFF);
    };
    put(0, dib::kFileType, 2);
    put(2, offset + imageSize, 4);
    put(10, offset, 4);
    Write(header, sizeof header, sizeof header);
}

void CBmpFile::Write(const void* data, std::int64_t held, std::int64_t size) {
    const auto put = [this](const void* bytes, std::int64_t count) {
        const auto wanted = static_cast<std::size_t>(std::max<std::int64_t>(count, 0));
        if (m_Written && wanted > 0) m_Written = std::fwrite(bytes, 1, wanted, m_File.get()) == wanted;
    };
    std::int64_t left = size;
    if (data) {
        put(data, std::min(held, size));
        left -= std::max<std::int64_t>(std::min(held, size), 0);
    }
    static constexpr std::uint8_t Zeros[4096] = {};
    for (; m_Written && left > 0; left -= sizeof Zeros)
        put(Zeros, std::min<std::int64_t>(left, sizeof Zeros));
}

bool CBmpFile::Finish() {
    return std::fclose(m_File.release()) == 0 && m_Written && m_Place.Keep();
}

}  // namespace zul
