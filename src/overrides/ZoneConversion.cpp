#include "overrides/ZoneConversion.h"

#include <chrono>

namespace kintar {
namespace {

using platform::SystemTime;
using std::chrono::days;
using std::chrono::minutes;
using std::chrono::sys_days;
using std::chrono::weekday;
using std::chrono::year_month_day;
/// A moment in UTC or in local time, whichever the function is about.
using Moment = std::chrono::sys_time<std::chrono::milliseconds>;

constexpr int firstYear = 1601;
constexpr int lastYear = 30827;
constexpr unsigned daysOfWeek = 7;
constexpr unsigned lastOccurrence = 5;

bool isTimeOfDay(const SystemTime& time) {
    return time.hour < 24 && time.minute < 60 && time.second < 60 && time.milliseconds < 1000;
}

std::chrono::milliseconds timeOfDay(const SystemTime& time) {
    return std::chrono::hours(time.hour) + minutes(time.minute) +
           std::chrono::seconds(time.second) + std::chrono::milliseconds(time.milliseconds);
}

std::optional<Moment> momentOf(const SystemTime& time) {
    const year_month_day date{std::chrono::year(time.year), std::chrono::month(time.month),
                              std::chrono::day(time.day)};
    if (time.year < firstYear || time.year > lastYear || !date.ok() || !isTimeOfDay(time)) {
        return std::nullopt;
    }
    return sys_days(date) + timeOfDay(time);
}

std::optional<SystemTime> fieldsOf(Moment moment) {
    const sys_days day = std::chrono::floor<days>(moment);
    const year_month_day date(day);
    const int year = static_cast<int>(date.year());
    if (year < firstYear || year > lastYear) {
        return std::nullopt;
    }
    const std::chrono::hh_mm_ss time(moment - day);
    return SystemTime{static_cast<std::uint16_t>(year),
                      static_cast<std::uint16_t>(static_cast<unsigned>(date.month())),
                      static_cast<std::uint16_t>(weekday(day).c_encoding()),
                      static_cast<std::uint16_t>(static_cast<unsigned>(date.day())),
                      static_cast<std::uint16_t>(time.hours().count()),
                      static_cast<std::uint16_t>(time.minutes().count()),
                      static_cast<std::uint16_t>(time.seconds().count()),
                      static_cast<std::uint16_t>(time.subseconds().count())};
}

/// The moment of a zone's date, for a date without a year in `year`.
std::optional<Moment> changeIn(const SystemTime& rule, std::uint16_t year) {
    if (rule.year != 0) {
        return momentOf(rule);
    }
    const std::chrono::month month(rule.month);
    if (!month.ok() || rule.dayOfWeek >= daysOfWeek || rule.day < 1 || rule.day > lastOccurrence ||
        !isTimeOfDay(rule)) {
        return std::nullopt;
    }
    const sys_days first(std::chrono::year(year) / month / std::chrono::day(1));
    const sys_days last(std::chrono::year(year) / month / std::chrono::last);
    sys_days day = first + (weekday(rule.dayOfWeek) - weekday(first));
    day += days(daysOfWeek * (rule.day - 1U));
    if (day > last) {
        day -= days(daysOfWeek); // the month has only four: the fifth is the last
    }
    return day + timeOfDay(rule);
}

/// The two changes of a year, as moments of the same kind, and whether a moment between or outside
/// them is daylight time.
struct Changes {
    Moment toDaylight;
    Moment toStandard;

    [[nodiscard]] bool isDaylight(Moment moment) const {
        if (toDaylight < toStandard) {
            return moment >= toDaylight && moment < toStandard;
        }
        return moment < toStandard || moment >= toDaylight;
    }
};

bool hasDaylightTime(const TimeZoneInformation& zone) {
    return zone.StandardDate.month != 0 && zone.DaylightDate.month != 0;
}

/// The changes in the local time that each ends.
std::optional<Changes> localChanges(const TimeZoneInformation& zone, std::uint16_t year) {
    const std::optional<Moment> toStandard = changeIn(zone.StandardDate, year);
    const std::optional<Moment> toDaylight = changeIn(zone.DaylightDate, year);
    if (!toStandard || !toDaylight) {
        return std::nullopt;
    }
    return Changes{*toDaylight, *toStandard};
}

/// The changes in UTC.
std::optional<Changes> utcChanges(const TimeZoneInformation& zone, std::uint16_t year) {
    std::optional<Changes> changes = localChanges(zone, year);
    if (changes) {
        changes->toDaylight += minutes(zone.Bias) + minutes(zone.StandardBias);
        changes->toStandard += minutes(zone.Bias) + minutes(zone.DaylightBias);
    }
    return changes;
}

minutes biasAt(const TimeZoneInformation& zone, const Changes& changes, Moment moment) {
    return minutes(zone.Bias) +
           minutes(changes.isDaylight(moment) ? zone.DaylightBias : zone.StandardBias);
}

/// `moment` with the zone's bias added (`sign` 1) or taken away (-1).
template <class ChangesOf>
std::optional<SystemTime> shifted(const TimeZoneInformation& zone, const SystemTime& given,
                                  int sign, ChangesOf changesOf) {
    const std::optional<Moment> moment = momentOf(given);
    if (!moment) {
        return std::nullopt;
    }
    minutes bias(zone.Bias);
    if (hasDaylightTime(zone)) {
        const std::optional<Changes> changes = changesOf(zone, given.year);
        if (!changes) {
            return std::nullopt;
        }
        bias = biasAt(zone, *changes, *moment);
    }
    return fieldsOf(*moment + sign * bias);
}

} // namespace

std::optional<SystemTime> SystemTimeToTzSpecificLocalTime(const TimeZoneInformation& zone,
                                                          const SystemTime& utc) {
    return shifted(zone, utc, -1, utcChanges);
}

std::optional<SystemTime> TzSpecificLocalTimeToSystemTime(const TimeZoneInformation& zone,
                                                          const SystemTime& local) {
    return shifted(zone, local, 1, localChanges);
}

} // namespace kintar
