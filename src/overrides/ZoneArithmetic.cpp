#include "overrides/ZoneArithmetic.h"

#include "base/Number.h"
#include "base/RunTimeError.h"
#include "overrides/OverrideTime.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <iterator>

namespace kintar {
namespace {

using platform::SystemTime;
using platform::ZoneName;

// By name, so that no order of day and month can be mistaken; English, because a locale gives
// nothing but order and separators.
constexpr std::array<std::string_view, 12> monthNames = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

RunTimeError subscriptOutOfRange() {
    return {9, "Subscript out of range"};
}

/// Each 8-bit code becomes one unit, up to the first zero.
void copyName(TimeZoneInformation::Name& units, std::string text) {
    text.erase(text.find_last_not_of(' ') + 1);
    for (std::size_t i = 0; i < text.size() && text[i] != '\0'; ++i) {
        if (i >= units.size()) {
            throw subscriptOutOfRange();
        }
        units[i] = static_cast<unsigned char>(text[i]);
    }
}

/// Reads one of the zone's names; false, and the key closed, where it cannot be read.
bool loadName(TimeZoneInformation::Name& units, platform::ZoneRegistry& registry,
              platform::ZoneRegistry::Key key, ZoneName which) {
    std::optional<std::string> text = registry.name(key, which, TimeZoneInformation::nameUnits);
    if (!text) {
        registry.close(key);
        return false;
    }
    copyName(units, std::move(*text));
    return true;
}

SystemTime fieldsOf(DateTime moment) {
    const std::chrono::year_month_day date = moment.date();
    SystemTime fields;
    fields.year = static_cast<std::uint16_t>(static_cast<int>(date.year()));
    fields.month = static_cast<std::uint16_t>(static_cast<unsigned>(date.month()));
    fields.day = static_cast<std::uint16_t>(static_cast<unsigned>(date.day()));
    fields.hour = static_cast<std::uint16_t>(moment.hour());
    fields.minute = static_cast<std::uint16_t>(moment.minute());
    fields.second = static_cast<std::uint16_t>(moment.second());
    return fields;
}

/// Takes a number and the separator behind it from the front of a text.
int takeNumber(std::string_view& text, char separator) {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    std::size_t used = static_cast<std::size_t>(end - text.data());
    if (error != std::errc()) {
        throw RunTimeError::typeMismatch();
    }
    if (separator != '\0') {
        if (used >= text.size() || text[used] != separator) {
            throw RunTimeError::typeMismatch();
        }
        ++used;
    }
    text.remove_prefix(used);
    return number;
}

int takeMonth(std::string_view& text) {
    constexpr std::size_t length = 3;
    const auto* const name =
        std::find(monthNames.begin(), monthNames.end(), text.substr(0, length));
    if (name == monthNames.end() || text.size() <= length || text[length] != '/') {
        throw RunTimeError::typeMismatch();
    }
    text.remove_prefix(length + 1);
    return static_cast<int>(std::distance(monthNames.begin(), name)) + 1;
}

} // namespace

void LoadZoneInfo(TimeZoneInformation& information, platform::ZoneRecord& record,
                  const std::string& name, bool useDST, platform::ZoneRegistry& registry) {
    const std::optional<platform::ZoneRegistry::Key> key = registry.open(name);
    if (!key) {
        return;
    }
    const std::optional<platform::ZoneRecord> read = registry.record(*key);
    if (!read) {
        return;
    }
    record = *read;
    information.Bias = record.bias;
    information.StandardBias = record.standardBias;
    if (!loadName(information.StandardName, registry, *key, ZoneName::Std) || !useDST) {
        return;
    }
    information.DaylightBias = record.daylightBias;
    information.StandardDate = record.standardDate;
    information.DaylightDate = record.daylightDate;
    loadName(information.DaylightName, registry, *key, ZoneName::Dlt);
}

bool ConvertTime(DateTime& moment, bool toUTC, const TimeZoneInformation& zone) {
    const SystemTime fields = fieldsOf(moment);
    const std::optional<SystemTime> converted = toUTC
                                                    ? TzSpecificLocalTimeToSystemTime(zone, fields)
                                                    : SystemTimeToTzSpecificLocalTime(zone, fields);
    if (!converted) {
        return false;
    }
    moment = momentFromText(momentText(*converted));
    return true;
}

std::string momentText(const SystemTime& time) {
    std::string text(monthNames.at(time.month - 1U));
    const auto add = [&text](char separator, int number) {
        text += separator;
        text += std::to_string(number);
    };
    add('/', time.day);
    add('/', time.year);
    add(' ', time.hour);
    add(':', time.minute);
    add(':', time.second);
    return text;
}

DateTime momentFromText(std::string_view text) {
    const int month = takeMonth(text);
    const int day = takeNumber(text, '/');
    const int year = takeNumber(text, ' ');
    const int hour = takeNumber(text, ':');
    const int minute = takeNumber(text, ':');
    const int second = takeNumber(text, '\0');
    const std::optional<DateTime> moment =
        DateTime::fromFields(year, month, day, hour, minute, second);
    if (!moment || !text.empty()) {
        throw RunTimeError::typeMismatch();
    }
    return *moment;
}

std::int16_t wholeMinutes(DateTime from, DateTime to) {
    return toInt16(minutesBetween(from, to));
}

} // namespace kintar
