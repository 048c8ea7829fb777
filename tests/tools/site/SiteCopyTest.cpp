#include "tools/site/SiteCopy.h"

#include "TestSite.h"
#include "companion/OpenDatabase.h"
#include "support/PrivateCluster.h"
#include "tools/site/Interruption.h"
#include "tools/site/SiteCheck.h"
#include "tools/site/SiteError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <string_view>

namespace kintar::site {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::PrivateCluster;
using testing::TestSite;

std::string failureOf(const std::string& from, const std::string& to,
                      const CopyOptions& options = {}) {
    try {
        copySite(from, to, options);
    } catch (const SiteError& error) {
        return error.what();
    }
    return "copied";
}

/// Nothing that could be compressed much.
std::string randomLetters(std::size_t length) {
    std::mt19937 random(7);
    std::string letters;
    while (letters.size() < length) {
        letters += static_cast<char>('!' + random() % 94);
        if (std::string_view("'%_[]").find(letters.back()) != std::string_view::npos) {
            letters.back() = 'q';
        }
    }
    return letters;
}

std::string idsOf(const std::string& database, const std::string& criterion) {
    const auto connection = companion::openDatabase(database, companion::DatabaseAccess::ReadOnly);
    Recordset rows = connection->open("SELECT ID FROM Names WHERE " + criterion + " ORDER BY ID");
    std::string ids;
    for (; !rows.atEnd(); rows.MoveNext()) {
        ids += rows.field(std::size_t{0}).text() + " ";
    }
    return ids;
}

class SiteCopy : public ::testing::Test {
protected:
    ~SiteCopy() override { PrivateCluster::shared().dropDatabase(server); }

    [[nodiscard]] std::string fileOf(const TestSite& made) const {
        return (made.folder / databaseFile).string();
    }
    /// Makes a site use another database.
    void name(const std::string& database) const {
        std::ofstream(site.folder / settingsFile)
            << "[Site]\nDatabase=" << database << "\nData=Data\nTexts=Texts\n";
    }

    TestSite site;
    testing::ScratchFolder scratch;
    std::string file = fileOf(site);
    std::string back = scratch.path() + "/back.db";
    std::string server = PrivateCluster::shared().makeDatabase();
};

TEST_F(SiteCopy, ToAServerAndBackIsTheSameSite) {
    site.execute("INSERT INTO Names VALUES (900, '', NULL, 1, NULL, NULL, -1),"
                 "(901, 'tab\tline\nreturn\rback\\slash', 'İ', -5, 2147483647, 0, 0)");
    const CopyOutcome there = copySite(file, server, {});
    EXPECT_EQ(there.rows.at("Names"), 62);
    EXPECT_THAT(there.leftOut, IsEmpty());
    name(server);
    EXPECT_THAT(checkSite(site.folder), IsEmpty());
    EXPECT_EQ(copySite(server, back, {}).rows, there.rows);
    name(back);
    EXPECT_THAT(checkSite(site.folder), IsEmpty());
    EXPECT_EQ(copySite(file, scratch.path() + "/third.db", {}).rows, there.rows);
}

TEST_F(SiteCopy, GoesOnGivingKeysThatWereNeverGiven) {
    site.execute("INSERT INTO OvrSchedule (PointID) VALUES (101); DELETE FROM OvrSchedule WHERE "
                 "ID = (SELECT max(ID) FROM OvrSchedule)");
    copySite(file, server, {});
    copySite(server, back, {});
    EXPECT_EQ(
        testing::askServer(server, "INSERT INTO OvrSchedule (PointID) VALUES (1) RETURNING ID"),
        "9");
    SiteDatabase copied(back, SiteDatabase::Access::Write);
    copied.execute("INSERT INTO OvrSchedule (PointID) VALUES (1)");
    SiteStatement last(copied, "SELECT max(ID) FROM OvrSchedule");
    last.start();
    ASSERT_TRUE(last.next());
    EXPECT_EQ(last.integer(0), 9);
}

TEST_F(SiteCopy, InterruptedAtAnyPointGoesOnWhereItEnded) {
    for (const std::string& target : {server, back}) {
        int allowed = 0;
        int interruptions = 0;
        std::vector<std::string> lines;
        for (bool done = false; !done;) {
            int left = ++allowed;
            lines.clear();
            const CopyOptions options{[&] {
                                          if (--left == 0) {
                                              throw Interrupted(2);
                                          }
                                      },
                                      [&](const std::string& line) { lines.push_back(line); }};
            try {
                copySite(file, target, options);
                done = true;
            } catch (const Interrupted&) {
                ++interruptions;
            }
        }
        EXPECT_GT(interruptions, 10);
        EXPECT_THAT(lines, Contains("Names is there already"));
        name(target);
        EXPECT_THAT(checkSite(site.folder), IsEmpty());
    }
}

TEST_F(SiteCopy, CopiesAgainWhatChangedWhileItWasInterrupted) {
    const CopyOptions once{[] {},
                           [](const std::string& line) {
                               if (line == "comparing Names") {
                                   throw Interrupted(2);
                               }
                           }};
    EXPECT_THROW(copySite(file, server, once), Interrupted);
    site.execute("UPDATE Names SET FName = 'Changed' WHERE ID = 3; DELETE FROM Names WHERE ID = 4");
    std::vector<std::string> lines;
    copySite(file, server, {[] {}, [&](const std::string& line) { lines.push_back(line); }});
    EXPECT_THAT(lines, Contains("Names has changed since it was copied"));
    EXPECT_EQ(testing::askServer(server, "SELECT FName FROM Names WHERE ID IN (3, 4)"), "Changed");
}

TEST_F(SiteCopy, GoesIntoAnEmptyDatabaseOnly) {
    copySite(file, server, {});
    EXPECT_THAT(failureOf(file, server), HasSubstr("not empty"));
    EXPECT_THAT(failureOf(server, file), HasSubstr("not empty"));
}

TEST_F(SiteCopy, RefusesValuesThatTheirColumnsShouldNotHold) {
    site.execute("UPDATE Cards SET StopDate = '2012-02-30 00:00:00' WHERE ID = 5");
    EXPECT_THAT(failureOf(file, server), HasSubstr("Cards, ID 5: StopDate holds no DATETIME"));
    site.execute("UPDATE Cards SET StopDate = NULL; UPDATE Names SET Visitor = 'yes' WHERE ID = 7");
    EXPECT_THAT(failureOf(file, server), HasSubstr("Names, ID 7: Visitor holds no YESNO"));
    site.execute("UPDATE Names SET Visitor = 0, LName = CAST(x'41FF' AS TEXT) WHERE ID = 7");
    EXPECT_THAT(failureOf(file, server), HasSubstr("Names, ID 7: LName holds no TEXT"));
    site.execute("UPDATE Names SET LName = 'A' WHERE ID = 7");
    EXPECT_EQ(failureOf(file, server), "copied") << "and goes on once they are mended";
}

TEST_F(SiteCopy, FindsLongNamesOnBothEngines) {
    for (const std::size_t length : {300U, 2500U}) {
        const std::string name = randomLetters(length);
        site.execute("UPDATE Names SET LName = '" + name + "' WHERE ID = 7");
        const std::string copy = PrivateCluster::shared().makeDatabase();
        copySite(file, copy, {});
        for (const std::string& database : {file, copy}) {
            EXPECT_EQ(idsOf(database, "LName LIKE '" + name + "'"), "7 ");
            EXPECT_EQ(idsOf(database, "LName LIKE '" + name.substr(0, length - 1) + "%'"), "7 ");
            EXPECT_EQ(idsOf(database, "LName LIKE '" + name + "x%'"), "");
        }
        PrivateCluster::shared().dropDatabase(copy);
    }
}

TEST_F(SiteCopy, TakesVeryLongNamesIntoAFileAndNamesThoseThatAServersIndexCannotHold) {
    const std::string name = randomLetters(10000);
    site.execute("UPDATE Names SET LName = 'O', FName = '" + name + "' WHERE ID = 9");
    copySite(file, back, {});
    EXPECT_EQ(idsOf(back, "FName LIKE '" + name.substr(0, 9999) + "%'"), "9 ");
    // One that is longer can be compressed, and is not at fault.
    const std::string repeated(20000, 'a');
    site.execute("UPDATE Names SET LName = '" + repeated + "' WHERE ID = 8");
    EXPECT_EQ(failureOf(file, server),
              "Names, ID 9: too long for an index of the database server (about 2,600 bytes): "
              "LName, FName");
    site.execute("UPDATE Names SET FName = 'A' WHERE ID = 9");
    EXPECT_EQ(failureOf(file, server), "copied") << "and goes on once it is shorter";
    EXPECT_EQ(idsOf(server, "LName LIKE '" + repeated + "'"), "8 ");
}

TEST_F(SiteCopy, NamesTheTablesThatAreNoneOfASites) {
    site.execute("CREATE TABLE Extra (a)");
    EXPECT_THAT(copySite(file, server, {}).leftOut, ElementsAre("Extra"));
}

TEST_F(SiteCopy, NeedsAWholeSite) {
    site.execute("DROP TABLE Skills");
    EXPECT_THAT(failureOf(file, server), HasSubstr("no Skills.NameID"));
    EXPECT_EQ(testing::askServer(server, "SELECT count(*) FROM pg_class WHERE relnamespace = "
                                         "'public'::regnamespace"),
              "0");
}

} // namespace
} // namespace kintar::site
