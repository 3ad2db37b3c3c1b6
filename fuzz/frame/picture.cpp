#include "fuzz/frame/picture.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>

namespace fuzz {

int Picture::SomeDepth(Input& input) {
    constexpr int kDepths[] = {1, 4, 8, 16, 24, 32};
    return input.OneOf(kDepths);
}

Picture::Picture(int bits)
    : m_Clip(::CreateRectRgn(0, 0, 0, 0)),
      m_Dc(::CreateCompatibleDC(nullptr)),
      m_Bits(bits),
      m_RowBytes((kSide * bits + 31) / 32 * 4) {
    struct {
        BITMAPINFOHEADER header;
        RGBQUAD colors[256];
    } info{{sizeof(BITMAPINFOHEADER), kSide, bits == 24 ? kSide : -kSide, 1, static_cast<WORD>(bits), BI_RGB,
            0, 0, 0, 0, 0},
           {}};
    for (std::size_t i = 0; i < std::size(info.colors); ++i) {
        const auto level = static_cast<BYTE>(i * (bits == 1 ? 255 : bits == 4 ? 17 : 1));
        info.colors[i] = {level, level, static_cast<BYTE>(255 - level), 0};
    }
    void* memory = nullptr;
    m_Bitmap = ::CreateDIBSection(m_Dc, reinterpret_cast<const BITMAPINFO*>(&info), DIB_RGB_COLORS, &memory,
                                  nullptr, 0);
    m_Memory = static_cast<std::uint8_t*>(memory);
    ::SelectObject(m_Dc, m_Bitmap);
}

Picture::~Picture() {
    ::DeleteObject(m_Clip);
    ::DeleteDC(m_Dc);
    ::DeleteObject(m_Bitmap);
}

bool Picture::IsThere() const {
    return ::GetCurrentObject(m_Dc, OBJ_BITMAP) == m_Bitmap;
}

void Picture::Remember() {
    m_Before.clear();
    m_Allowed.clear();
    if (!IsThere()) return;
    m_Before.assign(m_Memory, m_Memory + Bytes());
    if (::GetClipRgn(m_Dc, m_Clip) != 1) return;
    m_Allowed.resize(kSide * kSide);
    std::vector<std::uint8_t> data(::GetRegionData(m_Clip, 0, nullptr));
    ::GetRegionData(m_Clip, static_cast<DWORD>(data.size()), reinterpret_cast<RGNDATA*>(data.data()));
    for (std::size_t place = sizeof(RGNDATAHEADER); place < data.size(); place += sizeof(RECT)) {
        RECT box;
        std::memcpy(&box, data.data() + place, sizeof box);
        const int left = std::max(0, box.left), width = std::min(kSide, box.right) - left;
        for (int y = std::max(0, box.top); width > 0 && y < std::min(kSide, box.bottom); ++y)
            std::memset(&m_Allowed[static_cast<std::size_t>(y * kSide + left)], 1,
                        static_cast<std::size_t>(width));
    }
}

template <class Visit>
void Picture::ForDifferent(const std::vector<std::uint8_t>& other, Visit&& visit) const {
    const int step = std::min(m_Bits, 8);  // bits looked at together
    for (int row = 0; row < kSide; ++row) {
        const std::uint8_t *now = m_Memory + row * m_RowBytes, *then = other.data() + row * m_RowBytes;
        if (std::memcmp(now, then, static_cast<std::size_t>(m_RowBytes)) == 0) continue;
        const int y = m_Bits == 24 ? kSide - 1 - row : row;
        for (int bit = 0; bit < m_RowBytes * 8; bit += step) {
            const int changed = (now[bit / 8] ^ then[bit / 8]) << bit % 8 & 0xFF;
            if (changed >> (8 - step) == 0) continue;
            const int x = bit / m_Bits;
            const bool isPixel = x < kSide;
            visit(isPixel,
                  isPixel && (m_Allowed.empty() || m_Allowed[static_cast<std::size_t>(y * kSide + x)]));
        }
    }
}

void Picture::Compare() const {
    if (m_Before.empty() || !IsThere()) return;
    ForDifferent(m_Before, [&](bool isPixel, bool isAllowed) {
        Require(isPixel, "the padding stays");
        Require(isAllowed, "nothing is drawn outside the clip");
    });
}

void Picture::RequireEqualInside(const std::vector<std::uint8_t>& whole) const {
    ForDifferent(whole,
                 [&](bool, bool isAllowed) { Require(!isAllowed, "a clip changes nothing inside it"); });
}

Picture::Cut::Cut(const Picture& picture, Input& input)
    : m_Dc(picture.Dc()),
      m_Former(::CreateRectRgn(0, 0, 0, 0)),
      m_Clipped(::GetClipRgn(m_Dc, m_Former) == 1) {
    const int x = input.Below(kSide), y = input.Below(kSide);
    const HRGN part = ::CreateRectRgn(x, y, x + input.Below(kSide), y + input.Below(kSide));
    if (m_Clipped) ::CombineRgn(part, part, m_Former, RGN_AND);
    ::SelectClipRgn(m_Dc, part);
    ::DeleteObject(part);
}

Picture::Cut::~Cut() {
    ::SelectClipRgn(m_Dc, m_Clipped ? m_Former : nullptr);
    ::DeleteObject(m_Former);
}

}  // namespace fuzz
