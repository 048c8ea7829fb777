#include "tools/ctl/RawLine.h"

#include <gtest/gtest.h>

namespace kintar::ctl {

using Words = std::vector<std::string>;

TEST(RawLine, WordsAreSeparatedByBlanksAndTabs) {
    EXPECT_EQ(splitWords("  set k\tLocGrp 3 \r"), (Words{"set", "k", "LocGrp", "3"}));
    EXPECT_EQ(splitWords(""), Words{});
    EXPECT_EQ(splitWords("   "), Words{});
}

TEST(RawLine, AQuotedTextIsOneWordWhateverItHolds) {
    EXPECT_EQ(splitWords(R"(set k LName "O'Brien  # Jr")"),
              (Words{"set", "k", "LName", "O'Brien  # Jr"}));
    EXPECT_EQ(splitWords(R"(a 'say "hi" \n')"), (Words{"a", R"(say "hi" \n)"}));
    EXPECT_EQ(splitWords(R"(a "" '')"), (Words{"a", "", ""}));
    EXPECT_EQ(splitWords(R"(ab"c d"ef)"), Words{"abc def"});
}

TEST(RawLine, EscapesAreKnownInDoubleQuotes) {
    EXPECT_EQ(splitWords(R"("a\\b\"c\nd\re\tf")"), Words{"a\\b\"c\nd\re\tf"});
    EXPECT_EQ(splitWords(R"(a\nb)"), Words{R"(a\nb)"});
}

TEST(RawLine, ACommentEndsTheLine) {
    EXPECT_EQ(splitWords("# nothing"), Words{});
    EXPECT_EQ(splitWords("get o SelName # who"), (Words{"get", "o", "SelName"}));
    EXPECT_EQ(splitWords("a#b"), Words{"a#b"});
}

TEST(RawLine, BrokenQuotesAreRefused) {
    EXPECT_THROW(splitWords("a \"b"), UsageError);
    EXPECT_THROW(splitWords("a 'b"), UsageError);
    EXPECT_THROW(splitWords("\"a\\"), UsageError);
    EXPECT_THROW(splitWords("\"a\\q\""), UsageError);
}

TEST(RawLine, ATextIsShownOnOneLineAndReadsBack) {
    const std::string text = "a\\b\nc\rd\te \"f\"";
    EXPECT_EQ(onOneLine(text), R"(a\\b\nc\rd\te "f")");
    EXPECT_EQ(onOneLine("M\xC3\xBCller"), "M\xC3\xBCller");
}

} // namespace kintar::ctl
