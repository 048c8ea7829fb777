#include "overrides/OverrideTexts.h"

#include <gtest/gtest.h>

namespace kintar {
namespace {

OverrideTexts english() {
    return {LocaleFormats{}, [](std::int16_t) { return std::string(); }};
}

OverrideTexts numbered() {
    return {LocaleFormats{}, [](std::int16_t number) { return "#" + std::to_string(number); }};
}

TEST(OverrideTexts, BuildCaptionsFromTextsByNumber) {
    EXPECT_EQ(numbered().newCaption(), "#474   #475");
    EXPECT_EQ(numbered().positionCaption(2, 3), "2 #10801 3   #474");
    EXPECT_EQ(numbered().missingCommand(), "#477");
}

TEST(OverrideTexts, AMissingTextLeavesTheDesignCaption) {
    EXPECT_EQ(english().newCaption(), "Scheduled Override   New");
    EXPECT_EQ(english().positionCaption(2, 3), "2 of 3   Scheduled Override");
    EXPECT_EQ(english().missingCommand(), "Please choose a start command and a stop command.");
}

TEST(OverrideTexts, ReadASlidersTimeAsTheLocaleWritesIt) {
    EXPECT_EQ(english().readout(0), "12:00:00 AM");
    EXPECT_EQ(english().readout(41), "10:15:00 AM");
    EXPECT_EQ(english().readout(lastStep), "11:45:00 PM");
    const OverrideTexts german({"dd.MM.yyyy", "HH:mm:ss"}, [](std::int16_t) { return ""; });
    EXPECT_EQ(german.readout(lastStep), "23:45:00");
}

TEST(OverrideTexts, TellTheZoneAndItsDifferenceFromTheWorkstation) {
    const OverrideZone lisbon{OverrideZone::Kind::Zone, "GMT Standard Time", true};
    EXPECT_EQ(OverrideTexts::zoneLine(lisbon, {60, -300}),
              "Times are in GMT Standard Time (UTC+01:00 now), 6 h ahead of this workstation.");
    EXPECT_EQ(
        OverrideTexts::zoneLine(lisbon, {0, 330}),
        "Times are in GMT Standard Time (UTC+00:00 now), 5 h 30 min behind this workstation.");
    EXPECT_EQ(OverrideTexts::zoneLine(lisbon, {60, 60}),
              "Times are in GMT Standard Time (UTC+01:00 now), the same as this workstation.");
    const OverrideZone phoenix{OverrideZone::Kind::Zone, "US Mountain Standard Time", false};
    EXPECT_EQ(OverrideTexts::zoneLine(phoenix, {-420, -375}),
              "Times are in US Mountain Standard Time (UTC-07:00 now, no daylight time), 45 min "
              "behind this workstation.");
}

TEST(OverrideTexts, SayThatTimesAreUtcWhereThereIsNoZone) {
    EXPECT_EQ(OverrideTexts::zoneLine({OverrideZone::Kind::NoLocation, "", false}, {-300, -300}),
              "Times are in UTC (the point has no location), 5 h ahead of this workstation.");
    EXPECT_EQ(OverrideTexts::zoneLine({OverrideZone::Kind::Utc, "", false}, {-300, -300}),
              "Times are in UTC (the location has no time zone), 5 h ahead of this workstation.");
    EXPECT_EQ(OverrideTexts::zoneLine({OverrideZone::Kind::Utc, "Atlantis", true}, {0, 0}),
              "Times are in UTC (the time zone 'Atlantis' is unknown), the same as this "
              "workstation.");
}

} // namespace
} // namespace kintar
