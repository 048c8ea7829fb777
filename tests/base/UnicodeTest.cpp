#include "base/Unicode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace kintar::unicode {
namespace {

TEST(Unicode, FoldsCaseInEveryScript) {
    EXPECT_EQ(fold("O'Brien"), "o'brien");
    EXPECT_EQ(fold("ÖSTERREICH"), fold("österreich"));
    EXPECT_EQ(fold("ΣΊΣΥΦΟΣ"), fold("σίσυφος"));
    EXPECT_EQ(fold("ИВАН"), fold("иван"));
    EXPECT_NE(fold("ß"), fold("ss"));
    EXPECT_EQ(fold("ẞ"), fold("ß"));
    EXPECT_NE(fold("İ"), fold("i"));
}

TEST(Unicode, AByteThatIsNoTextBecomesTheReplacementCharacter) {
    EXPECT_EQ(fold("a\xFFz"), "a\xEF\xBF\xBDz");
    EXPECT_EQ(toValidUtf8("A\xC3(\xE2\x82"), "A\xEF\xBF\xBD(\xEF\xBF\xBD");
    EXPECT_EQ(toValidUtf8("Zoë"), "Zoë");
    EXPECT_EQ(toValidUtf8(std::string_view("a\0b", 3)), std::string_view("a\0b", 3));
}

TEST(Unicode, CaseVariantsAreAllThatFoldAlike) {
    using testing::UnorderedElementsAre;
    EXPECT_THAT(caseVariants(U'm'), UnorderedElementsAre(U'm', U'M'));
    EXPECT_THAT(caseVariants(U's'), UnorderedElementsAre(U's', U'S', U'\u017F'));
    EXPECT_THAT(caseVariants(U'K'), UnorderedElementsAre(U'k', U'K', U'\u212A'));
    EXPECT_THAT(caseVariants(U'Σ'), UnorderedElementsAre(U'Σ', U'σ', U'ς'));
    EXPECT_THAT(caseVariants(U'7'), UnorderedElementsAre(U'7'));
    EXPECT_THAT(caseVariants(U'ß'), UnorderedElementsAre(U'ß', U'ẞ'));
}

TEST(Unicode, SortKeysOrderNamesAsPeopleExpect) {
    std::vector<std::string> names = {"Zoë",    "Ångström", "angle",   "Zoe",  "O'Brien",
                                      "Obrien", "Éclair",   "eclipse", "Иван", "Ωmega"};
    std::ranges::sort(names, {}, [](const std::string& name) { return sortKey(name); });
    EXPECT_THAT(names, testing::ElementsAre("angle", "Ångström", "Éclair", "eclipse", "O'Brien",
                                            "Obrien", "Zoe", "Zoë", "Ωmega", "Иван"));
}

TEST(Unicode, SortKeysAreEqualExactlyWhereCaseAloneDiffers) {
    EXPECT_EQ(sortKey("SMITH"), sortKey("smith"));
    EXPECT_NE(sortKey("Smith"), sortKey("Smyth"));
    // Canonically equal, yet other code points: the collation holds them equal, the key does not.
    EXPECT_NE(sortKey("\u00E9"), sortKey("e\u0301"));
    EXPECT_LT(sortKey("a"), sortKey("ab"));
}

TEST(Unicode, SortKeysHoldForVeryLongTexts) {
    const std::string longText(5000, 'x');
    EXPECT_LT(sortKey(longText + "a"), sortKey(longText + "b"));
}

} // namespace
} // namespace kintar::unicode
