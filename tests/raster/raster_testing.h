/// \file
/// What the tests of bitmaps share: packed images and BMP files, made byte by byte.
#pragma once

#include <cstring>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

#include "platform/dib_header.h"
#include "tests/canvas/canvas_testing.h"
#include "tests/kernel/kernel_testing.h"

namespace zultest {

using Bytes = std::vector<std::uint8_t>;

constexpr WORD Depths[] = {1, 4, 8, 16, 24, 32};

inline BITMAPINFOHEADER Header(std::int32_t width, std::int32_t height, WORD depth, DWORD colors,
                               DWORD imageSize) {
    return {40, width, height, 1, depth, 0, imageSize, 0, 0, colors, 0};
}

/// A packed image: the header, then \p tail.
inline Bytes Packed(const BITMAPINFOHEADER& header, const Bytes& tail) {
    Bytes bytes(sizeof header + tail.size());
    std::memcpy(bytes.data(), &header, sizeof header);
    std::copy(tail.begin(), tail.end(), bytes.begin() + sizeof header);
    return bytes;
}

/// The file of a packed image, whose pixels it says start \p offset bytes in.
inline Bytes File(const Bytes& packed, std::uint32_t offset) {
    const auto size = static_cast<std::uint32_t>(14 + packed.size());
    Bytes bytes(size);
    bytes[0] = 'B';
    bytes[1] = 'M';
    std::memcpy(&bytes[2], &size, 4);
    std::memcpy(&bytes[10], &offset, 4);
    std::copy(packed.begin(), packed.end(), bytes.begin() + 14);
    return bytes;
}

inline Bytes Noise(std::size_t size, unsigned seed) {
    std::mt19937 random(seed);
    Bytes bytes(size);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random());
    return bytes;
}

/// A 5 x 3 image with a full colour table, its size stated as programs do, all bytes random but the table's
/// fourth.
inline Bytes NoiseImage(WORD depth) {
    const auto colors = static_cast<DWORD>(dib::FullColorCount(depth > 8 ? 16 : depth));
    const auto size = static_cast<DWORD>(3 * dib::RowSize(5, depth));
    Bytes tail = Noise(4 * colors + size, depth);
    for (std::size_t i = 3; i < 4 * colors; i += 4)
        tail[i] = 0;
    return Packed(Header(5, 3, depth, colors, size), tail);
}

inline void Put(const zul::CScratchPath& path, const Bytes& bytes) {
    std::ofstream(path.Get(), std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

inline Bytes Get(const zul::CScratchPath& path) {
    std::ifstream file(path.Get(), std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), {});
}

/// The colours of a bitmap that no canvas holds, row by row.
inline std::vector<std::int32_t> Colors(zul::CBitmap& bitmap, int width, int height) {
    zul::CCanvas canvas;
    canvas.CreateMemoryCanvas();
    canvas.AssignBitmap(&bitmap);
    std::vector<std::int32_t> colors;
    for (int i = 0; i < width * height; ++i)
        colors.push_back(canvas.GetPixel(i % width, i / width));
    canvas.AssignBitmap(nullptr);
    return colors;
}

}  // namespace zultest
