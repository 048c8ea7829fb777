#include "companion/dialect/LikePattern.h"

#include <gtest/gtest.h>

namespace kintar::companion::dialect {
namespace {

bool matches(std::string_view text, std::string_view pattern) {
    return LikePattern(pattern).matches(text);
}

TEST(LikePattern, PercentStandsForAnyCharactersAndNone) {
    EXPECT_TRUE(matches("", "%"));
    EXPECT_TRUE(matches("abc", "a%"));
    EXPECT_TRUE(matches("a", "a%"));
    EXPECT_TRUE(matches("xabcx", "%abc%"));
    EXPECT_TRUE(matches("aab", "%ab"));
    EXPECT_TRUE(matches("mississippi", "m%iss%ip%"));
    EXPECT_FALSE(matches("mississippi", "m%iss%iz%"));
    EXPECT_FALSE(matches("b", "a%"));
}

TEST(LikePattern, PercentManyTimesIsPercentOnce) {
    EXPECT_TRUE(matches("", "%%%"));
    EXPECT_TRUE(matches("xab", "%%b%%"));
    EXPECT_FALSE(matches("xab", "%%c%%"));
    EXPECT_EQ(LikePattern("ab%%%").elements().size(), 3U);
}

TEST(LikePattern, UnderscoreStandsForOneCharacterWhateverItsBytes) {
    EXPECT_TRUE(matches("Ω", "_"));
    EXPECT_TRUE(matches("a\U0001F600b", "a_b"));
    EXPECT_FALSE(matches("", "_"));
    EXPECT_FALSE(matches("ab", "_"));
}

TEST(LikePattern, IgnoresCaseForAllOfUnicode) {
    EXPECT_TRUE(matches("ΓΙΏΡΓΟΣ", "γιώργος"));
    EXPECT_TRUE(matches("straße", "STRASSE") == false) << "one letter is not two";
    EXPECT_TRUE(matches("STRAẞE", "straße"));
    EXPECT_TRUE(matches("\u212Aelvin", "kel%"));
    EXPECT_TRUE(matches("ſmith", "S%"));
    EXPECT_FALSE(matches("İ", "i"));
    EXPECT_FALSE(matches("ı", "I"));
}

TEST(LikePattern, ListsTakeRangesAndSingleCharacters) {
    EXPECT_TRUE(matches("b", "[a-c]"));
    EXPECT_TRUE(matches("B", "[a-c]"));
    EXPECT_TRUE(matches("b", "[A-C]"));
    EXPECT_TRUE(matches("x", "[a-cx]"));
    EXPECT_TRUE(matches("-", "[a-]"));
    EXPECT_TRUE(matches("-", "[-a]"));
    EXPECT_TRUE(matches("δ", "[α-ω]"));
    EXPECT_TRUE(matches("Δ", "[α-ω]"));
    EXPECT_FALSE(matches("d", "[a-c]"));
    EXPECT_FALSE(matches("b", "[c-a]")) << "a range runs upwards";
}

TEST(LikePattern, ListsCanBeNegated) {
    EXPECT_TRUE(matches("d", "[!a-c]"));
    EXPECT_FALSE(matches("B", "[!a-c]"));
    EXPECT_TRUE(matches("!", "[!]")) << "nothing to negate";
    EXPECT_FALSE(matches("", "[!a]"));
    EXPECT_TRUE(matches("^", "[^a]")) << "only ! negates";
    EXPECT_FALSE(matches("b", "[^a]"));
}

TEST(LikePattern, ListsTakeTheMeaningFromTheirCharacters) {
    EXPECT_TRUE(matches("100%", "100[%]"));
    EXPECT_FALSE(matches("1000", "100[%]"));
    EXPECT_TRUE(matches("[", "[[]"));
    EXPECT_TRUE(matches("ab", "a[]b")) << "an empty list is nothing";
}

TEST(LikePattern, WhatNothingClosesStandsForItself) {
    EXPECT_TRUE(matches("[abc", "[a%"));
    EXPECT_TRUE(matches("]x", "]_"));
    EXPECT_TRUE(matches("a]b[c", "a]b[c"));
    EXPECT_TRUE(matches("a\\%", "a\\%"));
    EXPECT_TRUE(matches("a\\b", "a\\%"));
}

TEST(LikePattern, KnowsItsPrefix) {
    EXPECT_EQ(LikePattern("Sm%").prefix(), U"sm");
    EXPECT_EQ(LikePattern("[s]m_x").prefix(), U"sm");
    EXPECT_EQ(LikePattern("[st]m").prefix(), U"");
    EXPECT_TRUE(LikePattern("ab[%]").isPlain());
    EXPECT_FALSE(LikePattern("ab%").isPlain());
}

TEST(LikePattern, LongHostilePatternsTakeNoLongTime) {
    std::string pattern;
    for (int count = 0; count < 2000; ++count) {
        pattern += "%a[";
    }
    const std::string text(20000, 'a');
    EXPECT_FALSE(matches(text, pattern));
    EXPECT_TRUE(matches(std::string(5000, '['), std::string(5000, '[')));
}

} // namespace
} // namespace kintar::companion::dialect
