#include "companion/RecordHelper.h"

#include "companion/DatabaseError.h"
#include "companion/OpenDatabase.h"
#include "companion/SiteFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace kintar::companion {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Pair;

class NoNotices final : public Notices {
public:
    void writeFailed(const std::string& /*reason*/) override {}
};

class KeptListBox final : public ListBox {
public:
    void clear() override { items.clear(); }
    void addItem(const std::string& text, std::int32_t data) override {
        items.emplace_back(text, data);
    }
    std::vector<std::pair<std::string, std::int32_t>> items;
};

class TwoCaptions final : public PreparableForm {
public:
    [[nodiscard]] std::string formName() const override { return "frmAlarmPopUp"; }
    std::vector<FormCaption> captions() override {
        return {{456, [this](const std::string& text) { first = text; }},
                {999, [this](const std::string& text) { second = text; }}};
    }
    std::string first = "design";
    std::string second = "design";
};

class RecordHelperTest : public ::testing::TestWithParam<TestEngine> {
protected:
    Recordset open(std::string_view sql) { return records.OpenRecordset(sql, connection); }

    SiteFolder site{GetParam()};
    NoNotices notices;
    RecordHelper records{notices};
    std::unique_ptr<DatabaseConnection> opened =
        openDatabase(site.database(), DatabaseAccess::ReadWrite);
    DatabaseConnection& connection = *opened;
};

TEST_P(RecordHelperTest, TextLiteralsKeepQuotesWhole) {
    EXPECT_EQ(records.SqlText("O'Brien"), "'O''Brien'");
    EXPECT_EQ(records.SqlText(""), "''");
    EXPECT_EQ(records.SqlText("a\xff"), "'a\uFFFD'");
    EXPECT_EQ(records.SqlText(std::string_view("a\0b", 3)), "'a\uFFFDb'");
}

TEST_P(RecordHelperTest, EveryTextSurvivesTheWayThroughAStatement) {
    for (const char* text : {"O'Brien", "''", "\"", "x'; DROP TABLE Names; --", "#3/14/2012#",
                             "Παπά", "a\r\nb", "[x]", "%_", "\\"}) {
        records.ExecuteSQL(
            "UPDATE Texts SET [Text] = " + records.SqlText(text) + " WHERE Num = 204", connection);
        EXPECT_EQ(open("SELECT [Text] FROM Texts WHERE Num = 204").field("text").text(), text);
    }
}

TEST_P(RecordHelperTest, DateLiteralsHaveTheTimeAlways) {
    EXPECT_EQ(records.SqlDate(*DateTime::fromFields(2012, 3, 14, 17, 5)), "#03/14/2012 17:05:00#");
    EXPECT_EQ(records.SqlDate(DateTime()), "#12/30/1899 00:00:00#");
    EXPECT_EQ(records.SqlDate(*DateTime::fromFields(9999, 12, 31)), "#12/31/9999 00:00:00#");
}

TEST_P(RecordHelperTest, ADateWrittenReadsBackTheSame) {
    const DateTime moment = *DateTime::fromFields(2024, 2, 29, 23, 59, 59);
    records.ExecuteSQL("UPDATE OvrSchedule SET StartDate = " + records.SqlDate(moment), connection);
    EXPECT_EQ(
        open("SELECT StartDate FROM OvrSchedule WHERE ID = 7").field("startdate").asDateTime(),
        moment);
}

TEST_P(RecordHelperTest, ACriterionFindsTheFirstRowThatMeetsIt) {
    Recordset devices = open("Select Loc, Device, Name From Dev");
    EXPECT_TRUE(records.FindRecord(devices, "Loc = 1 And Device = 8"));
    EXPECT_EQ(devices.field("Name").text(), "Lift");
    EXPECT_TRUE(records.FindRecord(devices, "Loc = 1"));
    EXPECT_EQ(devices.field("Name").text(), "Door") << "searched from the first row";
}

TEST_P(RecordHelperTest, ACriterionThatNothingMeetsLeavesTheEnd) {
    Recordset devices = open("Select Loc, Device, Name From Dev");
    EXPECT_FALSE(records.FindRecord(devices, "Loc = 9 And Device = 8"));
    EXPECT_TRUE(devices.atEnd());
    Recordset none = open("Select Loc, Device, Name From Dev WHERE Loc = 9");
    EXPECT_FALSE(records.FindRecord(none, "Loc = 9"));
}

TEST_P(RecordHelperTest, ACriterionMeansWhatItWouldMeanInAStatement) {
    Recordset names = open("SELECT ID, LName, Visitor, Company FROM [Names] ORDER BY ID");
    const auto found = [&](const char* criterion) {
        return records.FindRecord(names, criterion) ? names.field("ID").asLong() : 0;
    };
    EXPECT_EQ(found("LName = 'παπαδάκης'"), 7);
    EXPECT_EQ(found("lname LIKE 'SMY%'"), 3);
    EXPECT_EQ(found("LName > 'smith' AND LName LIKE 's%'"), 3);
    EXPECT_EQ(found("Visitor = True"), 2);
    EXPECT_EQ(found("Visitor"), 2);
    EXPECT_EQ(found("Company IS NULL"), 2);
    EXPECT_EQ(found("NOT Company = 1"), 3) << "Null is not unequal";
    EXPECT_EQ(found("ID BETWEEN 6 AND 5"), 5);
    EXPECT_EQ(found("ID IN (20, 19)"), 19);
    EXPECT_EQ(found("LName & '!' = 'kelvin!'"), 11);
}

TEST_P(RecordHelperTest, ACriterionThatIsNoneSaysWhere) {
    Recordset devices = open("Select Loc, Device, Name From Dev");
    for (const auto& [criterion, text] : std::vector<std::pair<const char*, const char*>>{
             {"", "Position 1: expected a value, found the end of the statement"},
             {"Loc = 1 AND", "Position 12: expected a value, found the end of the statement"},
             {"Lock = 1", "Position 1: unknown column Lock"},
             {"Loc = #1/1/2012#", "Position 5: a date-time compares with a date-time only; one is "
                                  "written #month/day/year#"},
             {"Count(*) = 1", "Position 1: no aggregate can stand here"},
             {"Loc IN (SELECT Loc FROM Loc)",
              "Position 5: a criterion of a recordset holds no SELECT"},
             {"Name", "Position 1: not a condition"}}) {
        try {
            records.FindRecord(devices, criterion);
            FAIL() << criterion;
        } catch (const DatabaseError& error) {
            EXPECT_STREQ(error.what(), text);
        }
    }
}

TEST_P(RecordHelperTest, ACriterionComparesTextsWithNumbersAsNumbers) {
    Recordset cards = open("SELECT ID, Code, StartDate FROM Cards ORDER BY ID DESC");
    EXPECT_TRUE(records.FindRecord(cards, "Code = 12345678901234567890"));
    EXPECT_EQ(cards.field("ID").asLong(), 4);
    EXPECT_TRUE(records.FindRecord(cards, "Code <> 123"));
    EXPECT_EQ(cards.field("ID").asLong(), 5);
    EXPECT_TRUE(records.FindRecord(cards, "StartDate < #3/14/2012# AND ID * 2 - 1 = 7"));
    EXPECT_EQ(cards.field("ID").asLong(), 4);
}

TEST_P(RecordHelperTest, FillsAListBoxFromTwoColumns) {
    Recordset companies = open("SELECT Name, Company FROM Company WHERE LocGrp = 3 ORDER BY Name");
    KeptListBox list;
    list.addItem("old", 1);
    records.FillListBox(list, companies, "Name", "COMPANY");
    EXPECT_THAT(list.items, ElementsAre(Pair("alpha", 2), Pair("Ökonom", 4), Pair("Zeta", 1)));
    EXPECT_THROW(records.FillListBox(list, companies, "Name", "Nothing"), RunTimeError);
}

TEST_P(RecordHelperTest, PreparesCaptionsByNumberAndLeavesTheOthers) {
    TwoCaptions form;
    records.PrepareForm(connection, form);
    EXPECT_EQ(form.first, "Alarm");
    EXPECT_EQ(form.second, "design");
}

TEST_P(RecordHelperTest, AClosedConnectionSaysSo) {
    ClosedConnection never;
    connection.Close();
    for (Connection* closed : std::initializer_list<Connection*>{&never, &connection}) {
        try {
            records.OpenRecordset("SELECT ID FROM IO", *closed);
            FAIL() << "no error";
        } catch (const RunTimeError& error) {
            EXPECT_EQ(error.number(), 3709);
            EXPECT_STREQ(error.what(), "The connection is closed.");
        }
    }
}

TEST_P(RecordHelperTest, ARecordsetComesFromASelectOnlyAndAChangeFromNone) {
    EXPECT_THROW(open("DELETE FROM IO"), DatabaseError);
    EXPECT_THROW(records.ExecuteSQL("SELECT ID FROM IO", connection), DatabaseError);
    EXPECT_EQ(open("SELECT ID FROM IO").RecordCount(), 1U);
}

TEST_P(RecordHelperTest, ARecordsetOutlivesItsConnection) {
    const Recordset rows = open("SELECT LName FROM [Names] WHERE ID = 4");
    connection.Close();
    EXPECT_EQ(rows.at(0, 0).text(), "O'Brien");
}

TEST_P(RecordHelperTest, ErrorsOfStatementsNeverQuoteTheirValues) {
    for (const char* sql : {"SELECT Nme FROM [Names] WHERE LName = 'Secretperson'",
                            "SELECT ID FROM [Names] WHERE LName = 'Secretperson' 'Secretperson'",
                            "SELECT ID FROM [Names] WHERE StartDate = 'Secretperson'",
                            "SELECT ID FROM [Names] WHERE LName = 'Secretperson",
                            "INSERT INTO Texts (Num, [Text]) VALUES (204, 'Secretperson')",
                            "UPDATE IO SET Loc = 'Secretperson'"}) {
        try {
            records.ExecuteSQL(sql, connection);
            FAIL() << sql;
        } catch (const RunTimeError& error) {
            EXPECT_THAT(error.what(), ::testing::Not(HasSubstr("Secret"))) << sql;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Engines, RecordHelperTest,
                         ::testing::Values(TestEngine::Sqlite, TestEngine::Postgres),
                         [](const auto& instance) { return nameOf(instance.param); });

/// A database server takes no other texts than valid ones.
TEST(RecordHelperOnAFile, MakesTextsValidThatAreNoUtf8) {
    const SiteFolder site;
    NoNotices notices;
    RecordHelper records(notices);
    const auto connection = openDatabase(site.database(), DatabaseAccess::ReadWrite);
    site.foreign("UPDATE Texts SET Text = CAST(x'41FF42' AS TEXT) WHERE Num = 204");
    EXPECT_EQ(records.OpenRecordset("SELECT [Text] FROM Texts WHERE Num = 204", *connection)
                  .at(0, 0)
                  .text(),
              "A\uFFFDB");
}

} // namespace
} // namespace kintar::companion
