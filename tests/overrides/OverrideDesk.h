// The override subsystem on a twin of the server, with a site that answers its queries.
#pragma once

#include "overrides/FakeOverrides.h"
#include "overrides/Overrides.h"
#include "support/FakeServer.h"
#include "support/RecordingWindowRequests.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace kintar::testing {

/// Records what changed.
class RecordingSignals final : public ObjectSignals {
public:
    void changed(std::string_view member) override { members.emplace_back(member); }
    std::vector<std::string> members;
};

struct OverrideDesk {
    OverrideDesk() {
        clock.set("2012-07-04T09:00:00", -300);
        static_cast<FakeTarnRec&>(server.companion.record()).open = [this](std::string_view sql) {
            const auto found = rows.find(std::string(sql));
            return found == rows.end() ? Recordset() : found->second();
        };
        rows[pointQuery(11)] = [] { return locationRow("Central Standard Time", true); };
    }

    /// Stored schedules of point 11, with keys from 1.
    void store(int count) {
        for (int id = 1; id <= count; ++id) {
            Row row = existingRow();
            row["ID"] = std::to_string(id);
            row["StartDate"] = "2012-08-0" + std::to_string(id) + " 17:00:00";
            row["StopDate"] = "2012-08-0" + std::to_string(id) + " 20:00:00";
            rows[scheduleQuery(id)] = [row] { return scheduleRow(row); };
        }
        rows["Select ID From OvrSchedule Where PointID = 11"] = [count] {
            Recordset keys({{"ID", ColumnType::Integer}});
            for (int id = 1; id <= count; ++id) {
                keys.addInteger(id);
            }
            return keys;
        };
    }

    /// The statements that wrote, in order.
    [[nodiscard]] std::vector<std::string> written() const {
        std::vector<std::string> statements;
        for (const std::string& event : server.events) {
            if (event.starts_with("INSERT") || event.starts_with("UPDATE") ||
                event.starts_with("Delete")) {
                statements.push_back(event);
            }
        }
        return statements;
    }

    frmOvrSchedule& form() { return overrides.ovrSchedule().get(); }
    /// A door that accepts every command, as a client passes it.
    void passPoint(std::int16_t pointType = 0) {
        frmOvrSchedule& window = form();
        window.PointType(pointType);
        window.PointName("Dock door");
        window.LocName("Lisbon");
        window.OprName("Ann");
        window.OprID("3");
        window.SecureOpt(true);
        window.OpenOpt(true);
        window.TZOpt(true);
        window.ArmOpt(true);
        window.ByPassOpt(true);
        window.PointID(11);
    }

    std::map<std::string, std::function<Recordset()>> rows;
    FakeServer server;
    FakeClock clock;
    FakeZones zones;
    RecordingWindowRequests windows;
    Overrides overrides{{server.globals, server.application, clock, zones, windows, {}}};
};

} // namespace kintar::testing
