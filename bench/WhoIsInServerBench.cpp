// The who-is-in build on a database server beside the one best statement for its rows.
#include "Beside.h"
#include "ServerSite.h"

#include "companion/postgres/PostgresConnection.h"
#include "reports/ReportSite.h"

#include <cstdio>
#include <exception>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

using namespace kintar;
using companion::DatabaseAccess;
using companion::postgres::PostgresConnection;

constexpr int holders = 100000;
constexpr int usesOfACard = 10;

/// Of ten uses of a card, up to three lie in the last 48 hours; their order is mixed.
std::string rows() {
    const std::string all = std::to_string(holders);
    return "INSERT INTO Loc VALUES (31, 3, 'North', '', 0), (32, 3, 'South', '', 0);"
           "INSERT INTO Dev VALUES (31, 1, 'Gate'), (31, 2, 'Lift'), (32, 1, 'Yard');"
           "INSERT INTO Company VALUES (3, 1, 'Acme');"
           "INSERT INTO Names SELECT i, 'Holder' || (i::bigint * 7919 % 100003), 'Some', 3, 1, 0, "
           "0 FROM generate_series(1, " +
           all +
           ") AS i;"
           "INSERT INTO Cards SELECT ID, ID, 3, '1', '1', (ID % 20 <> 0)::int FROM Names;"
           "INSERT INTO LocCards SELECT i, (i * 7919) % " +
           all +
           " + 1, CASE i % 3 WHEN 0 THEN 31 ELSE 32 END, timestamp '2012-03-14 17:05:00' - (i * "
           "104729 % 600000) * interval '1 second', i % 2 + 1, substr('INO', (i % 3)::int + 1, 1), "
           "'N', 'N', 'N' FROM generate_series(1::bigint, " +
           std::to_string(holders * usesOfACard) + ") AS i";
}

/// The rows of the report from the latest uses `u` of the cards `k`.
std::string statement(const std::string& latestUses) {
    return "SELECT u.Loc, l.Name, u.LastDev, d.Name, n.LName || ', ' || n.FName, c.Name, "
           "u.LastDate FROM " +
           latestUses +
           " LEFT JOIN Loc l ON l.Loc = u.Loc LEFT JOIN Dev d ON d.Loc = u.Loc AND d.Device = "
           "u.LastDev LEFT JOIN Names n ON n.ID = k.NameID LEFT JOIN Company c ON c.LocGrp = "
           "n.LocGrp AND c.Company = n.Company WHERE k.LocGrp = 3 AND k.Status <> 0 AND u.InOut1 = "
           "'I' ORDER BY k.NameID";
}

/// The fastest of the forms that somebody who knows the server would try.
std::unique_ptr<bench::BareServerStatement> fastestStatement(const std::string& database) {
    const std::string recent = "x.Loc IN (31, 32) AND x.LastDate > '2012-03-12 17:05:00'";
    const std::string forms[] = {
        statement(
            "Cards k CROSS JOIN LATERAL (SELECT * FROM LocCards x WHERE x.CardID = k.ID AND " +
            recent + " ORDER BY x.LastDate DESC LIMIT 1) AS u"),
        statement("(SELECT DISTINCT ON (x.CardID) * FROM LocCards x WHERE " + recent +
                  " ORDER BY x.CardID, x.LastDate DESC) AS u JOIN Cards k ON k.ID = u.CardID"),
        statement(
            "(SELECT *, row_number() OVER (PARTITION BY x.CardID ORDER BY x.LastDate DESC) AS "
            "place FROM LocCards x WHERE " +
            recent + ") AS u JOIN Cards k ON k.ID = u.CardID AND u.place = 1")};
    std::unique_ptr<bench::BareServerStatement> fastest;
    double least = std::numeric_limits<double>::max();
    for (const std::string& form : forms) {
        auto tried = std::make_unique<bench::BareServerStatement>(database, form);
        tried->run();
        const double seconds = bench::secondsOf([&] { tried->run(); });
        if (seconds < least) {
            least = seconds;
            fastest = std::move(tried);
        }
    }
    return fastest;
}

void measure() {
    const bench::ServerSite server(rows());
    testing::ReportSite site;
    PostgresConnection data(server.database(), DatabaseAccess::ReadOnly);
    const auto build = [&] {
        const reports::InRptWorld world = site.world();
        reports::InRptBuild made({world.record, data, world.databases, world.files, world.clock,
                                  world.tempFolder, world.dataPath, world.report, world.alive,
                                  [&] { return testing::readSessionOf(server.database()); }},
                                 31, site.state);
        while (made.step()) {
        }
        if (!made.succeeded()) {
            throw std::runtime_error(made.error());
        }
    };
    const auto best = fastestStatement(server.database());
    build();
    if (static_cast<int>(site.rows("Select Name From InRpt").size()) != best->run()) {
        throw std::runtime_error("the build and the statement differ");
    }
    bench::beside(
        "PostgreSQL: who-is-in build, 1,000,000 uses / one statement", 5, build,
        [&] { best->run(); }, 2.0);
}

} // namespace

int main() {
    return kintar::bench::runBench("who_is_in_server_bench", measure);
}
