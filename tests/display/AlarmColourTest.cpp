#include "display/AlarmColour.h"

#include <gtest/gtest.h>

#include <limits>

namespace kintar::display {
namespace {

TEST(AlarmColour, HasRedInItsLowByte) {
    EXPECT_EQ(colourOf(0x000000FF), (Rgb{255, 0, 0}));
    EXPECT_EQ(colourOf(0x00FF8001), (Rgb{1, 128, 255}));
    EXPECT_EQ(colourOf(0x7F000000), (Rgb{0, 0, 0}));
}

TEST(AlarmColour, IsASystemColourByIndexWhereNegative) {
    EXPECT_EQ(systemColourIndex(0), std::nullopt);
    EXPECT_EQ(systemColourIndex(0x00FFFFFF), std::nullopt);
    EXPECT_EQ(systemColourIndex(std::numeric_limits<std::int32_t>::min()), 0);
    EXPECT_EQ(systemColourIndex(std::numeric_limits<std::int32_t>::min() + 18), 18);
    EXPECT_EQ(systemColourIndex(-1), 255);
}

TEST(AlarmColour, HasTheKnownContrasts) {
    EXPECT_DOUBLE_EQ(contrast({0, 0, 0}, {255, 255, 255}), 21.0);
    EXPECT_DOUBLE_EQ(contrast({10, 20, 30}, {10, 20, 30}), 1.0);
    EXPECT_NEAR(contrast({255, 0, 0}, {255, 255, 255}), 3.998, 0.001);
}

TEST(AlarmColour, KeepsThePreferredBackgroundWhereTheTextCanBeReadOnIt) {
    const Rgb grey{239, 239, 239};
    EXPECT_EQ(readableBackground({0, 0, 0}, grey), grey);
    EXPECT_EQ(readableBackground({180, 0, 0}, grey), grey);
}

TEST(AlarmColour, TakesWhiteOrBlackWhereThePreferredBackgroundIsTooClose) {
    EXPECT_EQ(readableBackground({110, 110, 110}, {200, 200, 200}), (Rgb{255, 255, 255}));
    EXPECT_EQ(readableBackground({255, 255, 0}, {239, 239, 239}), (Rgb{0, 0, 0}));
    EXPECT_EQ(readableBackground({255, 255, 255}, {255, 255, 255}), (Rgb{0, 0, 0}));
}

TEST(AlarmColour, CanBeReadWhateverItIs) {
    for (int red = 0; red < 256; red += 15) {
        for (int green = 0; green < 256; green += 15) {
            for (int blue = 0; blue < 256; blue += 15) {
                const Rgb text{static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green),
                               static_cast<std::uint8_t>(blue)};
                const Rgb background = readableBackground(text, {128, 128, 128});
                ASSERT_GE(contrast(text, background), 4.5) << red << ' ' << green << ' ' << blue;
            }
        }
    }
}

} // namespace
} // namespace kintar::display
