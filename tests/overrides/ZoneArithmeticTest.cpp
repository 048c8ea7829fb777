#include "overrides/ZoneArithmetic.h"

#include "overrides/FakeZones.h"
#include "support/ErrorNumber.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace kintar {
namespace {

using testing::centralRecord;
using ::testing::ElementsAre;
using testing::FakeZones;

std::string textOf(const TimeZoneInformation::Name& units) {
    std::string text;
    for (const char16_t unit : units) {
        if (unit != 0) {
            text += static_cast<char>(unit);
        }
    }
    return text;
}

struct Loaded {
    TimeZoneInformation information;
    platform::ZoneRecord record;
};

Loaded load(FakeZones& zones, const std::string& name, bool useDST) {
    Loaded loaded;
    LoadZoneInfo(loaded.information, loaded.record, name, useDST, zones);
    return loaded;
}

DateTime moment(const char* iso) {
    return DateTime::fromIso(iso).value();
}

TEST(LoadZoneInfo, TakesEverythingAndLeavesTheKeyOpen) {
    FakeZones zones;
    const Loaded loaded = load(zones, "Central Standard Time", true);
    EXPECT_EQ(loaded.record, centralRecord());
    EXPECT_EQ(loaded.information.Bias, 360);
    EXPECT_EQ(loaded.information.StandardBias, 0);
    EXPECT_EQ(loaded.information.DaylightBias, -60);
    EXPECT_EQ(loaded.information.StandardDate, centralRecord().standardDate);
    EXPECT_EQ(loaded.information.DaylightDate, centralRecord().daylightDate);
    EXPECT_EQ(textOf(loaded.information.StandardName), "Central Standard Time");
    EXPECT_EQ(textOf(loaded.information.DaylightName), "Central Daylight Time");
    EXPECT_THAT(zones.events, ElementsAre("open Central Standard Time", "TZI", "Std 32", "Dlt 32"));
}

TEST(LoadZoneInfo, WithoutDaylightTimeTakesStandardBiasesAndNameOnly) {
    FakeZones zones;
    zones.zones["Central Standard Time"].record->standardBias = 5;
    const Loaded loaded = load(zones, "Central Standard Time", false);
    EXPECT_EQ(loaded.information.Bias, 360);
    EXPECT_EQ(loaded.information.StandardBias, 5);
    EXPECT_EQ(loaded.information.DaylightBias, 0);
    EXPECT_EQ(loaded.information.StandardDate, platform::SystemTime());
    EXPECT_EQ(loaded.information.DaylightDate, platform::SystemTime());
    EXPECT_EQ(textOf(loaded.information.StandardName), "Central Standard Time");
    EXPECT_EQ(textOf(loaded.information.DaylightName), "");
    EXPECT_THAT(zones.events, ElementsAre("open Central Standard Time", "TZI", "Std 32"));
}

TEST(LoadZoneInfo, AnUnknownZoneStaysAllZero) {
    FakeZones zones;
    const Loaded loaded = load(zones, "Nowhere", true);
    EXPECT_EQ(loaded.information, TimeZoneInformation());
    EXPECT_THAT(zones.events, ElementsAre("open Nowhere"));
}

TEST(LoadZoneInfo, AnUnreadableRecordStaysAllZeroAndLeavesTheKeyOpen) {
    FakeZones zones;
    zones.zones["Central Standard Time"].record.reset();
    const Loaded loaded = load(zones, "Central Standard Time", true);
    EXPECT_EQ(loaded.information, TimeZoneInformation());
    EXPECT_THAT(zones.events, ElementsAre("open Central Standard Time", "TZI"));
}

TEST(LoadZoneInfo, AnUnreadableStandardNameKeepsTheBiasesAndClosesTheKey) {
    FakeZones zones;
    zones.zones["Central Standard Time"].standardName.reset();
    const Loaded loaded = load(zones, "Central Standard Time", true);
    EXPECT_EQ(loaded.information.Bias, 360);
    EXPECT_EQ(loaded.information.DaylightBias, 0);
    EXPECT_EQ(loaded.information.StandardDate, platform::SystemTime());
    EXPECT_EQ(zones.events.back(), "close Central Standard Time");
}

TEST(LoadZoneInfo, AnUnreadableDaylightNameKeepsAllRulesAndClosesTheKey) {
    FakeZones zones;
    zones.zones["Central Standard Time"].daylightName.reset();
    const Loaded loaded = load(zones, "Central Standard Time", true);
    EXPECT_EQ(loaded.information.DaylightDate, centralRecord().daylightDate);
    EXPECT_EQ(zones.events.back(), "close Central Standard Time");
}

TEST(LoadZoneInfo, ANameOf32CharactersFillsItsPlaceAndA33rdRaises9) {
    FakeZones zones;
    zones.zones["Central Standard Time"].standardName = std::string(32, 'x');
    EXPECT_EQ(textOf(load(zones, "Central Standard Time", true).information.StandardName),
              std::string(32, 'x'));
    zones.zones["Central Standard Time"].standardName = std::string(33, 'x');
    EXPECT_EQ(testing::errorNumber([&] { load(zones, "Central Standard Time", true); }), 9);
}

TEST(LoadZoneInfo, ANameEndsAtItsFirstZeroAndWithoutTrailingBlanks) {
    FakeZones zones;
    zones.zones["Central Standard Time"].standardName = std::string("Abc\0def", 7);
    zones.zones["Central Standard Time"].daylightName = "Xyz   ";
    const Loaded loaded = load(zones, "Central Standard Time", true);
    EXPECT_EQ(textOf(loaded.information.StandardName), "Abc");
    EXPECT_EQ(textOf(loaded.information.DaylightName), "Xyz");
}

TEST(LoadZoneInfo, EachByteOfANameBecomesOneUnit) {
    FakeZones zones;
    zones.zones["Central Standard Time"].standardName = "\xC3\xA9";
    const Loaded loaded = load(zones, "Central Standard Time", true);
    EXPECT_EQ(loaded.information.StandardName[0], char16_t{0xC3});
    EXPECT_EQ(loaded.information.StandardName[1], char16_t{0xA9});
}

TEST(ConvertTime, ConvertsInPlaceBothWays) {
    FakeZones zones;
    const TimeZoneInformation zone = load(zones, "Central Standard Time", true).information;
    DateTime value = moment("2012-07-04T17:05:09");
    EXPECT_TRUE(ConvertTime(value, false, zone));
    EXPECT_EQ(value.iso(), "2012-07-04T12:05:09");
    EXPECT_TRUE(ConvertTime(value, true, zone));
    EXPECT_EQ(value.iso(), "2012-07-04T17:05:09");
}

TEST(ConvertTime, ALocationWithoutDaylightTimeHasTheStandardOffsetInSummerToo) {
    FakeZones zones;
    const TimeZoneInformation zone = load(zones, "Central Standard Time", false).information;
    DateTime value = moment("2012-07-04T17:05:09");
    EXPECT_TRUE(ConvertTime(value, false, zone));
    EXPECT_EQ(value.iso(), "2012-07-04T11:05:09");
}

TEST(ConvertTime, AFailedConversionLeavesTheMomentUnchanged) {
    DateTime value = moment("1600-12-31T23:00:00");
    EXPECT_FALSE(ConvertTime(value, true, {}));
    EXPECT_EQ(value.iso(), "1600-12-31T23:00:00");
}

TEST(ConvertTime, AResultBehindTheLastYearIsNoDateTime) {
    FakeZones zones;
    const TimeZoneInformation zone = load(zones, "Central Standard Time", true).information;
    DateTime value = moment("9999-12-31T23:00:00");
    EXPECT_EQ(testing::errorNumber([&] { ConvertTime(value, true, zone); }), 13);
    EXPECT_EQ(value.iso(), "9999-12-31T23:00:00");
}

TEST(MomentText, NamesTheMonthAndHasNoLeadingZeros) {
    EXPECT_EQ(momentText({2012, 3, 0, 4, 7, 5, 9, 0}), "Mar/4/2012 7:5:9");
    EXPECT_EQ(momentText({2012, 12, 0, 14, 17, 55, 59, 999}), "Dec/14/2012 17:55:59");
}

TEST(MomentText, ReadsBackWhatItWrites) {
    EXPECT_EQ(momentFromText("Mar/4/2012 7:5:9").iso(), "2012-03-04T07:05:09");
}

TEST(MomentText, AnythingElseRaises13) {
    for (const char* text : {"", "Mar", "Mar/", "Mrz/4/2012 7:5:9", "Mar/4/2012", "Mar/4/2012 7:5",
                             "Mar/4/2012 7:5:9 ", "Mar/30/10000 0:0:0", "Feb/30/2012 0:0:0",
                             "3/4/2012 7:5:9", "Mar/x/2012 7:5:9", "Mar/4/2012 7:5:99999999999"}) {
        EXPECT_EQ(testing::errorNumber([&] { momentFromText(text); }), 13) << text;
    }
}

TEST(WholeMinutes, CountsFromWholeMinuteToWholeMinute) {
    EXPECT_EQ(wholeMinutes(moment("2012-01-01T10:00:00"), moment("2012-01-01T05:00:00")), -300);
    EXPECT_EQ(wholeMinutes(moment("2012-01-01T10:00:00"), moment("2012-01-01T05:00:01")), -300)
        << "a second more between two readings of the clock is no minute less";
    EXPECT_EQ(wholeMinutes(moment("2012-01-01T10:00:00"), moment("2012-01-01T10:00:59")), 0);
}

TEST(WholeMinutes, RaisesOverflowBeyond16Bits) {
    EXPECT_EQ(
        testing::errorNumber([] { wholeMinutes(moment("2012-01-01"), moment("2012-01-24")); }), 6);
}

} // namespace
} // namespace kintar
