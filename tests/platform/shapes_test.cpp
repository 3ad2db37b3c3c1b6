// Wide lines, polygons, rectangles and ellipses.

#include <cmath>
#include <ctime>
#include <tuple>

#include "platform/software/path.h"
#include "tests/platform/figure.h"

namespace {

Figure Make(Figure::Kind kind, std::vector<POINT> points, int penStyle, int penWidth, bool filled = false) {
    Figure figure;
    figure.kind = kind;
    figure.points = std::move(points);
    figure.penStyle = penStyle;
    figure.penWidth = penWidth;
    figure.filled = filled;
    return figure;
}

TEST(Shapes, AClipShowsTheVeryPixelsOfTheWholePicture) {
    constexpr int kWidth = 70, kHeight = 50;
    std::mt19937 random(21);
    for (const Layout& layout : kLayouts) {
        Board whole(layout, kWidth, kHeight), clipped(layout, kWidth, kHeight);
        for (int i = 0; i < 400; ++i) {
            const Figure figure = AnyFigure(random, kWidth, kHeight, 30);
            whole.Noise(random);
            std::memcpy(clipped.Memory(), whole.Memory(), whole.Bytes());
            std::vector<std::uint32_t> expected = whole.Picture();

            clipped.ClipSomehow(random);
            figure.Draw(whole.Dc());
            figure.Draw(clipped.Dc());
            for (int at = 0; at < kWidth * kHeight; ++at) {
                const int x = at % kWidth, y = at / kWidth;
                if (clipped.Shows(x, y)) expected[static_cast<std::size_t>(at)] = whole.Raw(x, y);
            }
            ASSERT_EQ(clipped.Picture(), expected) << layout << ' ' << figure;
        }
    }
}

// What lies off the surface changes nothing on it: a figure on a small board is a piece of it on a large one.
TEST(Shapes, TheSurfacesEdgeCutsCleanly) {
    constexpr int kSmall = 40, kLarge = 200;
    std::mt19937 random(22);
    for (int i = 0; i < 1500; ++i) {
        Figure figure = AnyFigure(random, kLarge, kLarge, 40);
        if (i % 3 == 0) {  // the dashes of an ellipse that is seen in pieces
            figure.kind = Figure::kEllipse;
            figure.penStyle = PS_DASH;
            figure.penWidth = 1;
            figure.rop = R2_COPYPEN;
        }
        const int x = Between(random, 0, kLarge - kSmall), y = Between(random, 0, kLarge - kSmall);
        Board large(kLayouts[7], kLarge, kLarge), small(kLayouts[7], kSmall, kSmall);
        figure.Draw(large.Dc());
        figure.Moved(-x, -y).Draw(small.Dc());
        std::vector<std::uint32_t> expected;
        for (int row = 0; row < kSmall; ++row) {
            for (int column = 0; column < kSmall; ++column)
                expected.push_back(large.Raw(x + column, y + row));
        }
        ASSERT_EQ(small.Picture(), expected) << figure << " seen at " << x << ',' << y;
    }
}

/// Whether an odd number of sides lies at or left of a pixel.
bool IsInside(const std::vector<POINT>& ring, std::int64_t x, std::int64_t y) {
    bool inside = false;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        POINT upper = ring[i], lower = ring[(i + 1) % ring.size()];
        if (upper.y > lower.y) std::swap(upper, lower);
        if (y < upper.y || y >= lower.y) continue;
        const std::int64_t height = std::int64_t{lower.y} - upper.y, width = std::int64_t{lower.x} - upper.x;
        if ((x - upper.x) * height >= width * (y - upper.y)) inside = !inside;
    }
    return inside;
}

TEST(Polygon, FillsWhatAnOddNumberOfSidesEncloses) {
    constexpr int kWidth = 60, kHeight = 45;
    constexpr int kCoast = -1;  // begins on the board and goes on in short steps
    std::mt19937 random(25);
    for (const int reach : {kCoast, 0, 30, 2000, 40000, 1 << 29}) {
        for (const int count : {2, 3, 4, 7, 60, 3000}) {
            for (int i = 0; i < (count > 1000 ? 1 : 40); ++i) {
                Figure figure = Make(Figure::kPolygon, {}, PS_NULL, 1, true);
                figure.rop = R2_NOT;  // a pixel put twice would show
                for (int n = 0; n < count; ++n) {
                    const bool steps = reach == kCoast && n > 0;
                    const int x = steps ? figure.points.back().x + Between(random, -2, 2)
                                        : Between(random, -reach, kWidth + reach);
                    const int y = steps ? figure.points.back().y + Between(random, -2, 2)
                                        : Between(random, -reach, kHeight + reach);
                    figure.points.push_back({x, y});
                }
                std::vector<std::string> expected(kHeight, std::string(kWidth, '.'));
                for (int y = 0; y < kHeight; ++y) {
                    for (int x = 0; x < kWidth; ++x) {
                        if (IsInside(figure.points, x, y))
                            expected[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] = '#';
                    }
                }
                ASSERT_EQ(MarkedBy(figure, kWidth, kHeight), expected) << reach << ' ' << count;
            }
        }
    }
}

TEST(Shapes, ExtentsAreThoseOfEveryPoint) {
    std::mt19937 random(28);
    for (std::size_t count = 1; count < 70; ++count) {
        std::vector<POINT> points(count);
        device::Extents expected{kMax, kMax, kMin, kMin};
        for (POINT& point : points) {
            point = {static_cast<LONG>(random()), static_cast<LONG>(random())};
            expected = {std::min(expected.left, point.x), std::min(expected.top, point.y),
                        std::max(expected.right, point.x), std::max(expected.bottom, point.y)};
        }
        for (const auto find : {device::FindExtents, device::FindExtentsPlainly}) {
            const device::Extents found = find(points.data(), count);
            EXPECT_EQ(std::tie(found.left, found.top, found.right, found.bottom),
                      std::tie(expected.left, expected.top, expected.right, expected.bottom))
                << count;
        }
    }
}

TEST(Shapes, TheEndsOfTheRangeAreExactAndCostNothing) {
    const std::clock_t begin = std::clock();  // the processor's time: others may be at work beside
    const std::vector<POINT> corner = {{kMin, kMin}, {kMax, kMax}, {kMin, kMax}};
    std::mt19937 random(27);
    std::vector<POINT> flat;  // sides that are seen in a row or two, though they pass through all of them
    for (int i = 0; i < 100000; ++i)
        flat.push_back({Between(random, -(1 << 29), 1 << 29), i % 2 != 0 ? 1020 : -20});
    const Board board(kLayouts[7], 1000, 1000);
    for (int i = 0; i < 20; ++i) {
        Make(Figure::kPolygon, flat, PS_NULL, 1, true).Draw(board.Dc());
        Make(Figure::kEllipse, {{-90, -15000 + i}, {29900, 15000}}, PS_SOLID, kMax).Draw(board.Dc());
        EXPECT_EQ(MarkedBy(Make(Figure::kPolygon, corner, PS_NULL, 1, true), 5, 4),
                  (std::vector<std::string>{".....", "#....", "##...", "###.."}));
        EXPECT_EQ(MarkedBy(Make(Figure::kLine, {{kMax, kMax}, {kMin, kMin}}, PS_SOLID, 1), 5, 3),
                  (std::vector<std::string>{"#....", ".#...", "..#.."}));
        for (const int style : {PS_SOLID, PS_DASH, PS_NULL}) {
            for (const int width : {1, 2, 1000, kMax}) {
                for (const Figure::Kind kind :
                     {Figure::kPolyline, Figure::kPolygon, Figure::kRectangle, Figure::kEllipse}) {
                    for (const std::vector<POINT>& points : {std::vector<POINT>{{kMin, kMin}, {kMax, kMax}},
                                                             {{kMax, 3}, {kMin, 5}},
                                                             {{2, kMin}, {3, kMax}},
                                                             {{kMax - 1, kMax - 1}, {kMax, kMax}},
                                                             {{kMin, 0}, {3, 4}}}) {
                        EXPECT_NE(Make(kind, points, style, width, true).Draw(Board(kLayouts[0], 9, 7).Dc()),
                                  FALSE);
                    }
                }
            }
        }
    }
    EXPECT_LT(std::clock() - begin, 30 * CLOCKS_PER_SEC);
}

TEST(Ellipse, BeyondTheTracedSizeStaysWithinAPixelOfTheIdealOne) {
    constexpr int kWidth = 50, kHeight = 40;
    std::mt19937 random(26);
    for (int i = 0; i < 200; ++i) {
        // A board's worth of the outline at a random angle of an ellipse of half axes a and b.
        const double a = Between(random, 17000, 400000), b = Between(random, 17000, 400000);
        const double angle = Between(random, 0, 6283) / 1000.0;
        const int x = 20 - static_cast<int>(a * std::cos(angle)),
                  y = 20 - static_cast<int>(b * std::sin(angle));
        const Figure figure = Make(Figure::kEllipse,
                                   {{x - static_cast<int>(a), y - static_cast<int>(b)},
                                    {x + static_cast<int>(a) + 1, y + static_cast<int>(b) + 1}},
                                   PS_SOLID, 1);
        Figure inside = figure;
        inside.penStyle = PS_NULL;
        inside.filled = true;
        const auto outline = MarkedBy(figure, kWidth, kHeight), fill = MarkedBy(inside, kWidth, kHeight);
        int marked = 0;
        for (int row = 0; row < kHeight; ++row) {
            for (int column = 0; column < kWidth; ++column) {
                // The distance from the ideal line, by its slope.
                const double u = (column - x) / a, v = (row - y) / b;
                const double off = (u * u + v * v - 1) / (2 * std::hypot(u / a, v / b));
                const auto r = static_cast<std::size_t>(row), c = static_cast<std::size_t>(column);
                const std::string at = std::to_string(column) + "," + std::to_string(row);
                if (outline[r][c] == '#') {
                    ++marked;
                    ASSERT_LT(std::abs(off), 1) << at << ' ' << figure;
                }
                ASSERT_TRUE(std::abs(off) < 1 || (off < 0) == (fill[r][c] == '#')) << at << ' ' << figure;
            }
        }
        ASSERT_GE(marked, 20) << figure;
    }
}

TEST(Figures, RefuseListsTheyCannotDraw) {
    const Board board(kLayouts[7], 9, 7);
    const POINT points[] = {{1, 1}, {5, 5}, {1, 5}};
    for (const int count : {1, 0, -5})
        EXPECT_EQ(Polyline(board.Dc(), points, count), FALSE);
    EXPECT_EQ(Polyline(board.Dc(), nullptr, 3), FALSE);
    EXPECT_EQ(Polygon(board.Dc(), points, 1), FALSE);
    EXPECT_EQ(Polygon(board.Dc(), nullptr, 3), FALSE);
    EXPECT_EQ(board.Picture(), std::vector<std::uint32_t>(9 * 7, 0));
    EXPECT_NE(Rectangle(board.Dc(), 3, 3, 3, 9), FALSE);
    EXPECT_NE(Ellipse(board.Dc(), 3, 3, 9, 3), FALSE);
}

}  // namespace
