/// \file
/// The extended pen styles as data.
#pragma once

#include <cstdint>

#include "zul/tools/pen.h"

namespace zul::penstyles {

/// Flags of a style word; its low byte is the style's index plus one.
constexpr std::uint32_t EndingsAllowed = 1u << 26;
constexpr std::uint32_t BaseLine = 1u << 27;   ///< the main pen draws the line itself
constexpr std::uint32_t Decorated = 7u << 28;  ///< any of these: marks come on top
constexpr std::uint32_t OneExtraPen = 1u << 29;
constexpr std::uint32_t TwoExtraPens = 1u << 30;

/// How one device pen of a style is made from the pen's width w and its two colours.
struct TPenRecipe {
    enum TKind : std::uint8_t {
        Absent,
        NullLike,  ///< draws nothing, but has the line's width and colour
        NullThin,  ///< draws nothing
        StockWhite,
        SolidMain,   ///< in the pen's colour
        SolidExtra,  ///< in its second colour
    };
    TKind Kind = Absent;
    std::uint8_t WidthFactor = 1;
    std::uint8_t WidthAddend = 0;
};

struct TStyle {
    std::uint8_t Flags;  ///< the word's top byte
    bool ExtraColor;     ///< uses the second colour
    bool DashLength;     ///< uses the dash length
    TPenRecipe Main, Extra1, Extra2;
};

constexpr CPen::TPenStyle Count = 43;

bool Exists(CPen::TPenStyle style);
/// The row of a style that exists.
const TStyle& Get(CPen::TPenStyle style);
/// 0 for a style that does not exist.
std::uint32_t GetWord(CPen::TPenStyle style);

}  // namespace zul::penstyles
