#include "platform/ZoneRule.h"

#include <algorithm>
#include <cstdlib>

namespace kintar::platform {
namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::sys_days;
using std::chrono::weekday;
using std::chrono::year_month_day;
/// The local time that a change ends.
using LocalMoment = std::chrono::sys_time<milliseconds>;

constexpr unsigned daysOfWeek = 7;
constexpr unsigned lastOccurrence = 5;
/// Changes further apart than this do not come every year.
constexpr days yearly{370};
/// How far a yearly change may lie from the first one's day in the year before it follows no rule.
constexpr days mostDrift{8};

std::uint16_t unit(unsigned value) {
    return static_cast<std::uint16_t>(value);
}

LocalMoment localMomentOf(const ZoneChange& change) {
    return change.at + change.before;
}

/// The date that comes once.
SystemTime dateOnce(LocalMoment moment) {
    const sys_days day = floor<days>(moment);
    const year_month_day date(day);
    const std::chrono::hh_mm_ss time(moment - day);
    return {static_cast<std::uint16_t>(static_cast<int>(date.year())),
            unit(static_cast<unsigned>(date.month())),
            unit(weekday(day).c_encoding()),
            unit(static_cast<unsigned>(date.day())),
            static_cast<std::uint16_t>(time.hours().count()),
            static_cast<std::uint16_t>(time.minutes().count()),
            static_cast<std::uint16_t>(time.seconds().count()),
            static_cast<std::uint16_t>(time.subseconds().count())};
}

bool isInLastWeek(const year_month_day& date) {
    const std::chrono::year_month_day_last last(date.year() / date.month() / std::chrono::last);
    return static_cast<unsigned>(date.day()) + daysOfWeek > static_cast<unsigned>(last.day());
}

/// The day-in-month rules that `moment` meets: the occurrence as counted, and the last one.
std::vector<SystemTime> rulesMeeting(LocalMoment moment) {
    const year_month_day date(floor<days>(moment));
    SystemTime rule = dateOnce(moment);
    rule.year = 0;
    rule.day = unit((static_cast<unsigned>(date.day()) - 1) / daysOfWeek + 1);
    std::vector<SystemTime> rules = {rule};
    if (rule.day != lastOccurrence && isInLastWeek(date)) {
        rule.day = lastOccurrence;
        rules.push_back(rule);
    }
    return rules;
}

/// A change at midnight is also one in the last instant of the day before: "the last Thursday at
/// 24:00" is a rule only that way.
std::vector<SystemTime> rulesFor(LocalMoment moment) {
    std::vector<SystemTime> rules = rulesMeeting(moment);
    if (moment == floor<days>(moment)) {
        const std::vector<SystemTime> dayBefore = rulesMeeting(moment - milliseconds(1));
        rules.insert(rules.end(), dayBefore.begin(), dayBefore.end());
    }
    return rules;
}

days dayOfYear(LocalMoment moment) {
    const sys_days day = floor<days>(moment);
    return day - sys_days(year_month_day(day).year() / std::chrono::January / 1);
}

/// The changes ahead that begin the same offset as `first`.
std::vector<LocalMoment> alike(const ZoneOutlook& outlook, const ZoneChange& first) {
    std::vector<LocalMoment> moments;
    for (const ZoneChange& change : outlook.ahead) {
        if (change.after == first.after) {
            moments.push_back(localMomentOf(change));
        }
    }
    return moments;
}

bool staysInSeason(const std::vector<LocalMoment>& moments) {
    return std::all_of(moments.begin(), moments.end(), [&](LocalMoment moment) {
        const days drift = dayOfYear(moment) - dayOfYear(moments.front());
        return drift <= mostDrift && drift >= -mostDrift;
    });
}

/// Of the rules that the first change meets, the one that most later ones meet too.
SystemTime ruleOf(const std::vector<LocalMoment>& moments) {
    SystemTime best;
    std::ptrdiff_t bestCount = -1;
    for (const SystemTime& rule : rulesFor(moments.front())) {
        const auto meets = [&](LocalMoment moment) {
            const std::vector<SystemTime> rules = rulesFor(moment);
            return std::find(rules.begin(), rules.end(), rule) != rules.end();
        };
        const std::ptrdiff_t count = std::count_if(moments.begin(), moments.end(), meets);
        if (count > bestCount) {
            best = rule;
            bestCount = count;
        }
    }
    return best;
}

std::int32_t minutesOf(std::chrono::seconds offset) {
    return static_cast<std::int32_t>(floor<minutes>(offset).count());
}

ZoneRecord withoutDaylightTime(std::chrono::seconds offset) {
    ZoneRecord record;
    record.bias = -minutesOf(offset);
    return record;
}

ZoneRecord withOffsets(std::chrono::seconds standard, std::chrono::seconds daylight) {
    ZoneRecord record;
    record.bias = -minutesOf(standard);
    record.daylightBias = minutesOf(standard) - minutesOf(daylight);
    return record;
}

/// The offset in force now ends with `change`, and nothing follows.
ZoneRecord endingOnce(const ZoneOutlook& outlook, const ZoneChange& change) {
    ZoneRecord record = withOffsets(change.after, change.before);
    record.daylightDate = dateOnce(outlook.lastChangedAt + change.after);
    record.standardDate = dateOnce(localMomentOf(change));
    return record;
}

ZoneRecord alternating(const ZoneOutlook& outlook, const ZoneChange& first,
                       const ZoneChange& second) {
    const bool firstIsToDaylight = first.after > second.after;
    const ZoneChange& toDaylight = firstIsToDaylight ? first : second;
    const ZoneChange& toStandard = firstIsToDaylight ? second : first;
    ZoneRecord record = withOffsets(toStandard.after, toDaylight.after);
    const std::vector<LocalMoment> daylightMoments = alike(outlook, toDaylight);
    const std::vector<LocalMoment> standardMoments = alike(outlook, toStandard);
    if (staysInSeason(daylightMoments) && staysInSeason(standardMoments)) {
        record.daylightDate = ruleOf(daylightMoments);
        record.standardDate = ruleOf(standardMoments);
    } else {
        record.daylightDate = dateOnce(daylightMoments.front());
        record.standardDate = dateOnce(standardMoments.front());
    }
    return record;
}

} // namespace

ZoneRecord zoneRecordOf(const ZoneOutlook& outlook) {
    const std::vector<ZoneChange>& ahead = outlook.ahead;
    if (ahead.empty() || ahead.front().at - outlook.now > yearly) {
        return withoutDaylightTime(outlook.offset);
    }
    if (ahead.size() < 2 || ahead[1].at - ahead[0].at > yearly) {
        return endingOnce(outlook, ahead.front());
    }
    return alternating(outlook, ahead[0], ahead[1]);
}

} // namespace kintar::platform
