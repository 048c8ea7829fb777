// A site's database for tests of reports, and everything that reads it, for real.
#pragma once

#include "companion/Notices.h"
#include "companion/OpenDatabase.h"
#include "companion/RecordHelper.h"
#include "companion/SiteReadSession.h"
#include "companion/SqliteReportDatabases.h"
#include "platform/PosixFiles.h"
#include "reports/InRptBuild.h"
#include "reports/ReportTwins.h"
#include "support/ScratchFolder.h"
#include "support/TestDatabase.h"

namespace kintar::testing {

class NoNotices final : public companion::Notices {
public:
    void writeFailed(const std::string& reason) override { reasons.push_back(reason); }
    std::vector<std::string> reasons;
};

/// A connection of its own to a site's database.
inline std::unique_ptr<ReadSession> readSessionOf(const std::string& database) {
    return std::make_unique<companion::SiteReadSession>(
        companion::openDatabase(database, companion::DatabaseAccess::ReadOnly));
}

/// Group 3 has the locations 31 and 32, with readers 1 and 2 each; group 4 has 41. No people yet.
class ReportSite {
public:
    ReportSite() {
        folder.makeFolder("Data");
        folder.makeFolder("temp");
        run("INSERT INTO Loc VALUES (31, 3, 'North', '', 0), (32, 3, 'South', '', 0), "
            "(41, 4, 'Elsewhere', '', 0)");
        run("INSERT INTO Dev VALUES (31, 1, 'Gate'), (31, 2, 'Lift'), (32, 1, 'Yard')");
        run("INSERT INTO Company VALUES (3, 1, 'Acme')");
        data = companion::openDatabase(database_.name(), companion::DatabaseAccess::ReadOnly);
    }

    /// What the site's settings call its database.
    [[nodiscard]] const std::string& path() const { return database_.name(); }
    /// As another program does.
    void run(const std::string& sql) { database_.run(sql); }
    /// A holder of group 3 with one active card of the same number.
    void holder(int id, const std::string& name) {
        run("INSERT INTO Names VALUES (" + std::to_string(id) + ", '" + name +
            "', 'A', 3, 1, 0, 0)");
        card(id, id, 1);
    }
    void card(int id, int nameId, int status) {
        run("INSERT INTO Cards VALUES (" + std::to_string(id) + ", " + std::to_string(nameId) +
            ", 3, '1', '1', " + std::to_string(status) + ", NULL, NULL, 0, 0)");
    }
    void use(int card, const std::string& when, const std::string& flag, int loc = 31,
             int dev = 1) {
        run("INSERT INTO LocCards VALUES (" + std::to_string(++uses_) + ", " +
            std::to_string(card) + ", " + std::to_string(loc) + ", '" + when + "', " +
            std::to_string(dev) + ", '" + flag + "', 'N', 'N', 'N')");
    }

    reports::InRptWorld world() {
        return {records,
                *data,
                databases,
                files,
                clock,
                folder / "temp",
                [this] { return folder / "Data"; },
                [this](const std::exception& error, std::string_view routine) {
                    reported.push_back(std::string(routine) + ": " + error.what());
                },
                [] { return true; }};
    }
    bool build(std::int32_t loc = 31) {
        reports::InRptBuild build(world(), loc, state);
        while (build.step()) {
        }
        return build.succeeded();
    }
    /// The rows of a statement on the report database, a text each, columns joined by a bar.
    std::vector<std::string> rows(const std::string& sql) {
        const auto connection = databases.openReadOnly(folder / "temp/InRpt.Mdb");
        Recordset found = records.OpenRecordset(sql, *connection);
        std::vector<std::string> texts;
        for (; !found.atEnd(); found.MoveNext()) {
            std::string text;
            for (std::size_t column = 0; column < found.FieldCount(); ++column) {
                text += (column == 0 ? "" : "|") + found.field(column).text();
            }
            texts.push_back(text);
        }
        return texts;
    }
    std::vector<std::string> names() { return rows("Select Name From InRpt Order By Name"); }

    ScratchFolder folder;

private:
    TestDatabase database_{chosenEngine(), folder / "site.db"};
    int uses_ = 0;

public:
    NoNotices notices;
    companion::RecordHelper records{notices};
    companion::SqliteReportDatabases databases;
    platform::PosixFiles files;
    SetClock clock; ///< 2012-03-14 17:05:00
    reports::InRptState state;
    std::vector<std::string> reported;
    std::unique_ptr<companion::DatabaseConnection> data;
};

} // namespace kintar::testing
