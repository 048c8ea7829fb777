#include "reports/InRptStatements.h"

#include "support/FakeServer.h"

#include <gtest/gtest.h>

namespace kintar::reports {
namespace {

using testing::FakeServer;

TEST(InRptStatements, AskForTheGroupItsLocationsAndItsActiveCards) {
    EXPECT_EQ(locGrpQuery(31), "Select LocGrp From Loc Where Loc = 31");
    EXPECT_EQ(groupLocationsQuery(3), "Select Loc From Loc Where LocGrp = 3");
    EXPECT_EQ(activeCardsQuery(3),
              "Select ID, NameID From Cards Where LocGrp = 3 And Status <> 0 Order By NameID");
}

TEST(InRptStatements, AskForTheUsesOfAHoldersCardsWithTwoBlanksBehindTheSecondAnd) {
    EXPECT_EQ(cardUsesQuery(12, "31, 32", "#03/12/2012 17:05:00#"),
              "Select LocCards.ID, LocCards.CardID, InOut1 From LocCards Inner Join Cards On "
              "LocCards.CardID = Cards.ID Where Cards.NameID = 12 And Loc In (31, 32) And  "
              "LocCards.LastDate > #03/12/2012 17:05:00# Order By CardID, LastDate Desc");
}

TEST(InRptStatements, AskForTheDetailsWithNoBlankBeforeTheNumber) {
    EXPECT_EQ(
        detailQuery(77),
        "Select Loc.Loc, Loc.Name as LocName, Dev.Name as DevName, [Names].FName, [Names].LName, "
        "Company.Name as CompName, LocCards.LastDev, LocCards.LastDate From (Company Right Join "
        "([Names] Right Join (Cards Right Join (Dev Right Join (LocCards Left Join Loc On "
        "LocCards.Loc = Loc.Loc) On Dev.Loc = LocCards.Loc And Dev.Device = LocCards.LastDev) On "
        "Cards.ID = LocCards.CardID) On Cards.NameID = [Names].ID) ON [Names].LocGrp = "
        "Company.LocGrp And [Names].Company = Company.Company) Where LocCards.ID =77 And "
        "Cards.Status <> 0");
}

TEST(InRptStatements, InsertARowWithQuotedTextsAndADateLiteral) {
    FakeServer server;
    const InRptRow row{31,
                       "North Gate",
                       7,
                       "Reader",
                       "Doe, Jane",
                       "Acme",
                       DateTime::fromFields(2012, 3, 14, 17, 5, 0)};
    EXPECT_EQ(insertInRpt(row, server.companion.record()),
              "Insert Into InRpt (Loc, LocName, Dev, DevName, Name, Company, LastUsed) VALUES "
              "(31, 'North Gate', 7, 'Reader', 'Doe, Jane', 'Acme', #2012-03-14T17:05:00#)");
}

TEST(InRptStatements, InsertNullForADateThatIsNone) {
    FakeServer server;
    EXPECT_EQ(insertInRpt(InRptRow{}, server.companion.record()),
              "Insert Into InRpt (Loc, LocName, Dev, DevName, Name, Company, LastUsed) VALUES "
              "(0, '', 0, '', '', '', Null)");
}

TEST(InRptStatements, CutTextsToTheWidthsOfTheirColumns) {
    FakeServer server;
    InRptRow row;
    row.locName = std::string(31, 'L');
    row.devName = std::string(31, 'D');
    row.name = std::string(65, 'N');
    row.company = std::string(31, 'C');
    const std::string sql = insertInRpt(row, server.companion.record());
    EXPECT_EQ(sql, "Insert Into InRpt (Loc, LocName, Dev, DevName, Name, Company, LastUsed) "
                   "VALUES (0, '" +
                       std::string(30, 'L') + "', 0, '" + std::string(30, 'D') + "', '" +
                       std::string(64, 'N') + "', '" + std::string(30, 'C') + "', Null)");
}

TEST(InRptStatements, CutCharactersAndNotBytes) {
    EXPECT_EQ(cutToWidth("ÄÖÜäöü", 3), "ÄÖÜ");
    EXPECT_EQ(cutToWidth("ÄÖ", 2), "ÄÖ");
    EXPECT_EQ(cutToWidth("\xFF\xFE", 1), "\xEF\xBF\xBD");
    EXPECT_EQ(cutToWidth("abc", 0), "");
}

TEST(InRptStatements, AskForTheRowsToCountAndInsertATotal) {
    EXPECT_EQ(totalsQuery(), "Select Loc, Dev From InRpt Order By Loc, Dev");
    EXPECT_EQ(insertTotals({31, 7, 12, 40}),
              "Insert Into Totals (Loc, Dev, DevTotal, LocGrpTotal) Values (31, 7, 12, 40)");
}

TEST(InRptStatements, DescribeBothTablesAndTheirIndexes) {
    const auto& tables = inRptTables();
    ASSERT_EQ(tables.size(), 2U);
    EXPECT_EQ(tables[0].name, "Totals");
    EXPECT_EQ(tables[0].indexName, "TotLocDev");
    EXPECT_EQ(tables[0].columns.size(), 4U);
    EXPECT_EQ(tables[1].name, "InRpt");
    EXPECT_EQ(tables[1].indexName, "LocDev");
    EXPECT_EQ(tables[1].indexColumns, (std::vector<std::string>{"Loc", "Dev"}));
    ASSERT_EQ(tables[1].columns.size(), 7U);
    EXPECT_EQ(tables[1].columns[1].width, 30U);
    EXPECT_EQ(tables[1].columns[4].width, 64U);
    EXPECT_EQ(tables[1].columns[6].type, ColumnType::DateTime);
}

} // namespace
} // namespace kintar::reports
