#include "display/CardCommand.h"

#include <gtest/gtest.h>

namespace kintar {
namespace {

const LocaleFormats enUs;
const LocaleFormats deDe{"dd.MM.yyyy", "HH:mm:ss"};
const DateTime now = *DateTime::fromFields(2012, 3, 14, 17, 5, 0);

CardCommandInput order(bool enable, std::optional<std::string> ruleFile = {}) {
    return {enable, 12, 3, "4711", now, enUs, std::move(ruleFile), {}};
}

std::string stopOf(const std::optional<std::string>& ruleFile,
                   const LocaleFormats& formats = enUs) {
    const std::optional<DateTime> stop = cardStopDate(true, now, ruleFile, formats);
    return stop ? stop->isoWithBlank() : "none";
}

int errorOf(const CardCommandInput& input) {
    const CardCommandResult result = planCardCommand(input);
    EXPECT_FALSE(result.written);
    EXPECT_EQ(result.staging, "");
    EXPECT_EQ(result.fileName, std::nullopt);
    return result.errorNumber;
}

TEST(CardCommand, DisableWritesThePresentDateAndTime) {
    const CardCommandResult result = planCardCommand(order(false));
    EXPECT_TRUE(result.written);
    EXPECT_EQ(result.staging, "I L3 NameID ^12^^^\r\n"
                              "T Cards\r\n"
                              "F Code ^4711^^^\r\n"
                              "F StopDate ^3/14/2012  17:05:00^^^\r\n"
                              "W\r\n");
    EXPECT_EQ(result.stopDate, now);
    EXPECT_EQ(result.fileName, "^IMP1.txt");
    EXPECT_EQ(result.error, "");
}

TEST(CardCommand, DisableDoesNotLookAtTheRuleFile) {
    EXPECT_EQ(planCardCommand(order(false, "9999\r\n")).stopDate, now);
    EXPECT_EQ(planCardCommand(order(false, "")).stopDate, now);
}

TEST(CardCommand, EnableWithoutARuleFileStopsTomorrowAtMidnight) {
    EXPECT_EQ(planCardCommand(order(true)).staging, "I L3 NameID ^12^^^\r\n"
                                                    "T Cards\r\n"
                                                    "F Code ^4711^^^\r\n"
                                                    "F StopDate ^3/15/2012  00:00:00^^^\r\n"
                                                    "W\r\n");
}

TEST(CardCommand, WritesTheDateAsTheLocaleDoes) {
    CardCommandInput input = order(false);
    input.formats = deDe;
    EXPECT_EQ(planCardCommand(input).staging, "I L3 NameID ^12^^^\r\n"
                                              "T Cards\r\n"
                                              "F Code ^4711^^^\r\n"
                                              "F StopDate ^14.03.2012  17:05:00^^^\r\n"
                                              "W\r\n");
}

TEST(CardCommand, EnableWith9999HasNoEnd) {
    const CardCommandResult result = planCardCommand(order(true, "9999\r\n"));
    EXPECT_EQ(result.stopDate, DateTime::fromFields(9999, 12, 31));
    EXPECT_NE(result.staging.find("F StopDate ^12/31/9999  00:00:00^^^\r\n"), std::string::npos);
}

TEST(CardCommand, EnableFor7DaysUntil18OClock) {
    EXPECT_EQ(stopOf("7\r\n18:00\r\n"), "2012-03-21 18:00:00");
    EXPECT_EQ(stopOf("7\r\n6:00 PM\r\n"), "2012-03-21 18:00:00");
    EXPECT_EQ(stopOf("7\n18:00", deDe), "2012-03-21 18:00:00");
}

TEST(CardCommand, Counts9999WithBlanksOrAByteOrderMarkAroundIt) {
    for (const char* text : {"9999", " 9999 ", "\t9999",
                             "\xEF\xBB\xBF"
                             "9999\r\n",
                             "\xEF\xBB\xBF 9999 \r\n"}) {
        EXPECT_EQ(stopOf(text), "9999-12-31 00:00:00") << text;
    }
    EXPECT_EQ(stopOf("9999\r\n18:00"), "9999-12-31 18:00:00");
}

TEST(CardCommand, ReadsDaysAsALeadingNumber) {
    EXPECT_EQ(stopOf("30 days"), "2012-04-13 00:00:00");
    EXPECT_EQ(stopOf("soon"), "2012-03-14 00:00:00");
    EXPECT_EQ(stopOf("0"), "2012-03-14 00:00:00");
    EXPECT_EQ(stopOf("-1"), "2012-03-13 00:00:00");
    EXPECT_EQ(stopOf("1.5"), "2012-03-15 12:00:00");
    EXPECT_EQ(stopOf("1.5\n18:00"), "2012-03-15 18:00:00");
    EXPECT_EQ(stopOf("   "), "2012-03-14 00:00:00");
    EXPECT_EQ(stopOf("\xEF\xBB\xBF"
                     "7"),
              "2012-03-21 00:00:00");
}

TEST(CardCommand, SkipsEmptyLinesButCountsThem) {
    EXPECT_EQ(stopOf("7\r\n\r\n\r\n18:00\r\n19:00\r\n"), "2012-03-21 18:00:00");
    EXPECT_EQ(stopOf("7\r\r18:00\r"), "2012-03-21 18:00:00");
    EXPECT_EQ(stopOf("\r\n7\r\n18:00\r\n"), "none");
}

TEST(CardCommand, IsNotWrittenWhereTheFirstLineOfTheRuleFileIsEmpty) {
    for (const char* text : {"", "\r\n", "\n7\n18:00", "\xEF\xBB\xBF", "\xEF\xBB\xBF\r\n7"}) {
        const CardCommandResult result = planCardCommand(order(true, text));
        EXPECT_FALSE(result.written) << text;
        EXPECT_EQ(result.errorNumber, 62) << text;
        EXPECT_EQ(result.stopDate, std::nullopt) << text;
    }
}

TEST(CardCommand, IsNotWrittenWhereTheTimeCannotBeRead) {
    for (const char* text :
         {"7\nsix", "7\n25:00", "7\n3/15/2012 18:00", "7\n18", "9999\n18:00:61"}) {
        EXPECT_EQ(errorOf(order(true, text)), 13) << text;
    }
}

TEST(CardCommand, IsNotWrittenWhereTheDateLiesBeyondAnyYear) {
    for (const char* text : {"9999999", "-9999999", "1e300", "1e999"}) {
        EXPECT_EQ(errorOf(order(true, text)), 6) << text;
    }
}

TEST(CardCommand, CountsDaysOverALeapDayAndTheEndOfAYear) {
    EXPECT_EQ(cardStopDate(true, *DateTime::fromFields(2012, 2, 28, 9), std::nullopt, enUs),
              DateTime::fromFields(2012, 2, 29));
    EXPECT_EQ(
        cardStopDate(true, *DateTime::fromFields(2011, 12, 31, 23, 59, 59), std::nullopt, enUs),
        DateTime::fromFields(2012, 1, 1));
}

TEST(CardCommand, WritesTheCodeAsItStands) {
    CardCommandInput input = order(false);
    for (const char* code : {"1", "00123", " 7 ", "12345678901234567890", "+5"}) {
        input.code = code;
        const CardCommandResult result = planCardCommand(input);
        EXPECT_NE(result.staging.find("F Code ^" + std::string(code) + "^^^\r\n"),
                  std::string::npos);
    }
}

TEST(CardCommand, EndsQuietlyWhereTheCodeIsNotAboveZero) {
    CardCommandInput input = order(false);
    for (const char* code : {"0", "000", "-5", " 0 "}) {
        input.code = code;
        EXPECT_EQ(errorOf(input), 0) << code;
        EXPECT_EQ(planCardCommand(input).error, "") << code;
    }
}

TEST(CardCommand, IsNotWrittenForACodeThatIsNotOneNumber) {
    CardCommandInput input = order(false);
    for (const std::string& code :
         {std::string(), std::string(" "), std::string("abc"), std::string("1.5"),
          std::string("1e3"), std::string("&H10"), std::string("12 34"), std::string("5\r\nW"),
          std::string("5\n"), std::string("5^^^"), std::string("5\0", 2), std::string("\t5"),
          std::string("1,234"), std::string("\xD9\xA5"), std::string("5\xC2\xA0")}) {
        input.code = code;
        EXPECT_EQ(errorOf(input), 13) << code;
    }
}

TEST(CardCommand, WritesNumbersAsPlainDecimalText) {
    CardCommandInput input = order(false);
    input.id = -2147483648;
    input.locGrp = 2147483647;
    EXPECT_TRUE(
        planCardCommand(input).staging.starts_with("I L2147483647 NameID ^-2147483648^^^\r\n"));
}

TEST(CardCommand, TakesTheFirstNameThatDoesNotExist) {
    EXPECT_EQ(freeCommandNumber({}), 1);
    EXPECT_EQ(freeCommandNumber({"^IMP1.txt", "^IMP2.txt", "^IMP4.txt"}), 3);
    EXPECT_EQ(freeCommandNumber({"^IMP2.txt"}), 1);
    EXPECT_EQ(freeCommandNumber({"^IMP1.txt", "^IMP3.txt"}, 3), 4);
}

TEST(CardCommand, IgnoresTheCaseOfExistingNames) {
    EXPECT_EQ(freeCommandNumber({"^imp1.TXT", "^Imp2.Txt"}), 3);
}

TEST(CardCommand, IsNotMisledByOtherNames) {
    EXPECT_EQ(freeCommandNumber({"IMP1.txt", "^IMP1.txt.part", "^IMP01.txt", "^IMP.txt",
                                 "^IMP-1.txt", "^IMP1 .txt", "^IMP99999999999.txt", "^IMP+1.txt"}),
              1);
}

TEST(CardCommand, StopsBehindTheLastName) {
    std::vector<std::string> existing;
    for (int number = 1; number <= lastCommandNumber; ++number) {
        existing.push_back(commandFileName(number));
    }
    CardCommandInput input = order(false);
    input.existing = existing;
    const CardCommandResult result = planCardCommand(input);
    EXPECT_TRUE(result.written);
    EXPECT_EQ(result.fileName, std::nullopt);
    EXPECT_EQ(result.errorNumber, 67);
    existing.pop_back();
    EXPECT_EQ(freeCommandNumber(existing), 32000);
}

} // namespace
} // namespace kintar
