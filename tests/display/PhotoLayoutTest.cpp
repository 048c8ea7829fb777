#include "display/PhotoLayout.h"

#include <gtest/gtest.h>

namespace kintar {
namespace {

constexpr PhotoLayoutInput usual{200, 251, 177, 16, 16, 80, 21};

int bottom(const Area& area) {
    return area.top + area.height;
}

TEST(PhotoLayout, GivesThePhotoItsHeightAndTheWholeWidth) {
    const PhotoLayout layout = photoLayout(usual);
    EXPECT_EQ(layout.lead1, (Area{0, 0, 200, 177}));
    EXPECT_LE(bottom(layout.lblEnable), 251);
}

TEST(PhotoLayout, PutsTheTextsBelowThePhotoAndTheCommandsBelowThose) {
    const PhotoLayout layout = photoLayout(usual);
    EXPECT_GE(layout.lblName.top, bottom(layout.lead1));
    EXPECT_GE(layout.label1.top, bottom(layout.lblName));
    EXPECT_GE(layout.label2.top, bottom(layout.label1));
    EXPECT_GE(layout.lblEnable.top, bottom(layout.label2));
    EXPECT_EQ(layout.lblEnable.top, layout.lblDisAble.top);
    EXPECT_GT(layout.lblDisAble.left, layout.lblEnable.left + layout.lblEnable.width);
}

TEST(PhotoLayout, PutsTheCommandsOneAboveTheOtherWhereTheyDoNotFit) {
    PhotoLayoutInput input = usual;
    input.commandWidth = 120;
    const PhotoLayout layout = photoLayout(input);
    EXPECT_GE(layout.lblDisAble.top, bottom(layout.lblEnable));
    EXPECT_LE(bottom(layout.lblDisAble), 251);
    EXPECT_EQ(layout.lblDisAble.width, layout.lblEnable.width);
}

TEST(PhotoLayout, TakesRoomFromThePhotoForLargerLetters) {
    PhotoLayoutInput input = usual;
    input.lineHeight = 40;
    const PhotoLayout layout = photoLayout(input);
    EXPECT_LT(layout.lead1.height, 177);
    EXPECT_LE(bottom(layout.lblDisAble), 251);
}

TEST(PhotoLayout, NeverGivesAnythingANegativeSize) {
    for (const int side : {0, 1, 5, 40}) {
        const PhotoLayout layout = photoLayout({side, side, 177, 16, 16, 80, 21});
        for (const Area& area : {layout.lead1, layout.lblName, layout.label1, layout.label2,
                                 layout.lblEnable, layout.lblDisAble, layout.lblStatus}) {
            EXPECT_GE(area.width, 0);
            EXPECT_GE(area.height, 0);
        }
    }
}

TEST(PhotoLayout, LeavesAStripOfThePhotoAtItsLeastHeight) {
    PhotoLayoutInput input = usual;
    input.height = leastPhotoHeight(input);
    const PhotoLayout layout = photoLayout(input);
    EXPECT_GE(layout.lead1.height, 32);
    EXPECT_LE(bottom(layout.lblDisAble), input.height);
}

} // namespace
} // namespace kintar
