// Time zones by name from the system's zone database.
#pragma once

#include "platform/Platform.h"
#include "platform/Zones.h"

#include <string>
#include <string_view>
#include <vector>

namespace kintar::platform {

/// Knows a zone by its registry name ("Central Standard Time"), through the published mapping of
/// such names to the database's, and otherwise by the name that the database gives it
/// ("America/Chicago"). A record holds the rules in force now: the two changes of a year as days of
/// a week in a month, or as dates that come once where the coming years' changes follow no such
/// rule. It is made anew on every day of the clock.
class SystemZones final : public ZoneRegistry {
public:
    explicit SystemZones(const Clock& clock) : clock_(clock) {}

    std::optional<Key> open(const std::string& zone) override;
    std::optional<ZoneRecord> record(Key key) override;
    std::optional<std::string> name(Key key, ZoneName which, std::size_t most) override;
    void close(Key key) override;

private:
    // A key is a place in this list, so a key that is left open costs nothing.
    struct Entry {
        std::string zone;
        DateTime day;
        ZoneRecord record;
    };

    const Clock& clock_;
    std::vector<Entry> entries_;
};

/// The zone database's name for a registry name; empty where the mapping has none.
std::string databaseZoneName(std::string_view registryName);

/// All registry names of the mapping, in its order.
std::vector<std::string> registryZoneNames();

} // namespace kintar::platform
