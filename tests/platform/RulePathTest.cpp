#include "platform/Platform.h"

#include <gtest/gtest.h>

namespace kintar::platform {
namespace {

TEST(RulePath, WritesThePlatformsOwnSeparators) {
    EXPECT_EQ(rulePath("/site", R"(\Errors\KintrAscii.txt)"), "/site/Errors/KintrAscii.txt");
}

TEST(RulePath, LeavesTheBaseAsItIs) {
    EXPECT_EQ(rulePath(R"(/a\b)", R"(\c)"), R"(/a\b/c)");
}

} // namespace
} // namespace kintar::platform
