// A date and a time of day as the override editor holds them: a date picker and a slider.
#pragma once

#include "base/DateTime.h"

#include <string>

namespace kintar {

inline constexpr int minutesOfStep = 15;
/// The slider's last position, 23:45. Midnight is position 0 of the next day.
inline constexpr int lastStep = 95;

struct OverrideTime {
    DateTime date; ///< at midnight
    int slider = 0;

    /// `value` with its minute cut down to the quarter.
    static OverrideTime of(DateTime value);

    [[nodiscard]] DateTime moment() const {
        return date.plusMinutes(static_cast<long long>(slider) * minutesOfStep);
    }
    bool operator==(const OverrideTime&) const = default;
};

/// Minutes that the two clocks are ahead of UTC.
struct OverrideOffsets {
    int location = 0;
    int workstation = 0;
};

/// The first date and time from `time` on that does not lie in the location's past, where `now` is
/// the workstation's. A date before today becomes today; then the time moves on by steps until it
/// lies more than a second after the location's now, behind a day's last step with the next day.
/// Raises run-time error 6 behind the year 9999.
OverrideTime notInThePast(OverrideTime time, DateTime now, OverrideOffsets offsets);

/// Minutes from one moment to another, each cut to its whole minute.
long long minutesBetween(DateTime from, DateTime to);

} // namespace kintar
