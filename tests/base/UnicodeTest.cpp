#include "base/Unicode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <random>
#include <string>
#include <unicode/coll.h>
#include <unicode/unistr.h>
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
    using ::testing::UnorderedElementsAre;
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
    EXPECT_THAT(names, ::testing::ElementsAre("angle", "Ångström", "Éclair", "eclipse", "O'Brien",
                                              "Obrien", "Zoe", "Zoë", "Ωmega", "Иван"));
}

TEST(Unicode, SortKeysAreEqualExactlyWhereCaseAloneDiffers) {
    EXPECT_EQ(sortKey("SMITH"), sortKey("smith"));
    EXPECT_NE(sortKey("Smith"), sortKey("Smyth"));
    // Canonically equal, yet other code points: the collation holds them equal, the key does not.
    EXPECT_NE(sortKey("\u00E9"), sortKey("e\u0301"));
    EXPECT_LT(sortKey("a"), sortKey("ab"));
}

TEST(Unicode, SortKeysAreThoseOfTheCollationWhateverTheText) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Collator> collator(
        icu::Collator::createInstance(icu::Locale::getRoot(), status));
    const std::string characters = "abcdefghijklmnopqrstuvwxyz0123456789 -'.,_|~\x01\x1f\x7f";
    std::mt19937 random(20120314);
    const auto upTo = [&random](std::size_t most) {
        return std::uniform_int_distribution<std::size_t>(0, most)(random);
    };
    for (int round = 0; round < 20000; ++round) {
        // Mostly plain letters, as names are, of lengths on both sides of what is kept ready.
        const std::size_t last = std::array{25UL, 35UL, characters.size() - 1}.at(upTo(2));
        std::string text;
        for (std::size_t length = upTo(80); length > 0; --length) {
            text += characters[upTo(last)];
        }
        std::array<std::uint8_t, 1024> key{};
        const int length = collator->getSortKey(icu::UnicodeString::fromUTF8(text), key.data(),
                                                static_cast<int>(key.size()));
        ASSERT_EQ(sortKey(text), std::string(key.begin(), key.begin() + length) + text) << text;
    }
}

TEST(Unicode, SortKeysHoldForVeryLongTexts) {
    const std::string longText(5000, 'x');
    EXPECT_LT(sortKey(longText + "a"), sortKey(longText + "b"));
}

} // namespace
} // namespace kintar::unicode
