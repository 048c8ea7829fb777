#include "tools/site/SiteSummary.h"

#include "TestSite.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace kintar::site {
namespace {

using ::testing::HasSubstr;
using testing::TestSite;

TEST(SiteSummary, SaysInJsonWhatWasMade) {
    const TestSite made;
    const nlohmann::json json =
        nlohmann::json::parse(summaryJson({made.folder, made.options, made.counts}));
    EXPECT_EQ(json["site"], made.folder.string());
    EXPECT_EQ(json["rows"]["Names"], 60);
    EXPECT_EQ(json["operators"].size(), 7U);
    EXPECT_EQ(json["people"]["withPhoto"]["name"], "Lindqvist, Astrid");
    EXPECT_EQ(json["people"]["withoutPhoto"]["id"], 3);
    EXPECT_EQ(json["people"]["missingPhoto"]["id"], 5);
    EXPECT_EQ(json["people"]["rightToLeft"]["id"], 4);
}

TEST(SiteSummary, SaysInLinesWhatWasMade) {
    const TestSite made;
    const std::string text = summaryText({made.folder, made.options, made.counts});
    EXPECT_THAT(text, HasSubstr("rows of Names: 60\n"));
    EXPECT_THAT(text, HasSubstr("now: 2026-03-14T17:00:00\n"));
    EXPECT_THAT(text, HasSubstr("person with a photo: 1, group 1, Lindqvist, Astrid\n"));
    EXPECT_THAT(text, HasSubstr("operator 6: no rights at all\n"));
}

TEST(SiteSummary, NamesNobodyWhomTheSiteDoesNotHave) {
    const TestSite made(2);
    const nlohmann::json json =
        nlohmann::json::parse(summaryJson({made.folder, made.options, made.counts}));
    EXPECT_TRUE(json["people"].contains("withPhoto"));
    EXPECT_FALSE(json["people"].contains("rightToLeft"));
}

} // namespace
} // namespace kintar::site
