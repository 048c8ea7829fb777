#include "base/DateTime.h"

#include "base/RunTimeError.h"

#include <gtest/gtest.h>

namespace kintar {
namespace {

DateTime at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    return DateTime::fromFields(year, month, day, hour, minute, second).value();
}

TEST(DateTime, NeverSetIsTheDayZeroOfTheAutomationDate) {
    EXPECT_EQ(DateTime().iso(), "1899-12-30T00:00:00");
}

TEST(DateTime, WritesIsoWithTAndWithBlank) {
    EXPECT_EQ(at(2012, 3, 14, 17, 5).iso(), "2012-03-14T17:05:00");
    EXPECT_EQ(at(2012, 3, 14, 17, 5).isoWithBlank(), "2012-03-14 17:05:00");
    EXPECT_EQ(at(100, 1, 1).iso(), "0100-01-01T00:00:00");
}

TEST(DateTime, RefusesFieldsThatNoCalendarHas) {
    EXPECT_FALSE(DateTime::fromFields(2012, 2, 30));
    EXPECT_FALSE(DateTime::fromFields(2011, 2, 29));
    EXPECT_TRUE(DateTime::fromFields(2012, 2, 29));
    EXPECT_FALSE(DateTime::fromFields(99, 1, 1));
    EXPECT_FALSE(DateTime::fromFields(10000, 1, 1));
    EXPECT_FALSE(DateTime::fromFields(2012, 13, 1));
    EXPECT_FALSE(DateTime::fromFields(2012, 1, 1, 24));
    EXPECT_FALSE(DateTime::fromFields(2012, 1, 1, 0, 60));
    EXPECT_FALSE(DateTime::fromFields(2012, 1, 1, 0, 0, -1));
}

TEST(DateTime, ReadsIsoAndNothingElse) {
    EXPECT_EQ(DateTime::fromIso("2012-03-14T17:05:00"), at(2012, 3, 14, 17, 5));
    EXPECT_EQ(DateTime::fromIso("2012-03-14 17:05:09"), at(2012, 3, 14, 17, 5, 9));
    EXPECT_EQ(DateTime::fromIso("2012-03-14"), at(2012, 3, 14));
    for (const char* text :
         {"", "2012-3-14", "2012-03-14T", "2012-03-14T17:05", "2012-03-14x17:05:00", "2012-02-30",
          "2012-03-14T17:05:00Z", "12-03-14", " 2012-03-14"}) {
        EXPECT_FALSE(DateTime::fromIso(text)) << text;
    }
}

TEST(DateTime, GivesItsFieldsAlsoBeforeTheEpoch) {
    const DateTime early = at(1899, 12, 30, 17, 5, 9);
    EXPECT_EQ(early.hour(), 17);
    EXPECT_EQ(early.minute(), 5);
    EXPECT_EQ(early.second(), 9);
    EXPECT_EQ(early.dateOnly(), at(1899, 12, 30));
    EXPECT_FALSE(early.isMidnight());
    EXPECT_TRUE(early.dateOnly().isMidnight());
}

TEST(DateTime, AddsDaysAndMinutesOverTheEndsOfMonths) {
    EXPECT_EQ(at(2012, 2, 28).plusDays(2), at(2012, 3, 1));
    EXPECT_EQ(at(2012, 3, 1).plusDays(-1), at(2012, 2, 29));
    EXPECT_EQ(at(2012, 3, 14).plusDays(0.5), at(2012, 3, 14, 12));
    EXPECT_EQ(at(2012, 12, 31, 23, 50).plusMinutes(15), at(2013, 1, 1, 0, 5));
}

TEST(DateTime, RaisesOverflowBeyondTheYearsOfTheCalendar) {
    EXPECT_THROW(static_cast<void>(at(9999, 12, 31).plusDays(1)), RunTimeError);
    EXPECT_THROW(static_cast<void>(at(100, 1, 1).plusDays(-1)), RunTimeError);
    EXPECT_THROW(static_cast<void>(at(2012, 1, 1).plusDays(1e300)), RunTimeError);
    EXPECT_THROW(static_cast<void>(at(2012, 1, 1).plusMinutes(9'000'000'000'000'000'000)),
                 RunTimeError);
}

} // namespace
} // namespace kintar
