#include "zul/tools/pen_marks.h"

#include <algorithm>
#include <iterator>

namespace zul::penstyles {
namespace {

constexpr TSpan operator+(TSpan a, int add) {
    a.Add = static_cast<std::int8_t>(a.Add + add);
    return a;
}
constexpr TSpan operator-(TSpan a, int less) {
    return a + -less;
}
constexpr TSpan operator+(TSpan a, TSpan b) {
    const auto sum = [](int x, int y) { return static_cast<std::int8_t>(x + y); };
    return {sum(a.Whole, b.Whole), sum(a.Halves, b.Halves), sum(a.Eighths, b.Eighths), sum(a.Add, b.Add)};
}

constexpr TSpan Zero{};
constexpr TSpan One{0, 0, 0, 1};
constexpr TSpan d{1, 0, 0, 0};
constexpr TSpan Half{0, 1, 0, 0};
constexpr TSpan Eighth{0, 0, 1, 0};
/// From the middle of one dash to the next, less the tick's own width.
constexpr TSpan PerDash = d + Eighth;

constexpr TMark Outline(CPen::TPenStyle style, TMark::TKind which = TMark::Outline1) {
    return {style, which, {}, {}};
}
constexpr TMark Dash(CPen::TPenStyle style, TSpan on = Zero, TSpan off = Zero) {
    return {style, TMark::Dashes, on, off};
}
constexpr TMark Cross(CPen::TPenStyle style, TSpan offset, TSpan spacing, std::uint8_t halfWidths = 3) {
    return {style, TMark::Ticks, offset, spacing, halfWidths};
}
constexpr TMark Tick(CPen::TPenStyle style, TMark::TSide side, TSpan offset, TSpan spacing) {
    return {style, TMark::Ticks, offset, spacing, 4, side};
}
constexpr TMark Arrow(CPen::TPenStyle style, TMark::TSide way, TSpan offset, TSpan spacing) {
    return {style, TMark::Arrows, offset, spacing, 0, way};
}

constexpr auto Left = TMark::Left, Right = TMark::Right, Back = TMark::Back, Forth = TMark::Forth;

constexpr TMark Marks[] = {
    Dash(0, d, Eighth + 1),
    Cross(7, One + 2, d),
    Cross(8, One + 2, d),
    Cross(9, One + 2, d + 2),
    Cross(9, One + 4, d + 2),
    Dash(10),
    Cross(10, Half, PerDash),
    Dash(11, Zero, d),
    Cross(11, Zero, d + d - 1),
    Dash(12, d - 1, Eighth + 2),
    Cross(12, Zero, PerDash),
    Cross(12, d - 1, PerDash),
    Dash(13),
    Cross(13, Half - 1, PerDash),
    Cross(13, Half + 1, PerDash),
    Dash(14),
    Cross(14, Half - 2, PerDash),
    Cross(14, Half, PerDash),
    Cross(14, Half + 2, PerDash),
    Dash(19, d, d),
    Dash(20, d, d),
    Dash(21, d, d),
    Outline(23),
    Arrow(24, Forth, One + 2, d + 3),
    Arrow(24, Back, One + 2, d + 3),
    Dash(25, Zero, Eighth + 6),
    Arrow(25, Forth, d + 3, PerDash + 5),
    Arrow(25, Back, d + 3, PerDash + 5),
    Arrow(26, Back, One + 2, d),
    Arrow(27, Back, One + 2, d),
    Arrow(28, Forth, One + 2, d),
    Arrow(29, Forth, One + 2, d),
    Arrow(30, Back, One + 2, d + 5),
    Arrow(30, Forth, One + 7, d + 5),
    Outline(31),
    Outline(31, TMark::Outline2),
    Outline(32),
    Cross(32, One + 2, d, 5),
    Dash(33, d, d),
    Tick(34, Left, One + 2, d),
    Tick(35, Right, One + 2, d),
    Tick(36, Right, One + 2, d),
    Tick(36, Left, Half + 4, d),
    Tick(37, Right, One + 2, d + 3),
    Tick(37, Right, One + 4, d + 3),
    Tick(37, Left, Half + 6, d + 3),
    Tick(37, Left, Half + 8, d + 3),
    Dash(38),
    Tick(38, Left, Half - 1, PerDash),
    Tick(38, Left, Half + 1, PerDash),
    Dash(39),
    Tick(39, Right, Half - 1, PerDash),
    Tick(39, Right, Half + 1, PerDash),
    Dash(40),
    Tick(40, Right, Half - 1, PerDash),
    Tick(40, Left, Half + 1, PerDash),
    Dash(41),
    Tick(41, Right, Half - 2, PerDash),
    Tick(41, Right, Half, PerDash),
    Tick(41, Left, Half, PerDash),
    Tick(41, Left, Half + 2, PerDash),
    Outline(42),
};

constexpr bool IsSorted() {
    for (std::size_t i = 1; i < std::size(Marks); ++i)
        if (Marks[i - 1].Style > Marks[i].Style) return false;
    return true;
}
static_assert(IsSorted(), "the marks of a style stand together and are found by halving");

struct TByStyle {
    bool operator()(const TMark& mark, CPen::TPenStyle style) const { return mark.Style < style; }
    bool operator()(CPen::TPenStyle style, const TMark& mark) const { return style < mark.Style; }
};

}  // namespace

TMarks GetMarks(CPen::TPenStyle style) {
    const auto [first, last] = std::equal_range(std::begin(Marks), std::end(Marks), style, TByStyle{});
    return {first, last};
}

}  // namespace zul::penstyles
