#include "platform/SystemClock.h"

#include <algorithm>
#include <ctime>

namespace kintar::platform {

namespace {

DateTime fromBrokenDown(const std::tm& parts) {
    // A leap second has no place of its own in a date-time.
    const int second = std::min(parts.tm_sec, 59);
    return DateTime::fromFields(parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday,
                                parts.tm_hour, parts.tm_min, second)
        .value_or(DateTime{});
}

} // namespace

DateTime SystemClock::now() const {
    const std::time_t moment = std::time(nullptr);
    std::tm parts{};
    ::localtime_r(&moment, &parts);
    return fromBrokenDown(parts);
}

DateTime SystemClock::utcNow() const {
    const std::time_t moment = std::time(nullptr);
    std::tm parts{};
    ::gmtime_r(&moment, &parts);
    return fromBrokenDown(parts);
}

} // namespace kintar::platform
