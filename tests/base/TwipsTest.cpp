#include "base/Twips.h"

#include <gtest/gtest.h>

namespace kintar {
namespace {

TEST(Twips, FifteenAreOnePixel) {
    EXPECT_EQ(pixelsFromTwips(3000), 200);
    EXPECT_EQ(twipsFromPixels(200), 3000);
}

TEST(Twips, PixelsAreRoundedAlsoLeftOfTheScreen) {
    EXPECT_EQ(pixelsFromTwips(7), 0);
    EXPECT_EQ(pixelsFromTwips(8), 1);
    EXPECT_EQ(pixelsFromTwips(-7), 0);
    EXPECT_EQ(pixelsFromTwips(-8), -1);
}

TEST(Twips, WholePixelsComeBackUnchanged) {
    for (int pixels = -3000; pixels <= 3000; ++pixels) {
        ASSERT_EQ(pixelsFromTwips(twipsFromPixels(pixels)), pixels);
    }
}

} // namespace
} // namespace kintar
