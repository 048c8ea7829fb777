#include "platform/Placement.h"

#include "base/Twips.h"
#include "support/FakeSettings.h"

#include <gtest/gtest.h>

#include <limits>

namespace kintar::platform {
namespace {

using testing::FakeSettings;

constexpr Placement usual{0, 0, 3000, 3765};
constexpr ScreenArea screen{0, 0, 28800, 16200};
constexpr ScreenArea rightScreen{28800, 0, 28800, 16200};

TEST(Placement, ReadsItsFourKeysAndTheirDefaults) {
    FakeSettings settings;
    EXPECT_EQ(readPlacement(settings, "S", usual), usual);
    settings.save("S", "Left", "150");
    settings.save("S", "Height", " 4500.4 ");
    EXPECT_EQ(readPlacement(settings, "S", usual), (Placement{150, 0, 3000, 4500}));
}

TEST(Placement, ReadsHostileValuesAsNumbersAWindowCanHave) {
    FakeSettings settings;
    const auto twips = [&](const std::string& text) {
        settings.save("S", "Left", text);
        return settingTwips(settings, "S", "Left", 7);
    };
    EXPECT_EQ(twips("1e300"), 3000000);
    EXPECT_EQ(twips("-99999999999999999999"), -3000000);
    EXPECT_EQ(twips("1e999"), 7);
    EXPECT_EQ(twips("left"), 0);
    EXPECT_EQ(twips(""), 0);
    EXPECT_EQ(twips(std::string("\0"
                                "5",
                                2)),
              0);
    EXPECT_EQ(twips("nan"), 0);
}

TEST(Placement, SavesWhatItReads) {
    FakeSettings settings;
    const Placement placement{-150, 45, 3000, 3765};
    savePlacement(settings, "S", placement);
    EXPECT_EQ(readPlacement(settings, "S", usual), placement);
}

TEST(Placement, StaysWhereItLiesWithinAScreen) {
    for (const Placement& placement :
         {usual, Placement{25800, 12435, 3000, 3765}, Placement{30000, 100, 3000, 3765}}) {
        EXPECT_EQ(keptOnScreen(placement, {screen, rightScreen}), placement);
    }
}

TEST(Placement, IsMovedBackInsideWhereItHangsOut) {
    EXPECT_EQ(keptOnScreen({28000, 15000, 3000, 3765}, {screen}),
              (Placement{25800, 12435, 3000, 3765}));
    EXPECT_EQ(keptOnScreen({-500, -20, 3000, 3765}, {screen}), (Placement{0, 0, 3000, 3765}));
}

TEST(Placement, ComesBackWhenItsMonitorHasGone) {
    EXPECT_EQ(keptOnScreen({30000, 100, 3000, 3765}, {screen}),
              (Placement{25800, 100, 3000, 3765}));
}

TEST(Placement, IsKeptOnTheScreenItOverlapsMost) {
    EXPECT_EQ(keptOnScreen({27000, 100, 3000, 3765}, {screen, rightScreen}),
              (Placement{25800, 100, 3000, 3765}));
    EXPECT_EQ(keptOnScreen({28000, 100, 3000, 3765}, {screen, rightScreen}),
              (Placement{28800, 100, 3000, 3765}));
}

TEST(Placement, IsCutToTheScreen) {
    EXPECT_EQ(keptOnScreen({100, 100, 3000000, 3000000}, {screen}),
              (Placement{0, 0, 28800, 16200}));
}

TEST(Placement, StaysWhereNoScreenIsKnown) {
    EXPECT_EQ(keptOnScreen({30000, 100, 3000, 3765}, {}), (Placement{30000, 100, 3000, 3765}));
}

TEST(Placement, MovesNothingInTenRoundsOfSavingAndRestoring) {
    for (const int start : {0, 7, 8, 100, -7, -8, 1234}) {
        int pixels = pixelsFromTwips(start);
        const int first = pixels;
        for (int round = 0; round < 10; ++round) {
            pixels = pixelsFromTwips(twipsFromPixels(pixels));
        }
        EXPECT_EQ(pixels, first) << start;
    }
}

} // namespace
} // namespace kintar::platform
