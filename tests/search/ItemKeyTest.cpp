#include "search/ItemKey.h"

#include "base/RunTimeError.h"

#include <gtest/gtest.h>

namespace kintar::search {
namespace {

TEST(ItemKey, IsTheNumberAndTheLettersID) {
    EXPECT_EQ(nameKey("1234"), "1234ID");
    EXPECT_EQ(nameKey(""), "ID");
}

TEST(ItemKey, GivesItsLeadingNumberBack) {
    EXPECT_EQ(idOfKey("1234ID"), 1234);
    EXPECT_EQ(idOfKey("-5ID"), -5);
    EXPECT_EQ(idOfKey("ID"), 0);
    EXPECT_EQ(idOfKey(""), 0);
    EXPECT_EQ(idOfKey(nameKey("2147483647")), 2147483647);
}

TEST(ItemKey, BeyondThirtyTwoBitsOverflows) {
    EXPECT_THROW(idOfKey("2147483648ID"), RunTimeError);
}

} // namespace
} // namespace kintar::search
