#include "tools/site/Random.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <span>

namespace kintar::site {
namespace {

TEST(Random, GivesTheSameChoicesOnEveryMachine) {
    Random random(1, "person", 17);
    EXPECT_EQ(random.between(0, 999999), 723826);
    EXPECT_EQ(random.between(0, 999999), 762976);
    EXPECT_EQ(random.between(0, 999999), 217250);
}

TEST(Random, DependsOnSeedPurposeAndNumber) {
    const std::uint64_t base = Random(1, "person", 17).below(1ULL << 60U);
    EXPECT_EQ(Random(1, "person", 17).below(1ULL << 60U), base);
    EXPECT_NE(Random(2, "person", 17).below(1ULL << 60U), base);
    EXPECT_NE(Random(1, "photo", 17).below(1ULL << 60U), base);
    EXPECT_NE(Random(1, "person", 18).below(1ULL << 60U), base);
}

TEST(Random, StaysBetweenItsBounds) {
    Random random(5, "bounds");
    std::map<int, int> seen;
    for (int i = 0; i < 10000; ++i) {
        ++seen[random.between(-3, 3)];
    }
    EXPECT_EQ(seen.size(), 7U);
    EXPECT_EQ(seen.begin()->first, -3);
    EXPECT_EQ(seen.rbegin()->first, 3);
    for (const auto& [value, count] : seen) {
        EXPECT_NEAR(count, 10000 / 7, 200) << value;
    }
}

TEST(Random, ChoosesByShareOfAHundred) {
    Random random(5, "share");
    int hits = 0;
    for (int i = 0; i < 10000; ++i) {
        hits += random.percent(30) ? 1 : 0;
    }
    EXPECT_NEAR(hits, 3000, 200);
    EXPECT_FALSE(random.percent(0));
    EXPECT_TRUE(random.percent(100));
}

TEST(Random, PicksEveryElementOfAList) {
    Random random(5, "pick");
    const std::array<int, 3> list{4, 5, 6};
    std::map<int, int> seen;
    for (int i = 0; i < 300; ++i) {
        ++seen[random.pick(std::span(list))];
    }
    EXPECT_EQ(seen.size(), 3U);
}

} // namespace
} // namespace kintar::site
