#include "fuzz/frame/picture.h"

#include <cstddef>
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
    if (!IsThere()) return;
    m_Before.assign(m_Memory, m_Memory + Bytes());
    m_Clipped = ::GetClipRgn(m_Dc, m_Clip) == 1;
}

template <class Visit>
void Picture::ForDifferent(const std::vector<std::uint8_t>& other, Visit&& visit) const {
    for (int place = 0; place < Bytes(); ++place) {
        const int changed = m_Memory[place] ^ other[static_cast<std::size_t>(place)];
        if (changed == 0) continue;
        const int row = place / m_RowBytes, first = place % m_RowBytes * 8;
        for (int bit = 0; bit < 8; ++bit)
            if ((changed & (0x80 >> bit)) != 0)
                visit((first + bit) / m_Bits, m_Bits == 24 ? kSide - 1 - row : row);
    }
}

void Picture::Compare() const {
    if (m_Before.empty() || !IsThere()) return;
    ForDifferent(m_Before, [&](int x, int y) {
        Require(x < kSide, "the padding stays");
        Require(!m_Clipped || ::PtInRegion(m_Clip, x, y), "nothing is drawn outside the clip");
    });
}

void Picture::RequireEqualInside(const std::vector<std::uint8_t>& whole) const {
    ForDifferent(whole, [&](int x, int y) {
        Require(!::PtInRegion(m_Clip, x, y), "a clip changes nothing inside it");
    });
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
