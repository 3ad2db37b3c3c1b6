/// \file
/// Pens, brushes and modes drawn by lot, and given back when a scene has done with them.
#pragma once

#include <vector>

#include "platform/gdi.h"
#include "tests/scenes/random.h"

namespace scenes {

/// What a figure may be drawn with.
struct TToolLot {
    int MinWidth = 1, MaxWidth = 1;  ///< of the pen, pixels
    bool Dashes = false;
    bool Patterns = false;
    bool EveryRop = false;  ///< any binary raster operation, else a plain copy
};

/// Draws palette, pen, brush, colours and modes by lot and selects them until it goes.
class CTools {
public:
    CTools(HDC dc, CRandom& random, const TToolLot& lot);
    ~CTools();
    CTools(const CTools&) = delete;
    CTools& operator=(const CTools&) = delete;

    bool Fills() const { return m_Fills; }
    bool IsWide() const { return m_PenWidth > 1; }

private:
    HDC m_Context;
    HGDIOBJ m_OldPen, m_OldBrush;
    HPALETTE m_OldPalette;
    bool m_Fills;
    int m_PenWidth;
};

/// A brush of an 8 x 8 one-bit pattern; the caller deletes it.
HBRUSH MakePattern(CRandom& random);

/// A ternary operation by lot; bits 16 to 23 say all about it.
DWORD SomeRop3(CRandom& random, bool withSource);

/// How far out the points of some figures are: below 2 to the power of these.
struct TFarthest {
    int BitsX, BitsY;
};

/// A coordinate around a power of two or just within 2 to the power of \p bits, 15 to 31; of either sign.
int FarCoordinate(CRandom& random, int bits);

/// Points around the surface: most near it, some outside, few as far as is allowed.
std::vector<POINT> SomePoints(CRandom& random, int low, int high, TFarthest farthest);
POINT SomePoint(CRandom& random, int reach);
/// How far a scene's coordinates leave the surface.
int SomeReach(CRandom& random);

}  // namespace scenes
