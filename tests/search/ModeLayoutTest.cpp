#include "search/ModeLayout.h"

#include <gtest/gtest.h>

namespace kintar::search {
namespace {

TEST(ModeLayout, BelowOneIsTheNarrowBrowsingDialog) {
    for (const std::int16_t mode : std::initializer_list<std::int16_t>{-32768, -1, 0}) {
        const ModeLayout layout = modeLayout(mode);
        EXPECT_EQ(layout.width, 4300) << mode;
        EXPECT_FALSE(layout.picking) << mode;
        EXPECT_FALSE(layout.cancelBesideOk) << mode;
        EXPECT_TRUE(layout.advancedSearch) << mode;
    }
}

TEST(ModeLayout, OneAndAboveIsTheWidePickingDialog) {
    for (const std::int16_t mode : std::initializer_list<std::int16_t>{1, 2, 3, 32767}) {
        const ModeLayout layout = modeLayout(mode);
        EXPECT_EQ(layout.width, 4815) << mode;
        EXPECT_TRUE(layout.picking) << mode;
        EXPECT_TRUE(layout.cancelBesideOk) << mode;
    }
}

TEST(ModeLayout, OnlyGuardTourSelectionOffersNoAdvancedSearch) {
    EXPECT_FALSE(modeLayout(2).advancedSearch);
    EXPECT_TRUE(modeLayout(1).advancedSearch);
    EXPECT_TRUE(modeLayout(3).advancedSearch);
}

} // namespace
} // namespace kintar::search
