#include "reports/PrinterMap.h"

#include <gtest/gtest.h>

namespace kintar::reports {
namespace {

PrinterChoice applied(std::string_view map, std::int32_t loc) {
    PrinterChoice choice{"the group", "as before"};
    applyPrinterMap(map, loc, choice);
    return choice;
}

TEST(PrinterMap, ReplacesTheListWithTheMatchingLineLessItsLastCharacter) {
    EXPECT_EQ(applied("0,3,5,;Gate\r\n0,7,;Yard\r\n", 7), (PrinterChoice{"0,7", "Yard"}));
    EXPECT_EQ(applied("0,3,5,;Gate\r\n0,7,;Yard\r\n", 3), (PrinterChoice{"0,3,5", "Gate"}));
}

TEST(PrinterMap, StopsAtTheFirstLineThatMatches) {
    EXPECT_EQ(applied("0,3,;First\n0,3,;Second\n", 3), (PrinterChoice{"0,3", "First"}));
}

TEST(PrinterMap, MatchesALocationOnlyBetweenCommas) {
    EXPECT_EQ(applied("3,5,;A\n", 3), (PrinterChoice{"the group", "A"}));
    EXPECT_EQ(applied("0,5,3;A\n", 3), (PrinterChoice{"the group", "A"}));
    EXPECT_EQ(applied("0,13,;A\n", 3), (PrinterChoice{"the group", "A"}));
    EXPECT_EQ(applied("0, 3,;A\n", 3), (PrinterChoice{"the group", "A"}));
}

TEST(PrinterMap, CutsTheLastCharacterAlsoWhereItIsNoComma) {
    EXPECT_EQ(applied("0,3,57;A\n", 3), (PrinterChoice{"0,3,5", "A"}));
    EXPECT_EQ(applied("0,3, ;A\n", 3), (PrinterChoice{"0,3,", "A"}));
}

TEST(PrinterMap, MatchesDigitsAnywhereInALineWithoutCommasAndTrimsIt) {
    EXPECT_EQ(applied("  3  ;A\n", 3), (PrinterChoice{"3", "A"}));
    EXPECT_EQ(applied("137;A\n", 3), (PrinterChoice{"137", "A"}));
}

TEST(PrinterMap, KeepsThePrinterOfTheLastLineWhereNoneMatches) {
    EXPECT_EQ(applied("0,1,;First\n0,2,;Last", 3), (PrinterChoice{"the group", "Last"}));
}

TEST(PrinterMap, EmptiesThePrinterAtALineWithoutSemicolon) {
    EXPECT_EQ(applied("0,1,;First\n0,2,\n", 3), (PrinterChoice{"the group", ""}));
    EXPECT_EQ(applied("0,1,;First\n0,3,\n", 3), (PrinterChoice{"0,3", ""}));
    EXPECT_EQ(applied("0,1,;First\n\n", 3), (PrinterChoice{"the group", ""}));
}

TEST(PrinterMap, TakesThePrinterFromBehindTheFirstSemicolonWithItsBlanks) {
    EXPECT_EQ(applied("0,3,; Gate;B \n", 3), (PrinterChoice{"0,3", " Gate;B "}));
}

TEST(PrinterMap, ChangesNothingWhereItIsEmpty) {
    EXPECT_EQ(applied("", 3), (PrinterChoice{"the group", "as before"}));
}

TEST(PrinterMap, EndsLinesAtCrLfAndBoth) {
    EXPECT_EQ(applied("0,1,;A\r0,2,;B\n0,3,;C\r\n0,4,;D", 2).printer, "B");
    EXPECT_EQ(applied("0,1,;A\r0,2,;B\n0,3,;C\r\n0,4,;D", 4).printer, "D");
    EXPECT_EQ(applied("0,1,;A\r0,2,;B\n0,3,;C\r\n0,4,;D", 3), (PrinterChoice{"0,3", "C"}));
}

TEST(PrinterMap, TakesAByteOrderMarkForNoPartOfTheFirstLine) {
    EXPECT_EQ(applied("\xEF\xBB\xBF"
                      "0,3,;A\n",
                      3),
              (PrinterChoice{"0,3", "A"}));
}

TEST(PrinterMap, TakesDamagedLinesAsTheyStand) {
    EXPECT_EQ(applied(";;;;\n,,,\n;\n", 3), (PrinterChoice{"the group", ""}));
    EXPECT_EQ(applied(std::string_view("0,\0,3,;A", 8), 3),
              (PrinterChoice{std::string("0,\0,3", 5), "A"}));
    EXPECT_EQ(applied("0,3,) Or (1=1,;A", 3), (PrinterChoice{"0,3,) Or (1=1", "A"}));
    EXPECT_EQ(applied(",3,;A", 3), (PrinterChoice{",3", "A"}));
}

TEST(PrinterMap, DropsAWholeCharacterAtTheEndOfAList) {
    EXPECT_EQ(applied("0,3,\xC2\xA0;A", 3), (PrinterChoice{"0,3,", "A"}));
    EXPECT_EQ(applied("0,3,\xF0\x9F\x9A\xAA;A", 3), (PrinterChoice{"0,3,", "A"}));
}

TEST(PrinterMap, FindsNegativeLocationsByTheirText) {
    EXPECT_EQ(applied("0,-3,;A", -3), (PrinterChoice{"0,-3", "A"}));
}

} // namespace
} // namespace kintar::reports
