#include "apps/zulmap/edge_net.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <random>
#include <utility>
#include <vector>

namespace zulmap {
namespace {

using Kind = EdgeNet::Kind;
using Line = std::pair<Kind, Ring>;

zul::TPoint P(int x, int y) {
    return {static_cast<zul::TCoord>(x), static_cast<zul::TCoord>(y)};
}

/// Counter-clockwise.
Ring Square(int x, int y, int side) {
    return {P(x, y), P(x + side, y), P(x + side, y + side), P(x, y + side)};
}

std::vector<Line> TakeAll(EdgeNet& net, const std::vector<Ring>& rings) {
    std::vector<Line> lines;
    for (const Ring& ring : rings) {
        net.TakeLines(ring, [&lines](Kind kind, const Ring& line) { lines.emplace_back(kind, line); });
    }
    return lines;
}

EdgeNet NetOf(const std::vector<Ring>& rings) {
    EdgeNet net;
    for (std::size_t i = 0; i < rings.size(); ++i) {
        net.Add(rings[i], static_cast<std::uint32_t>(i));
    }
    net.Finish();
    return net;
}

std::size_t EdgesOf(const std::vector<Line>& lines, Kind kind) {
    std::size_t count = 0;
    for (const Line& line : lines) {
        if (line.first == kind) count += line.second.size() - 1;
    }
    return count;
}

TEST(EdgeNet, AContinentUnderItsCountriesMakesNoBorders) {
    const Ring continent = {P(0, 0), P(10, 0), P(20, 0), P(20, 10), P(10, 10), P(0, 10)};
    const std::vector<Ring> rings = {continent, Square(0, 0, 10), Square(10, 0, 10)};
    EdgeNet net = NetOf(rings);
    const auto neighbours = net.FindNeighbours(3);
    EXPECT_TRUE(neighbours[0].empty());
    EXPECT_EQ(neighbours[1], std::vector<std::uint32_t>{2});
    EXPECT_EQ(neighbours[2], std::vector<std::uint32_t>{1});

    const std::vector<Line> lines = TakeAll(net, rings);
    EXPECT_EQ(EdgesOf(lines, Kind::Coast), 6U);
    EXPECT_EQ(EdgesOf(lines, Kind::Border), 1U);
}

TEST(EdgeNet, AnEnclaveBordersTheHoleItLiesIn) {
    Ring hole = Square(10, 10, 5);
    std::reverse(hole.begin(), hole.end());
    EdgeNet net;
    net.Add(Square(0, 0, 30), 0);
    net.Add(hole, 0);
    net.Add(Square(10, 10, 5), 1);
    net.Finish();
    EXPECT_EQ(net.FindNeighbours(2)[0], std::vector<std::uint32_t>{1});
    EXPECT_EQ(EdgesOf(TakeAll(net, {Square(0, 0, 30), hole, Square(10, 10, 5)}), Kind::Border), 4U);
}

TEST(EdgeNet, SeamsAreNotOutlines) {
    EdgeNet net;
    net.HideUpright(10);
    net.HideLevel(0);
    net.Add(Square(0, 0, 10), 0);
    net.Finish();
    const std::vector<Line> lines = TakeAll(net, {Square(0, 0, 10)});
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].second, (Ring{P(10, 10), P(0, 10), P(0, 0)}));
}

TEST(EdgeNet, IslandsAreClosedLinesAndRingsWithoutAreaKeepTheirEdge) {
    const std::vector<Ring> rings = {{P(0, 0), P(5, 0)}, {P(7, 7)}, {}, Square(-32767, -32767, 65534)};
    EdgeNet net = NetOf(rings);
    const std::vector<Line> lines = TakeAll(net, rings);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(EdgesOf(lines, Kind::Coast), 5U);
    EXPECT_EQ(lines[1].second.front(), lines[1].second.back());
}

// A board of squares with wild duplicates: whatever the order, each edge comes exactly once.
TEST(EdgeNet, EveryEdgeOfABoardComesExactlyOnce) {
    constexpr int kSide = 12;
    std::vector<Ring> rings;
    for (int i = 0; i < kSide * kSide; ++i) {
        Ring ring = Square(i % kSide * 3, i / kSide * 3, 3);
        std::rotate(ring.begin(), ring.begin() + i % 4, ring.end());
        rings.push_back(ring);
        if (i % 5 == 0) rings.push_back(ring);
    }
    std::mt19937 random(7);
    std::shuffle(rings.begin(), rings.end(), random);
    EdgeNet net = NetOf(rings);
    const std::vector<Line> lines = TakeAll(net, rings);
    EXPECT_EQ(EdgesOf(lines, Kind::Coast), 4U * kSide);
    EXPECT_EQ(EdgesOf(lines, Kind::Border), 2U * kSide * (kSide - 1));

    EXPECT_TRUE(TakeAll(net, rings).empty()) << "all is taken";

    std::map<std::pair<int, int>, int> seen;
    for (const Line& line : lines) {
        for (std::size_t i = 1; i < line.second.size(); ++i) {
            const zul::TPoint& a = line.second[i - 1];
            const zul::TPoint& b = line.second[i];
            EXPECT_EQ(++seen[std::make_pair(a.X + b.X, a.Y + b.Y)], 1) << "middle of an edge";
        }
    }
}

TEST(ChooseColors, NeighboursDifferAndAllColorsAreUsed) {
    constexpr std::uint32_t kSide = 20;
    std::vector<std::vector<std::uint32_t>> neighbours(kSide * kSide);
    const auto join = [&neighbours](std::uint32_t a, std::uint32_t b) {
        neighbours[a].push_back(b);
        neighbours[b].push_back(a);
    };
    for (std::uint32_t i = 0; i < kSide * kSide; ++i) {
        if (i % kSide + 1 < kSide) join(i, i + 1);
        if (i / kSide + 1 < kSide) join(i, i + kSide);
    }
    const std::vector<std::size_t> colors = ChooseColors(neighbours, 8);
    std::vector<int> uses(8, 0);
    for (std::uint32_t i = 0; i < colors.size(); ++i) {
        ++uses.at(colors[i]);
        for (const std::uint32_t neighbour : neighbours[i]) {
            EXPECT_NE(colors[i], colors[neighbour]);
        }
    }
    const auto [least, most] = std::minmax_element(uses.begin(), uses.end());
    EXPECT_LE(*most - *least, 10);
    for (const std::size_t color : ChooseColors({{1, 2}, {0, 2}, {0, 1}}, 2)) {
        EXPECT_LT(color, 2U) << "too few for all neighbours";
    }
}

}  // namespace
}  // namespace zulmap
