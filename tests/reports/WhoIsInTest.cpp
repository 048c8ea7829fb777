// The rules of who counts as in, on a real database.
#include "reports/ReportSite.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kintar::reports {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::ReportSite;
using ::testing::SizeIs;
using ::testing::StartsWith;

TEST(WhoIsIn, CountsAUseOf47Hours59Minutes59Seconds) {
    ReportSite site;
    site.holder(1, "Recent");
    site.use(1, "2012-03-12 17:05:01", "I");
    ASSERT_TRUE(site.build());
    EXPECT_THAT(site.names(), ElementsAre("Recent, A"));
}

TEST(WhoIsIn, DoesNotCountAUseOf48HoursOrOneSecondMore) {
    ReportSite site;
    site.holder(1, "Exactly");
    site.use(1, "2012-03-12 17:05:00", "I");
    site.holder(2, "Older");
    site.use(2, "2012-03-12 17:04:59", "I");
    ASSERT_TRUE(site.build());
    EXPECT_THAT(site.names(), IsEmpty());
}

TEST(WhoIsIn, ListsAHolderOnceForTheCardThatIsIn) {
    ReportSite site;
    site.holder(1, "Twice");
    site.card(2, 1, 1);
    site.use(1, "2012-03-14 08:00:00", "I");
    site.use(2, "2012-03-14 09:00:00", "N");
    ASSERT_TRUE(site.build());
    EXPECT_THAT(site.names(), ElementsAre("Twice, A"));
}

TEST(WhoIsIn, ListsAHolderTwiceWhoHasTwoCardsIn) {
    ReportSite site;
    site.holder(1, "Twice");
    site.card(2, 1, 1);
    site.use(1, "2012-03-14 08:00:00", "I");
    site.use(2, "2012-03-14 09:00:00", "I");
    ASSERT_TRUE(site.build());
    EXPECT_THAT(site.names(), ElementsAre("Twice, A", "Twice, A"));
    EXPECT_EQ(site.state.inCount, 2);
}

TEST(WhoIsIn, DoesNotListACardWhoseNewestUseIsOutAlsoWhereAnOlderOneIsIn) {
    ReportSite site;
    site.holder(1, "Left");
    site.use(1, "2012-03-14 08:00:00", "I");
    site.use(1, "2012-03-14 09:00:00", "N", 32);
    ASSERT_TRUE(site.build());
    EXPECT_THAT(site.names(), IsEmpty());
}

TEST(WhoIsIn, NeverCountsADeactivatedCard) {
    ReportSite site;
    site.holder(1, "Active");
    site.use(1, "2012-03-14 08:00:00", "I");
    site.run("UPDATE Cards SET Status = 0");
    site.card(2, 1, 1);
    ASSERT_TRUE(site.build());
    EXPECT_THAT(site.names(), IsEmpty());
}

TEST(WhoIsIn, LooksAtTheLocationsOfTheGroupOnly) {
    ReportSite site;
    site.holder(1, "Away");
    site.use(1, "2012-03-14 08:00:00", "I", 41);
    site.holder(2, "South");
    site.use(2, "2012-03-14 08:00:00", "I", 32);
    ASSERT_TRUE(site.build(31));
    EXPECT_THAT(site.names(), ElementsAre("South, A"));
}

TEST(WhoIsIn, LooksAtTheLocationsThatTheMapNames) {
    ReportSite site;
    site.folder.write("Data/InRptByLoc.txt", "0,31,41,;Gate Printer\r\n");
    site.holder(1, "Away");
    site.use(1, "2012-03-14 08:00:00", "I", 41);
    site.holder(2, "South");
    site.use(2, "2012-03-14 08:00:00", "I", 32);
    ASSERT_TRUE(site.build(31));
    EXPECT_THAT(site.names(), ElementsAre("Away, A"));
    EXPECT_EQ(site.state.printer, "Gate Printer");
}

TEST(WhoIsIn, FailsWithAReportWhereTheMapsListIsNoList) {
    for (const char* map : {"0,31,57;P", "x,31,;P", "0,31,) Or (1=1,;P\n0,31,;Q", "0,31, , ,;P"}) {
        SCOPED_TRACE(map);
        ReportSite site;
        site.folder.write("temp/InRpt.Mdb", "an old list");
        site.folder.write("Data/InRptByLoc.txt", map);
        site.holder(1, "Somebody");
        site.use(1, "2012-03-14 08:00:00", "I");
        const bool parses = std::string_view(map) == "0,31,57;P";
        EXPECT_EQ(site.build(31), parses);
        EXPECT_THAT(site.reported, SizeIs(parses ? 0 : 1));
        EXPECT_EQ(site.folder.has("temp/InRpt.Mdb"), parses);
    }
}

TEST(WhoIsIn, FillsEveryColumn) {
    ReportSite site;
    site.holder(1, "O''Brien");
    site.use(1, "2012-03-14 08:00:00", "I", 31, 2);
    ASSERT_TRUE(site.build());
    EXPECT_THAT(site.rows("Select Loc, LocName, Dev, DevName, Name, Company, LastUsed From InRpt"),
                ElementsAre("31|North|2|Lift|O'Brien, A|Acme|2012-03-14 08:00:00"));
}

TEST(WhoIsIn, LeavesWhatIsMissingEmptyAndKeepsTheRow) {
    ReportSite site;
    site.card(5, 99, 1); // a card of nobody
    site.use(5, "2012-03-14 08:00:00", "I", 31, 77);
    ASSERT_TRUE(site.build());
    EXPECT_THAT(site.rows("Select LocName, Dev, DevName, Name, Company From InRpt"),
                ElementsAre("North|77||, |"));
}

TEST(WhoIsIn, CutsANameThatIsTooLongAndKeepsTheRow) {
    ReportSite site;
    site.holder(1, std::string(100, 'x'));
    site.use(1, "2012-03-14 08:00:00", "I");
    ASSERT_TRUE(site.build());
    EXPECT_THAT(site.names(), ElementsAre(std::string(64, 'x')));
}

TEST(WhoIsIn, CountsPerReaderAndCarriesTheWholeCountInEveryTotal) {
    ReportSite site;
    for (int id = 1; id <= 5; ++id) {
        site.holder(id, "Holder");
        site.use(id, "2012-03-14 08:00:00", "I", id <= 3 ? 31 : 32, id == 3 ? 2 : 1);
    }
    ASSERT_TRUE(site.build());
    EXPECT_THAT(site.rows("Select Loc, Dev, DevTotal, LocGrpTotal From Totals Order By Loc, Dev"),
                ElementsAre("31|1|2|5", "31|2|1|5", "32|1|2|5"));
}

TEST(WhoIsIn, CountsOnFromTheFirstBuildInASecondOne) {
    ReportSite site;
    site.holder(1, "Once");
    site.use(1, "2012-03-14 08:00:00", "I");
    ASSERT_TRUE(site.build());
    ASSERT_TRUE(site.build());
    EXPECT_THAT(site.rows("Select DevTotal, LocGrpTotal From Totals"), ElementsAre("1|2"));
    EXPECT_THAT(site.names(), SizeIs(1));
}

TEST(WhoIsIn, IsPrivateToTheUserAndLeavesNothingElse) {
    ReportSite site;
    ASSERT_TRUE(site.build());
    struct stat found {};
    ASSERT_EQ(stat((site.folder / "temp/InRpt.Mdb").c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 0777U, 0600U);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(site.folder / "temp"), {}), 1);
}

TEST(WhoIsIn, IsAbsentWhereTheDatabaseGoesInTheMiddle) {
    ReportSite site;
    for (int id = 1; id <= 3000; ++id) { // more than are read together
        site.holder(id, "Holder");
        site.use(id, "2012-03-14 08:00:00", "I");
    }
    site.folder.write("temp/InRpt.Mdb", "an old list");
    InRptBuild build(site.world(), 31, site.state);
    ASSERT_TRUE(build.step());
    ASSERT_TRUE(build.step());
    ASSERT_TRUE(build.step());
    EXPECT_GT(build.cardsDone(), 0U);
    site.data->Close();
    EXPECT_FALSE(build.step());
    EXPECT_THAT(site.reported, ElementsAre(StartsWith("objInRpt/PopulateTable: ")));
    EXPECT_THAT(std::filesystem::directory_iterator(site.folder / "temp"),
                std::filesystem::directory_iterator());
}

/// 600 holders, more than are read aside at once, each in.
void fill(ReportSite& site) {
    std::string names;
    std::string cards;
    std::string uses;
    for (int id = 1; id <= 600; ++id) {
        const std::string start = (id == 1 ? "(" : ", (") + std::to_string(id);
        names += start + ", 'Holder', 'A', 3, 1, 0, 0)";
        cards += start + ", " + std::to_string(id) + ", 3, '1', '1', 1, NULL, NULL, 0, 0)";
        uses += start + ", " + std::to_string(id) +
                ", 31, '2012-03-14 08:00:00', 1, 'I', 'N', 'N', 'N')";
    }
    site.run("INSERT INTO Names VALUES " + names);
    site.run("INSERT INTO Cards VALUES " + cards);
    site.run("INSERT INTO LocCards VALUES " + uses);
}

/// The embedded engine is always read in place.
bool isServer() {
    return testing::chosenEngine() == testing::TestEngine::Postgres;
}

class ClosedSession final : public ReadSession {
public:
    Connection& connection() override { return connection_; }
    void beginRead() override {}
    void endRead() noexcept override {}

private:
    ClosedConnection connection_;
};

TEST(WhoIsIn, IsTheSameWhereOnlyOneConnectionOrNoneCanBeHadForReadingAside) {
    ReportSite site;
    fill(site);
    for (const int available : {0, 1}) {
        int asked = 0;
        InRptWorld world = site.world();
        world.newReadSession = [&] {
            if (asked++ == available) {
                throw RunTimeError(3704, "no more connections");
            }
            return testing::readSessionOf(site.path());
        };
        InRptBuild build(world, 31, site.state);
        while (build.step()) {
        }
        EXPECT_EQ(asked, isServer() ? available + 1 : 0);
        EXPECT_TRUE(build.succeeded());
        EXPECT_THAT(site.names(), SizeIs(600));
    }
    EXPECT_THAT(site.reported, IsEmpty());
}

TEST(WhoIsIn, ReadAsideReportsWhatFailsOnceAndLeavesNothing) {
    ReportSite site;
    fill(site);
    InRptWorld world = site.world();
    world.newReadSession = [] { return std::make_unique<ClosedSession>(); };
    InRptBuild build(world, 31, site.state);
    while (build.step()) {
    }
    EXPECT_EQ(build.succeeded(), !isServer());
    if (!isServer()) {
        return;
    }
    EXPECT_THAT(site.reported, ElementsAre(StartsWith("objInRpt/PopulateTable: ")));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(site.folder / "temp"), {}), 0);
}

TEST(WhoIsIn, DroppedWhileItReadsAsideLeavesNothing) {
    ReportSite site;
    fill(site);
    InRptWorld world = site.world();
    world.newReadSession = [&] { return testing::readSessionOf(site.path()); };
    {
        InRptBuild build(world, 31, site.state);
        ASSERT_TRUE(build.step());
        ASSERT_TRUE(build.step());
        ASSERT_TRUE(build.step());
    }
    EXPECT_THAT(site.reported, IsEmpty());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(site.folder / "temp"), {}), 0);
}

TEST(WhoIsIn, IsReportedUnderMakeRptMdbWhereTheFolderIsMissing) {
    ReportSite site;
    InRptWorld world = site.world();
    world.tempFolder = site.folder / "nowhere";
    InRptBuild build(world, 31, site.state);
    EXPECT_FALSE(build.step());
    EXPECT_THAT(site.reported, ElementsAre(StartsWith("objInRpt/MakeRptMdb: ")));
}

TEST(WhoIsIn, IsReportedUnderCreateWhereTheFileCannotBeMovedIntoPosition) {
    ReportSite site;
    InRptBuild build(site.world(), 31, site.state);
    ASSERT_TRUE(build.step());
    // A folder that is not empty stands in the position meanwhile.
    site.folder.makeFolder("temp/InRpt.Mdb/inside");
    while (build.step()) {
    }
    EXPECT_FALSE(build.succeeded());
    EXPECT_THAT(site.reported, ElementsAre(StartsWith("objInRpt/Create: ")));
}

} // namespace
} // namespace kintar::reports
