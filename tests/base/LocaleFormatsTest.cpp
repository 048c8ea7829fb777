#include "base/LocaleFormats.h"

#include "base/RunTimeError.h"

#include <gtest/gtest.h>

namespace kintar {
namespace {

const LocaleFormats american;
const LocaleFormats german{"dd.MM.yyyy", "HH:mm:ss"};
const LocaleFormats iso{"yyyy-MM-dd", "HH:mm:ss"};
const LocaleFormats korean{"yyyy. M. d.", "AP h:mm:ss"};
const LocaleFormats finnish{"d.M.yyyy", "H.mm.ss"};

DateTime moment(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    return DateTime::fromFields(year, month, day, hour, minute, second).value();
}

void expectUnreadable(const LocaleFormats& formats, std::string_view text) {
    try {
        const DateTime read = formats.parse(text);
        ADD_FAILURE() << '"' << text << "\" was read as " << read.iso();
    } catch (const RunTimeError& error) {
        EXPECT_EQ(error.number(), 13) << text;
    }
}

TEST(LocaleFormats, WritesTheShortDateWithFourDigitYears) {
    EXPECT_EQ(american.formatShortDate(moment(2012, 3, 14)), "3/14/2012");
    EXPECT_EQ(german.formatShortDate(moment(2012, 3, 4)), "04.03.2012");
    EXPECT_EQ(american.formatShortDate(moment(9999, 12, 31)), "12/31/9999");
    EXPECT_EQ(iso.formatShortDate(moment(199, 3, 4)), "0199-03-04");
}

TEST(LocaleFormats, WritesTheLongTime) {
    EXPECT_EQ(american.formatLongTime(moment(2012, 3, 14, 17, 5)), "5:05:00 PM");
    EXPECT_EQ(american.formatLongTime(moment(2012, 3, 14, 0, 5)), "12:05:00 AM");
    EXPECT_EQ(american.formatLongTime(moment(2012, 3, 14, 12, 0)), "12:00:00 PM");
    EXPECT_EQ(german.formatLongTime(moment(2012, 3, 14, 5, 5, 9)), "05:05:09");
    EXPECT_EQ(korean.formatLongTime(moment(2012, 3, 14, 17, 5)), "PM 5:05:00");
}

TEST(LocaleFormats, GeneralDateShowsNoTimeAtMidnight) {
    EXPECT_EQ(american.formatGeneralDate(moment(2012, 3, 14, 17, 5)), "3/14/2012 5:05:00 PM");
    EXPECT_EQ(american.formatGeneralDate(moment(2012, 3, 14)), "3/14/2012");
}

TEST(LocaleFormats, TheTimeOfTheCommandFileBeginsWithABlank) {
    EXPECT_EQ(formatBlankTime24(moment(2012, 3, 14, 17, 5)), " 17:05:00");
}

TEST(LocaleFormats, ReadsWhatItWritesInEveryLocale) {
    for (const LocaleFormats& formats : {american, german, iso, korean, finnish}) {
        for (const DateTime value :
             {moment(2012, 3, 14, 17, 5), moment(2012, 11, 9, 0, 0, 1),
              moment(9999, 12, 31, 12, 59, 59), moment(100, 1, 1), DateTime()}) {
            EXPECT_EQ(formats.parse(formats.formatGeneralDate(value)), value)
                << formats.formatGeneralDate(value);
            EXPECT_EQ(formats.parse(value.iso()), value);
            EXPECT_EQ(formats.parse(value.isoWithBlank()), value);
            EXPECT_EQ(formats.parse(formats.formatShortDate(value)), value.dateOnly());
        }
    }
}

TEST(LocaleFormats, ATimeAloneLiesOnTheDayZero) {
    EXPECT_EQ(american.parse("5:05:00 PM"), moment(1899, 12, 30, 17, 5));
    EXPECT_EQ(american.parse("17:05"), moment(1899, 12, 30, 17, 5));
    EXPECT_EQ(american.parse(" 5:05pm "), moment(1899, 12, 30, 17, 5));
    EXPECT_EQ(finnish.parse("7.05"), moment(1899, 12, 30, 7, 5));
}

TEST(LocaleFormats, TheOrderOfDayAndMonthIsTheLocales) {
    EXPECT_EQ(american.parse("3/4/2012"), moment(2012, 3, 4));
    EXPECT_EQ(german.parse("3.4.2012"), moment(2012, 4, 3));
}

TEST(LocaleFormats, RaisesATypeMismatchForWhatIsNoDate) {
    for (const char* text : {"", " ", "yesterday", "3/14/12", "3/14", "13/14/2012", "2/30/2012",
                             "3/14/2012 25:00:00", "3/14/2012 5:05:61", "3/14/2012 13:05 PM",
                             "3/14/2012 0:05 AM", "3/14/2012x", "3/14/2012 5", "3/14/20125:05",
                             "5:05:00 PMx", "3/14/2012 5:05:00 PM Z", "2012-03-14T", "12:"}) {
        expectUnreadable(american, text);
    }
    expectUnreadable(german, "3/14/2012");
}

} // namespace
} // namespace kintar
