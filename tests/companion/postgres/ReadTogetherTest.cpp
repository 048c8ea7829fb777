// SELECTs that are read together give what each gives alone.
#include "companion/SiteFolder.h"
#include "companion/postgres/PostgresConnection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <span>
#include <string>
#include <vector>

namespace kintar::companion::postgres {
namespace {

using ::testing::ElementsAre;

/// All values, a line each; or what kind of error it was.
std::string shown(ReadOfMany& result) {
    std::string text;
    try {
        const Recordset rows = result.take();
        for (std::size_t row = 0; row < rows.RecordCount(); ++row) {
            for (std::size_t column = 0; column < rows.FieldCount(); ++column) {
                const FieldValue value = rows.at(row, column);
                text += (value.isNull() ? "Null" : value.text()) + ";";
            }
        }
    } catch (const DatabaseError& error) {
        return error.kind() == ErrorKind::Syntax || error.kind() == ErrorKind::UnknownName
                   ? "wrong statement"
                   : "failed";
    }
    return text;
}

class ReadTogether : public ::testing::Test {
protected:
    std::vector<std::string> together(const std::vector<std::string>& statements) {
        std::vector<std::string> texts;
        for (ReadOfMany& result : connection.openTogether(statements)) {
            texts.push_back(shown(result));
        }
        return texts;
    }
    std::vector<std::string> alone(const std::vector<std::string>& statements) {
        std::vector<std::string> texts;
        for (ReadOfMany& result : readOneByOne(std::span(statements), [&](const std::string& sql) {
                 return connection.open(sql);
             })) {
            texts.push_back(shown(result));
        }
        return texts;
    }
    /// How many statements the server has prepared for this connection.
    std::string prepared() {
        const auto rows = connection.handle().run("SELECT count(*) FROM pg_prepared_statements");
        return PQgetvalue(rows.get(), 0, 0);
    }

    SiteFolder site{TestEngine::Postgres};
    PostgresConnection connection{site.database(), DatabaseAccess::ReadOnly};
};

TEST_F(ReadTogether, StatementsOfOneShapeGiveWhatEachGivesAlone) {
    std::vector<std::string> statements;
    for (int id = 0; id < 300; ++id) {
        statements.push_back("SELECT LName, Visitor, ID FROM [Names] WHERE ID = " +
                             std::to_string(id));
    }
    EXPECT_EQ(together(statements), alone(statements));
    EXPECT_EQ(prepared(), "2") << "the text for many, and that for one";
}

TEST_F(ReadTogether, TheRowsOfEachComeInItsOwnOrder) {
    std::vector<std::string> statements;
    for (int group = 0; group < 5; ++group) {
        statements.push_back("SELECT ID, LName FROM [Names] WHERE LocGrp = " +
                             std::to_string(group) + " ORDER BY LName Desc, ID Desc");
    }
    const auto texts = together(statements);
    EXPECT_EQ(texts, alone(statements));
    EXPECT_THAT(texts, ::testing::Contains(::testing::SizeIs(::testing::Gt(40U))));
}

TEST_F(ReadTogether, EveryKindOfValueMayDiffer) {
    const std::vector<std::string> dates{
        "SELECT ID FROM LocCards WHERE LastDate > #03/14/2012 17:05:00# AND Loc IN (1, 2)",
        "SELECT ID FROM LocCards WHERE LastDate > #01/01/1999# AND Loc IN (1, 2)",
        "SELECT ID FROM LocCards WHERE LastDate > #01/01/1999# AND Loc IN (1, 3)"};
    EXPECT_EQ(together(dates), alone(dates));
    const std::vector<std::string> texts{
        "SELECT ID, LName & 'a\"b' FROM [Names] WHERE LName = 'Smith' OR LName LIKE 'o''%'",
        "SELECT ID, LName & 'c\\d{' FROM [Names] WHERE LName = 'MÜLLER' OR LName LIKE 'sm%'",
        "SELECT ID, LName & '' FROM [Names] WHERE LName = '' OR LName LIKE '%'"};
    EXPECT_EQ(together(texts), alone(texts));
    const std::vector<std::string> numbers{"SELECT 1.5, ID FROM IO WHERE ID > 0.5",
                                           "SELECT 2.25, ID FROM IO WHERE ID > 100.25"};
    EXPECT_EQ(together(numbers), alone(numbers));
    const std::vector<std::string> codes{"SELECT ID FROM Cards WHERE Code = 123",
                                         "SELECT ID FROM Cards WHERE Code = 5"};
    EXPECT_EQ(together(codes), alone(codes));
}

TEST_F(ReadTogether, ValuesThatDifferOnlyLaterOnAreReadRight) {
    const auto statement = [](int id, int group) {
        return "SELECT LName FROM [Names] WHERE ID = " + std::to_string(id) +
               " AND LocGrp >= " + std::to_string(group);
    };
    for (const auto& statements : {std::vector{statement(1, 0), statement(2, 0)},
                                   std::vector{statement(1, 0), statement(1, 9)},
                                   std::vector{statement(2, 0), statement(1, 0)}}) {
        EXPECT_EQ(together(statements), alone(statements));
    }
    EXPECT_EQ(prepared(), "2") << "the text for many that is no longer needed is given up";
}

TEST_F(ReadTogether, StatementsOfSeveralShapesKeepTheirOrder) {
    const std::vector<std::string> statements{"SELECT ID FROM IO WHERE ID = 12",
                                              "SELECT ID FROM IO WHERE ID = 13",
                                              "SELECT Loc FROM IO WHERE ID = 12",
                                              "SELECT ID FROM IO",
                                              "SELECT ID FROM IO",
                                              "SELECT Loc FROM IO WHERE ID = 13",
                                              "SELECT ID FROM IO WHERE Loc LIKE 'x'"};
    EXPECT_EQ(together(statements), alone(statements));
}

TEST_F(ReadTogether, NothingIsReadForNothing) {
    EXPECT_THAT(together({}), ElementsAre());
}

TEST_F(ReadTogether, AnErrorStaysWithItsOwnStatementAndIsTheLast) {
    const auto sum = [](const std::string& number) { return "SELECT ID + " + number + " FROM IO"; };
    const std::string tooMuch = "9223372036854775807";
    EXPECT_THAT(together({sum("1"), sum("2"), sum(tooMuch), sum("3")}),
                ElementsAre("13;", "14;", "failed"));
    EXPECT_THAT(together({sum("1"), "SELECT Nothing FROM IO", sum("3")}),
                ElementsAre("13;", "wrong statement"));
    EXPECT_THAT(together({sum("1"), sum("2"), "DELETE FROM IO"}),
                ElementsAre("13;", "14;", "wrong statement"));
    EXPECT_THAT(together({"SELECT", "SELECT"}), ElementsAre("wrong statement"));
    EXPECT_EQ(connection.open("SELECT ID FROM IO").RecordCount(), 1U);
}

TEST_F(ReadTogether, AnErrorLeavesTheOneStateOfTheDataThatIsRead) {
    const std::vector<std::string> statements{"SELECT ID + 1 FROM IO",
                                              "SELECT ID + 9223372036854775807 FROM IO"};
    connection.beginRead();
    EXPECT_THAT(together(statements), ElementsAre("13;", "failed"));
    site.foreign("INSERT INTO IO VALUES (14, 1)");
    EXPECT_THAT(together({"SELECT ID + 1 FROM IO", "SELECT ID + 2 FROM IO"}),
                ElementsAre("13;", "14;"));
    EXPECT_EQ(connection.open("SELECT ID FROM IO").RecordCount(), 1U);
    connection.endRead();
    EXPECT_EQ(connection.open("SELECT ID FROM IO").RecordCount(), 2U);
}

TEST_F(ReadTogether, AConnectionLostMeanwhileIsAnErrorOfTheReadAndAfterItAllGoesOn) {
    const std::vector<std::string> statements{"SELECT ID + 1 FROM IO", "SELECT ID + 2 FROM IO"};
    const auto hangUp = [&] {
        site.foreign("SELECT pg_terminate_backend(pid, 5000) FROM pg_stat_activity WHERE "
                     "application_name = 'kintar3'");
    };
    EXPECT_THAT(together(statements), ElementsAre("13;", "14;"));
    hangUp();
    EXPECT_THAT(together(statements), ElementsAre("13;", "14;")) << "nothing was begun";
    connection.beginRead();
    hangUp();
    EXPECT_THAT(together(statements), ElementsAre("failed"));
    connection.endRead();
    EXPECT_THAT(together(statements), ElementsAre("13;", "14;"));
}

} // namespace
} // namespace kintar::companion::postgres
