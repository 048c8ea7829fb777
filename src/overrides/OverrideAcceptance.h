// Whether a schedule may be saved, and its saving together with its additional days.
#pragma once

#include "base/DateTime.h"
#include "overrides/objOvrSchedule.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kintar {

/// One row of the additional days: dates without times.
struct AdditionalDay {
    std::string key; ///< "ID" and a number
    DateTime start;
    DateTime stop;
};

enum class OverrideVerdict : std::uint8_t {
    Valid,
    Dates,   ///< it stops less than a minute after its start
    Command, ///< a side has no command
};

/// Looks at the dates first, then at the commands. A valid schedule that is new, or was never
/// validated, becomes scheduled; any other status is kept.
OverrideVerdict validateOverride(objOvrSchedule& schedule);

/// Saves the schedule, and then each day as a row of its own with the sliders' times; a day that
/// does not stop at least a minute after its start is dropped without a word. Takes the days out of
/// the list one by one. A save that fails does not keep the others from being tried.
void saveOverride(objOvrSchedule& schedule, int startSlider, int stopSlider,
                  std::vector<AdditionalDay>& days);

} // namespace kintar
