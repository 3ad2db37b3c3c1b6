/// \file
/// What the extended pen styles put on or along a line, as data.
#pragma once

#include <cstdint>

#include "zul/tools/pen.h"

namespace zul::penstyles {

/// A distance along a line in pen widths, as a sum of shares of the pen's dash length d (at least 1). Halves
/// and eighths are whole numbers, rounded down.
struct TSpan {
    std::int8_t Whole = 0, Halves = 0, Eighths = 0, Add = 0;

    constexpr std::int64_t Of(std::int64_t d) const {
        return Whole * d + Halves * (d / 2) + Eighths * (d / 8) + Add;
    }
};

/// One set of marks of a style.
///
/// Where the other styles leave a choice: 14 is 13 with a third tick between the two. 38 to 41 are dashes
/// whose one-sided ticks stand around each dash's middle, so that they are to 34 to 37 what 13 is to 9: 38
/// and 39 have a pair on one side or the other, 40 one tick to each side, 41 a pair to each side that share
/// the middle. All keep within a dash of four widths or more, the way dashed boundaries and embankments are
/// drawn.
struct TMark {
    enum TKind : std::uint8_t {
        Outline1,  ///< the line again with the first extra pen
        Outline2,  ///< the line again with the second extra pen
        Dashes,    ///< First on, Second off; 0 stands for the pen's own dash length or the gap that goes with
                   ///< it
        Ticks,     ///< across the line, First before the first one, Second between two
        Arrows,    ///< the same for open arrow heads
    };
    enum TSide : std::uint8_t {
        Both,  ///< of the line
        Left,  ///< to the left hand of one who looks along the line on the screen
        Right,
        Back,  ///< arrows that point to the line's start
        Forth,
    };
    CPen::TPenStyle Style;
    TKind Kind;
    TSpan First, Second;
    std::uint8_t HalfWidths = 0;  ///< length of a tick to either side of the line, in half pen widths
    TSide Side = Both;
};

/// The marks of a style in the order in which they are drawn; none for a style that does not exist.
struct TMarks {
    const TMark* begin() const { return First; }
    const TMark* end() const { return Last; }
    const TMark* First;
    const TMark* Last;
};
TMarks GetMarks(CPen::TPenStyle style);

}  // namespace zul::penstyles
