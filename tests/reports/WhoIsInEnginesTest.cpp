// The who-is-in build reads the same from either engine.
#include "companion/OpenDatabase.h"
#include "companion/SiteFolder.h"
#include "reports/ReportSite.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kintar::reports {
namespace {

using companion::SiteFolder;
using companion::TestEngine;
using ::testing::Contains;
using ::testing::SizeIs;
using ::testing::StartsWith;

/// 700 holders of one card or two, more than are read together; of their uses some are too old,
/// some elsewhere, some out, and some cards are inactive or know neither device nor company.
std::string manyHolders() {
    std::string sql;
    for (int id = 100; id < 800; ++id) {
        const std::string name = std::to_string(id);
        sql += "INSERT INTO Names VALUES (" + name + ", 'O''Neil \\\"" + name + "', 'Zoë', 3, " +
               std::to_string(id % 7) + ", 0, 0);";
        for (int card = 0; card <= id % 2; ++card) {
            const std::string number = std::to_string(id * 10 + card);
            sql += "INSERT INTO Cards VALUES (" + number + ", " + name + ", 3, '1', '1', " +
                   std::to_string(id % 11 == 0 ? 0 : 1) + ", NULL, NULL, 0, 0);";
            for (int use = 0; use < 3; ++use) {
                sql += "INSERT INTO LocCards VALUES (" +
                       std::to_string(id * 100 + card * 10 + use) + ", " + number + ", " +
                       std::to_string(1 + (id + use) % 3) + ", '2012-03-" +
                       std::to_string(11 + (id + use) % 4) + " 1" + std::to_string(use) +
                       ":00:00', " + std::to_string(id % 9) + ", '" +
                       std::string(1, "INO"[(id / 3 + use) % 3]) + "', 'N', 'N', 'N');";
            }
        }
    }
    return sql;
}

enum class Reading { InPlace, Aside };

std::vector<std::string> rowsOn(TestEngine engine, Reading reading) {
    const SiteFolder site(engine);
    site.foreign(manyHolders());
    const auto data = companion::openDatabase(site.database(), companion::DatabaseAccess::ReadOnly);
    testing::ReportSite shop;
    const InRptWorld world = shop.world();
    int sessions = 0;
    const auto newSession = [&]() -> std::unique_ptr<ReadSession> {
        ++sessions;
        return reading == Reading::Aside ? testing::readSessionOf(site.database()) : nullptr;
    };
    InRptBuild build({world.record, *data, world.databases, world.files, world.clock,
                      world.tempFolder, world.dataPath, world.report, world.alive, newSession},
                     1, shop.state);
    while (build.step()) {
    }
    const int askedFor = reading == Reading::Aside ? 2 : 1;
    EXPECT_EQ(sessions, engine == TestEngine::Postgres ? askedFor : 0);
    EXPECT_EQ(build.cardsDone(), build.cardsInAll());
    EXPECT_TRUE(build.succeeded()) << build.error();
    auto rows = shop.rows("Select Loc, LocName, Dev, DevName, Name, Company, LastUsed From InRpt");
    for (const std::string& total :
         shop.rows("Select Loc, Dev, DevTotal, LocGrpTotal From Totals Order By Loc, Dev")) {
        rows.push_back("total " + total);
    }
    return rows;
}

TEST(WhoIsInEngines, BothGiveTheSameRowsInPlaceAndAside) {
    const auto rows = rowsOn(TestEngine::Sqlite, Reading::InPlace);
    EXPECT_THAT(rows, SizeIs(::testing::Gt(100U)));
    EXPECT_THAT(rows, Contains(StartsWith("total ")));
    EXPECT_THAT(rows, Contains(::testing::HasSubstr("O'Neil \\\"")));
    EXPECT_EQ(rowsOn(TestEngine::Postgres, Reading::InPlace), rows);
    EXPECT_EQ(rowsOn(TestEngine::Postgres, Reading::Aside), rows);
}

} // namespace
} // namespace kintar::reports
