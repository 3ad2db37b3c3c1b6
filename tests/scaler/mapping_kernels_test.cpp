#include "zul/scaler/mapping_kernels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "stored_scaler.h"
#include "zul/kernel/numeric.h"
#include "zul/scaler/projective_kernels.h"

namespace zul {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kHostileFactors[] = {0.0,  -0.0, 1.0,       0.5,        0.25, -1.5,  1.0 / 3.0, 65536.0,
                                      1e-9, 1e9,  kInfinity, -kInfinity, kNaN, 1e300, -1.7e308,  5e-324};
constexpr std::int32_t kHostileOrigins[] = {0, 1, -1, -20000, 32767, -32768, 70000, INT32_MAX, INT32_MIN};
constexpr TLongPoint kUntouched{-77777, 88888};
constexpr std::size_t kBeyond = 9;

/// Puts back the road that was taken before the test.
class CRoadScope {
public:
    explicit CRoadScope(TMappingRoad road) : m_Before(SelectMappingRoad(road)) {}
    ~CRoadScope() { SelectMappingRoad(m_Before); }
    CRoadScope(const CRoadScope&) = delete;
    CRoadScope& operator=(const CRoadScope&) = delete;

private:
    TMappingRoad m_Before;
};

/// Points as maps have them and as they do not: noise, a coastline, runs of equal points, corners of the
/// range.
std::vector<TPoint> MakePoints(std::mt19937& random, std::size_t count) {
    const auto kind = random() % 4;
    const auto noise = [&random] { return WrapToCoord(static_cast<std::int64_t>(random())); };
    std::vector<TPoint> points(count);
    TPoint walker{noise(), noise()};
    for (TPoint& point : points) {
        switch (kind) {
            case 0:
                walker = {noise(), noise()};
                break;
            case 1:
                walker.X = WrapToCoord(walker.X + static_cast<std::int64_t>(random() % 5) - 2);
                walker.Y = WrapToCoord(walker.Y + static_cast<std::int64_t>(random() % 5) - 2);
                break;
            case 2:
                if (random() % 4 == 0) walker.X = noise();
                if (random() % 4 == 0) walker.Y = noise();
                break;
            default:
                walker = {random() % 2 ? MaxCoord : MinCoord, random() % 2 ? MaxCoord : MinCoord};
        }
        point = walker;
    }
    return points;
}

struct TOutput {
    std::vector<TLongPoint> points;
    std::size_t kept;
};

enum class TLoop { Map, Distinct, Turned };

TOutput RunLoop(TMappingRoad road, TLoop loop, const TLinearMap& map, const TMapTurn& turn,
                const std::vector<TPoint>& in) {
    CRoadScope scope(road);
    TOutput output{std::vector<TLongPoint>(in.size() + kBeyond, kUntouched), in.size()};
    TLongPoint* out = output.points.data();
    if (loop == TLoop::Map) MapPoints(map, in.data(), in.size(), out);
    if (loop == TLoop::Distinct) output.kept = MapDistinctPoints(map, in.data(), in.size(), out);
    if (loop == TLoop::Turned) MapTurnedPoints(map, turn, in.data(), in.size(), out);
    for (std::size_t i = in.size(); i < output.points.size(); ++i) {
        EXPECT_EQ(output.points[i], kUntouched) << "written beyond the end";
    }
    output.points.resize(output.kept);
    return output;
}

class MappingRoad : public testing::TestWithParam<TMappingRoad> {
protected:
    void SetUp() override {
        if (!IsMappingRoadAvailable(GetParam())) GTEST_SKIP() << "not on this processor";
    }

    void ExpectTwinsEqual(const TLinearMap& map, const TMapTurn& turn, const std::vector<TPoint>& in) {
        for (const TLoop loop : {TLoop::Map, TLoop::Distinct, TLoop::Turned}) {
            const TOutput plain = RunLoop(TMappingRoad::Plain, loop, map, turn, in);
            const TOutput fast = RunLoop(GetParam(), loop, map, turn, in);
            ASSERT_EQ(fast.kept, plain.kept) << "loop " << static_cast<int>(loop);
            for (std::size_t i = 0; i < plain.kept; ++i) {
                ASSERT_EQ(fast.points[i], plain.points[i]) << "loop " << static_cast<int>(loop) << " point "
                                                           << i << ": " << in[i].X << ", " << in[i].Y;
            }
        }
    }
};

TEST_P(MappingRoad, GivesTheBitsOfThePlainLoops) {
    std::mt19937 random(20240611);
    const auto pickOrigin = [&random] {
        return random() % 2 ? kHostileOrigins[random() % std::size(kHostileOrigins)]
                            : WrapToLong(static_cast<std::int64_t>(random()));
    };
    std::uniform_real_distribution<double> degrees(-400.0, 400.0);
    std::uniform_real_distribution<double> exponent(-7.0, 7.0);
    for (int round = 0; round < 60; ++round) {
        for (std::size_t size = 0; size <= 43; ++size) {
            const std::size_t count = size <= 40 ? size : 1000 * (size - 40) + size;
            if (count > 40 && round % 10 != 0) continue;
            const bool isHostile = random() % 3 != 0;
            const double k = isHostile ? kHostileFactors[random() % std::size(kHostileFactors)]
                                       : std::pow(10.0, exponent(random));
            const TLinearMap map{k, pickOrigin(), pickOrigin()};
            const double angle = random() % 4 ? degrees(random) : 90.0 * static_cast<double>(random() % 5);
            const double radians = angle * 3.141592653589793 / 180.0;
            TMapTurn turn{std::sin(radians), std::cos(radians), WrapToCoord(pickOrigin()),
                          WrapToCoord(pickOrigin())};
            if (random() % 50 == 0) turn.sine = random() % 2 ? kNaN : -1e200;
            if (random() % 50 == 0) turn.cosine = 1e200;
            const std::vector<TPoint> in = MakePoints(random, count);
            SCOPED_TRACE(testing::Message()
                         << std::hexfloat << "k " << k << " left " << map.left << " bottom " << map.bottom
                         << " sine " << turn.sine << " cosine " << turn.cosine << " pivot " << turn.pivotX
                         << ", " << turn.pivotY << " count " << count);
            ExpectTwinsEqual(map, turn, in);
            if (HasFatalFailure()) return;
        }
    }
}

struct TProjected {
    std::vector<TLongPoint> points;
    std::size_t read, kept;
};

TProjected RunProjection(TMappingRoad road, const TProjection& projection, double limit,
                         const std::vector<TPoint>& in) {
    CRoadScope scope(road);
    TProjected output{std::vector<TLongPoint>(2 * in.size() + kBeyond, kUntouched), 0, 0};
    TLongPoint* out = output.points.data();
    ProjectPoints(projection, in.data(), in.size(), out);
    out += in.size();
    output.read = ProjectPointsInFront(projection, limit, in.data(), in.size(), out, output.kept);
    std::fill(out + output.kept, out + in.size(), kUntouched);
    return output;
}

TEST_P(MappingRoad, GivesTheBitsOfThePlainLoopsInPerspective) {
    std::mt19937 random(20261121);
    std::uniform_real_distribution<double> number(-1.0, 1.0);
    for (int round = 0; round < 4000; ++round) {
        // From everyday views to transforms that lose every point.
        const double size = std::pow(10.0, round % 40 == 0 ? random() % 300 : random() % 8);
        TProjection p{number(random),        number(random),        number(random) * 1e4,
                      number(random),        number(random),        number(random) * 1e4,
                      number(random) * 1e-4, number(random) * 1e-4, 1.0};
        for (double* element : {&p.a, &p.b, &p.d, &p.e})
            *element *= size;
        if (random() % 8 == 0) p.i = 0.0;
        if (random() % 8 == 0) p.g = p.h = 0.0;
        if (random() % 50 == 0) p.c = random() % 2 ? kInfinity : kNaN;
        const std::vector<TPoint> in = MakePoints(random, random() % 40);
        const double limit = random() % 2 ? 1e-6 : 0.7;
        const TProjected plain = RunProjection(TMappingRoad::Plain, p, limit, in);
        const TProjected fast = RunProjection(GetParam(), p, limit, in);
        ASSERT_EQ(fast.read, plain.read) << "round " << round;
        ASSERT_EQ(fast.kept, plain.kept) << "round " << round;
        ASSERT_EQ(fast.points, plain.points) << "round " << round;
    }
}

// Every coordinate there is, where a half decides: the loops must agree on each tie and each sign.
TEST_P(MappingRoad, AgreesOnEveryCoordinateAtTheTies) {
    std::vector<TPoint> all;
    for (std::int32_t x = MinCoord; x <= MaxCoord; ++x)
        all.push_back({WrapToCoord(x), WrapToCoord(-x)});
    for (const double k : {0.5, 0.25, 1.5, 32768.5, 65536.0, 65537.0}) {
        SCOPED_TRACE(testing::Message() << "k " << k);
        ExpectTwinsEqual({k, 1, -1}, {1.0, 0.0, 5, -5}, all);
        ExpectTwinsEqual({k, 1, -1}, {0.0, -1.0, 5, -5}, all);  // the pivot itself gives a negative zero
        if (HasFatalFailure()) return;
    }
}

INSTANTIATE_TEST_SUITE_P(All, MappingRoad,
                         testing::Values(TMappingRoad::Sse2, TMappingRoad::Avx2, TMappingRoad::Avx512));

}  // namespace
}  // namespace zul
