#include "platform/ZoneRule.h"

#include <gtest/gtest.h>

#include <ostream>
#include <utility>
#include <vector>

namespace kintar::platform {

void PrintTo(const SystemTime& time, std::ostream* out) {
    *out << time.year << '-' << time.month << " weekday " << time.dayOfWeek << " day " << time.day
         << ' ' << time.hour << ':' << time.minute << ':' << time.second << '.'
         << time.milliseconds;
}

namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;

sys_seconds at(int year, unsigned month, unsigned day, int hour = 0) {
    return sys_days(std::chrono::year(year) / month / day) + hours(hour);
}

/// A zone one hour ahead of UTC, in the winter before the first of its summers, whose daylight time
/// begins and ends at the given UTC moments.
ZoneOutlook outlook(const std::vector<std::pair<sys_seconds, sys_seconds>>& summers) {
    const sys_seconds now = summers.front().first - std::chrono::days(60);
    ZoneOutlook result{now, hours(1), now - std::chrono::days(90), {}};
    for (const auto& [begin, end] : summers) {
        result.ahead.push_back({begin, hours(1), hours(2)});
        result.ahead.push_back({end, hours(2), hours(1)});
    }
    return result;
}

TEST(ZoneRule, AZoneThatDoesNotChangeHasItsBiasOnly) {
    ZoneRecord expected;
    expected.bias = -345;
    EXPECT_EQ(zoneRecordOf({at(2026, 1, 1), minutes(345), {}, {}}), expected);
}

TEST(ZoneRule, AChangeInYearsToComeIsNotInForce) {
    ZoneOutlook far{at(2026, 1, 1), hours(1), at(2020, 1, 1), {}};
    far.ahead.push_back({at(2027, 6, 1), hours(1), hours(2)});
    EXPECT_EQ(zoneRecordOf(far).standardDate.month, 0);
    EXPECT_EQ(zoneRecordOf(far).bias, -60);
}

TEST(ZoneRule, TellsTheLastFromTheFourthByTheYearsToCome) {
    const ZoneRecord record = zoneRecordOf(outlook({
        {at(2026, 3, 29, 1), at(2026, 10, 25, 1)}, // the last Sundays, the second one a fourth
        {at(2027, 3, 28, 1), at(2027, 10, 31, 1)},
        {at(2028, 3, 26, 1), at(2028, 10, 29, 1)},
    }));
    EXPECT_EQ(record.bias, -60);
    EXPECT_EQ(record.daylightBias, -60);
    EXPECT_EQ(record.daylightDate, (SystemTime{0, 3, 0, 5, 2, 0, 0, 0}));
    EXPECT_EQ(record.standardDate, (SystemTime{0, 10, 0, 5, 3, 0, 0, 0}));
}

TEST(ZoneRule, InDaylightTimeTheGreaterOffsetIsStillDaylightTime) {
    ZoneOutlook summer = outlook({{at(2027, 3, 28, 1), at(2027, 10, 31, 1)}});
    summer.now = at(2026, 7, 1);
    summer.offset = hours(2);
    summer.ahead.insert(summer.ahead.begin(), {at(2026, 10, 25, 1), hours(2), hours(1)});
    const ZoneRecord record = zoneRecordOf(summer);
    EXPECT_EQ(record.bias, -60);
    EXPECT_EQ(record.daylightDate.month, 3);
    EXPECT_EQ(record.standardDate.month, 10);
}

TEST(ZoneRule, MidnightIsTheEndOfTheDayBeforeWhereOnlyThatDayFollowsARule) {
    // The last Thursday of October at 24:00, which is the first of November in 2030.
    const ZoneRecord record = zoneRecordOf(outlook({
        {at(2028, 4, 28, 1), at(2028, 10, 26, 22)},
        {at(2029, 4, 27, 1), at(2029, 10, 25, 22)},
        {at(2030, 4, 26, 1), at(2030, 10, 31, 22)},
    }));
    EXPECT_EQ(record.standardDate, (SystemTime{0, 10, 4, 5, 23, 59, 59, 999}));
}

TEST(ZoneRule, ADayThatWandersByAWeekKeepsTheComingOccurrence) {
    // The Friday before the last Sunday: the 29th in one year, the 28th, 27th… in the others.
    const ZoneRecord record = zoneRecordOf(outlook({
        {at(2024, 3, 29, 1), at(2024, 10, 27, 1)},
        {at(2025, 3, 28, 1), at(2025, 10, 26, 1)},
        {at(2026, 3, 27, 1), at(2026, 10, 25, 1)},
    }));
    EXPECT_EQ(record.daylightDate, (SystemTime{0, 3, 5, 5, 2, 0, 0, 0}));
}

TEST(ZoneRule, DaysThatWanderThroughTheYearBecomeDatesThatComeOnce) {
    const ZoneRecord record = zoneRecordOf(outlook({
        {at(2026, 3, 22, 1), at(2027, 2, 7, 1)},
        {at(2027, 3, 14, 1), at(2028, 1, 23, 1)},
        {at(2028, 3, 5, 1), at(2029, 1, 14, 1)},
    }));
    EXPECT_EQ(record.daylightDate, (SystemTime{2026, 3, 0, 22, 2, 0, 0, 0}));
    EXPECT_EQ(record.standardDate, (SystemTime{2027, 2, 0, 7, 3, 0, 0, 0}));
}

TEST(ZoneRule, AnOffsetThatEndsForGoodLiesBetweenTwoDates) {
    ZoneOutlook ending{at(2026, 1, 1), hours(6), at(2004, 10, 30, 21), {}};
    ending.ahead.push_back({at(2026, 2, 28, 18), hours(6), hours(5)});
    const ZoneRecord record = zoneRecordOf(ending);
    EXPECT_EQ(record.bias, -300);
    EXPECT_EQ(record.daylightBias, -60);
    EXPECT_EQ(record.daylightDate, (SystemTime{2004, 10, 0, 31, 2, 0, 0, 0}));
    EXPECT_EQ(record.standardDate, (SystemTime{2026, 3, 0, 1, 0, 0, 0, 0}));
}

} // namespace
} // namespace kintar::platform
