#include "display/EventText.h"

#include <gtest/gtest.h>

namespace kintar {
namespace {

TEST(EventText, WritesTheCaptionWithTheLastNameFirst) {
    EXPECT_EQ(eventCaption("Smith", "John"), "Smith, John");
    EXPECT_EQ(eventCaption("", ""), ", ");
}

TEST(EventText, PutsTwoBlanksBetweenTheParts) {
    EXPECT_EQ(eventLine("5:05:00 PM", "Valid Access"), "5:05:00 PM  Valid Access");
    EXPECT_EQ(placeLine("Main Door", "Head Office"), "Main Door  Head Office");
}

TEST(EventText, NamesTheRightOfTheLocationGroup) {
    EXPECT_EQ(cardRight(3), "L3M2");
    EXPECT_EQ(cardRight(-1), "L-1M2");
}

TEST(EventText, ComposesThePhotoStatement) {
    EXPECT_EQ(photoStatement(12, 3),
              "SELECT FileName FROM Images WHERE NameID = 12 AND ImgType = 3");
    EXPECT_EQ(photoStatement(-2147483648, -32768),
              "SELECT FileName FROM Images WHERE NameID = -2147483648 AND ImgType = -32768");
}

} // namespace
} // namespace kintar
