#include "apps/zulmap/map_space.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <optional>
#include <random>
#include <vector>

#include "apps/zulmap/tool_error.h"
#include "tests/apps/apps_testing.h"
#include "zul/geometry/angle.h"
#include "zul/geometry/point.h"

namespace zulmap {
namespace {

using zul::TPoint;

/// A reproducible stream of numbers.
class Random {
public:
    explicit Random(unsigned seed) : m_Engine(seed) {}
    double Between(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(m_Engine);
    }
    TDoublePoint In(const Box& box) { return {Between(box.minX, box.maxX), Between(box.minY, box.maxY)}; }
    Path PathIn(const Box& box, std::size_t count) {
        Path path;
        while (path.size() < count) {
            path.push_back(In(box));
        }
        return path;
    }

private:
    std::mt19937 m_Engine;
};

Box Grown(const Box& box, double factor) {
    const double x = box.Width() * (factor - 1.0) / 2.0;
    const double y = box.Height() * (factor - 1.0) / 2.0;
    return {box.minX - x, box.minY - y, box.maxX + x, box.maxY + y};
}

TDoublePoint CenterOf(const Box& box) {
    return {(box.minX + box.maxX) / 2.0, (box.minY + box.maxY) / 2.0};
}

/// A path in map units as doubles.
Path Units(const std::vector<TPoint>& points) {
    Path path;
    for (const TPoint& point : points) {
        path.push_back({static_cast<double>(point.X), static_cast<double>(point.Y)});
    }
    return path;
}

Path Units(const Path& points, const TDoublePoint& center, double unit) {
    Path path;
    for (const TDoublePoint& point : points) {
        path.push_back({(point.X - center.X) / unit, (point.Y - center.Y) / unit});
    }
    return path;
}

double DistanceToSegment(const TDoublePoint& p, const TDoublePoint& a, const TDoublePoint& b) {
    const double dx = b.X - a.X;
    const double dy = b.Y - a.Y;
    const double square = dx * dx + dy * dy;
    const double t =
        square > 0.0 ? std::clamp(((p.X - a.X) * dx + (p.Y - a.Y) * dy) / square, 0.0, 1.0) : 0.0;
    return std::hypot(a.X + t * dx - p.X, a.Y + t * dy - p.Y);
}

double DistanceToPath(const TDoublePoint& p, const Path& path, bool closed) {
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = closed ? 0 : 1; i < path.size(); ++i) {
        least = std::min(least, DistanceToSegment(p, path[i > 0 ? i - 1 : path.size() - 1], path[i]));
    }
    return least;
}

// Turning happens in 16 bits and wraps: whatever is placed must come out where it belongs.
TEST(MapSpace, NothingWrapsWhenTheViewTurns) {
    Random random(2);
    for (int round = 0; round < 2000; ++round) {
        const Box data{-random.Between(0.1, 200.0), -random.Between(0.1, 200.0), random.Between(0.1, 200.0),
                       random.Between(0.1, 200.0)};
        std::optional<Box> wanted;
        if (round % 3 == 1) wanted = Grown(data, random.Between(0.01, 1.0));
        if (round % 3 == 2) wanted = Grown(data, random.Between(1.0, 50.0));
        const auto width = static_cast<std::int32_t>(random.Between(1.0, 3000.0));
        const auto height = static_cast<std::int32_t>(random.Between(1.0, 3000.0));
        // Every seventh view turns a corner of its own onto an axis, as far out as any point comes.
        const double toAxis = zul::CAngle::RadianToDegree(std::atan2(width, height));
        const double degrees = round % 7 == 0 ? toAxis : random.Between(-360.0, 360.0);
        const MapSpace space(data, wanted, width, height, degrees);

        const double radians = zul::CAngle::DegreeToRadian(degrees);
        const double sine = std::sin(radians);
        const double cosine = std::cos(radians);
        const auto expectTurnsRight = [&](TPoint point) {
            const double x = cosine * point.X - sine * point.Y;
            const double y = sine * point.X + cosine * point.Y;
            zul::CPoint::RotateEx(point.X, point.Y, 0, 0, sine, cosine);
            ASSERT_NEAR(point.X, x, 0.51) << "round " << round;
            ASSERT_NEAR(point.Y, y, 0.51) << "round " << round;
        };
        const zul::TLongRect view = space.GetVisibleBox();
        expectTurnsRight({zul::TCoord(view.MaxX), zul::TCoord(view.MaxY)});
        expectTurnsRight({zul::TCoord(view.MinX), zul::TCoord(view.MaxY)});
        for (const TPoint& point : space.PlaceLine(random.PathIn(data, 50))) {
            expectTurnsRight(point);
        }
    }
}

TEST(MapSpace, TheUnitIsAsSharpAsTheSpaceAllows) {
    Random random(3);
    for (int round = 0; round < 500; ++round) {
        const Box data{-50.0, -30.0, 70.0, 30.0};
        const double factor = random.Between(0.05, 3.0);
        const Box wanted = Grown(data, factor);
        const double degrees = round % 2 == 0 ? 0.0 : random.Between(1.0, 359.0);
        const MapSpace space(data, wanted, 640, 480, degrees);
        const zul::TLongRect view = space.GetVisibleBox();
        EXPECT_EQ(view.MinX, -view.MaxX);
        EXPECT_NEAR(static_cast<double>(view.MaxX) / view.MaxY, 640.0 / 480.0, 1e-3);
        // Either the view or the data around it reach the end of the space: a smaller unit would not do.
        double reach = degrees == 0.0 ? view.MaxX : std::hypot(view.MaxX, view.MaxY);
        const std::vector<TPoint> outline = space.PlaceRing(
            {{data.minX, data.minY}, {data.maxX, data.minY}, {data.maxX, data.maxY}, {data.minX, data.maxY}});
        for (const TPoint& point : outline) {
            const double far = std::max(std::abs(point.X), std::abs(point.Y));
            reach = std::max(reach, degrees == 0.0 ? far : std::hypot(point.X, point.Y));
        }
        EXPECT_NEAR(reach, 32767.0, 4.0) << factor << " " << degrees;
    }
}

TEST(MapSpace, FarAndDegenerateRequestsStayInsideTheSpace) {
    const Box data{-10.0, -10.0, 10.0, 10.0};
    const Box point{5.0, 5.0, 5.0, 5.0};
    const struct {
        Box data;
        std::optional<Box> wanted;
        std::int32_t width, height;
        double degrees;
    } rows[] = {
        {data, Box{1e9, 1e9, 1e9 + 1.0, 1e9 + 1.0}, 100, 100, 30.0},
        {data, Box{-1e15, -1e15, 1e15, 1e15}, 100, 100, 30.0},
        {data, Box{0.0, 0.0, 1e-12, 1e-12}, 100, 100, 0.0},
        {point, std::nullopt, 100, 50, 0.0},
        {point, std::nullopt, 100, 50, 77.0},
        {Box{0.0, 3.0, 40.0, 3.0}, std::nullopt, 100, 50, 0.0},
        {Box{3.0, 0.0, 3.0, 40.0}, std::nullopt, 100, 50, 10.0},
        {data, std::nullopt, 1, 1000000, 0.0},
        {data, std::nullopt, 1000000, 1, 45.0},
    };
    for (const auto& row : rows) {
        const MapSpace space(row.data, row.wanted, row.width, row.height, row.degrees);
        const zul::TLongRect view = space.GetVisibleBox();
        for (const std::int32_t half : {view.MaxX, view.MaxY, -view.MinX, -view.MinY}) {
            EXPECT_GE(half, 1);
            EXPECT_LE(half, 32767);
        }
        const bool isSeen = !row.wanted || row.wanted->minX < 10.0;
        EXPECT_EQ(!space.PlaceLine({CenterOf(row.data)}).empty(), isSeen);
    }
    EXPECT_THROW(MapSpace(data, Box{0.0, 0.0, 1e-320, 1e-320}, 100, 100, 0.0), ToolError);
    EXPECT_THROW(MapSpace(data, Box{-1e308, -1e308, 1e308, 1e308}, 100, 100, 0.0), ToolError);
}

TEST(MapSpace, RingsComeWithoutRepeatedPoints) {
    const MapSpace space({0.0, 0.0, 65534.0, 65534.0}, std::nullopt, 100, 100, 0.0);
    const auto ring =
        space.PlaceRing({{0.1, 0.0}, {0.0, 0.2}, {0.0, 5.0}, {5.0, 5.0}, {5.1, 5.2}, {5.0, 0.0}, {0.2, 0.1}});
    EXPECT_EQ(ring.size(), 4U);
    EXPECT_TRUE(space.PlaceRing({}).empty());
    EXPECT_EQ(space.PlaceRing({{7.0, 7.0}, {7.1, 7.1}}).size(), 1U);
}

// What is cut away must not show: inside the view the placed line is the line.
TEST(MapSpace, CuttingLinesShowsOnlyOutsideTheView) {
    Random random(4);
    const Box data{-100.0, -100.0, 100.0, 100.0};
    const Box wanted{-10.0, -5.0, 10.0, 5.0};
    const MapSpace space(data, wanted, 200, 100, 0.0);
    const auto isInView = [&space](const TDoublePoint& point) {
        const zul::TLongRect view = space.GetVisibleBox();
        return std::abs(point.X) < view.MaxX && std::abs(point.Y) < view.MaxY;
    };
    int seen = 0;
    for (int round = 0; round < 400; ++round) {
        const Path line = random.PathIn(Grown(wanted, random.Between(1.0, 10.0)), 6);
        const Path wantedUnits = Units(line, {0.0, 0.0}, space.GetUnit());
        const Path placed = Units(space.PlaceLine(line));
        for (const auto& [from, to] :
             {std::make_pair(&wantedUnits, &placed), std::make_pair(&placed, &wantedUnits)}) {
            for (std::size_t i = 1; i < from->size(); ++i) {
                for (double t = 0.0; t <= 1.0; t += 1.0 / 64.0) {
                    const TDoublePoint point{(*from)[i - 1].X + t * ((*from)[i].X - (*from)[i - 1].X),
                                             (*from)[i - 1].Y + t * ((*from)[i].Y - (*from)[i - 1].Y)};
                    if (!isInView(point)) continue;
                    ++seen;
                    ASSERT_LT(DistanceToPath(point, *to, false), 1.5) << "round " << round;
                }
            }
        }
    }
    EXPECT_GT(seen, 10000);
}

TEST(MapSpace, CuttingRingsKeepsWhatTheyEncloseInTheView) {
    Random random(5);
    const Box data{-100.0, -100.0, 100.0, 100.0};
    const Box wanted{-10.0, -5.0, 10.0, 5.0};
    const MapSpace space(data, wanted, 200, 100, 0.0);
    int inside = 0;
    for (int round = 0; round < 400; ++round) {
        const Path ring = random.PathIn(Grown(wanted, random.Between(1.0, 10.0)), 7);
        const Path exact = Units(ring, {0.0, 0.0}, space.GetUnit());
        const Path placed = Units(space.PlaceRing(ring));
        for (const TDoublePoint& point : Units(random.PathIn(wanted, 50), {0.0, 0.0}, space.GetUnit())) {
            if (DistanceToPath(point, exact, true) < 2.0) continue;
            const bool expected = IsInside(point, exact);
            inside += expected;
            ASSERT_EQ(!placed.empty() && IsInside(point, placed), expected) << "round " << round;
        }
    }
    EXPECT_GT(inside, 1000);
}

TEST(StitchRings, EnclosesTheOuterRingWithoutItsHoles) {
    Random random(6);
    for (int round = 0; round < 200; ++round) {
        std::vector<std::vector<TPoint>> rings = {
            {{-1000, -1000}, {1000, -1000}, {1000, 1000}, {-1000, 1000}}};
        // Holes in a row of their own, so that they do not meet; every third is without points.
        for (int column = 0; column < 5; ++column) {
            const double left = -1000.0 + 400.0 * column;
            rings.push_back({});
            for (const TDoublePoint& point : random.PathIn({left + 10.0, -900.0, left + 390.0, 900.0},
                                                           (column + round) % 3 == 0 ? 0 : 3)) {
                rings.back().push_back(
                    {static_cast<zul::TCoord>(point.X), static_cast<zul::TCoord>(point.Y)});
            }
        }
        const Path stitched = Units(StitchRings(rings));
        for (const TDoublePoint& whole : random.PathIn({-1100.0, -1100.0, 1100.0, 1100.0}, 100)) {
            // Between the whole numbers no bridge can be hit.
            const TDoublePoint point{std::floor(whole.X) + 0.37, std::floor(whole.Y) + 0.61};
            bool expected = false;
            for (const auto& ring : rings) {
                if (!ring.empty() && IsInside(point, Units(ring))) expected = !expected;
            }
            ASSERT_EQ(IsInside(point, stitched), expected) << "round " << round;
        }
    }
    EXPECT_TRUE(StitchRings({}).empty());
    EXPECT_TRUE(StitchRings({{}, {}}).empty());
}

}  // namespace
}  // namespace zulmap
