#include <cmath>
#include <ctime>
#include <limits>
#include <random>

#include "tests/store/store_testing.h"

namespace zul {
namespace {

using IndexTest = StoreTest;

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

bool Touch(const TWorldBox& a, const TWorldBox& b) {
    return a.MinX <= b.MaxX && a.MaxX >= b.MinX && a.MinY <= b.MaxY && a.MaxY >= b.MinY;
}

// Judged by looking at every box: none is missing, and one too many is near.
TEST_F(IndexTest, AnswersWhatTouchesTheBoxAndHardlyMore) {
    struct TPlaced {
        CObjectID Id;
        TWorldBox Box;
        std::uint32_t Layer;
    };
    std::mt19937 random(3);
    std::uniform_real_distribution<double> place(-180.0, 180.0);
    std::exponential_distribution<double> size(1.0);
    std::vector<TPlaced> all;
    {
        CNamedTransaction transaction;
        for (int i = 0; i < 3000; ++i) {
            CNode node(i);
            const double x = place(random), y = place(random);
            all.push_back({m_Store.Store(&node),
                           {x, y, x + size(random), y + size(random)},
                           static_cast<std::uint32_t>(random() % 4)});
            ASSERT_TRUE(m_Store.Place(all.back().Id, all.back().Box, all.back().Layer));
        }
        ASSERT_TRUE(transaction.Commit());
    }
    constexpr double Slack = 180.0 / (1 << 23);
    for (int i = 0; i < 300; ++i) {
        const double x = place(random), y = place(random);
        const TWorldBox asked{x, y, x + 3 * size(random), y + 3 * size(random)};
        const TWorldBox wider{asked.MinX - Slack, asked.MinY - Slack, asked.MaxX + Slack, asked.MaxY + Slack};
        const auto first = static_cast<std::uint32_t>(random() % 4);
        std::vector<CObjectID> least, most;
        for (const TPlaced& each : all) {
            if (each.Layer < first || each.Layer > 2) continue;
            if (Touch(each.Box, asked)) least.push_back(each.Id);
            if (Touch(each.Box, wider)) most.push_back(each.Id);
        }
        const auto found = m_Store.FindInBox(asked, first, 2);
        const auto inOrder = [](CObjectID a, CObjectID b) { return a.GetValue() < b.GetValue(); };
        EXPECT_TRUE(std::includes(found.begin(), found.end(), least.begin(), least.end(), inOrder)) << i;
        EXPECT_TRUE(std::includes(most.begin(), most.end(), found.begin(), found.end(), inOrder)) << i;
    }
    EXPECT_EQ(m_Store.FindInBox({-Infinity, -Infinity, Infinity, Infinity}).size(), all.size());
    TWorldBox bounds;
    ASSERT_TRUE(m_Store.GetBounds(bounds));
    for (const TPlaced& each : all)
        EXPECT_TRUE(bounds.MinX <= each.Box.MinX && bounds.MaxY >= each.Box.MaxY);
    EXPECT_FALSE(m_Store.GetBounds(bounds, 4));
}

// A tree that grew badly would look nearly everywhere.
TEST_F(IndexTest, AWindowCostsLittleBesideTheWhole) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> place(0.0, 100.0);
    {
        CNamedTransaction transaction;
        for (int i = 0; i < 20'000; ++i) {
            CNode each;
            const double x = place(random), y = place(random);
            m_Store.Place(m_Store.Store(&each), {x, y, x + 0.1, y + 0.1}, 1);
        }
        ASSERT_TRUE(transaction.Commit());
    }
    const CStoreReading reading(m_Store);
    const auto timeOf = [&](double side) {
        constexpr int Rounds = 40;
        const std::clock_t start = std::clock();
        for (int i = 0; i < Rounds; ++i)
            EXPECT_FALSE(m_Store.FindInBox({20, 30, 20 + side, 30 + side}).empty());
        return std::clock() - start;
    };
    timeOf(100);
    EXPECT_LT(timeOf(3) * 20, timeOf(100));
}

TEST_F(IndexTest, ANewPlaceReplacesTheOldAndRemovingLeavesNone) {
    CNode node;
    const CObjectID id = m_Store.Store(&node);
    ASSERT_TRUE(m_Store.Place(id, {0, 0, 1, 1}));
    ASSERT_TRUE(m_Store.Place(id, {5, 5, 5, 5}, CStore::MaxLayer));
    EXPECT_TRUE(m_Store.FindInBox({0, 0, 2, 2}).empty());
    EXPECT_EQ(m_Store.FindInBox({5, 5, 5, 5}, CStore::MaxLayer).size(), 1u);
    EXPECT_TRUE(m_Store.FindInBox({5, 5, 5, 5}, 0, CStore::MaxLayer - 1).empty());
    EXPECT_TRUE(m_Store.RemovePlace(id));
    EXPECT_FALSE(m_Store.RemovePlace(id));
    ASSERT_TRUE(m_Store.Place(id, {0, 0, 1, 1}));
    EXPECT_TRUE(m_Store.Remove(id));
    EXPECT_TRUE(m_Store.FindInBox({0, 0, 2, 2}).empty());
}

TEST_F(IndexTest, BadPlacesAreRefusedAndBadBoxesFindNothing) {
    CNode node;
    const CObjectID id = m_Store.Store(&node);
    const TWorldBox bad[] = {{1, 0, 0, 1},          {0, 1, 1, 0},    {NotANumber, 0, 1, 1},
                             {0, 0, 1, NotANumber}, {0, 0, 1e31, 1}, {-Infinity, 0, 1, 1},
                             {0, -1e31, 1, 1}};
    for (const TWorldBox& box : bad) {
        EXPECT_FALSE(m_Store.Place(id, box));
        EXPECT_NE(m_Reports.Take(), "");
    }
    EXPECT_FALSE(m_Store.Place(id, {0, 0, 1, 1}, CStore::MaxLayer + 1));
    EXPECT_FALSE(m_Store.Place(CObjectID(id.GetValue() + 1), {0, 0, 1, 1}));
    EXPECT_NE(m_Reports.Take(), "");
    ASSERT_TRUE(m_Store.Place(id, {0, 0, 1, 1}));
    EXPECT_TRUE(m_Store.FindInBox({NotANumber, 0, 1, 1}).empty());
    EXPECT_TRUE(m_Store.FindInBox({1, 1, 0, 0}).empty());
    EXPECT_TRUE(m_Store.FindInBox({0, 0, 1, 1}, 2, 1).empty());
}

}  // namespace
}  // namespace zul
