// Random sequences of navigation.
#include <gtest/gtest.h>

#include <random>

#include "scaler_walk.h"

namespace zul {
namespace {

TEST(ScalerRandomWalk, KeepsTheViewConsistent) {
    constexpr int kSequences = 150, kSteps = 60;
    int limited = 0;
    for (int seed = 1; seed <= kSequences; ++seed) {
        std::mt19937 random(static_cast<std::uint32_t>(seed));
        const auto pick = [&random](std::int32_t low, std::int32_t high) {
            return std::uniform_int_distribution<std::int32_t>(low, high)(random);
        };
        CWalk walk(pick, [](bool holds, const char* what) { EXPECT_TRUE(holds) << what; });
        for (int step = 0; step < kSteps; ++step) {
            walk.Step();
            ASSERT_FALSE(HasFailure()) << "seed " << seed << " step " << step;
        }
        limited += walk.Limited;
    }
    EXPECT_GT(limited, kSequences) << "the limits are hardly met";
}

}  // namespace
}  // namespace zul
