#include "tests/scenes/tools.h"

#include <algorithm>
#include <cstdint>

#include "tests/scenes/board.h"

namespace scenes {
namespace {

/// Any colour, now and then black or white, or one of the palette by its number, which it may not have.
COLORREF SomeColor(CRandom& random) {
    const COLORREF color = random.Color();
    if (random.OneIn(8)) return random.OneIn(2) ? 0xFFFFFF : 0;
    return random.OneIn(6) ? PALETTEINDEX(color % 24) : color;
}

HPALETTE SomePalette(CRandom& random) {
    if (random.OneIn(2)) return static_cast<HPALETTE>(::GetStockObject(DEFAULT_PALETTE));
    // Version and number of entries, and as many colours.
    std::uint32_t palette[21] = {0x300u | static_cast<std::uint32_t>(random.In(1, 20)) << 16};
    std::generate(palette + 1, palette + 21, [&random] { return random.Color(); });
    return ::CreatePalette(reinterpret_cast<const LOGPALETTE*>(palette));
}

HPEN SomePen(CRandom& random, const TToolLot& lot, int width) {
    const COLORREF color = SomeColor(random);
    const bool none = lot.MaxWidth == 1 && !lot.Dashes && random.OneIn(6);
    return ::CreatePen(none ? PS_NULL : lot.Dashes ? PS_DASH : PS_SOLID, width, color);
}

bool UsesSource(unsigned rop) {
    return ((rop >> 2 ^ rop) & 0x33) != 0;
}

}  // namespace

CTools::CTools(HDC dc, CRandom& random, const TToolLot& lot)
    : m_Context(dc), m_PenWidth(random.In(lot.MinWidth, lot.MaxWidth)) {
    m_OldPalette = ::SelectPalette(dc, SomePalette(random), FALSE);
    ::RealizePalette(dc);
    m_OldPen = ::SelectObject(dc, SomePen(random, lot, m_PenWidth));
    m_Fills = !random.OneIn(4);
    const bool pattern = lot.Patterns && random.OneIn(2);
    const COLORREF color = SomeColor(random);
    HGDIOBJ brush = ::GetStockObject(NULL_BRUSH);
    if (m_Fills) brush = pattern ? MakePattern(random) : ::CreateSolidBrush(color);
    m_OldBrush = ::SelectObject(dc, brush);
    const bool farOrigin = random.OneIn(12);
    const int originX = farOrigin ? FarCoordinate(random, 31) : random.In(-20, 20);
    ::SetBrushOrgEx(dc, originX, random.In(-20, 20), nullptr);
    ::SetROP2(dc, lot.EveryRop ? random.In(R2_BLACK, R2_WHITE) : R2_COPYPEN);
    ::SetBkMode(dc, random.In(TRANSPARENT, OPAQUE));
    ::SetBkColor(dc, SomeColor(random));
    ::SetTextColor(dc, SomeColor(random));
}

CTools::~CTools() {
    ::DeleteObject(::SelectObject(m_Context, m_OldPen));
    ::DeleteObject(::SelectObject(m_Context, m_OldBrush));
    ::SetROP2(m_Context, R2_COPYPEN);
    ::DeleteObject(::SelectPalette(m_Context, m_OldPalette, FALSE));
}

HBRUSH MakePattern(CRandom& random) {
    std::uint32_t rows[8];
    for (std::uint32_t& row : rows)
        row = random.Bits();
    const HBITMAP bitmap = ::CreateBitmap(8, 8, 1, 1, rows);
    const HBRUSH brush = ::CreatePatternBrush(bitmap);
    ::DeleteObject(bitmap);
    return brush;
}

DWORD SomeRop3(CRandom& random, bool withSource) {
    unsigned rop;
    do
        rop = static_cast<unsigned>(random.In(0, 255));
    while (UsesSource(rop) != withSource);
    return DWORD{rop} << 16;
}

int SomeReach(CRandom& random) {
    static constexpr int reaches[] = {8, 30, 30, 30, 40, 40, 60, 200, 2000, 30000};
    return reaches[random.In(0, 9)];
}

int FarCoordinate(CRandom& random, int bits) {
    static constexpr int powers[] = {15, 16, 20, 25, 27, 31};
    int power;
    do
        power = powers[random.In(0, 5)];
    while (power > bits);
    // The last value on either side of what is allowed, or one not far from it.
    const std::int64_t value = (std::int64_t{1} << power) - 1 - random.In(0, 3);
    if (random.OneIn(2)) return static_cast<int>(~value);
    return static_cast<int>(power < bits ? value + random.In(0, 6) : value);
}

POINT SomePoint(CRandom& random, int reach) {
    const int x = CBoard::Width / 2 + random.In(-reach, reach);
    return {x, CBoard::Height / 2 + random.In(-reach, reach)};
}

std::vector<POINT> SomePoints(CRandom& random, int low, int high, TFarthest farthest) {
    const int count = random.In(low, high);
    const int reach = SomeReach(random);
    const bool far = random.OneIn(8);
    std::vector<POINT> points;
    for (int i = 0; i < count; ++i) {
        const bool again = i != 0 && random.OneIn(10);
        POINT point = SomePoint(random, reach);
        if (far && random.OneIn(3)) point.x = FarCoordinate(random, farthest.BitsX);
        if (far && random.OneIn(3)) point.y = FarCoordinate(random, farthest.BitsY);
        points.push_back(again ? points.back() : point);
    }
    return points;
}

}  // namespace scenes
