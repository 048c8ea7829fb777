#include "tools/site/Findings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar::site {
namespace {

using ::testing::ElementsAre;

TEST(Findings, AreLinesOfPlaceAndWords) {
    Findings findings;
    EXPECT_TRUE(findings.empty());
    findings.add("Errors", "the folder is missing");
    EXPECT_FALSE(findings.empty());
    EXPECT_THAT(findings.lines(), ElementsAre("Errors: the folder is missing"));
}

TEST(Findings, CountWhatIsTooMuchForOnePlace) {
    Findings findings;
    for (int i = 0; i < 1000; ++i) {
        findings.add("Images", "missing");
    }
    findings.add("Loc", "other");
    const std::vector<std::string> lines = findings.lines();
    ASSERT_EQ(lines.size(), 22U);
    EXPECT_EQ(lines[20], "Loc: other");
    EXPECT_EQ(lines[21], "Images: and 980 more");
}

TEST(Findings, KeepLineBreaksAndEscapesOfASiteOffTheScreen) {
    Findings findings;
    findings.add("Images", "name\nLoc: forged\x1b[31m\xff");
    EXPECT_THAT(findings.lines(), ElementsAre("Images: name?Loc: forged?[31m\xEF\xBF\xBD"));
}

TEST(Findings, CutLinesThatAreTooLong) {
    Findings findings;
    findings.add("Images", std::string(100000, 'x'));
    EXPECT_LT(findings.lines().at(0).size(), 500U);
}

} // namespace
} // namespace kintar::site
