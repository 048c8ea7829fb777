// Sites whose data are on a database server.
#include "TestSite.h"
#include "support/PrivateCluster.h"
#include "tools/site/CardFeed.h"
#include "tools/site/CopyText.h"
#include "tools/site/Interruption.h"
#include "tools/site/SiteCheck.h"
#include "tools/site/SiteError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar::site {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::PrivateCluster;
using testing::TestSite;

class ServerSite : public ::testing::Test {
protected:
    ~ServerSite() override { PrivateCluster::shared().dropDatabase(database); }

    void change(const std::string& sql) const { testing::runOnServer(database, sql); }
    [[nodiscard]] std::string value(const std::string& sql) const {
        return testing::askServer(database, sql);
    }

    std::string database = PrivateCluster::shared().makeDatabase();
    TestSite site{60, 1, database};
};

TEST_F(ServerSite, HoldsTheRowsThatAFileWouldHold) {
    const TestSite file;
    EXPECT_EQ(site.counts, file.counts);
    const char* const names = "SELECT LName || '|' || coalesce(FName, '') FROM Names WHERE ID = 16";
    EXPECT_EQ(value(names), file.value(names));
    EXPECT_EQ(value("SELECT max(LastDate) FROM LocCards"),
              file.value("SELECT max(LastDate) FROM LocCards"));
}

TEST_F(ServerSite, NamesItsDatabaseInItsSettings) {
    EXPECT_THAT(testing::contentOf(site.folder / settingsFile), HasSubstr("Database=" + database));
    EXPECT_FALSE(std::filesystem::exists(site.folder / databaseFile));
}

TEST_F(ServerSite, FreshlyMadeHasNothingWrong) {
    EXPECT_THAT(checkSite(site.folder), IsEmpty());
}

TEST_F(ServerSite, GivesNewSchedulesKeysOfTheirOwn) {
    change("INSERT INTO OvrSchedule (PointID) VALUES (101)");
    EXPECT_EQ(value("SELECT ID FROM OvrSchedule ORDER BY ID DESC"), "8");
}

TEST_F(ServerSite, IsOnlyMadeInAnEmptyDatabase) {
    try {
        const TestSite second(5, 1, database);
        FAIL() << "made";
    } catch (const SiteError& error) {
        EXPECT_THAT(error.what(), HasSubstr("not empty"));
    }
    EXPECT_THAT(checkSite(site.folder), IsEmpty());
}

TEST_F(ServerSite, FeedsTheEventsThatAFileWouldFeed) {
    const TestSite file;
    SiteDatabase onServer(database, SiteDatabase::Access::Read);
    SiteDatabase inFile(file.folder / databaseFile, SiteDatabase::Access::Read);
    EXPECT_EQ(feedLine(*CardFeed(onServer, 3).eventOf(2)),
              feedLine(*CardFeed(inFile, 3).eventOf(2)));
    EXPECT_EQ(CardFeed(onServer, 3).operators().size(), CardFeed(inFile, 3).operators().size());
}

TEST_F(ServerSite, MissesTablesColumnsIndexesAndFunctions) {
    change("DROP TABLE Skills; ALTER TABLE Cards DROP COLUMN CardNum; DROP INDEX namesindex2;"
           "ALTER TABLE Loc ALTER COLUMN Name TYPE bigint USING 0;"
           "CREATE OR REPLACE FUNCTION kintar_like(t text, pattern text) RETURNS boolean LANGUAGE "
           "sql IMMUTABLE AS $$SELECT true$$");
    EXPECT_THAT(checkSite(site.folder),
                ::testing::IsSupersetOf({"Skills: the table is missing",
                                         "Cards.CardNum: the column is missing",
                                         "Names: has no index on (LocGrp, FName COLLATE NOCASE)",
                                         "Loc.Name: is not declared text",
                                         "kintar_like: is not the function of this version"}));
}

TEST_F(ServerSite, TellsValuesThatColumnsShouldNotHold) {
    change("UPDATE Names SET Visitor = 5 WHERE ID = 1; UPDATE Cards SET Status = 3000000000 WHERE "
           "ID = 2; UPDATE Cards SET StopDate = 'infinity' WHERE ID = 3;"
           "UPDATE LocCards SET CardID = 99999 WHERE ID = 1");
    EXPECT_THAT(checkSite(site.folder),
                ElementsAre("Names.Visitor: 1 row holds neither -1 nor 0 nor Null",
                            "Cards.Status: 1 row holds no whole number of 32 bits",
                            "Cards.StopDate: 1 row holds no date-time such as 2012-03-14 17:05:00",
                            "LocCards: the card of row 1 is missing"));
}

TEST_F(ServerSite, ThatCannotBeReachedIsAFinding) {
    PrivateCluster::shared().dropDatabase(database);
    EXPECT_THAT(checkSite(site.folder), Contains(HasSubstr("cannot be reached")));
}

TEST(ServerSiteInterrupted, LeavesAnEmptyDatabase) {
    const std::string database = PrivateCluster::shared().makeDatabase();
    const testing::ScratchFolder scratch;
    SiteOptions options{.names = 50, .seed = 1, .photos = 5, .now = testing::testNow()};
    options.database = database;
    int left = 40;
    options.checkpoint = [&] {
        if (--left == 0) {
            throw Interrupted(2);
        }
    };
    EXPECT_THROW(
        makeSite(std::filesystem::path(scratch.path()) / "site", options, testing::writeToyPhotos),
        Interrupted);
    EXPECT_EQ(testing::askServer(database, "SELECT count(*) FROM pg_class WHERE relnamespace = "
                                           "'public'::regnamespace"),
              "0");
    PrivateCluster::shared().dropDatabase(database);
}

TEST(CopyText, EscapesWhatWouldEndAValueOrARow) {
    CopyText text;
    const std::array<SiteValue, 5> row{std::int64_t{-1}, std::string_view("a\tb\\c\nd\r"), nullptr,
                                       std::string_view(""),
                                       DateTime::fromFields(2012, 3, 14, 17, 5).value()};
    text.add(row);
    EXPECT_EQ(text.text(), "-1\ta\\tb\\\\c\\nd\\r\t\\N\t\t2012-03-14 17:05:00\n");
}

} // namespace
} // namespace kintar::site
