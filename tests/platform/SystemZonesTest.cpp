#include "platform/SystemZones.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar::platform {
namespace {

using ::testing::Contains;

class SetClock final : public Clock {
public:
    explicit SetClock(const char* utc) : utc_(DateTime::fromIso(utc).value()) {}
    [[nodiscard]] DateTime now() const override { return utc_; }
    [[nodiscard]] DateTime utcNow() const override { return utc_; }
    void set(const char* utc) { utc_ = DateTime::fromIso(utc).value(); }

private:
    DateTime utc_;
};

TEST(SystemZones, KnowsAZoneByItsRegistryName) {
    const SetClock clock("2025-06-01T00:00:00");
    SystemZones zones(clock);
    const auto key = zones.open("Central Standard Time");
    ASSERT_TRUE(key);
    const ZoneRecord record = zones.record(*key).value();
    EXPECT_EQ(record.bias, 360);
    EXPECT_EQ(record.daylightBias, -60);
    EXPECT_EQ(record.daylightDate, (SystemTime{0, 3, 0, 2, 2, 0, 0, 0}));
    EXPECT_EQ(record.standardDate, (SystemTime{0, 11, 0, 1, 2, 0, 0, 0}));
    EXPECT_EQ(zones.name(*key, ZoneName::Std, 32), "Central Standard Time");
    EXPECT_EQ(zones.name(*key, ZoneName::Dlt, 32), "Central Daylight Time");
}

TEST(SystemZones, LooksUpANameUnknownToTheMappingAsItIsGiven) {
    const SetClock clock("2025-06-01T00:00:00");
    SystemZones zones(clock);
    const auto key = zones.open("Europe/Lisbon");
    ASSERT_TRUE(key);
    EXPECT_EQ(zones.record(*key)->daylightDate, (SystemTime{0, 3, 0, 5, 1, 0, 0, 0}));
    EXPECT_EQ(zones.name(*key, ZoneName::Std, 32), "Europe/Lisbon");
}

TEST(SystemZones, CutsANameWhereAskedTo) {
    const SetClock clock("2025-06-01T00:00:00");
    SystemZones zones(clock);
    EXPECT_EQ(zones.name(zones.open("Central Standard Time").value(), ZoneName::Std, 7), "Central");
}

TEST(SystemZones, HasNoZoneForOtherNames) {
    const SetClock clock("2025-06-01T00:00:00");
    SystemZones zones(clock);
    for (const char* name : {"", "Nowhere", "Central Standard Tim", "../zoneinfo/Europe/Lisbon",
                             "/usr/share/zoneinfo/Europe/Lisbon", "Europe/Lisbon\n", "Europe",
                             "zone1970.tab", ":Europe/Lisbon"}) {
        EXPECT_FALSE(zones.open(name)) << name;
    }
    EXPECT_FALSE(zones.open(std::string("Europe/Lisbon\0", 14)));
    EXPECT_FALSE(zones.open(std::string(5000, 'A')));
}

TEST(SystemZones, OneZoneHasOneKeyHoweverOftenItIsLeftOpen) {
    const SetClock clock("2025-06-01T00:00:00");
    SystemZones zones(clock);
    const auto first = zones.open("Europe/Lisbon");
    zones.open("Central Standard Time");
    EXPECT_EQ(zones.open("Europe/Lisbon"), first);
}

TEST(SystemZones, GivesTheRulesInForceOnTheClocksDay) {
    SetClock clock("2005-06-01T00:00:00");
    SystemZones zones(clock);
    const auto key = zones.open("Central Standard Time").value();
    EXPECT_EQ(zones.record(key)->standardDate.month, 10) << "until 2006";
    clock.set("2007-06-01T00:00:00");
    EXPECT_EQ(zones.open("Central Standard Time"), key);
    EXPECT_EQ(zones.record(key)->standardDate.month, 11);
}

TEST(SystemZones, EveryNameOfTheMappingIsAZone) {
    const SetClock clock("2025-06-01T00:00:00");
    SystemZones zones(clock);
    const std::vector<std::string> names = registryZoneNames();
    EXPECT_GT(names.size(), 130U);
    EXPECT_THAT(names, Contains("Central Standard Time"));
    for (const std::string& name : names) {
        EXPECT_TRUE(zones.open(name)) << name;
    }
}

} // namespace
} // namespace kintar::platform
