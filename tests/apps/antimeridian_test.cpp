#include "apps/zulmap/antimeridian.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <numeric>
#include <vector>

#include "apps/zulmap/path_cutting.h"

namespace zulmap {
namespace {

MapData MapOf(const std::vector<Path>& rings) {
    MapData map;
    map.features.push_back({{Area{rings}}, {}, {}});
    return map;
}

double AreaOf(const std::vector<Path>& rings) {
    return std::accumulate(rings.begin(), rings.end(), 0.0,
                           [](double sum, const Path& ring) { return sum + TwiceSignedArea(ring) / 2.0; });
}

void ExpectOnTheGlobe(const std::vector<Path>& paths) {
    for (const Path& path : paths) {
        for (const TDoublePoint& point : path) {
            EXPECT_LE(std::abs(point.X), 180.0);
            EXPECT_LE(std::abs(point.Y), 90.0);
        }
    }
}

std::vector<Path> CutRings(const std::vector<Path>& rings) {
    MapData map = MapOf(rings);
    CutAtAntimeridian(map);
    return map.features[0].areas[0].rings;
}

TEST(Antimeridian, RingsAcrossItArePartedAndKeepTheirArea) {
    const struct {
        const char* what;
        std::vector<Path> rings;
        std::size_t parts;
        double area;
    } rows[] = {
        {"far from it", {{{0, 0}, {10, 0}, {10, 10}, {0, 10}}}, 1, 100.0},
        {"ends at it", {{{170, 0}, {180, 0}, {180, 10}, {170, 10}}}, 1, 100.0},
        {"begins east", {{{170, 0}, {-170, 0}, {-170, 10}, {170, 10}}}, 2, 200.0},
        {"begins west", {{{-170, 10}, {170, 10}, {170, 0}, {-170, 0}}}, 2, 200.0},
        {"touches it by a jump", {{{170, 0}, {-180, 0}, {-180, 10}, {170, 10}}}, 1, 100.0},
        {"with a hole east of it",
         {{{170, 0}, {-170, 0}, {-170, 10}, {170, 10}}, {{-178, 2}, {-178, 4}, {-176, 4}, {-176, 2}}},
         3,
         196.0},
        {"with a hole across it",
         {{{170, 0}, {-170, 0}, {-170, 10}, {170, 10}}, {{179, 2}, {179, 4}, {-179, 4}, {-179, 2}}},
         4,
         196.0},
        {"two lobes on one side",
         {{{170, 0}, {-170, 0}, {-170, 3}, {175, 5}, {-170, 7}, {-170, 10}, {170, 10}}},
         2,
         170.0},
        {"around the south pole", {{{-180, -80}, {-90, -80}, {0, -80}, {90, -80}}}, 1, 3600.0},
        {"half the globe wide is no jump", {{{-90, 0}, {90, 0}, {90, 10}, {-90, 10}}}, 1, 1800.0},
        {"around the north pole", {{{100, 70}, {-160, 70}, {-60, 70}, {20, 70}}}, 2, 7200.0},
    };
    for (const auto& row : rows) {
        const std::vector<Path> parts = CutRings(row.rings);
        EXPECT_EQ(parts.size(), row.parts) << row.what;
        EXPECT_NEAR(AreaOf(parts), row.area, 1e-9) << row.what;
        ExpectOnTheGlobe(parts);
    }
}

TEST(Antimeridian, LinesEndAndBeginAnewWhereTheyCrossIt) {
    MapData map;
    map.features.push_back(
        {{},
         {{{170, 0}, {-170, 10}, {-160, 10}}, {{0, 0}, {170, 5}}, {{350, 0}, {355, 0}, {5, 20}, {9, 20}}},
         {}});
    CutAtAntimeridian(map);
    const std::vector<Path>& lines = map.features[0].lines;
    ASSERT_EQ(lines.size(), 5U);
    ExpectOnTheGlobe({lines[0], lines[1]});
    EXPECT_EQ(lines[0].back().X, 180.0);
    EXPECT_EQ(lines[0].back().Y, 5.0);
    EXPECT_EQ(lines[1].front().X, -180.0);
    EXPECT_EQ(lines[1].front().Y, 5.0);
    EXPECT_EQ(lines[1].size(), 3U);
    EXPECT_EQ(lines[2].size(), 2U);
    // Counted from 0 to 360 a line has a gap where the count begins anew, and no way through the map.
    EXPECT_EQ(lines[3].back().X, 355.0);
    EXPECT_EQ(lines[4].front().X, 5.0);
}

TEST(Antimeridian, TheExtentGrowsToThePoleThatIsAdded) {
    MapData map = MapOf({{{-180, -80}, {-90, -80}, {0, -80}, {90, -80}}});
    map.extent = {-180.0, -80.0, 90.0, -80.0};
    CutAtAntimeridian(map);
    EXPECT_EQ(map.extent.minY, -90.0);
    EXPECT_EQ(map.extent.maxX, 180.0);
}

TEST(Antimeridian, ARingThatWindsWithoutEndIsLeftAlone) {
    Path spiral;
    for (int i = 0; i < 100000; ++i) {
        spiral.push_back({i * 170.0 - std::round(i * 170.0 / 360.0) * 360.0, i % 2 * 10.0});
    }
    EXPECT_EQ(CutRings({spiral}).size(), 1U);
}

TEST(Antimeridian, RingsAndLinesTooSmallToCrossAnythingPass) {
    MapData map = MapOf({{{180, 0}}, {{180, 0}, {-180, 0}}});
    map.features[0].lines.push_back({{180, 0}, {-180, 1}});
    CutAtAntimeridian(map);
    ExpectOnTheGlobe(map.features[0].areas[0].rings);
    ExpectOnTheGlobe(map.features[0].lines);
}

}  // namespace
}  // namespace zulmap
