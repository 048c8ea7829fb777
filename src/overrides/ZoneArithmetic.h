// From a zone's name to its conversions, with date-times as the override record holds them.
#pragma once

#include "base/DateTime.h"
#include "overrides/ZoneConversion.h"
#include "platform/Zones.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kintar {

/// Fills `information` and `record` (all zero before) from the zone `name`. Without `useDST` only
/// the biases of standard time and its name are taken, so that the zone never changes. What cannot
/// be read ends the filling where it stands, an unknown zone at once. The zone's key stays open
/// where everything was read or the record could not be, and is closed where a name could not be:
/// meant so. Raises run-time error 9 where a name has more than 32 characters.
void LoadZoneInfo(TimeZoneInformation& information, platform::ZoneRecord& record,
                  const std::string& name, bool useDST, platform::ZoneRegistry& registry);

/// Converts `moment` in place, to UTC or to the zone's local time; false, and `moment` unchanged,
/// where the conversion fails. Raises run-time error 13 where the result is no date-time (it lies
/// behind the year 9999).
bool ConvertTime(DateTime& moment, bool toUTC, const TimeZoneInformation& zone);

/// The text that a converted moment passes through, month by name: `Mar/14/2012 17:5:0`.
std::string momentText(const platform::SystemTime& time);
/// Reads that text back. Raises run-time error 13 where it is no date-time.
DateTime momentFromText(std::string_view text);

/// Minutes from one moment to another, each cut to its whole minute. Raises run-time error 6
/// outside 16 bits.
std::int16_t wholeMinutes(DateTime from, DateTime to);

} // namespace kintar
