// The nesting that user-field criteria make, beside a plain evaluation in memory.
#include "companion/DatabaseError.h"
#include "companion/OpenDatabase.h"
#include "companion/SiteFolder.h"

#include <gtest/gtest.h>
#include <vector>

namespace kintar::companion {
namespace {

constexpr int people = 60;
constexpr int fields = 40;

/// The value of a field of a person: varied, and in varied case.
std::string valueOf(int person, int field) {
    const int kind = (person * 7 + field * 3) % (field % 4 + 2) == 0 ? 1 : (person + field) % 3;
    const char* const values[] = {"Blue", "BLAU", "red"};
    return values[kind == 1 ? person % 2 : kind];
}

bool meets(int person, int levels) {
    for (int field = 1; field <= levels; ++field) {
        if (valueOf(person, field) == "red") {
            return false;
        }
    }
    return true;
}

std::string nested(int levels) {
    std::string sql = "SELECT UDF.NameID FROM UDF WHERE Udf.LocGrp = 9 And Udf.NameID In";
    for (int field = 1; field <= levels; ++field) {
        sql += field == 1 ? "" : " AND UDF.NameID IN";
        sql += " (SELECT NameID FROM UDF WHERE UdfNum = " + std::to_string(field) +
               " AND UdfText LIKE 'bl%'";
    }
    return sql + std::string(static_cast<std::size_t>(levels), ')');
}

std::vector<int> idsOf(const Recordset& rows) {
    std::vector<int> ids;
    for (std::size_t row = 0; row < rows.RecordCount(); ++row) {
        ids.push_back(rows.at(row, 0).asLong());
    }
    return ids;
}

class NestedCriteria : public ::testing::TestWithParam<std::tuple<TestEngine, int>> {
protected:
    NestedCriteria() {
        std::string sql = "DELETE FROM Names; DELETE FROM UDF; DELETE FROM Cards;";
        for (int person = 1; person <= people; ++person) {
            const std::string id = std::to_string(person);
            sql += "INSERT INTO Names (ID, LName, LocGrp) VALUES (" + id + ", 'N', 9);";
            sql += "INSERT INTO Cards (ID, NameID, LocGrp, DlFlag, Status) VALUES (" + id + ", " +
                   id + ", 9, 0, " + std::to_string(person % 4) + ");";
            for (int field = 1; field <= fields; ++field) {
                sql += "INSERT INTO UDF VALUES (" + id + ", " + std::to_string(field) + ", '" +
                       valueOf(person, field) + "', 9);";
            }
        }
        site.foreign("BEGIN;" + sql + "COMMIT");
    }

    SiteFolder site{std::get<TestEngine>(GetParam())};
};

TEST_P(NestedCriteria, FindWhoMeetsEveryField) {
    const int levels = std::get<int>(GetParam());
    std::vector<int> expected;
    for (int person = 1; person <= people; ++person) {
        if (meets(person, levels)) {
            expected.push_back(person);
        }
    }
    const auto connection = openDatabase(site.database(), DatabaseAccess::ReadOnly);
    EXPECT_EQ(idsOf(connection->open("SELECT ID FROM [Names] WHERE [Names].LocGrp = 9 And "
                                     "[Names].ID In (" +
                                     nested(levels) + ") ORDER BY ID")),
              expected);
}

TEST_P(NestedCriteria, FindWhoMeetsEveryFieldInsideACardCriterion) {
    const int levels = std::get<int>(GetParam());
    std::vector<int> expected;
    for (int person = 1; person <= people; ++person) {
        if (meets(person, levels) && person % 4 != 0) {
            expected.push_back(person);
        }
    }
    const auto connection = openDatabase(site.database(), DatabaseAccess::ReadOnly);
    EXPECT_EQ(idsOf(connection->open(
                  "SELECT ID FROM [Names] WHERE [Names].LocGrp = 9 And [Names].ID In (SELECT "
                  "NameID FROM Cards WHERE LocGrp = 9 And DlFlag <> 2 AND Status <> 0 And NameID "
                  "In (" +
                  nested(levels) + ")) ORDER BY ID")),
              expected);
}

INSTANTIATE_TEST_SUITE_P(Levels, NestedCriteria,
                         ::testing::Combine(::testing::Values(TestEngine::Sqlite,
                                                              TestEngine::Postgres),
                                            ::testing::Values(1, 2, 3, 7, 8, 12, 21, 30, 40)));

class NestingTooDeep : public ::testing::TestWithParam<TestEngine> {};
INSTANTIATE_TEST_SUITE_P(Engines, NestingTooDeep,
                         ::testing::Values(TestEngine::Sqlite, TestEngine::Postgres),
                         [](const auto& instance) { return nameOf(instance.param); });

TEST_P(NestingTooDeep, IsAnErrorOfOurs) {
    const SiteFolder site(GetParam());
    const auto connection = openDatabase(site.database(), DatabaseAccess::ReadOnly);
    std::string sql = "SELECT ID FROM IO WHERE ";
    for (const int count : {20, 100, 200, 5000}) {
        const std::string deep = sql + std::string(static_cast<std::size_t>(count), '(') +
                                 "ID = 12" + std::string(static_cast<std::size_t>(count), ')');
        if (count < 150) {
            EXPECT_EQ(connection->open(deep).RecordCount(), 1U) << count;
        } else {
            EXPECT_THROW(connection->open(deep), DatabaseError) << count;
        }
    }
}

TEST_P(NestingTooDeep, OfSelectsThatStayNestedIsAnErrorToo) {
    const SiteFolder site(GetParam());
    const auto connection = openDatabase(site.database(), DatabaseAccess::ReadOnly);
    std::string sql = "SELECT ID FROM IO WHERE ID IN (";
    for (int level = 0; level < 40; ++level) {
        sql += "SELECT ID FROM IO WHERE NOT Loc IN (";
    }
    sql += "1" + std::string(41, ')');
    // How deep an engine goes is its own affair; beyond that it is an error and nothing worse.
    if (GetParam() == TestEngine::Sqlite) {
        EXPECT_THROW(connection->open(sql), DatabaseError);
    } else {
        EXPECT_EQ(connection->open(sql).RecordCount(), 1U);
    }
    EXPECT_EQ(connection->open("SELECT ID FROM IO").RecordCount(), 1U) << "and the next one works";
}

} // namespace
} // namespace kintar::companion
