#include "overrides/ZoneConversion.h"

#include <gtest/gtest.h>

#include <limits>

#include <ostream>

namespace kintar {

namespace platform {
void PrintTo(const SystemTime& time, std::ostream* out) {
    *out << time.year << '-' << time.month << '-' << time.day << ' ' << time.hour << ':'
         << time.minute << ':' << time.second << '.' << time.milliseconds;
}
} // namespace platform

namespace {

using platform::SystemTime;

SystemTime at(int year, int month, int day, int hour, int minute = 0, int second = 0) {
    const auto unit = [](int value) { return static_cast<std::uint16_t>(value); };
    return {unit(year), unit(month), 0, unit(day), unit(hour), unit(minute), unit(second), 0};
}

SystemTime rule(int month, int dayOfWeek, int occurrence, int hour, int minute = 0) {
    SystemTime time = at(0, month, occurrence, hour, minute);
    time.dayOfWeek = static_cast<std::uint16_t>(dayOfWeek);
    return time;
}

TimeZoneInformation zone(int bias, int daylightBias, SystemTime daylight, SystemTime standard) {
    TimeZoneInformation information;
    information.Bias = bias;
    information.DaylightBias = daylightBias;
    information.DaylightDate = daylight;
    information.StandardDate = standard;
    return information;
}

TimeZoneInformation chicago() {
    return zone(360, -60, rule(3, 0, 2, 2), rule(11, 0, 1, 2));
}

TimeZoneInformation sydney() {
    return zone(-600, -60, rule(10, 0, 1, 2), rule(4, 0, 1, 3));
}

TimeZoneInformation lordHowe() {
    return zone(-630, -30, rule(10, 0, 1, 2), rule(4, 0, 1, 2));
}

/// Date and time without the day of the week, which moments carry but nobody gives.
std::optional<SystemTime> plain(std::optional<SystemTime> time) {
    if (time) {
        time->dayOfWeek = 0;
    }
    return time;
}

std::optional<SystemTime> toLocal(const TimeZoneInformation& information, SystemTime utc) {
    return plain(SystemTimeToTzSpecificLocalTime(information, utc));
}

std::optional<SystemTime> toUtc(const TimeZoneInformation& information, SystemTime local) {
    return plain(TzSpecificLocalTimeToSystemTime(information, local));
}

TEST(ZoneConversion, AllZeroIsUtc) {
    EXPECT_EQ(toLocal({}, at(2012, 7, 1, 12, 30, 15)), at(2012, 7, 1, 12, 30, 15));
    EXPECT_EQ(toUtc({}, at(2012, 7, 1, 12, 30, 15)), at(2012, 7, 1, 12, 30, 15));
}

TEST(ZoneConversion, TellsTheDayOfTheWeekOfItsResult) {
    EXPECT_EQ(SystemTimeToTzSpecificLocalTime(chicago(), at(2012, 3, 15, 1))->dayOfWeek, 3)
        << "Wednesday evening in Chicago";
}

TEST(ZoneConversion, TheDayOfTheWeekOfAMomentIsNotLookedAt) {
    SystemTime utc = at(2012, 3, 15, 1);
    utc.dayOfWeek = 99;
    EXPECT_EQ(toLocal(chicago(), utc), at(2012, 3, 14, 20));
}

TEST(ZoneConversion, KeepsMilliseconds) {
    SystemTime utc = at(2012, 1, 15, 12);
    utc.milliseconds = 999;
    EXPECT_EQ(SystemTimeToTzSpecificLocalTime(chicago(), utc)->milliseconds, 999);
}

TEST(ZoneConversion, ToLocalTimeChangesAtTheInstantOfTheRules) {
    // 2012: daylight time from 11 March 08:00 to 4 November 07:00, UTC.
    EXPECT_EQ(toLocal(chicago(), at(2012, 3, 11, 7, 59, 59)), at(2012, 3, 11, 1, 59, 59));
    EXPECT_EQ(toLocal(chicago(), at(2012, 3, 11, 8)), at(2012, 3, 11, 3));
    EXPECT_EQ(toLocal(chicago(), at(2012, 11, 4, 6, 59, 59)), at(2012, 11, 4, 1, 59, 59));
    EXPECT_EQ(toLocal(chicago(), at(2012, 11, 4, 7)), at(2012, 11, 4, 1));
}

TEST(ZoneConversion, AnHourThatDoesNotExistLiesBeforeTheChange) {
    EXPECT_EQ(toUtc(chicago(), at(2012, 3, 11, 1, 59, 59)), at(2012, 3, 11, 7, 59, 59));
    EXPECT_EQ(toUtc(chicago(), at(2012, 3, 11, 2)), at(2012, 3, 11, 7));
    EXPECT_EQ(toUtc(chicago(), at(2012, 3, 11, 2, 30)), at(2012, 3, 11, 7, 30));
    EXPECT_EQ(toUtc(chicago(), at(2012, 3, 11, 3)), at(2012, 3, 11, 8));
}

TEST(ZoneConversion, AnHourThatOccursTwiceIsTheFirst) {
    EXPECT_EQ(toUtc(chicago(), at(2012, 11, 4, 1)), at(2012, 11, 4, 6));
    EXPECT_EQ(toUtc(chicago(), at(2012, 11, 4, 1, 59, 59)), at(2012, 11, 4, 6, 59, 59));
    EXPECT_EQ(toUtc(chicago(), at(2012, 11, 4, 2)), at(2012, 11, 4, 8));
}

TEST(ZoneConversion, InTheSouthTheTurnOfTheYearIsDaylightTime) {
    EXPECT_EQ(toLocal(sydney(), at(2011, 12, 31, 12, 59, 59)), at(2011, 12, 31, 23, 59, 59));
    EXPECT_EQ(toLocal(sydney(), at(2011, 12, 31, 13)), at(2012, 1, 1, 0));
    EXPECT_EQ(toLocal(sydney(), at(2012, 7, 1, 0)), at(2012, 7, 1, 10));
    EXPECT_EQ(toUtc(sydney(), at(2012, 1, 1, 0)), at(2011, 12, 31, 13));
    EXPECT_EQ(toUtc(sydney(), at(2012, 7, 1, 10)), at(2012, 7, 1, 0));
}

TEST(ZoneConversion, InTheSouthChangesAtTheInstantOfTheRules) {
    EXPECT_EQ(toLocal(sydney(), at(2012, 3, 31, 15, 59, 59)), at(2012, 4, 1, 2, 59, 59));
    EXPECT_EQ(toLocal(sydney(), at(2012, 3, 31, 16)), at(2012, 4, 1, 2));
    EXPECT_EQ(toUtc(sydney(), at(2012, 4, 1, 2, 30)), at(2012, 3, 31, 15, 30)) << "the first";
    EXPECT_EQ(toUtc(sydney(), at(2012, 10, 7, 2, 30)), at(2012, 10, 6, 15, 30)) << "does not exist";
}

TEST(ZoneConversion, KnowsHalfHoursOfOffsetAndOfDaylightTime) {
    const TimeZoneInformation india = zone(-330, 0, {}, {});
    EXPECT_EQ(toLocal(india, at(2012, 1, 1, 20)), at(2012, 1, 2, 1, 30));
    EXPECT_EQ(toUtc(india, at(2012, 1, 2, 1, 30)), at(2012, 1, 1, 20));
    EXPECT_EQ(toLocal(lordHowe(), at(2012, 1, 1, 0)), at(2012, 1, 1, 11));
    EXPECT_EQ(toLocal(lordHowe(), at(2012, 7, 1, 0)), at(2012, 7, 1, 10, 30));
    EXPECT_EQ(toUtc(lordHowe(), at(2012, 4, 1, 1, 45)), at(2012, 3, 31, 14, 45)) << "the first";
}

TEST(ZoneConversion, TheFifthOccurrenceIsTheLastOfTheMonth) {
    const TimeZoneInformation lisbon = zone(0, -60, rule(3, 0, 5, 1), rule(10, 0, 5, 2));
    EXPECT_EQ(toLocal(lisbon, at(2012, 3, 25, 1)), at(2012, 3, 25, 2)) << "the fourth Sunday";
    EXPECT_EQ(toLocal(lisbon, at(2013, 3, 31, 0, 59)), at(2013, 3, 31, 0, 59));
    EXPECT_EQ(toLocal(lisbon, at(2013, 3, 31, 1)), at(2013, 3, 31, 2)) << "the fifth Sunday";
}

TEST(ZoneConversion, ADateWithAYearComesOnce) {
    const TimeZoneInformation once = zone(0, -60, at(2012, 4, 1, 0), at(2012, 9, 1, 0));
    EXPECT_EQ(toLocal(once, at(2012, 3, 31, 23)), at(2012, 3, 31, 23));
    EXPECT_EQ(toLocal(once, at(2012, 4, 1, 0)), at(2012, 4, 1, 1));
    EXPECT_EQ(toLocal(once, at(2012, 8, 31, 22, 59)), at(2012, 8, 31, 23, 59));
    EXPECT_EQ(toLocal(once, at(2012, 8, 31, 23)), at(2012, 8, 31, 23));
    EXPECT_EQ(toLocal(once, at(2013, 6, 1, 0)), at(2013, 6, 1, 0)) << "not in another year";
    EXPECT_EQ(toUtc(once, at(2011, 6, 1, 0)), at(2011, 6, 1, 0)) << "not in another year";
}

TEST(ZoneConversion, WithoutAStandardDateThereIsNoDaylightTimeAndNoOtherBias) {
    TimeZoneInformation information = chicago();
    information.StandardDate = {};
    information.StandardBias = 15;
    EXPECT_EQ(toLocal(information, at(2012, 7, 1, 12)), at(2012, 7, 1, 6));
    EXPECT_EQ(toUtc(information, at(2012, 7, 1, 6)), at(2012, 7, 1, 12));
}

TEST(ZoneConversion, WithoutADaylightDateThereIsNoDaylightTimeEither) {
    TimeZoneInformation information = chicago();
    information.DaylightDate = {};
    EXPECT_EQ(toLocal(information, at(2012, 7, 1, 12)), at(2012, 7, 1, 6));
}

TEST(ZoneConversion, TheStandardBiasCountsBesideADate) {
    TimeZoneInformation information = chicago();
    information.StandardBias = 30;
    EXPECT_EQ(toLocal(information, at(2012, 1, 1, 12)), at(2012, 1, 1, 5, 30));
    EXPECT_EQ(toLocal(information, at(2012, 3, 11, 8, 29)), at(2012, 3, 11, 1, 59))
        << "daylight time begins by the standard offset";
    EXPECT_EQ(toLocal(information, at(2012, 3, 11, 8, 30)), at(2012, 3, 11, 3, 30));
}

TEST(ZoneConversion, ARuleInTheLastInstantOfADayBeginsTheNext) {
    TimeZoneInformation cairo = zone(-120, -60, rule(4, 5, 5, 0), rule(10, 4, 5, 23, 59));
    cairo.StandardDate.second = 59;
    cairo.StandardDate.milliseconds = 999;
    EXPECT_EQ(toUtc(cairo, at(2024, 10, 31, 23, 59, 59)), at(2024, 10, 31, 20, 59, 59));
    EXPECT_EQ(toUtc(cairo, at(2024, 11, 1, 0)), at(2024, 10, 31, 22));
}

TEST(ZoneConversion, FailsForAMomentThatIsNoDate) {
    for (const SystemTime& none :
         {at(2012, 2, 30, 0), at(2012, 13, 1, 0), at(2012, 0, 1, 0), at(2012, 1, 0, 0),
          at(2012, 1, 1, 24), at(2012, 1, 1, 0, 60), at(2012, 1, 1, 0, 0, 60), at(1600, 1, 1, 0),
          at(30828, 1, 1, 0)}) {
        EXPECT_FALSE(toLocal(chicago(), none)) << ::testing::PrintToString(none);
        EXPECT_FALSE(toUtc(chicago(), none)) << ::testing::PrintToString(none);
    }
    SystemTime none = at(2012, 1, 1, 0);
    none.milliseconds = 1000;
    EXPECT_FALSE(toLocal({}, none));
}

TEST(ZoneConversion, FailsForARecordWhoseDatesAreNone) {
    const auto fails = [](SystemTime broken) {
        TimeZoneInformation information = chicago();
        information.DaylightDate = broken;
        EXPECT_FALSE(toLocal(information, at(2012, 7, 1, 0))) << ::testing::PrintToString(broken);
        EXPECT_FALSE(toUtc(information, at(2012, 7, 1, 0))) << ::testing::PrintToString(broken);
        information = chicago();
        information.StandardDate = broken;
        EXPECT_FALSE(toLocal(information, at(2012, 7, 1, 0))) << ::testing::PrintToString(broken);
    };
    fails(rule(3, 0, 0, 2));
    fails(rule(3, 0, 6, 2));
    fails(rule(3, 7, 1, 2));
    fails(rule(13, 0, 1, 2));
    fails(rule(3, 0, 1, 24));
    fails(rule(3, 0, 1, 2, 60));
    fails(at(2012, 2, 30, 2));
    fails(at(1500, 3, 1, 2));
}

TEST(ZoneConversion, ABrokenDateDoesNotMatterBesideAMissingOne) {
    TimeZoneInformation information = chicago();
    information.DaylightDate = rule(3, 0, 6, 2);
    information.StandardDate = {};
    EXPECT_EQ(toLocal(information, at(2012, 7, 1, 12)), at(2012, 7, 1, 6));
}

TEST(ZoneConversion, FailsWhereTheResultLeavesTheCalendar) {
    EXPECT_FALSE(toLocal(chicago(), at(1601, 1, 1, 5, 59)));
    EXPECT_EQ(toLocal(chicago(), at(1601, 1, 1, 6)), at(1601, 1, 1, 0));
    EXPECT_FALSE(toUtc(sydney(), at(1601, 1, 1, 9)));
    EXPECT_FALSE(toUtc(chicago(), at(30827, 12, 31, 23)));
}

TEST(ZoneConversion, BiasesOfAnySizeAreAdded) {
    const TimeZoneInformation wild = zone(-1'000'000, 0, {}, {});
    EXPECT_EQ(toLocal(wild, at(2012, 1, 1, 0)), at(2013, 11, 25, 10, 40));
    TimeZoneInformation extreme;
    extreme.Bias = std::numeric_limits<std::int32_t>::max();
    EXPECT_FALSE(toLocal(extreme, at(2012, 1, 1, 0)));
}

} // namespace
} // namespace kintar
