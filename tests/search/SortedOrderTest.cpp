#include "search/SortedOrder.h"

#include <gtest/gtest.h>

namespace kintar::search {
namespace {

using Order = std::vector<std::uint32_t>;

Order orderOf(const std::vector<std::string>& texts) {
    const std::atomic<bool> never = false;
    return sortedOrder(
        texts.size(), [&](std::size_t row) { return std::string_view(texts.at(row)); }, never);
}

TEST(SortedOrder, IsAscendingWithoutRegardToCase) {
    EXPECT_EQ(orderOf({"beta", "Alpha", "GAMMA", "alpine"}), (Order{1, 3, 0, 2}));
    EXPECT_EQ(orderOf({"\xC3\x96zil", "\xC3\xB6ze", "Ozz"}), (Order{1, 0, 2})); // Özil, öze
}

TEST(SortedOrder, KeepsTheOrderOfEqualTexts) {
    EXPECT_EQ(orderOf({"b", "a", "B", "A", "b"}), (Order{1, 3, 0, 2, 4}));
}

TEST(SortedOrder, PutsEmptyTextsFirst) {
    EXPECT_EQ(orderOf({"x", "", "a", ""}), (Order{1, 3, 2, 0}));
}

TEST(SortedOrder, TellsTextsApartBehindTheirFirstBytes) {
    EXPECT_EQ(orderOf({"a very long name, number 2", "a very long name, number 1",
                       "a very long name, number"}),
              (Order{2, 1, 0}));
}

TEST(SortedOrder, IsRightForManyDifferentTexts) {
    std::vector<std::string> texts;
    for (int i = 0; i < 3000; ++i) {
        texts.push_back("name " + std::to_string(10000 + (i * 7919) % 3000));
    }
    const Order order = orderOf(texts);
    ASSERT_EQ(order.size(), texts.size());
    for (std::size_t i = 1; i < order.size(); ++i) {
        EXPECT_LT(texts.at(order[i - 1]), texts.at(order[i]));
    }
}

TEST(SortedOrder, AsksForNoMoreTextsOnceItIsToStop) {
    std::atomic<bool> stop = false;
    std::size_t asked = 0;
    const Order order = sortedOrder(
        1000,
        [&](std::size_t) -> std::string_view {
            stop = ++asked == 3;
            return "x";
        },
        stop);
    EXPECT_TRUE(order.empty());
    EXPECT_EQ(asked, 3U);
}

TEST(SortedOrder, OfNothingIsNothing) {
    EXPECT_TRUE(orderOf({}).empty());
}

} // namespace
} // namespace kintar::search
