#include "demo/Options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace kintar::demo {
namespace {

using ::testing::HasSubstr;

struct Call {
    int status = -1;
    std::optional<Options> options;
    std::string said;
    std::string complained;

    explicit Call(std::vector<const char*> arguments) {
        arguments.insert(arguments.begin(), "kintar-workstation");
        ::testing::internal::CaptureStdout();
        ::testing::internal::CaptureStderr();
        options = readOptions(static_cast<int>(arguments.size()), arguments.data(), status);
        said = ::testing::internal::GetCapturedStdout();
        complained = ::testing::internal::GetCapturedStderr();
    }
};

TEST(Options, HelpNeedsNeitherASiteNorADisplay) {
    const Call call({"--help"});
    EXPECT_FALSE(call.options);
    EXPECT_EQ(call.status, 0);
    EXPECT_THAT(call.said, HasSubstr("Exit status: 0"));
}

TEST(Options, ASiteMustBeNamed) {
    const Call call({});
    EXPECT_FALSE(call.options);
    EXPECT_EQ(call.status, 2);
    EXPECT_THAT(call.complained, HasSubstr("--site"));
}

TEST(Options, AMomentThatIsNoneIsRefused) {
    const Call call({"--site", "x", "--clock", "soon"});
    EXPECT_FALSE(call.options);
    EXPECT_EQ(call.status, 2);
    EXPECT_THAT(call.complained, HasSubstr("no moment such as 2012-03-14T17:05:00"));
}

TEST(Options, AreReadAsTheyAreGiven) {
    const Call call({"--site", "folder", "--scenario", "-", "--clock", "2012-03-14T17:05:00"});
    ASSERT_TRUE(call.options);
    EXPECT_EQ(call.options->site, "folder");
    EXPECT_EQ(call.options->scenario, "-");
    EXPECT_EQ(call.options->moment, QDateTime(QDate(2012, 3, 14), QTime(17, 5)));
}

TEST(Options, WithoutAClockEventsHappenNow) {
    const Call call({"--site", "folder"});
    ASSERT_TRUE(call.options);
    EXPECT_FALSE(call.options->moment.isValid());
    EXPECT_TRUE(call.options->scenario.empty());
}

} // namespace
} // namespace kintar::demo
