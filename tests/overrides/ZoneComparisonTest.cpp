// Every zone of the mapping, converted by its record, against the C library's reading of the zone
// database.
#include "overrides/ZoneArithmetic.h"
#include "platform/SystemZones.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace kintar {
namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;

constexpr int firstYear = 2025;
constexpr int years = 5;
constexpr auto reach = hours(36);
constexpr auto step = minutes(30);

class FirstDay final : public platform::Clock {
public:
    [[nodiscard]] DateTime now() const override { return utcNow(); }
    [[nodiscard]] DateTime utcNow() const override {
        return DateTime::fromFields(firstYear, 1, 1).value();
    }
};

/// The C library in one zone after the other.
class CLibraryZone {
public:
    explicit CLibraryZone(const std::string& name) {
        setenv("TZ", (":" + name).c_str(), 1);
        tzset();
    }
    ~CLibraryZone() {
        unsetenv("TZ");
        tzset();
    }
    CLibraryZone(const CLibraryZone&) = delete;
    CLibraryZone& operator=(const CLibraryZone&) = delete;

    [[nodiscard]] static seconds offset(sys_seconds utc) {
        const std::time_t moment = utc.time_since_epoch().count();
        std::tm fields{};
        localtime_r(&moment, &fields);
        return seconds(fields.tm_gmtoff);
    }
};

struct Change {
    sys_seconds at;
    seconds before;
    seconds after;
};

std::vector<Change> changesOf(const CLibraryZone& zone) {
    std::vector<Change> changes;
    const sys_seconds end = sys_days(std::chrono::year(firstYear + years) / 1 / 1);
    seconds before = zone.offset(sys_days(std::chrono::year(firstYear) / 1 / 1));
    for (sys_seconds day = sys_days(std::chrono::year(firstYear) / 1 / 2); day < end;
         day += days(1)) {
        const seconds after = zone.offset(day);
        if (after == before) {
            continue;
        }
        sys_seconds at = day - days(1);
        while (zone.offset(at) == before) {
            at += minutes(15);
        }
        changes.push_back({at, before, after});
        before = after;
    }
    return changes;
}

/// The ways to name a day by weekday: month, weekday, occurrence (5: the last), time of day.
using DayName = std::tuple<unsigned, unsigned, unsigned, long long>;

std::set<DayName> namesOf(sys_seconds local) {
    std::set<DayName> names;
    const auto add = [&](sys_days day, seconds time) {
        const std::chrono::year_month_day date(day);
        const unsigned month = static_cast<unsigned>(date.month());
        const unsigned weekday = std::chrono::weekday(day).c_encoding();
        names.emplace(month, weekday, (static_cast<unsigned>(date.day()) + 6) / 7, time.count());
        if (std::chrono::year_month_day(day + days(7)).month() != date.month()) {
            names.emplace(month, weekday, 5, time.count());
        }
    };
    const sys_days day = floor<days>(local);
    add(day, local - day);
    if (local == day) {
        add(day - days(1), days(1));
    }
    return names;
}

/// Whether one record can hold all changes: two a year, each on a day that has one name in all.
bool followsARule(const std::vector<Change>& changes) {
    std::map<seconds, std::set<DayName>> common;
    std::map<seconds, int> count;
    for (const Change& change : changes) {
        const std::set<DayName> names = namesOf(change.at + change.before);
        std::set<DayName>& left = common.try_emplace(change.after, names).first->second;
        std::erase_if(left, [&](const DayName& name) { return !names.contains(name); });
        ++count[change.after];
    }
    for (const auto& [after, names] : common) {
        if (names.empty() || count[after] != years) {
            return false;
        }
    }
    return true;
}

DateTime asDateTime(sys_seconds moment) {
    return DateTime(std::chrono::local_seconds(moment.time_since_epoch()));
}

/// A zone of the mapping on both sides.
class Comparison {
public:
    Comparison(const std::string& name, platform::SystemZones& zones)
        : zone_(platform::databaseZoneName(name)), changes_(changesOf(zone_)) {
        platform::ZoneRecord record;
        LoadZoneInfo(information_, record, name, true, zones);
    }

    [[nodiscard]] bool followsARule() const { return kintar::followsARule(changes_); }
    [[nodiscard]] const std::vector<Change>& changes() const { return changes_; }

    void compareToLocal(sys_seconds utc) const {
        DateTime converted = asDateTime(utc);
        EXPECT_TRUE(ConvertTime(converted, false, information_));
        ASSERT_EQ(converted.iso(), asDateTime(utc + zone_.offset(utc)).iso())
            << "UTC " << asDateTime(utc).iso();
    }

    /// From local time, where an hour that occurs twice is the first, and one that does not exist
    /// is read with the offset of daylight time, the greater one.
    void compareToUtc(sys_seconds local, const Change& change) const {
        const seconds greater = std::max(change.before, change.after);
        const seconds lesser = std::min(change.before, change.after);
        seconds offset = greater;
        if (zone_.offset(local - greater) != greater && zone_.offset(local - lesser) == lesser) {
            offset = lesser;
        }
        DateTime converted = asDateTime(local);
        EXPECT_TRUE(ConvertTime(converted, true, information_));
        ASSERT_EQ(converted.iso(), asDateTime(local - offset).iso())
            << "local " << asDateTime(local).iso();
    }

    void compareAround(const Change& change) const {
        for (sys_seconds utc = change.at - reach; utc <= change.at + reach; utc += step) {
            ASSERT_NO_FATAL_FAILURE(compareToLocal(utc));
            ASSERT_NO_FATAL_FAILURE(compareToUtc(utc + change.before, change));
        }
    }

    void compareDaily(sys_seconds end) const {
        for (sys_seconds day = sys_days(std::chrono::year(firstYear) / 1 / 1); day < end;
             day += days(1)) {
            ASSERT_NO_FATAL_FAILURE(compareToLocal(day + hours(12)));
        }
    }

private:
    CLibraryZone zone_;
    std::vector<Change> changes_;
    TimeZoneInformation information_;
};

TEST(ZoneComparison, EveryZoneThatFollowsARuleAgreesForFiveYears) {
    const FirstDay clock;
    platform::SystemZones zones(clock);
    std::size_t compared = 0;
    std::size_t changes = 0;
    for (const std::string& name : platform::registryZoneNames()) {
        SCOPED_TRACE(name);
        const Comparison comparison(name, zones);
        if (!comparison.followsARule()) {
            continue;
        }
        for (const Change& change : comparison.changes()) {
            ASSERT_NO_FATAL_FAILURE(comparison.compareAround(change));
            ++changes;
        }
        ASSERT_NO_FATAL_FAILURE(
            comparison.compareDaily(sys_days(std::chrono::year(firstYear + years) / 1 / 1)));
        ++compared;
    }
    EXPECT_GT(compared, 125U);
    EXPECT_GT(changes, 300U);
    RecordProperty("zones", static_cast<int>(compared));
    RecordProperty("changes", static_cast<int>(changes));
}

TEST(ZoneComparison, EveryOtherZoneAgreesUntilTheThirdChange) {
    const FirstDay clock;
    platform::SystemZones zones(clock);
    std::size_t compared = 0;
    for (const std::string& name : platform::registryZoneNames()) {
        SCOPED_TRACE(name);
        const Comparison comparison(name, zones);
        if (comparison.followsARule()) {
            continue;
        }
        const std::vector<Change>& changes = comparison.changes();
        for (std::size_t i = 0; i < changes.size() && i < 2; ++i) {
            ASSERT_NO_FATAL_FAILURE(comparison.compareAround(changes[i]));
        }
        ASSERT_NO_FATAL_FAILURE(comparison.compareDaily(
            changes.size() > 2
                ? changes[2].at - days(14)
                : sys_seconds(sys_days(std::chrono::year(firstYear + years) / 1 / 1))));
        ++compared;
        std::printf("a record holds only the coming changes of %s\n", name.c_str());
    }
    EXPECT_GT(compared, 0U) << "the database has zones whose changes follow no rule";
}

} // namespace
} // namespace kintar
