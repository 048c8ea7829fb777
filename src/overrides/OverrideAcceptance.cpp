#include "overrides/OverrideAcceptance.h"

#include "overrides/OverrideTime.h"

namespace kintar {
namespace {

constexpr std::int32_t newStatus = 0;
constexpr std::int32_t scheduledStatus = 1;

bool stopsAfterItsStart(const objOvrSchedule& schedule) {
    return minutesBetween(schedule.StartDate(), schedule.StopDate()) >= 1;
}

} // namespace

OverrideVerdict validateOverride(objOvrSchedule& schedule) {
    if (!stopsAfterItsStart(schedule)) {
        return OverrideVerdict::Dates;
    }
    if (schedule.StartCmd() == 0 || schedule.StopCmd() == 0) {
        return OverrideVerdict::Command;
    }
    if (schedule.IsAdd() || schedule.Status() == newStatus) {
        schedule.Status(scheduledStatus);
    }
    return OverrideVerdict::Valid;
}

void saveOverride(objOvrSchedule& schedule, int startSlider, int stopSlider,
                  std::vector<AdditionalDay>& days) {
    schedule.Save();
    while (!days.empty()) {
        const AdditionalDay& day = days.front();
        schedule.IsAdd(true);
        schedule.StartDate(OverrideTime{day.start, startSlider}.moment());
        schedule.StopDate(OverrideTime{day.stop, stopSlider}.moment());
        if (stopsAfterItsStart(schedule)) {
            schedule.Save();
        }
        days.erase(days.begin());
    }
}

} // namespace kintar
