#include "companion/dialect/TextRanges.h"

#include "base/Unicode.h"
#include "companion/dialect/LikePattern.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace kintar::companion::dialect {
namespace {

/// As the engine's NOCASE compares.
std::string smallAscii(std::string text) {
    std::ranges::transform(text, text.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    });
    return text;
}

bool within(const std::vector<TextRange>& ranges, const std::string& text) {
    const std::string key = smallAscii(text);
    return std::ranges::any_of(ranges, [&](const TextRange& range) {
        const std::string low = smallAscii(range.low);
        return range.high.empty() ? key == low : key >= low && key < smallAscii(range.high);
    });
}

/// Every way of writing a text in other letters of the same folded form, as far as `limit`.
std::vector<std::string> spellings(const std::u32string& text, std::size_t limit) {
    std::vector<std::u32string> all{U""};
    for (const char32_t c : text) {
        std::vector<std::u32string> longer;
        for (const auto& start : all) {
            for (const char32_t variant : unicode::caseVariants(c)) {
                longer.push_back(start + variant);
            }
        }
        all = std::move(longer);
        all.resize(std::min(all.size(), limit));
    }
    std::vector<std::string> texts;
    std::ranges::transform(all, std::back_inserter(texts),
                           [](const std::u32string& one) { return utf8(one); });
    return texts;
}

TEST(TextRanges, APrefixOfPlainLettersIsOneRange) {
    const auto ranges = rangesOfPattern("brown%");
    ASSERT_EQ(ranges.size(), 1U);
    EXPECT_EQ(ranges[0].low, "brown");
    EXPECT_EQ(ranges[0].high, "browo");
}

TEST(TextRanges, LettersWithSpellingsOutsideOfAsciiMakeMore) {
    EXPECT_EQ(rangesOfPattern("sm%").size(), 2U);
    EXPECT_EQ(rangesOfPattern("kiss%").size(), 8U);
    EXPECT_EQ(rangesOfPattern("γ%").size(), 2U);
}

TEST(TextRanges, AreNeverMoreThanTheMost) {
    for (const char* pattern : {"ssssssssssss%", "παπαδόπουλος%", "σςσςσςσς%", "иванова"}) {
        const auto ranges = rangesOfPattern(pattern);
        EXPECT_FALSE(ranges.empty()) << pattern;
        EXPECT_LE(ranges.size(), maximumRanges) << pattern;
    }
}

TEST(TextRanges, HoldEverySpellingOfThePrefixAndWhatFollowsIt) {
    for (const char* prefix : {"s", "sm", "kiss", "zoë", "σας", "παπ", "иван", "ǆ", "ẞ", "å", "ﬀ",
                               "@z[`{", "i", "İ", "ı", "\U00010400x"}) {
        const auto ranges = rangesOfPattern(std::string(prefix) + "%");
        for (const std::string& spelled : spellings(codePoints(prefix), 200)) {
            for (const char* rest : {"", "a", "Z", "\x7f", "\U0010FFFF", "\xff\xff"}) {
                EXPECT_TRUE(within(ranges, spelled + rest)) << prefix << " " << spelled << rest;
            }
        }
    }
}

TEST(TextRanges, EqualityHoldsEverySpellingAndNothingLonger) {
    const auto ranges = rangesOfText("Kiß");
    for (const std::string& spelled : spellings(U"kiß", 200)) {
        EXPECT_TRUE(within(ranges, spelled)) << spelled;
    }
    EXPECT_FALSE(within(ranges, "kißx"));
}

TEST(TextRanges, ThereAreNoneWithoutAPrefix) {
    EXPECT_TRUE(rangesOfPattern("%x").empty());
    EXPECT_TRUE(rangesOfPattern("").empty());
    EXPECT_TRUE(rangesOfPattern("_x").empty());
    EXPECT_TRUE(rangesOfPattern("\U0010FFFF%").empty()) << "nothing lies behind it";
    EXPECT_TRUE(rangesOfPattern("\uFFFD%").empty()) << "stands for any broken byte";
}

TEST(TextRanges, GoByTheBeginningOfAVeryLongText) {
    const std::string beginning(longestRangePrefix, 'x');
    for (const auto& ranges : {rangesOfPattern(std::string(100000, 'x') + "%"),
                               rangesOfText(std::string(100000, 'x'))}) {
        ASSERT_EQ(ranges.size(), 1U);
        EXPECT_EQ(ranges[0].low, beginning);
        EXPECT_EQ(ranges[0].high, beginning.substr(1) + "y");
    }
}

TEST(TextRanges, ABoundNeverFallsAmongSurrogates) {
    EXPECT_EQ(rangesOfPattern("\uD7FF%").front().high, "\uE000");
}

} // namespace
} // namespace kintar::companion::dialect
