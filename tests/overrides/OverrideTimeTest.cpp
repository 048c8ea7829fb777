#include "overrides/OverrideTime.h"

#include "base/RunTimeError.h"
#include "overrides/FakeOverrides.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace kintar {

void PrintTo(const OverrideTime& time, std::ostream* out) {
    *out << time.date.iso() << " slider " << time.slider;
}

namespace {

using namespace kintar::testing;

OverrideTime time(const char* date, int slider) {
    return {moment(date), slider};
}

constexpr OverrideOffsets sameZone{-300, -300};

TEST(OverrideTime, CutsTheMinuteDownToItsQuarter) {
    EXPECT_EQ(OverrideTime::of(moment("2012-03-14T10:07:59")), time("2012-03-14", 40));
    EXPECT_EQ(OverrideTime::of(moment("2012-03-14T10:14:59")), time("2012-03-14", 40));
    EXPECT_EQ(OverrideTime::of(moment("2012-03-14T10:15:00")), time("2012-03-14", 41));
    EXPECT_EQ(OverrideTime::of(moment("2012-03-14T23:59:59")), time("2012-03-14", lastStep));
    EXPECT_EQ(OverrideTime::of(moment("2012-03-14T00:00:00")), time("2012-03-14", 0));
}

TEST(OverrideTime, IsTheMomentOfItsDateAndSlider) {
    EXPECT_EQ(time("2012-03-14", 41).moment().iso(), "2012-03-14T10:15:00");
    EXPECT_EQ(time("2012-03-14", lastStep).moment().iso(), "2012-03-14T23:45:00");
}

TEST(NotInThePast, LeavesWhatLiesInTheFuture) {
    EXPECT_EQ(notInThePast(time("2012-03-14", 41), moment("2012-03-14T10:00:00"), sameZone),
              time("2012-03-14", 41));
    EXPECT_EQ(notInThePast(time("2013-01-01", 0), moment("2012-03-14T10:00:00"), sameZone),
              time("2013-01-01", 0));
}

TEST(NotInThePast, MovesOnByQuartersUntilItLiesInTheFuture) {
    EXPECT_EQ(notInThePast(time("2012-03-14", 0), moment("2012-03-14T10:07:00"), sameZone),
              time("2012-03-14", 41));
    EXPECT_EQ(notInThePast(time("2012-03-14", 40), moment("2012-03-14T10:00:00"), sameZone),
              time("2012-03-14", 41));
}

TEST(NotInThePast, OneSecondAheadIsNotEnoughTwoAre) {
    EXPECT_EQ(notInThePast(time("2012-03-14", 40), moment("2012-03-14T09:59:59"), sameZone),
              time("2012-03-14", 41));
    EXPECT_EQ(notInThePast(time("2012-03-14", 40), moment("2012-03-14T09:59:58"), sameZone),
              time("2012-03-14", 40));
}

TEST(NotInThePast, ADateBeforeTodayBecomesTodayAndTheTimeIsCheckedAgain) {
    EXPECT_EQ(notInThePast(time("2012-03-13", 60), moment("2012-03-14T10:07:00"), sameZone),
              time("2012-03-14", 60));
    EXPECT_EQ(notInThePast(time("1999-01-01", 8), moment("2012-03-14T10:07:00"), sameZone),
              time("2012-03-14", 41));
}

TEST(NotInThePast, BehindTheLastQuarterOfADayGoesOnWithTheNextDay) {
    EXPECT_EQ(notInThePast(time("2012-03-14", lastStep), moment("2012-03-14T23:50:00"), sameZone),
              time("2012-03-15", 0));
    EXPECT_EQ(notInThePast(time("2012-12-31", 0), moment("2012-12-31T23:45:00"), sameZone),
              time("2013-01-01", 0));
}

TEST(NotInThePast, ALocationThatIsAlreadyInTomorrowEndsThere) {
    // Chicago at 18:30 on the 14th; in Tokyo it is 09:30 on the 15th.
    EXPECT_EQ(notInThePast(time("2012-03-14", 0), moment("2012-03-14T18:30:00"), {540, -360}),
              time("2012-03-15", 39));
}

TEST(NotInThePast, ALocationThatIsStillInYesterdayStartsToday) {
    // Tokyo at 09:30 on the 15th; in Chicago it is 18:30 on the 14th. Today is the workstation's.
    EXPECT_EQ(notInThePast(time("2012-03-14", 80), moment("2012-03-15T09:30:00"), {-360, 540}),
              time("2012-03-15", 80));
}

TEST(NotInThePast, EndsWithAnErrorAtTheEndOfTheCalendar) {
    EXPECT_THROW(notInThePast(time("9999-12-31", 0), moment("9999-12-31T23:50:00"), sameZone),
                 RunTimeError);
}

TEST(MinutesBetween, CountsWholeMinutes) {
    EXPECT_EQ(minutesBetween(moment("2012-03-14T10:00:00"), moment("2012-03-14T10:15:00")), 15);
    EXPECT_EQ(minutesBetween(moment("2012-03-14T10:15:00"), moment("2012-03-14T10:00:00")), -15);
    EXPECT_EQ(minutesBetween(moment("2012-01-01"), moment("2013-01-01")), 527040);
}

} // namespace
} // namespace kintar
