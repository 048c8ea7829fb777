// Who is in at a location's group, by tables that the line holds.
#include "companion/Catalog.h"
#include "companion/Notices.h"
#include "companion/RecordHelper.h"
#include "reports/InRptBuild.h"
#include "server/IgnoringErrors.h"
#include "tools/explain/Rules.h"
#include "tools/explain/TableDatabase.h"

#include <array>

namespace kintar::explain {
namespace {

constexpr std::array<std::string_view, 6> tablesRead{"Loc", "Cards", "LocCards",
                                                     "Dev", "Names", "Company"};
constexpr std::string_view totalsStart = "Insert Into Totals";
constexpr int mostBuilds = 100;

class Silence final : public companion::Notices {
public:
    void writeFailed(const std::string& /*reason*/) override {}
};

/// The record helper, with the statements that write totals kept.
class ListeningRecord final : public TarnRec {
public:
    Recordset OpenRecordset(std::string_view sql, Connection& connection) override {
        return records_.OpenRecordset(sql, connection);
    }
    void ExecuteSQL(std::string_view sql, Connection& connection) override {
        if (sql.starts_with(totalsStart)) {
            totals.emplace_back(sql);
        }
        records_.ExecuteSQL(sql, connection);
    }
    bool FindRecord(Recordset& rows, std::string_view criterion) override {
        return records_.FindRecord(rows, criterion);
    }
    std::string SqlText(std::string_view text) override { return records_.SqlText(text); }
    std::string SqlDate(DateTime value) override { return records_.SqlDate(value); }
    void FillListBox(ListBox& list, Recordset& rows, std::string_view textField,
                     std::string_view dataField) override {
        records_.FillListBox(list, rows, textField, dataField);
    }
    void PrepareForm(Connection& connection, PreparableForm& form) override {
        records_.PrepareForm(connection, form);
    }

    std::vector<std::string> totals;

private:
    Silence silence_;
    companion::RecordHelper records_{silence_};
};

class SetClock final : public platform::Clock {
public:
    explicit SetClock(DateTime moment) : moment_(moment) {}
    [[nodiscard]] DateTime now() const override { return moment_; }
    [[nodiscard]] DateTime utcNow() const override { return moment_; }

private:
    DateTime moment_;
};

/// The printer map is the only file there is.
class MapAlone final : public platform::Files {
public:
    explicit MapAlone(std::optional<std::string> map) : map_(std::move(map)) {}
    std::optional<std::string> read(const std::string& /*path*/, std::size_t /*limit*/) override {
        return map_;
    }
    void deleteIfExists(const std::string& /*path*/) override {}
    void append(const std::string& /*path*/, std::string_view /*text*/) override {}
    std::vector<std::string> names(const std::string& /*folder*/) override { return {}; }
    bool createWhole(const std::string& /*path*/, std::string_view /*content*/) override {
        return false;
    }

private:
    std::optional<std::string> map_;
};

std::vector<std::string> reportTables() {
    std::vector<std::string> statements;
    for (const ReportTable& table : reports::inRptTables()) {
        companion::TableDefinition definition{table.name, {}, {}};
        for (const ReportColumn& column : table.columns) {
            definition.columns.push_back({column.name, column.type, companion::KeyKind::None});
        }
        statements.push_back(companion::createStatements(definition).front());
    }
    return statements;
}

/// One report database for all lines, empty at the beginning of each build.
class OneReportDatabase final : public ReportDatabases {
public:
    explicit OneReportDatabase(const std::string& file) : tables_(file, reportTables()) {}

    void remove(const std::string& /*path*/) override {}
    std::unique_ptr<ReportDatabase> create(const std::string& /*path*/,
                                           const std::vector<ReportTable>& tables) override {
        auto building = std::make_unique<Building>(tables_.connection());
        for (const ReportTable& table : tables) {
            tables_.connection().execute("Delete From [" + table.name + "]");
        }
        return building;
    }
    std::shared_ptr<Connection> openReadOnly(const std::string& /*path*/) override {
        return std::make_shared<ClosedConnection>();
    }
    Connection& connection() { return tables_.connection(); }

private:
    /// One transaction, which makes a build of a few rows ten times faster.
    class Building final : public ReportDatabase {
    public:
        explicit Building(companion::sqlite::SqliteConnection& connection)
            : connection_(connection) {
            connection_.begin();
        }
        Building(const Building&) = delete;
        Building& operator=(const Building&) = delete;
        ~Building() override {
            ignoringErrors([this] { connection_.commit(); });
        }
        Connection& connection() override { return connection_; }
        void publish() override {}

    private:
        companion::sqlite::SqliteConnection& connection_;
    };

    TableDatabase tables_;
};

/// What stays from one line to the next.
struct Workshop {
    ProcessFolder folder;
    TableDatabase site{folder / "site.db", companion::siteSchemaStatements()};
    OneReportDatabase reports{folder / "report.db"};
};

Json rowsOf(ListeningRecord& record, Connection& connection, const char* sql) {
    Json all = Json::array();
    for (Recordset rows = record.OpenRecordset(sql, connection); !rows.atEnd(); rows.MoveNext()) {
        Json row = Json::object();
        for (std::size_t at = 0; at < rows.FieldCount(); ++at) {
            const FieldValue value = rows.field(at);
            const Column& column = rows.columns()[at];
            if (value.kind() == FieldValue::Kind::Integer) {
                row[column.name] = value.asLong();
            } else if (column.type == ColumnType::DateTime) {
                row[column.name] = value.isNull() ? Json() : Json(value.asDateTime().iso());
            } else {
                row[column.name] = value.text();
            }
        }
        all.push_back(std::move(row));
    }
    return all;
}

void fillSite(TableDatabase& site, const Json& input) {
    const auto tables = input.find("tables");
    if (tables == input.end() || !tables->is_object()) {
        throw BadInput("'tables' is not an object of tables");
    }
    site.run("BEGIN");
    try {
        for (const std::string_view name : tablesRead) {
            const companion::TableDefinition* table = companion::Catalog::ofSite().find(name);
            std::vector<Json> rows;
            for (const auto& [given, list] : tables->items()) {
                if (companion::Catalog::ofSite().find(given) == table) {
                    rows = objects(*tables, given.c_str());
                }
            }
            site.fill(*table, rows);
        }
        site.run("COMMIT");
    } catch (...) {
        site.run("ROLLBACK");
        throw;
    }
}

/// What a build has left, as the answer shows it.
Json outcomeOf(const reports::InRptBuild& build, const reports::InRptState& state,
               ListeningRecord& record, Connection& report, const std::string& failure) {
    Json made = Json::object();
    if (!failure.empty()) {
        made["error"] = failure;
    }
    // After a failed build there is no report, whatever it had written until then.
    const auto read = [&](const char* sql) {
        return build.succeeded() ? rowsOf(record, report, sql) : Json::array();
    };
    made["rows"] = read("Select Loc, LocName, Dev, DevName, Name, Company, LastUsed From InRpt");
    made["totals"] = read("Select Loc, Dev, DevTotal, LocGrpTotal From Totals");
    made["totalStatements"] = record.totals;
    made["inCount"] = state.inCount;
    made["printer"] = state.printer;
    made["locationList"] = build.locationList();
    return made;
}

Json buildOnce(Workshop& shop, const Json& input, reports::InRptState& state) {
    const SetClock clock(dateTime(input, "now"));
    MapAlone files(has(input, "map") ? std::optional(text(input, "map")) : std::nullopt);
    ListeningRecord record;
    std::string failure;
    reports::InRptBuild build({record, shop.site.connection(), shop.reports, files, clock, "/",
                               [] { return std::string("/"); },
                               [&failure](const std::exception& error, std::string_view routine) {
                                   failure = std::string(routine) + ": " + error.what();
                               },
                               [] { return true; }},
                              number32(input, "loc"), state);
    while (build.step()) {
    }
    return outcomeOf(build, state, record, shop.reports.connection(), failure);
}

} // namespace

void applyWhoIsIn(const Json& input, Answer& answer) {
    static Workshop shop;
    const std::int32_t builds = number32Or(input, "builds", 1);
    if (builds < 1 || builds > mostBuilds) {
        throw BadInput("'builds' is not a number from 1 to 100");
    }
    fillSite(shop.site, input);
    reports::InRptState state;
    Json all = Json::array();
    for (std::int32_t number = 0; number < builds; ++number) {
        all.push_back(buildOnce(shop, input, state));
    }
    answer.add("builds", all);
}

} // namespace kintar::explain
