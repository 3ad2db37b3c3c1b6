#include "tests/scenes/difference.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace {

using scenes::TDifference;
using scenes::TPicture;

struct TSpot {
    int X, Y;
    std::uint8_t Color;
};

constexpr int kSide = 40;
constexpr std::uint8_t kInk = 200;

/// A surface of one colour with a block of 20 x 30 pixels in the middle, and single pixels put over it.
TPicture Drawn(std::initializer_list<TSpot> spots) {
    TPicture picture{kSide, kSide, std::vector<std::uint8_t>(kSide * kSide * 3, 9)};
    const auto put = [&picture](int x, int y, std::uint8_t color) {
        picture.Bytes[static_cast<std::size_t>(y * kSide + x) * 3 + 1] = color;
    };
    for (int y = 5; y < 35; ++y) {
        for (int x = 10; x < 30; ++x)
            put(x, y, kInk);
    }
    for (const TSpot& spot : spots)
        put(spot.X, spot.Y, spot.Color);
    return picture;
}

struct TCase {
    const char* Name;
    std::initializer_list<TSpot> Got;
    int Differing;
    bool Near;
};

// Three of six hundred drawn pixels may differ.
const TCase kCases[] = {
    {"nothing differs", {}, 0, false},
    {"three pixels beside the border", {{9, 5, kInk}, {30, 20, kInk}, {9, 35, kInk}}, 3, true},
    {"one more than is allowed", {{9, 5, kInk}, {30, 20, kInk}, {9, 35, kInk}, {9, 7, kInk}}, 4, false},
    {"a missing pixel at the border", {{10, 20, 9}}, 1, true},
    {"a hole inside", {{20, 20, 9}}, 1, true},
    {"two pixels away from the border", {{8, 20, kInk}}, 1, false},
    {"beside the border in another colour", {{9, 20, kInk + 1}}, 1, false},
    {"another colour inside", {{20, 20, kInk + 1}}, 1, false},
    {"a stray pixel in the picture's corner", {{39, 39, kInk}}, 1, false},
};

TEST(SceneDifference, CountsAsNearOnlyWhatIsRareAndNextToItsPlace) {
    TPicture before = Drawn({});
    before.Bytes.assign(before.Bytes.size(), 9);
    const TPicture expected = Drawn({});
    for (const TCase& row : kCases) {
        const TPicture got = Drawn(row.Got);
        const TDifference difference = scenes::Compare(before, expected, got);
        EXPECT_EQ(difference.Differing, row.Differing) << row.Name;
        EXPECT_EQ(difference.Drawn, 600) << row.Name;
        EXPECT_EQ(difference.IsNear(), row.Near) << row.Name;
    }
}

}  // namespace
