#include "overrides/OverrideTexts.h"
#include "server/TextNumbers.h"

#include <array>
#include <cstdio>
#include <cstdlib>

namespace kintar {
namespace {

constexpr const char* threeBlanks = "   ";
constexpr int minutesOfHour = 60;

std::string utcOffset(int minutes) {
    std::array<char, 16> text{};
    const int size = std::abs(minutes);
    std::snprintf(text.data(), text.size(), "UTC%c%02d:%02d", minutes < 0 ? '-' : '+',
                  size / minutesOfHour, size % minutesOfHour);
    return text.data();
}

/// "6 h", "5 h 30 min", "45 min".
std::string duration(int minutes) {
    const int hours = minutes / minutesOfHour;
    const int rest = minutes % minutesOfHour;
    std::string text = hours > 0 ? std::to_string(hours) + " h" : "";
    if (rest > 0) {
        text += (text.empty() ? "" : " ") + std::to_string(rest) + " min";
    }
    return text;
}

/// Where there is no zone the dates are UTC, whatever the location's offset is taken to be.
int shownOffset(const OverrideZone& zone, OverrideOffsets offsets) {
    return zone.kind == OverrideZone::Kind::Zone ? offsets.location : 0;
}

std::string besideWorkstation(int ahead) {
    if (ahead == 0) {
        return "the same as this workstation";
    }
    return duration(std::abs(ahead)) + (ahead > 0 ? " ahead of" : " behind") + " this workstation";
}

} // namespace

std::string OverrideTexts::textOr(std::int16_t number, const char* design) const {
    std::string text = textByNumber_(number);
    return text.empty() ? design : text;
}

std::string OverrideTexts::newCaption() const {
    return textOr(textNumber::scheduledOverride, "Scheduled Override") + threeBlanks +
           textOr(textNumber::newOverride, "New");
}

std::string OverrideTexts::positionCaption(std::size_t position, std::size_t count) const {
    return std::to_string(position) + " " + textOr(textNumber::positionOf, "of") + " " +
           std::to_string(count) + threeBlanks +
           textOr(textNumber::scheduledOverride, "Scheduled Override");
}

std::string OverrideTexts::missingCommand() const {
    return textOr(textNumber::missingCommand, "Please choose a start command and a stop command.");
}

std::string OverrideTexts::readout(int slider) const {
    return formats_.formatLongTime(
        DateTime().plusMinutes(static_cast<long long>(slider) * minutesOfStep));
}

int OverrideTexts::aheadOfWorkstation(const OverrideZone& zone, OverrideOffsets offsets) {
    return shownOffset(zone, offsets) - offsets.workstation;
}

std::string OverrideTexts::zoneLine(const OverrideZone& zone, OverrideOffsets offsets) {
    std::string where = "UTC (the time zone '" + zone.name + "' is unknown)";
    if (zone.kind == OverrideZone::Kind::Zone) {
        where = zone.name + " (" + utcOffset(offsets.location) + " now" +
                (zone.observesDaylightTime ? ")" : ", no daylight time)");
    } else if (zone.kind == OverrideZone::Kind::NoLocation) {
        where = "UTC (the point has no location)";
    } else if (zone.name.empty()) {
        where = "UTC (the location has no time zone)";
    }
    return "Times are in " + where + ", " + besideWorkstation(aheadOfWorkstation(zone, offsets)) +
           ".";
}

} // namespace kintar
