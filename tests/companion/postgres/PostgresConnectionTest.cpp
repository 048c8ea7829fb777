#include "companion/postgres/PostgresConnection.h"

#include "base/Unicode.h"
#include "companion/SiteFolder.h"
#include "companion/dialect/LikePattern.h"
#include "support/PrivateCluster.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar::companion::postgres {
namespace {

using ::testing::AnyOf;
using ::testing::Contains;
using ::testing::HasSubstr;

ErrorKind kindOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const DatabaseError& error) {
        return error.kind();
    }
    ADD_FAILURE() << "no error";
    return ErrorKind::Other;
}

class PostgresConnectionTest : public ::testing::Test {
protected:
    SiteFolder site{TestEngine::Postgres};
    PostgresConnection connection{site.database(), DatabaseAccess::ReadWrite};
};

TEST_F(PostgresConnectionTest, AReadOnlyConnectionChangesNothing) {
    PostgresConnection reader(site.database(), DatabaseAccess::ReadOnly);
    EXPECT_EQ(kindOf([&] { reader.execute("DELETE FROM IO"); }), ErrorKind::ReadOnly);
    EXPECT_EQ(reader.open("SELECT ID FROM IO").RecordCount(), 1U);
}

TEST_F(PostgresConnectionTest, AViolatedConstraintIsAnErrorThatQuotesNoValue) {
    try {
        connection.execute("INSERT INTO IO (ID, Loc) VALUES (12, 4711)");
        FAIL() << "no error";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.kind(), ErrorKind::Constraint);
        EXPECT_THAT(error.what(), HasSubstr("io"));
        EXPECT_THAT(error.what(), ::testing::Not(HasSubstr("12")));
    }
}

TEST_F(PostgresConnectionTest, StatementsThatDifferInValuesAreOneShapeAndPreparedOnce) {
    for (int id = 1; id < 20; ++id) {
        connection.open("SELECT LName FROM [Names] WHERE ID = " + std::to_string(id));
    }
    EXPECT_EQ(connection.knownShapes(), 1U);
    const auto prepared = connection.handle().run("SELECT count(*) FROM pg_prepared_statements");
    EXPECT_EQ(std::string(PQgetvalue(prepared.get(), 0, 0)), "1");
}

TEST_F(PostgresConnectionTest, WhatIsPreparedOnTheServerIsBounded) {
    for (std::size_t count = 0; count < ShapeCache::capacity + 20; ++count) {
        connection.open("SELECT ID FROM IO WHERE ID = 1" + std::string(count, ' '));
    }
    EXPECT_EQ(connection.knownShapes(), ShapeCache::capacity);
    const auto prepared = connection.handle().run("SELECT count(*) FROM pg_prepared_statements");
    EXPECT_EQ(std::string(PQgetvalue(prepared.get(), 0, 0)), std::to_string(ShapeCache::capacity));
}

TEST_F(PostgresConnectionTest, ATableThatAnotherProgramMakesIsFound) {
    EXPECT_EQ(kindOf([&] { connection.open("SELECT ID FROM Later"); }), ErrorKind::UnknownName);
    site.foreign("CREATE TABLE later (id bigint, at timestamp); INSERT INTO later VALUES (7)");
    EXPECT_EQ(connection.open("SELECT ID FROM Later").at(0, 0).text(), "7");
    site.foreign("ALTER TABLE later RENAME COLUMN id TO number");
    EXPECT_EQ(connection.open("SELECT Number FROM Later").at(0, 0).text(), "7");
    EXPECT_EQ(kindOf([&] { connection.open("SELECT ID FROM Later"); }), ErrorKind::UnknownName);
}

TEST_F(PostgresConnectionTest, ASnapshotSeesOneStateOfTheData) {
    const auto snapshot = connection.Snapshot();
    EXPECT_EQ(connection.open("SELECT ID FROM IO").RecordCount(), 1U);
    site.foreign("INSERT INTO IO VALUES (13, 1)");
    EXPECT_EQ(connection.open("SELECT ID FROM IO").RecordCount(), 1U);
    EXPECT_EQ(connection.Snapshot(), nullptr) << "one inside another is the same";
}

TEST_F(PostgresConnectionTest, AfterASnapshotTheNewestDataAreThere) {
    { const auto snapshot = connection.Snapshot(); }
    site.foreign("INSERT INTO IO VALUES (13, 1)");
    EXPECT_EQ(connection.open("SELECT ID FROM IO").RecordCount(), 2U);
    EXPECT_NO_THROW(connection.execute("DELETE FROM IO WHERE ID = 13"));
}

TEST_F(PostgresConnectionTest, ADatabaseWithoutASiteIsRefused) {
    const std::string empty = testing::PrivateCluster::shared().makeDatabase();
    EXPECT_EQ(kindOf([&] { const PostgresConnection none(empty, DatabaseAccess::ReadOnly); }),
              ErrorKind::Missing);
}

TEST_F(PostgresConnectionTest, AServerThatIsNotThereIsAnError) {
    EXPECT_EQ(kindOf([&] {
                  const PostgresConnection none("postgresql:///x?host=" + site.path() + "&port=1",
                                                DatabaseAccess::ReadOnly);
              }),
              ErrorKind::Unreachable);
}

TEST_F(PostgresConnectionTest, AStatementThatTakesTooLongIsStoppedAndTheNextOneRuns) {
    Limits hasty;
    hasty.statement = std::chrono::seconds(1);
    PostgresConnection impatient(site.database(), DatabaseAccess::ReadOnly, hasty);
    EXPECT_EQ(kindOf([&] {
                  impatient.open("SELECT Count(*) FROM [Names] a, [Names] b, [Names] c, [Names] d, "
                                 "[Names] e, [Names] f, [Names] g");
              }),
              ErrorKind::TimedOut);
    EXPECT_EQ(impatient.open("SELECT ID FROM IO").RecordCount(), 1U);
}

/// The engine's own function against ours, for every character that could have a case.
TEST_F(PostgresConnectionTest, TheServerFoldsEveryCharacterAsTheSystemDoes) {
    // Beyond the second plane no character has a case.
    const auto rows = connection.handle().run(
        "SELECT c, kintar_fold(chr(c)), kintar_fold('a' || chr(c) || 'İΣ') FROM "
        "generate_series(1, 131071) AS c WHERE c NOT BETWEEN 55296 AND 57343");
    ASSERT_EQ(PQntuples(rows.get()), 131071 - 2048);
    int different = 0;
    for (int row = 0; row < PQntuples(rows.get()); ++row) {
        const auto point = static_cast<char32_t>(std::stoul(PQgetvalue(rows.get(), row, 0)));
        const std::string text = dialect::utf8({&point, 1});
        different += PQgetvalue(rows.get(), row, 1) == unicode::fold(text) ? 0 : 1;
        different += PQgetvalue(rows.get(), row, 2) == unicode::fold("a" + text + "İΣ") ? 0 : 1;
    }
    EXPECT_EQ(different, 0);
}

TEST_F(PostgresConnectionTest, SearchesOfALargeTableAreRangesOfAnIndex) {
    site.foreign("INSERT INTO Names (ID, LName, FName, LocGrp) SELECT n, md5(n::text), 'x', 3 "
                 "FROM generate_series(1000, 40000) AS n;"
                 "INSERT INTO Cards (ID, NameID, LocGrp, Code) SELECT n, n, 3, n::text "
                 "FROM generate_series(1000, 40000) AS n; ANALYZE");
    for (const char* sql : {"SELECT ID FROM [Names] WHERE LName LIKE 'smi%'",
                            "SELECT ID FROM [Names] WHERE LocGrp = 3 AND LName LIKE 'ab1%'",
                            "SELECT ID FROM [Names] WHERE LName = 'Smith'",
                            "SELECT ID FROM [Names] WHERE LName LIKE 'sm[a-k]%'",
                            "SELECT ID FROM Cards WHERE Code = 5000",
                            "SELECT ID FROM Cards WHERE Code LIKE '500%'"}) {
        const auto plan = connection.plan(sql);
        EXPECT_THAT(plan, Contains(HasSubstr("Index Cond"))) << sql;
        EXPECT_THAT(plan, ::testing::Not(Contains(HasSubstr("Seq Scan")))) << sql;
    }
}

} // namespace
} // namespace kintar::companion::postgres
