#include "zul/tools/pen_styles.h"

namespace zul::penstyles {
namespace {

constexpr TPenRecipe None{};
constexpr TPenRecipe NullW{TPenRecipe::NullLike};
constexpr TPenRecipe Null1{TPenRecipe::NullThin};
constexpr TPenRecipe White{TPenRecipe::StockWhite};
constexpr TPenRecipe MainW{TPenRecipe::SolidMain};
constexpr TPenRecipe Main2W{TPenRecipe::SolidMain, 2};
constexpr TPenRecipe Main3W{TPenRecipe::SolidMain, 3};
constexpr TPenRecipe Main5W{TPenRecipe::SolidMain, 5};
constexpr TPenRecipe MainW2{TPenRecipe::SolidMain, 1, 2};
constexpr TPenRecipe ExtraW{TPenRecipe::SolidExtra};
constexpr TPenRecipe Extra2W{TPenRecipe::SolidExtra, 2};
constexpr TPenRecipe Extra3W{TPenRecipe::SolidExtra, 3};

// A style without a main pen has no device pens of its own: the pen that has it becomes a plain solid one.
constexpr TStyle Styles[] = {
    // flags, second colour, dash length, main pen, extra pens
    {0x14, false, true, NullW, None, None},       // 0
    {0x0C, false, true, None, None, None},        // 1
    {0x0C, false, true, None, None, None},        // 2
    {0x0C, false, true, None, None, None},        // 3
    {0x0C, false, true, None, None, None},        // 4
    {0x0C, false, true, None, None, None},        // 5
    {0x08, false, true, None, None, None},        // 6
    {0x10, false, true, NullW, None, None},       // 7
    {0x18, false, true, MainW, None, None},       // 8
    {0x18, false, true, MainW, None, None},       // 9
    {0x10, false, true, White, None, None},       // 10
    {0x10, false, true, White, None, None},       // 11
    {0x10, false, true, White, None, None},       // 12
    {0x10, false, true, White, None, None},       // 13
    {0x10, false, true, White, None, None},       // 14
    {0x28, false, true, None, None, None},        // 15
    {0x28, false, true, None, None, None},        // 16
    {0x28, false, true, None, None, None},        // 17
    {0x28, false, true, None, None, None},        // 18
    {0x38, true, true, MainW, ExtraW, None},      // 19
    {0x38, false, true, MainW, Main2W, None},     // 20
    {0x38, true, true, MainW, Extra2W, None},     // 21
    {0x28, true, true, None, None, None},         // 22
    {0x28, true, false, Main3W, ExtraW, None},    // 23
    {0x18, false, true, MainW, None, None},       // 24
    {0x10, false, true, Null1, None, None},       // 25
    {0x18, false, true, Null1, None, None},       // 26
    {0x18, false, true, MainW, None, None},       // 27
    {0x18, false, true, Null1, None, None},       // 28
    {0x18, false, true, MainW, None, None},       // 29
    {0x18, false, true, MainW, None, None},       // 30
    {0x48, true, false, Main5W, Extra3W, MainW},  // 31
    {0x38, true, true, Main3W, ExtraW, None},     // 32
    {0x38, true, true, Main3W, ExtraW, None},     // 33
    {0x1A, false, true, MainW, None, None},       // 34
    {0x19, false, true, MainW, None, None},       // 35
    {0x1B, false, true, MainW, None, None},       // 36
    {0x1B, false, true, MainW, None, None},       // 37
    {0x12, false, true, Null1, None, None},       // 38
    {0x11, false, true, Null1, None, None},       // 39
    {0x13, false, true, Null1, None, None},       // 40
    {0x13, false, true, Null1, None, None},       // 41
    {0x28, true, false, MainW2, ExtraW, None},    // 42
};
static_assert(sizeof Styles / sizeof Styles[0] == Count, "one row a style");

}  // namespace

bool Exists(CPen::TPenStyle style) {
    return style >= 0 && style < Count;
}

const TStyle& Get(CPen::TPenStyle style) {
    return Styles[style];
}

std::uint32_t GetWord(CPen::TPenStyle style) {
    if (!Exists(style)) return 0;
    return std::uint32_t{Styles[style].Flags} << 24 | static_cast<std::uint32_t>(style + 1);
}

}  // namespace zul::penstyles
