// A twin of the system's zones that records what was asked of it.
#pragma once

#include "platform/Zones.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kintar::testing {

struct FakeZone {
    std::optional<platform::ZoneRecord> record;
    std::optional<std::string> standardName;
    std::optional<std::string> daylightName;
};

/// The rules of a zone six hours behind UTC with daylight time.
inline platform::ZoneRecord centralRecord() {
    platform::ZoneRecord record;
    record.bias = 360;
    record.daylightBias = -60;
    record.daylightDate = {0, 3, 0, 2, 2, 0, 0, 0};
    record.standardDate = {0, 11, 0, 1, 2, 0, 0, 0};
    return record;
}

class FakeZones final : public platform::ZoneRegistry {
public:
    FakeZones() {
        zones["Central Standard Time"] =
            FakeZone{centralRecord(), "Central Standard Time", "Central Daylight Time"};
    }

    std::optional<Key> open(const std::string& zone) override {
        events.push_back("open " + zone);
        if (!zones.contains(zone)) {
            return std::nullopt;
        }
        opened_.push_back(zone);
        return opened_.size() - 1;
    }
    std::optional<platform::ZoneRecord> record(Key key) override {
        events.emplace_back("TZI");
        return zones.at(opened_.at(key)).record;
    }
    std::optional<std::string> name(Key key, platform::ZoneName which, std::size_t most) override {
        const bool standard = which == platform::ZoneName::Std;
        events.push_back((standard ? "Std " : "Dlt ") + std::to_string(most));
        const FakeZone& zone = zones.at(opened_.at(key));
        return standard ? zone.standardName : zone.daylightName;
    }
    void close(Key key) override { events.push_back("close " + opened_.at(key)); }

    std::map<std::string, FakeZone> zones;
    std::vector<std::string> events;

private:
    std::vector<std::string> opened_;
};

} // namespace kintar::testing
