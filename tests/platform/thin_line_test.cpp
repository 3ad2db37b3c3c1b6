// Lines one pixel wide, held against the rule applied pixel by pixel.

#include <cstdint>

#include "tests/platform/figure.h"

namespace {

constexpr int kWidth = 61, kHeight = 43;

/// The other coordinate of the ideal line from (0, from) to (length, to) at \p step, rounded to the nearest;
/// half-way cases go to the smaller one.
std::int64_t Nearest(std::int64_t from, std::int64_t to, std::uint64_t step, std::uint64_t length) {
    const bool up = to > from;
    const auto rise = static_cast<std::uint64_t>(up ? to - from : from - to);
    const std::uint64_t whole = step * rise / length, rest = step * rise % length;
    const bool ahead = 2 * rest > length || (2 * rest == length && !up);
    const auto moved = static_cast<std::int64_t>(whole + (ahead ? 1 : 0));
    return up ? from + moved : from - moved;
}

/// Calls `pixel(x, y, step)` for each pixel of a line that lies on the board.
template <class Pixel>
void WalkLine(POINT from, POINT to, Pixel&& pixel) {
    const std::int64_t dx = std::int64_t{to.x} - from.x, dy = std::int64_t{to.y} - from.y;
    const bool steep = std::abs(dy) > std::abs(dx);
    const std::int64_t length = steep ? std::abs(dy) : std::abs(dx);
    const std::int64_t start = steep ? from.y : from.x;
    for (int major = 0; major < (steep ? kHeight : kWidth); ++major) {
        const std::int64_t step = (steep ? dy : dx) > 0 ? major - start : start - major;
        if (step < 0 || step >= length) continue;
        const std::int64_t minor =
            Nearest(steep ? from.x : from.y, steep ? to.x : to.y, static_cast<std::uint64_t>(step),
                    static_cast<std::uint64_t>(length));
        if (minor < 0 || minor >= (steep ? kWidth : kHeight)) continue;
        pixel(steep ? static_cast<int>(minor) : major, steep ? major : static_cast<int>(minor), step);
    }
}

/// A line through the board whose ends are up to \p reach away.
Figure LineThrough(std::mt19937& random, std::int64_t reach) {
    const auto limited = [](std::int64_t v) {
        return static_cast<LONG>(std::min<std::int64_t>(std::max<std::int64_t>(v, kMin), kMax));
    };
    const auto far = [&] { return static_cast<std::int64_t>(random()) % (2 * reach + 1) - reach; };
    const std::int64_t x = Between(random, 0, kWidth), y = Between(random, 0, kHeight), dx = far(),
                       dy = far();
    const std::int64_t share = Between(random, 0, 3);
    Figure line;
    line.points = {{limited(x - dx), limited(y - dy)}, {limited(x + dx * share), limited(y + dy * share)}};
    return line;
}

TEST(ThinLine, TakesTheNearestPixelsAtEveryLengthAndDepth) {
    std::mt19937 random(11);
    for (const Layout& layout : kLayouts) {
        Board board(layout, kWidth, kHeight, true);
        for (const std::int64_t reach : {std::int64_t{4}, std::int64_t{40}, std::int64_t{9000},
                                         std::int64_t{1000000}, std::int64_t{1} << 31}) {
            for (int i = 0; i < 400; ++i) {
                Figure line = LineThrough(random, reach);
                if (i % 2 != 0) line.rop = R2_NOT;  // a pixel put twice would show
                std::vector<std::string> expected(kHeight, std::string(kWidth, '.'));
                WalkLine(line.points[0], line.points[1], [&](int x, int y, std::int64_t) {
                    expected[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] = '#';
                });
                board.Wipe();
                line.Draw(board.Dc());
                ASSERT_EQ(Marked(board), expected) << layout << ' ' << line;
            }
        }
    }
}

TEST(ThinLine, AListIsItsSegmentsHoweverManyItHas) {
    std::mt19937 random(12);
    for (const Layout& layout : kLayouts) {
        for (int i = 0; i < 60; ++i) {
            // Short steps that leave the board or not, repeat points or not, and a few long ones.
            const int step = Between(random, 1, 10), repeats = Between(random, 0, 3);
            Figure list;
            list.rop = R2_NOT;
            POINT at{Between(random, 0, kWidth), Between(random, 0, kHeight)};
            for (int n = Between(random, 2, 200); n > 0; --n) {
                list.points.push_back(at);
                if (Between(random, 0, 3) < repeats) continue;
                at = {at.x + Between(random, -step, step), at.y + Between(random, -step, step)};
                if (Between(random, 0, 30) == 0) at.x = Between(random, 0, kWidth - 1);
            }
            Board whole(layout, kWidth, kHeight), parts(layout, kWidth, kHeight);
            if (list.points.size() > 1) list.Draw(whole.Dc());
            for (std::size_t n = 1; n < list.points.size(); ++n) {
                Figure part = list;
                part.points = {list.points[n - 1], list.points[n]};
                part.Draw(parts.Dc());
            }
            ASSERT_EQ(whole.Picture(), parts.Picture()) << layout << ' ' << list;
        }
    }
}

TEST(ThinLine, MoveToAndLineToKeepThePosition) {
    Board board(kLayouts[7], 8, 1);
    POINT previous{7, 7};
    MoveToEx(board.Dc(), 1, 0, &previous);
    EXPECT_EQ(previous.x, 0);
    SelectObject(board.Dc(), GetStockObject(WHITE_PEN));
    LineTo(board.Dc(), 3, 0);
    LineTo(board.Dc(), 3, 0);
    const POINT list[] = {{6, 0}, {7, 0}};
    Polyline(board.Dc(), list, 2);
    LineTo(board.Dc(), 5, 0);
    EXPECT_EQ(Marked(board), std::vector<std::string>{".####.#."});
    MoveToEx(board.Dc(), 0, 0, &previous);
    EXPECT_EQ(previous.x, 5);
}

}  // namespace
