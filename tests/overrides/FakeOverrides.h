// Twins of what the override record stands on, with one record of what was asked of them.
#pragma once

#include "base/RunTimeError.h"
#include "overrides/FakeZones.h"
#include "overrides/OverrideServices.h"
#include "server/Companion.h"

#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace kintar::testing {

inline DateTime moment(const char* iso) {
    return DateTime::fromIso(iso).value();
}

class FakeClock final : public platform::Clock {
public:
    [[nodiscard]] DateTime now() const override { return local; }
    [[nodiscard]] DateTime utcNow() const override { return utc; }
    void set(const char* localIso, int minutesAheadOfUtc) {
        local = moment(localIso);
        utc = local.plusMinutes(-minutesAheadOfUtc);
    }

    DateTime local;
    DateTime utc;
};

/// Rows by the statement that asks for them; no rows for any other statement.
class FakeOverrideDatabase final : public OverrideDatabase {
public:
    Recordset open(std::string_view sql) override {
        statements.emplace_back(sql);
        if (failsAt == sql) {
            throw RunTimeError(3021, "the database is gone");
        }
        const auto found = rows.find(std::string(sql));
        return found == rows.end() ? Recordset() : found->second();
    }
    void execute(std::string_view sql) override {
        statements.emplace_back(sql);
        executed.emplace_back(sql);
        if (failsToExecute) {
            throw RunTimeError(3704, "the database is closed");
        }
    }
    void announceFailure(const std::exception& error) override {
        announced.emplace_back(error.what());
    }
    std::string SqlText(std::string_view text) override {
        std::string quoted = "'";
        for (const char c : text) {
            quoted += c == '\'' ? std::string("''") : std::string(1, c);
        }
        return quoted + "'";
    }
    std::string SqlDate(DateTime value) override { return "#" + value.isoWithBlank() + "#"; }
    void report(const std::exception& error, std::string_view routine) override {
        reports.push_back(std::string(routine) + ": " + error.what());
    }

    std::map<std::string, std::function<Recordset()>> rows;
    std::vector<std::string> statements; ///< all of them, in order
    std::vector<std::string> executed;
    std::vector<std::string> reports;
    std::vector<std::string> announced; ///< besides the failures of `execute`
    std::string failsAt;
    bool failsToExecute = false;
};

/// One row of `OvrSchedule`; Null where a text is "null".
using Row = std::map<std::string, std::string>;

inline Recordset scheduleRow(const Row& row) {
    const std::vector<Column> columns = {
        {"ID", ColumnType::Integer},        {"PointID", ColumnType::Integer},
        {"PointType", ColumnType::Integer}, {"StartCmd", ColumnType::Integer},
        {"StopCmd", ColumnType::Integer},   {"StartDate", ColumnType::DateTime},
        {"StopDate", ColumnType::DateTime}, {"Opr", ColumnType::Text},
        {"OprID", ColumnType::Integer},     {"Status", ColumnType::Integer}};
    Recordset rows(columns);
    for (const Column& column : columns) {
        const std::string& value = row.at(column.name);
        if (value == "null") {
            rows.addNull();
        } else if (column.type == ColumnType::Integer) {
            rows.addInteger(std::stoll(value));
        } else {
            rows.addText(value);
        }
    }
    return rows;
}

inline Row existingRow() {
    return {{"ID", "7"},
            {"PointID", "11"},
            {"PointType", "0"},
            {"StartCmd", "1"},
            {"StopCmd", "2"},
            {"StartDate", "2012-07-04 17:07:00"},
            {"StopDate", "2012-07-04 20:00:00"},
            {"Opr", "Ann  7/1/2012"},
            {"OprID", "3"},
            {"Status", "5"}};
}

/// The answer of a location query.
inline Recordset locationRow(const std::string& zone, bool observesDaylightTime) {
    Recordset row({{"TimeZone", ColumnType::Text}, {"DST", ColumnType::YesNo}});
    row.addText(zone);
    row.addInteger(observesDaylightTime ? -1 : 0);
    return row;
}

inline std::string pointQuery(int id) {
    return "SELECT TimeZone, DST  FROM Loc Where Loc IN (Select Loc From IO Where ID = " +
           std::to_string(id) + ")";
}

inline std::string groupQuery(int id) {
    return "SELECT TimeZone, DST  FROM Loc Where Loc IN (Select LocGrp From OvrGrpName Where ID "
           "= " +
           std::to_string(id) + ")";
}

inline std::string scheduleQuery(int id) {
    return "SELECT * FROM OvrSchedule WHERE ID = " + std::to_string(id);
}

struct FakeOverrides {
    FakeOverrides() { clock.set("2012-07-04T09:00:00", -300); }

    FakeOverrideDatabase database;
    FakeClock clock;
    FakeZones zones;
    std::function<void()> onPending;

    OverrideServices services() {
        return {database, clock, zones, [this] {
                    database.statements.emplace_back("pending messages");
                    if (onPending) {
                        onPending();
                    }
                }};
    }
    /// The location of point 11 and of group 11.
    void locate(const std::string& zone, bool observesDaylightTime = true) {
        const auto row = [=] { return locationRow(zone, observesDaylightTime); };
        database.rows[pointQuery(11)] = row;
        database.rows[groupQuery(11)] = row;
    }
    void store(const Row& row) {
        database.rows[scheduleQuery(std::stoi(row.at("ID")))] = [row] { return scheduleRow(row); };
    }
};

} // namespace kintar::testing
