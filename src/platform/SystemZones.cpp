#include "platform/SystemZones.h"

#include "platform/ZoneRule.h"

#include <QTimeZone>

#include <unicode/timezone.h>
#include <unicode/ures.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <memory>

namespace kintar::platform {
namespace {

using std::chrono::seconds;
using std::chrono::sys_seconds;

/// How far ahead changes are compared to tell one rule from another ("the last" from "the fourth").
constexpr int yearsAhead = 10;

sys_seconds secondsOf(const QDateTime& moment) {
    return sys_seconds(seconds(moment.toSecsSinceEpoch()));
}

ZoneOutlook outlookOf(const QTimeZone& zone, const QDateTime& now) {
    ZoneOutlook outlook;
    outlook.now = secondsOf(now);
    outlook.offset = seconds(zone.offsetFromUtc(now));
    const QTimeZone::OffsetData last = zone.previousTransition(now);
    if (last.atUtc.isValid()) {
        outlook.lastChangedAt = secondsOf(last.atUtc);
    }
    seconds before = outlook.offset;
    const QDateTime end = now.addYears(yearsAhead);
    for (const QTimeZone::OffsetData& change : zone.transitions(now.addSecs(1), end)) {
        const seconds after(change.offsetFromUtc);
        if (after != before) {
            outlook.ahead.push_back({secondsOf(change.atUtc), before, after});
            before = after;
        }
    }
    return outlook;
}

/// A name is part of a path in the database: nothing in it may lead elsewhere.
bool isPlainName(std::string_view name) {
    constexpr std::size_t longest = 64;
    const auto isPlain = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '+' ||
               c == '-' || c == '/';
    };
    return !name.empty() && name.size() <= longest && name.front() != '/' &&
           std::all_of(name.begin(), name.end(), isPlain);
}

/// The toolkit alone would take any word for a zone without an offset.
bool isInDatabase(const std::string& name) {
    const auto holds = [&](const char* folder) {
        std::error_code ignored;
        return std::filesystem::is_regular_file(std::filesystem::path(folder) / name, ignored);
    };
    return holds("/usr/share/zoneinfo") || holds("/usr/lib/zoneinfo");
}

QTimeZone zoneByName(const std::string& name) {
    const bool known = isPlainName(name) && isInDatabase(name);
    return known ? QTimeZone(QByteArray::fromStdString(name)) : QTimeZone();
}

/// The zone as the system's database has it; an invalid one where it has none. The database and the
/// mapping may prefer different ones of several names for a zone.
QTimeZone databaseZone(const std::string& zone) {
    const std::string mapped = databaseZoneName(zone);
    const std::string name = mapped.empty() ? zone : mapped;
    QTimeZone found = zoneByName(name);
    const icu::UnicodeString id = icu::UnicodeString::fromUTF8(name);
    const int32_t names = found.isValid() ? 0 : icu::TimeZone::countEquivalentIDs(id);
    for (int32_t i = 0; i < names && !found.isValid(); ++i) {
        std::string equivalent;
        found = zoneByName(icu::TimeZone::getEquivalentID(id, i).toUTF8String(equivalent));
    }
    return found;
}

QDateTime toolkitTime(DateTime utc) {
    return QDateTime::fromSecsSinceEpoch(utc.moment().time_since_epoch().count(), Qt::UTC);
}

/// "Central Daylight Time" for "Central Standard Time"; other names serve both.
std::string daylightName(std::string name) {
    constexpr std::string_view standard = "Standard";
    const std::size_t position = name.find(standard);
    return position == std::string::npos ? name
                                         : name.replace(position, standard.size(), "Daylight");
}

struct CloseBundle {
    void operator()(UResourceBundle* bundle) const { ures_close(bundle); }
};
using Bundle = std::unique_ptr<UResourceBundle, CloseBundle>;

} // namespace

std::optional<ZoneRegistry::Key> SystemZones::open(const std::string& zone) {
    const DateTime now = clock_.utcNow();
    auto entry = std::find_if(entries_.begin(), entries_.end(),
                              [&](const Entry& known) { return known.zone == zone; });
    if (entry == entries_.end() || entry->day != now.dateOnly()) {
        const QTimeZone found = databaseZone(zone);
        if (!found.isValid()) {
            return std::nullopt;
        }
        if (entry == entries_.end()) {
            entry = entries_.insert(entries_.end(), Entry{zone, {}, {}});
        }
        entry->day = now.dateOnly();
        entry->record = zoneRecordOf(outlookOf(found, toolkitTime(now)));
    }
    return static_cast<Key>(entry - entries_.begin());
}

std::optional<ZoneRecord> SystemZones::record(Key key) {
    return entries_.at(key).record;
}

std::optional<std::string> SystemZones::name(Key key, ZoneName which, std::size_t most) {
    const std::string& zone = entries_.at(key).zone;
    return (which == ZoneName::Std ? zone : daylightName(zone)).substr(0, most);
}

void SystemZones::close(Key /*key*/) {}

std::string databaseZoneName(std::string_view registryName) {
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString id;
    icu::TimeZone::getIDForWindowsID(
        icu::UnicodeString::fromUTF8(
            icu::StringPiece(registryName.data(), static_cast<int32_t>(registryName.size()))),
        nullptr, id, status);
    std::string name;
    return U_SUCCESS(status) ? id.toUTF8String(name) : name;
}

std::vector<std::string> registryZoneNames() {
    UErrorCode status = U_ZERO_ERROR;
    const Bundle bundle(ures_openDirect(nullptr, "windowsZones", &status));
    const Bundle zones(ures_getByKey(bundle.get(), "mapTimezones", nullptr, &status));
    std::vector<std::string> names;
    while (U_SUCCESS(status) && ures_hasNext(zones.get()) != 0) {
        const Bundle zone(ures_getNextResource(zones.get(), nullptr, &status));
        if (U_SUCCESS(status)) {
            names.emplace_back(ures_getKey(zone.get()));
        }
    }
    return names;
}

} // namespace kintar::platform
