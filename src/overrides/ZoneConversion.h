// The two conversions between UTC and a zone's local time, by the rules of the zone's record.
#pragma once

#include "platform/Zones.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace kintar {

/// A zone as the conversions take it. All zero: UTC without daylight time.
struct TimeZoneInformation {
    static constexpr std::size_t nameUnits = 32;
    using Name = std::array<char16_t, nameUnits>;

    std::int32_t Bias = 0;
    Name StandardName{};
    platform::SystemTime StandardDate;
    std::int32_t StandardBias = 0;
    Name DaylightName{};
    platform::SystemTime DaylightDate;
    std::int32_t DaylightBias = 0;

    bool operator==(const TimeZoneInformation&) const = default;
};

// Both conversions keep to these rules:
//
// - A zone has daylight time where both its dates have a month. Otherwise its offset is `Bias`
//   alone; the two other biases count only beside a date.
// - `StandardDate` is in daylight time and `DaylightDate` in standard time, each the first moment
//   of what it begins. A date without a year comes in every year, the year being that of the moment
//   as it is given; a date with one comes once.
// - Where daylight time begins later than it ends, as in the south, the days outside the two dates
//   are daylight time.
// - A local time that occurs twice is the first of the two, in daylight time. One that does not
//   exist is read with the daylight offset too, and so lies before the change.
// - A moment or a date that is no date, an occurrence outside 1 to 5 and a result before the year
//   1601 or after 30827 fail. `dayOfWeek` of a moment is not looked at.

/// The zone's local time at a UTC moment; nothing where that fails.
std::optional<platform::SystemTime>
SystemTimeToTzSpecificLocalTime(const TimeZoneInformation& zone, const platform::SystemTime& utc);

/// The UTC moment of a local time; nothing where that fails.
std::optional<platform::SystemTime>
TzSpecificLocalTimeToSystemTime(const TimeZoneInformation& zone, const platform::SystemTime& local);

} // namespace kintar
