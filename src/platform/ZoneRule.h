// The record of a zone from the changes that lie ahead of it.
#pragma once

#include "platform/Zones.h"

#include <chrono>
#include <vector>

namespace kintar::platform {

/// A change of a zone's offset.
struct ZoneChange {
    std::chrono::sys_seconds at;
    std::chrono::seconds before{}; ///< the offset that it ends, east positive
    std::chrono::seconds after{};  ///< the offset that it begins
};

/// What is known of a zone at a moment.
struct ZoneOutlook {
    std::chrono::sys_seconds now;
    std::chrono::seconds offset{};          ///< in force now
    std::chrono::sys_seconds lastChangedAt; ///< where it never changed, any moment before `now`
    std::vector<ZoneChange> ahead;          ///< the changes of the years to come, in order
};

/// The record for the rules in force at that moment. Of two alternating offsets the greater one is
/// daylight time. An offset that ends once and for all is daylight time between two dates.
ZoneRecord zoneRecordOf(const ZoneOutlook& outlook);

} // namespace kintar::platform
