#include "tests/scenes/board.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

namespace scenes {
namespace {

struct TSectionInfo {
    BITMAPINFOHEADER Header;
    RGBQUAD Colors[256];
};

/// Black and white first, since one-bit tables have no room for others.
void FillTable(TSectionInfo& info, int count) {
    for (int i = 0; i < count; ++i) {
        const std::uint32_t color = static_cast<std::uint32_t>(i) * 0x3D0B57u;
        std::memcpy(&info.Colors[i], &color, 3);
    }
    info.Colors[1] = {255, 255, 255, 0};
}

}  // namespace

CBoard::CBoard(int bitsPixel, bool topDown)
    : m_BitsPixel(bitsPixel), m_Context(::CreateCompatibleDC(nullptr)) {
    TSectionInfo info{};
    info.Header.biSize = sizeof info.Header;
    info.Header.biWidth = Width;
    info.Header.biHeight = topDown ? -Height : Height;
    info.Header.biPlanes = 1;
    info.Header.biBitCount = static_cast<WORD>(bitsPixel);
    if (bitsPixel <= 8) FillTable(info, 1 << bitsPixel);
    void* pixels = nullptr;
    m_Bitmap = ::CreateDIBSection(nullptr, reinterpret_cast<const BITMAPINFO*>(&info), DIB_RGB_COLORS,
                                  &pixels, nullptr, 0);
    m_Previous = ::SelectObject(m_Context, m_Bitmap);
    m_Pixels = static_cast<std::uint8_t*>(pixels);
}

CBoard::~CBoard() {
    ::SelectObject(m_Context, m_Previous);
    ::DeleteObject(m_Bitmap);
    ::DeleteDC(m_Context);
}

std::size_t CBoard::Size() const {
    return static_cast<std::size_t>(Width * m_BitsPixel / 8 * Height);
}

void CBoard::Scatter(CRandom& random) {
    Settle();
    const bool plain = random.OneIn(5);
    const std::uint32_t color = random.Bits();
    // The unused bits of a pixel start at zero, as an application's do.
    const std::uint32_t used = m_BitsPixel == 32 ? 0xFFFFFF : m_BitsPixel == 16 ? 0x7FFF7FFF : 0xFFFFFFFF;
    for (std::size_t i = 0; i < Size(); i += 4) {
        const std::uint32_t value = (plain ? color : random.Bits()) & used;
        std::memcpy(m_Pixels + i, &value, sizeof value);
    }
}

std::uint64_t CBoard::Hash() const {
    Settle();
    std::uint64_t hash = 0xCBF29CE484222325u;  // FNV-1a
    std::for_each(m_Pixels, m_Pixels + Size(),
                  [&](std::uint8_t byte) { hash = (hash ^ byte) * 0x100000001B3u; });
    return hash;
}

bool CBoard::Write(const char* path) const {
    std::FILE* const file = std::fopen(path, "wb");
    if (file == nullptr) return false;
    std::vector<unsigned char> bytes;
    for (int y = 0; y < Height; ++y) {
        for (int x = 0; x < Width; ++x) {
            const COLORREF color = ::GetPixel(m_Context, x, y);
            for (const int shift : {0, 8, 16})
                bytes.push_back(static_cast<unsigned char>(color >> shift & 0xFF));
        }
    }
    std::fprintf(file, "P6 %d %d 255\n", Width, Height);
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return std::fclose(file) == 0 && written;
}

int SomeDepth(CRandom& random) {
    static constexpr int depths[] = {1, 8, 16, 24, 32};
    return depths[random.In(0, 4)];
}

}  // namespace scenes
