// Searches by every plan there is, beside the same search kept as it is written.
#include "companion/SiteFolder.h"
#include "companion/dialect/Parser.h"
#include "companion/dialect/Resolver.h"
#include "companion/dialect/Rewriter.h"
#include "companion/sqlite/SqliteConnection.h"

#include <algorithm>
#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace kintar::companion::sqlite {
namespace {

using dialect::SearchLead;
using dialect::SearchPlan;
using ::testing::Contains;
using ::testing::HasSubstr;

using Ids = std::vector<std::int64_t>;

class Dice {
public:
    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(random_); }
    bool oneIn(int count) { return upTo(count - 1) == 0; }
    template <std::size_t N>
    std::string pick(const std::array<const char*, N>& of) {
        return of.at(static_cast<std::size_t>(upTo(N - 1)));
    }
    /// Null now and then: every column of a site can hold it.
    std::string orNull(const std::string& value) { return oneIn(8) ? "NULL" : value; }
    std::string number(int most) { return orNull(std::to_string(upTo(most))); }
    std::string text() {
        return orNull(
            "'" + pick(std::array{"Smith", "smythe", "ſmall", "Öz", "öde", "", "a%b", "12"}) + "'");
    }
    std::string date() { return orNull("'2012-03-" + std::to_string(10 + upTo(9)) + " 00:00:00'"); }

private:
    std::mt19937 random_{4711};
};

class SearchPlans : public ::testing::Test {
protected:
    SearchPlans() {
        std::string sql = "BEGIN; DELETE FROM Names; DELETE FROM Cards; DELETE FROM LocCards;"
                          "DELETE FROM UDF; DELETE FROM Skills;";
        for (int id = 1; id <= 60; ++id) {
            sql += "INSERT INTO Names VALUES(" + std::to_string(id) + "," + dice.text() + "," +
                   dice.text() + "," + dice.orNull(std::to_string(3 + dice.upTo(1))) + "," +
                   dice.number(4) + "," + dice.orNull("-1") + ",0);";
        }
        for (int id = 1; id <= 120; ++id) {
            const std::string code = dice.orNull("'0" + std::to_string(dice.upTo(9)) + "'");
            sql += "INSERT INTO Cards VALUES(" + std::to_string(id) + "," + dice.number(70) + "," +
                   dice.orNull("3") + "," + code + "," + dice.text() + "," + dice.number(1) + "," +
                   dice.date() + "," + dice.date() + "," + dice.number(1) + "," + dice.number(2) +
                   ");";
            sql += "INSERT INTO LocCards (CardID, Loc, LastDate) VALUES(" + dice.number(130) + "," +
                   dice.number(2) + "," + dice.date() + ");";
            sql += "INSERT INTO UDF VALUES(" + dice.number(70) + "," + dice.number(3) + "," +
                   dice.text() + "," + dice.orNull("3") + ");";
            sql += "INSERT INTO Skills VALUES(" + dice.number(70) + "," + dice.number(3) + ");";
        }
        site.foreign(sql + "COMMIT");
    }

    std::string in() { return dice.oneIn(5) ? " NOT IN (" : " IN ("; }
    std::string maybe(const std::string& term) { return dice.oneIn(2) ? " AND " + term : ""; }
    std::string pattern() {
        return " LIKE '" + dice.pick(std::array{"s%", "SM%", "ö%", "%m%", "a%", "zz%", "1%"}) + "'";
    }
    std::string fields(int depth) {
        return "SELECT UDF.NameID FROM UDF WHERE UdfNum = " + std::to_string(dice.upTo(3)) +
               maybe("UdfText" + pattern()) + maybe("LocGrp = 3") +
               (depth > 0 ? maybe("UDF.NameID" + in() + fields(depth - 1) + ")") : "");
    }
    std::string skills() {
        return "SELECT Skills.NameID FROM Skills WHERE SkillID IN (" +
               std::to_string(dice.upTo(3)) + ")";
    }
    std::string cards() {
        return "SELECT NameID FROM Cards WHERE DlFlag <> 2" + maybe("LocGrp = 3") +
               maybe("Code = " + std::to_string(dice.upTo(9))) + maybe("Code" + pattern()) +
               maybe("CardNum" + pattern()) +
               maybe("StartDate BETWEEN #03/12/2012# AND #03/17/2012#") +
               maybe("ID" + in() +
                     "SELECT CardID FROM LocCards WHERE Loc IN (1,2) AND LastDate <= "
                     "#03/15/2012 23:59:59#)") +
               maybe("NameID" + in() + fields(1) + ")") +
               maybe("[Names].ID" + in() + skills() + ")");
    }
    std::string condition() {
        return "[Names].LocGrp = 3" + maybe("LName" + pattern()) + maybe("FName" + pattern()) +
               maybe("[Names].Company IN (0,1,2)") + maybe("Visitor <> 0") +
               maybe("[Names].ID" + in() + cards() + ")") +
               maybe("[Names].ID" + in() + fields(2) + ")") +
               maybe("[Names].ID" + in() + skills() + ")");
    }

    static std::string select(const std::string& condition) {
        return "SELECT [Names].ID FROM [Names] LEFT JOIN Company ON [Names].LocGrp = "
               "Company.LocGrp AND [Names].Company = Company.Company WHERE " +
               condition + " ORDER BY LName, [Names].ID";
    }
    Ids found(const std::string& sql) {
        const Recordset rows = connection.open(sql);
        Ids ids;
        for (std::size_t row = 0; row < rows.RecordCount(); ++row) {
            ids.push_back(rows.at(row, 0).asLong());
        }
        return ids;
    }
    /// What the engine itself finds by a translation.
    Ids found(const dialect::Translation& translation,
              const std::vector<dialect::LiteralValue>& values) {
        const StatementHandle handle = prepare(connection.handle(), translation.text);
        int index = 0;
        for (const dialect::Parameter& parameter : translation.parameters) {
            bind(handle.get(), ++index, writer.valueOf(parameter, values[parameter.literal]));
        }
        Ids ids;
        while (sqlite3_step(handle.get()) == SQLITE_ROW) {
            ids.push_back(sqlite3_column_int64(handle.get(), 0));
        }
        return ids;
    }
    static void bind(sqlite3_stmt* handle, int index, const dialect::ParameterValue& value) {
        if (const auto* whole = std::get_if<std::int64_t>(&value)) {
            sqlite3_bind_int64(handle, index, *whole);
        } else if (const auto* real = std::get_if<double>(&value)) {
            sqlite3_bind_double(handle, index, *real);
        } else if (const auto* text = std::get_if<std::string>(&value)) {
            sqlite3_bind_text64(handle, index, text->data(), text->size(), SQLITE_TRANSIENT,
                                SQLITE_UTF8);
        }
    }
    /// Compares the rows of every lead, the other tests in an order of chance. Gives their number.
    std::size_t compareAllPlans(const std::string& sql, const Ids& expected) {
        dialect::LiftedStatement lifted;
        dialect::liftLiterals(sql, lifted);
        dialect::Statement tree = dialect::parseStatement(sql);
        dialect::Resolver(connection.catalog(), sql).resolve(tree);
        dialect::rewrite(tree);
        const std::vector<SearchLead> leads = dialect::leadsOf(tree);
        for (const SearchLead& lead : leads) {
            SearchPlan plan{lead.test, lead.range, {}};
            for (const SearchLead& other : leads) {
                if (other.test != nullptr && other.test != lead.test) {
                    plan.order.insert(plan.order.begin() +
                                          dice.upTo(static_cast<int>(plan.order.size())),
                                      other.test);
                }
            }
            const dialect::Translation translation = writer.write(tree, lifted.values, plan);
            EXPECT_EQ(found(translation, lifted.values), expected) << sql << "\n"
                                                                   << translation.text;
        }
        return leads.size();
    }

    Dice dice;
    SiteFolder site;
    SqliteConnection connection{site.database(), Access::ReadWrite};
    dialect::SqliteWriter writer;
};

TEST_F(SearchPlans, FindTheRowsOfTheSearchAsItIsWritten) {
    std::size_t plans = 0;
    std::size_t withRows = 0;
    for (int round = 0; round < 600 && !HasFailure(); ++round) {
        const std::string asked = condition();
        // Under NOT nothing is rewritten; and what is not false and not Null is true.
        const Ids expected = found(select("NOT (NOT (" + asked + "))"));
        EXPECT_EQ(found(select(asked)), expected) << asked;
        plans += compareAllPlans(select(asked), expected);
        withRows += expected.empty() ? 0 : 1;
    }
    EXPECT_GT(plans, 1000U);
    EXPECT_GT(withRows, 60U);
}

TEST_F(SearchPlans, FindEverybodyOnceHoweverManyCardsThereAre) {
    site.foreign("INSERT INTO Names VALUES(1000,'Twice','x',3,0,0,0); INSERT INTO Cards (NameID, "
                 "LocGrp, Code) VALUES(1000,3,'77'),(1000,3,'077')");
    EXPECT_EQ(found(select("ID IN (SELECT NameID FROM Cards WHERE LocGrp = 3 AND Code = 77)")),
              Ids{1000});
}

/// 3,000 names of one letter and 3,000 cards, so that beginning in the wrong place shows.
class SearchBeginnings : public SearchPlans {
protected:
    SearchBeginnings() {
        site.foreign(
            "BEGIN; INSERT INTO Names WITH RECURSIVE n(i) AS (SELECT 2000 UNION ALL SELECT i + 1 "
            "FROM n WHERE i < 4999) SELECT i, 'Morton' || i, 'Lee' || (i % 500), 3, 0, 0, 0 FROM n;"
            "INSERT INTO Cards (NameID, LocGrp, Code, CardNum, DlFlag, GTour) SELECT ID, 3, ID, "
            "'C' || ID, 0, -(ID = 4711) FROM Names WHERE ID >= 2000; COMMIT");
    }
    std::vector<std::string> planOf(const std::string& asked) {
        return connection.plan(select("[Names].LocGrp = 3 AND " + asked));
    }
};

TEST_F(SearchBeginnings, AreWithTheCardWhereAllNamesAreAlike) {
    const auto plan = planOf("LName LIKE 'M%' AND ID IN (SELECT NameID FROM Cards WHERE LocGrp = 3 "
                             "AND Code = 4711)");
    EXPECT_EQ(plan.front(), "SEARCH Names USING INTEGER PRIMARY KEY (rowid=?)");
    EXPECT_THAT(plan, Contains(HasSubstr("LIST SUBQUERY")));
}

TEST_F(SearchBeginnings, AreWithTheNameWhereAllCardsAreAlike) {
    const auto plan = planOf("LName LIKE 'Morton4711%' AND ID IN (SELECT NameID FROM Cards WHERE "
                             "LocGrp = 3 AND CardNum LIKE 'C%')");
    EXPECT_THAT(plan.front(), HasSubstr("(LocGrp=? AND LName>? AND LName<?)"));
    EXPECT_THAT(plan, Contains("SEARCH Cards USING INDEX CardsIndex1 (NameID=?)"));
}

TEST_F(SearchBeginnings, AreWithTheNarrowerOfTwoNames) {
    EXPECT_THAT(planOf("LName LIKE 'M%' AND FName LIKE 'Lee123%'").front(),
                HasSubstr("(LocGrp=? AND FName>? AND FName<?)"));
    EXPECT_THAT(planOf("LName LIKE 'Morton47%' AND FName LIKE 'L%'").front(),
                HasSubstr("(LocGrp=? AND LName>? AND LName<?)"));
}

TEST_F(SearchBeginnings, ChangeWithTheValuesOfOneStatement) {
    const auto found = [&](const char* name, const char* card) {
        return planOf(std::string("LName LIKE '") + name +
                      "' AND ID IN (SELECT NameID FROM Cards "
                      "WHERE LocGrp = 3 AND CardNum LIKE '" +
                      card + "')")
            .front();
    };
    const std::string byName = found("Morton4711%", "C%");
    const std::string byCard = found("Morton%", "C4711%");
    EXPECT_NE(byName, byCard);
    EXPECT_EQ(found("Morton4711%", "C%"), byName);
}

TEST_F(SearchBeginnings, AreWithAFewCardsThatNoIndexFinds) {
    EXPECT_THAT(planOf("ID IN (SELECT NameID FROM Cards WHERE LocGrp = 3 AND GTour <> 0)"),
                Contains(HasSubstr("LIST SUBQUERY")));
}

} // namespace
} // namespace kintar::companion::sqlite
