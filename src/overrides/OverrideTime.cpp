#include "overrides/OverrideTime.h"

#include <chrono>

namespace kintar {

OverrideTime OverrideTime::of(DateTime value) {
    return {value.dateOnly(), value.hour() * (60 / minutesOfStep) + value.minute() / minutesOfStep};
}

OverrideTime notInThePast(OverrideTime time, DateTime now, OverrideOffsets offsets) {
    if (time.date < now.dateOnly()) {
        time.date = now.dateOnly();
    }
    const DateTime locationNow = now.plusMinutes(offsets.location - offsets.workstation);
    while (time.moment().moment() - locationNow.moment() <= std::chrono::seconds(1)) {
        if (time.slider < lastStep) {
            ++time.slider;
        } else {
            time = {time.date.plusDays(1), 0};
        }
    }
    return time;
}

long long minutesBetween(DateTime from, DateTime to) {
    using std::chrono::floor;
    using std::chrono::minutes;
    return (floor<minutes>(to.moment()) - floor<minutes>(from.moment())).count();
}

} // namespace kintar
