#include "companion/sqlite/SqliteConnection.h"

#include "companion/SiteFolder.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar::companion::sqlite {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

ErrorKind kindOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const DatabaseError& error) {
        return error.kind();
    }
    ADD_FAILURE() << "no error";
    return ErrorKind::Other;
}

class SqliteConnectionTest : public ::testing::Test {
protected:
    SqliteConnection readWrite() { return {site.database(), Access::ReadWrite}; }
    SiteFolder site;
};

TEST_F(SqliteConnectionTest, AMissingDatabaseIsNotMade) {
    const std::string path = site.path() + "/other.db";
    EXPECT_EQ(kindOf([&] { const SqliteConnection made(path, Access::ReadWrite); }),
              ErrorKind::Missing);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(SqliteConnectionTest, AnotherFileIsNoDatabase) {
    site.write("text.db", "This is a text, and a long one: " + std::string(2000, 'x'));
    site.write("empty.db", "");
    for (const char* name : {"text.db", "empty.db", "Data"}) {
        EXPECT_EQ(kindOf([&] {
                      const SqliteConnection made(site.path() + "/" + name, Access::ReadOnly);
                  }),
                  ErrorKind::Damaged)
            << name;
    }
}

TEST_F(SqliteConnectionTest, ADamagedPageIsAnError) {
    std::fstream file(site.database(), std::ios::in | std::ios::out | std::ios::binary);
    for (int page = 1; page < 60; ++page) {
        file.seekp(page * 4096L);
        file << std::string(4096, '\xA5');
    }
    file.close();
    EXPECT_EQ(kindOf([&] {
                  SqliteConnection damaged(site.database(), Access::ReadOnly);
                  damaged.open("SELECT * FROM [Names]");
              }),
              ErrorKind::Damaged);
}

TEST_F(SqliteConnectionTest, ALockedDatabaseIsAnError) {
    SqliteConnection connection = readWrite();
    sqlite3_busy_timeout(connection.handle(), 0);
    const DatabaseHandle other = openDatabase(site.database(), Access::ReadWrite);
    runPlain(other.get(), "BEGIN EXCLUSIVE");
    EXPECT_EQ(kindOf([&] { connection.open("SELECT ID FROM IO"); }), ErrorKind::Locked);
    EXPECT_EQ(kindOf([&] { connection.execute("DELETE FROM IO"); }), ErrorKind::Locked);
    runPlain(other.get(), "ROLLBACK");
    EXPECT_EQ(connection.open("SELECT ID FROM IO").RecordCount(), 1U) << "and works afterwards";
}

TEST_F(SqliteConnectionTest, AReadOnlyConnectionChangesNothing) {
    SqliteConnection connection(site.database(), Access::ReadOnly);
    EXPECT_EQ(kindOf([&] { connection.execute("DELETE FROM IO"); }), ErrorKind::ReadOnly);
    EXPECT_EQ(connection.open("SELECT ID FROM IO").RecordCount(), 1U);
}

TEST_F(SqliteConnectionTest, AFullDiskIsAnErrorAndNothingIsHalfWritten) {
    SqliteConnection connection = readWrite();
    runPlain(connection.handle(), "PRAGMA max_page_count=1");
    const std::string large(60000, 'x');
    EXPECT_EQ(kindOf([&] { connection.execute("UPDATE Texts SET [Text] = '" + large + "'"); }),
              ErrorKind::DiskFull);
    EXPECT_EQ(connection.open("SELECT [Text] FROM Texts WHERE Num = 204").at(0, 0).text(),
              "Search Names");
}

TEST_F(SqliteConnectionTest, AViolatedConstraintIsAnError) {
    SqliteConnection connection = readWrite();
    EXPECT_EQ(kindOf([&] { connection.execute("INSERT INTO IO (ID) VALUES (12)"); }),
              ErrorKind::Constraint);
}

TEST_F(SqliteConnectionTest, AClosedConnectionIsAnError) {
    SqliteConnection connection = readWrite();
    connection.open("SELECT ID FROM IO");
    connection.Close();
    EXPECT_EQ(kindOf([&] { connection.open("SELECT ID FROM IO"); }), ErrorKind::Closed);
    EXPECT_EQ(kindOf([&] { connection.execute("DELETE FROM IO"); }), ErrorKind::Closed);
    EXPECT_EQ(kindOf([&] { connection.plan("DELETE FROM IO"); }), ErrorKind::Closed);
}

TEST_F(SqliteConnectionTest, StatementsThatDifferInValuesAreOneShape) {
    SqliteConnection connection = readWrite();
    for (int id = 1; id < 20; ++id) {
        connection.open("SELECT LName FROM [Names] WHERE ID = " + std::to_string(id));
    }
    EXPECT_EQ(connection.knownShapes(), 1U);
}

TEST_F(SqliteConnectionTest, TheCacheOfShapesIsBounded) {
    SqliteConnection connection = readWrite();
    for (std::size_t count = 0; count < StatementCache::capacity + 50; ++count) {
        connection.open("SELECT ID FROM IO WHERE ID = 1" + std::string(count, ' '));
    }
    EXPECT_EQ(connection.knownShapes(), StatementCache::capacity);
}

TEST_F(SqliteConnectionTest, OneShapeServesSearchesOfDifferentRanges) {
    SqliteConnection connection = readWrite();
    const auto count = [&](const std::string& pattern) {
        return connection.open("SELECT ID FROM [Names] WHERE LName LIKE '" + pattern + "'")
            .RecordCount();
    };
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(count("sm%"), 5U);
        EXPECT_EQ(count("ke%"), 1U);
        EXPECT_EQ(count("%"), 20U);
        EXPECT_EQ(count("παπ%"), 2U);
        EXPECT_EQ(count("smith"), 3U);
        EXPECT_EQ(count("o''b%"), 1U);
    }
    EXPECT_EQ(connection.knownShapes(), 1U);
}

TEST_F(SqliteConnectionTest, ManySearchesOfOneShapeKeepTheirVariantsBounded) {
    SqliteConnection connection = readWrite();
    const std::vector<std::string> patterns{"a",  "s", "ss", "sss", "k",
                                            "ks", "π", "%",  "aa",  "ab%"};
    for (const std::string& first : patterns) {
        for (const std::string& second : patterns) {
            EXPECT_NO_THROW(connection.open("SELECT ID FROM [Names] WHERE LName LIKE '" + first +
                                            "' OR FName LIKE '" + second + "%'"));
        }
    }
}

TEST_F(SqliteConnectionTest, AChangedSchemaIsNoticed) {
    SqliteConnection connection = readWrite();
    EXPECT_EQ(kindOf([&] { connection.open("SELECT Age FROM [Names]"); }), ErrorKind::UnknownName);
    EXPECT_EQ(connection.open("SELECT * FROM IO").FieldCount(), 2U);
    site.foreign("ALTER TABLE Names ADD COLUMN Age INTEGER; ALTER TABLE IO ADD COLUMN x TEXT;"
                 "CREATE TABLE Later (ID INTEGER)");
    EXPECT_EQ(connection.open("SELECT Age FROM [Names]").RecordCount(), 21U);
    EXPECT_EQ(connection.open("SELECT ID FROM Later").RecordCount(), 0U);
    EXPECT_EQ(connection.open("SELECT * FROM IO").FieldCount(), 3U);
    site.foreign("DROP TABLE Later");
    EXPECT_EQ(kindOf([&] { connection.open("SELECT ID FROM Later"); }), ErrorKind::UnknownName);
}

TEST_F(SqliteConnectionTest, AKnownStatementSeesAChangedSchemaToo) {
    SqliteConnection connection = readWrite();
    EXPECT_EQ(connection.open("SELECT * FROM IO").FieldCount(), 2U);
    site.foreign("ALTER TABLE IO ADD COLUMN x TEXT");
    connection.open("SELECT * FROM IO"); // the first run after it may still give the old columns
    EXPECT_EQ(connection.open("SELECT * FROM IO").FieldCount(), 3U);
}

TEST_F(SqliteConnectionTest, ColumnsOfForeignTypesAreReadByTheirNature) {
    site.foreign("CREATE TABLE Odd (a VARCHAR(20), b BIGINT, c DOUBLE, d, e yesno);"
                 "INSERT INTO Odd VALUES ('x', 4611686018427387904, 2.5, 'free', -1)");
    SqliteConnection connection = readWrite();
    const Recordset rows = connection.open("SELECT * FROM Odd WHERE a = 'X' AND b > 1");
    ASSERT_EQ(rows.RecordCount(), 1U);
    EXPECT_EQ(rows.field("b").text(), "4611686018427387904") << "more than 61 bits";
    EXPECT_EQ(rows.field("c").text(), "2.5");
    EXPECT_EQ(rows.field("e").text(), "True");
}

TEST_F(SqliteConnectionTest, ADatabaseInUtf16IsReadLikeAnyOther) {
    std::filesystem::remove(site.database());
    site.foreign("PRAGMA encoding='UTF-16le'; CREATE TABLE Names (ID INTEGER, LName TEXT);"
                 "INSERT INTO Names VALUES (1, 'Παπαδάκης'), (2, ''), (3, NULL)");
    SqliteConnection connection = readWrite();
    const Recordset rows = connection.open("SELECT LName FROM [Names] ORDER BY ID");
    EXPECT_EQ(rows.at(0, 0).text(), "Παπαδάκης");
    EXPECT_EQ(rows.at(1, 0).text(), "");
    EXPECT_TRUE(rows.at(2, 0).isNull());
    EXPECT_EQ(connection.open("SELECT ID FROM [Names] WHERE LName LIKE 'ΠΑΠ%'").RecordCount(), 1U);
}

TEST_F(SqliteConnectionTest, APrefixSearchIsARangeOfAnIndex) {
    SqliteConnection connection = readWrite();
    for (const char* sql :
         {"SELECT ID FROM [Names] WHERE LName LIKE 'br%'",
          "SELECT ID FROM [Names] WHERE LName LIKE 'sm%'",
          "SELECT ID FROM [Names] WHERE LName LIKE 'παπαδ%'",
          "SELECT ID FROM [Names] WHERE [Names].LocGrp = 3 AND LName LIKE 'sm%'",
          "SELECT [Names].ID, ([Names].LName & ', ' & [Names].FName) as Name, Visitor, Trace, "
          "Company.Name AS COMPNAME FROM [Names] LEFT JOIN Company ON [Names].LocGrp = "
          "Company.LocGrp AND [Names].Company = Company.Company WHERE [Names].LocGrp = 3 AND LName "
          "LIKE 'sm%' AND [Names].Company IN (0, 1) ORDER BY LName, FName",
          "SELECT DistinctRow [Names].ID, ([Names].LName & ', ' & [Names].FName) as Name, Visitor, "
          "Trace, Company.Name AS COMPNAME FROM (Company Right Join ([Names] Left Join Cards On "
          "[Names].ID = Cards.NameID) ON [Names].LocGrp = Company.LocGrp AND [Names].Company = "
          "Company.Company) WHERE [Names].LocGrp = 3 And Cards.GTour <> 0 AND LName LIKE 'sm%' "
          "ORDER BY LName, FName"}) {
        const auto plan = connection.plan(sql);
        EXPECT_THAT(plan, Contains(HasSubstr("LName>? AND LName<?"))) << sql;
        EXPECT_THAT(plan, Not(Contains(HasSubstr("SCAN")))) << sql;
    }
}

TEST_F(SqliteConnectionTest, ANumberSearchAmongTextsIsARangeOfAnIndex) {
    SqliteConnection connection = readWrite();
    for (const char* sql :
         {"SELECT ID FROM Cards WHERE Code = 123",
          "SELECT NameID FROM Cards WHERE LocGrp = 3 And DlFlag <> 2 AND Code = 5"}) {
        EXPECT_THAT(connection.plan(sql), Contains(HasSubstr("<expr>>? AND <expr><?"))) << sql;
    }
}

TEST_F(SqliteConnectionTest, RulesStatementsOnOneRowNeverScan) {
    SqliteConnection connection = readWrite();
    for (const char* sql : {"SELECT FileName FROM Images WHERE NameID = 1 AND ImgType = 2",
                            "Select Name From Dev Where Loc = 1 And Device = 7",
                            "Select UdfNum, UdfText From Udf Where NameID = 1 Order By UdfNum",
                            "SELECT * FROM FormData WHERE FORM = 'ListNAMESEARCH' ORDER BY INDEX",
                            "Select ID From OvrSchedule Where PointID = 12"}) {
        EXPECT_THAT(connection.plan(sql), Not(Contains(HasSubstr("SCAN")))) << sql;
    }
}

TEST_F(SqliteConnectionTest, AHoldersRecentUsesComeFromTheIndexesInTheirOrder) {
    SqliteConnection connection = readWrite();
    const auto plan = connection.plan(
        "Select LocCards.ID, LocCards.CardID, InOut1 From LocCards Inner Join Cards On "
        "LocCards.CardID = Cards.ID Where Cards.NameID = 5 And Loc In (1, 2) And  "
        "LocCards.LastDate > #03/12/2012 17:05:00# Order By CardID, LastDate Desc");
    EXPECT_THAT(plan, Not(Contains(HasSubstr("TEMP B-TREE"))));
    EXPECT_THAT(plan, Contains(HasSubstr("CardID=? AND LastDate>?")));
}

TEST_F(SqliteConnectionTest, StatementsSentInTurnEachGetTheirOwnRows) {
    SqliteConnection connection = readWrite();
    for (int id = 1; id <= 5; ++id) {
        const std::string number = std::to_string(id);
        EXPECT_EQ(
            connection.open("SELECT ID FROM Cards WHERE ID = " + number).field("ID").leadingLong(),
            id);
        EXPECT_EQ(connection.open("SELECT '" + number + "' AS x FROM Cards WHERE ID = 1")
                      .field("x")
                      .text(),
                  number);
    }
    EXPECT_EQ(connection.knownShapes(), 2U);
}

TEST_F(SqliteConnectionTest, RowsOfAForeignProgramAreFoundWhateverTheirCase) {
    // The bare engine knows nothing of our functions, and needs none to write.
    site.foreign("INSERT INTO Names (ID, LName, LocGrp) VALUES (100, 'ΖΩΓΡΆΦΟΣ', 3), "
                 "(101, 'ζωγράφος', 3), (102, 'Ζωγράφοσ', 3)");
    SqliteConnection connection = readWrite();
    EXPECT_EQ(connection.open("SELECT ID FROM [Names] WHERE LName LIKE 'ζΩγ%'").RecordCount(), 3U);
    EXPECT_EQ(connection.open("SELECT ID FROM [Names] WHERE LName = 'ζωγράφος'").RecordCount(), 3U);
}

} // namespace
} // namespace kintar::companion::sqlite
