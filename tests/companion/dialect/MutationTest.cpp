// Statements broken at random, the same ones every time: nothing crashes, everything is either a
// statement or an error of ours.
#include "companion/Explain.h"
#include "companion/OpenDatabase.h"
#include "companion/SiteFolder.h"
#include "companion/dialect/Parser.h"

#include <gtest/gtest.h>
#include <random>
#include <sstream>
#include <vector>

namespace kintar::companion::dialect {
namespace {

std::vector<std::string> seeds() {
    std::vector<std::string> statements;
    for (const char* file :
         {"rules.txt", "texts.txt", "numbers.txt", "selects.txt", "writes.txt"}) {
        std::istringstream lines(testFile(std::string("cases/") + file));
        bool next = false;
        for (std::string line; std::getline(lines, line);) {
            if (next) {
                statements.push_back(line);
            }
            next = line.starts_with("-- ");
        }
    }
    return statements;
}

class Mutator {
public:
    explicit Mutator(unsigned seed) : random_(seed) {}

    std::string mutate(std::string text, const std::vector<std::string>& others) {
        const std::size_t changes = 1 + pick(2);
        for (std::size_t change = 0; change < changes && !text.empty(); ++change) {
            apply(text, others);
        }
        return text;
    }

    std::size_t pick(std::size_t below) { return random_() % below; }

private:
    void apply(std::string& text, const std::vector<std::string>& others) {
        static constexpr std::string_view interesting =
            "()[]'\"#;,.*&=<>+-/%_ \t0123456789eE\\\x01\x7f\xff\xc3?:@";
        const std::size_t at = pick(text.size());
        switch (pick(6)) {
        case 0:
            text.erase(at, 1 + pick(8));
            break;
        case 1:
            text.insert(at, 1, interesting[pick(interesting.size())]);
            break;
        case 2:
            text[at] = static_cast<char>(pick(256));
            break;
        case 3: {
            const std::string& other = others[pick(others.size())];
            text.insert(at, other.substr(pick(other.size()), 1 + pick(30)));
            break;
        }
        case 4:
            text.insert(at, text.substr(pick(text.size()), 1 + pick(40)));
            break;
        default:
            text.resize(at);
            break;
        }
    }

    std::mt19937 random_;
};

TEST(MutatedStatements, AreStatementsOrErrorsOfOurs) {
    const std::vector<std::string> statements = seeds();
    ASSERT_GT(statements.size(), 100U);
    Mutator mutator(20120314);
    int good = 0;
    int broken = 0;
    for (int round = 0; round < 30000; ++round) {
        const std::string sql =
            mutator.mutate(statements[mutator.pick(statements.size())], statements);
        try {
            const std::string text = explainDialect(sql, "sqlite").text;
            EXPECT_FALSE(text.empty());
            EXPECT_FALSE(explainDialect(sql, "postgresql").text.empty());
            const std::string printed = parseStatement(sql).print();
            EXPECT_EQ(parseStatement(printed).print(), printed) << sql;
            ++good;
        } catch (const DatabaseError& error) {
            EXPECT_TRUE(error.position().has_value()) << error.what();
            ++broken;
        }
    }
    EXPECT_GT(good, 500);
    EXPECT_GT(broken, 1000);
}

TEST(ManyColumns, OfOneNameAreToldApart) {
    std::string sql = "SELECT Code AS Known, Cards.ID, LocCards.id";
    for (int i = 0; i < 10000; ++i) {
        sql += ", Loc";
    }
    const std::vector<Column> columns =
        explainDialect(sql + " FROM Cards INNER JOIN LocCards ON Cards.ID = LocCards.CardID",
                       "sqlite")
            .columns;
    ASSERT_EQ(columns.size(), 10003U);
    EXPECT_EQ(columns[0].name, "Known");
    EXPECT_EQ(columns[1].name, "Cards.ID");
    EXPECT_EQ(columns[2].name, "LocCards.ID");
    EXPECT_EQ(columns[10002].name, "LocCards.Loc");
}

class WrittenStatements : public ::testing::TestWithParam<TestEngine> {};

TEST_P(WrittenStatements, AreTakenByTheEngine) {
    const SiteFolder site(GetParam());
    const auto connection = openDatabase(site.database(), DatabaseAccess::ReadOnly);
    const std::vector<std::string> statements = seeds();
    Mutator mutator(17);
    int ran = 0;
    for (int round = 0; round < 5000; ++round) {
        const std::string sql =
            mutator.mutate(statements[mutator.pick(statements.size())], statements);
        try {
            connection->open(sql);
            ++ran;
        } catch (const DatabaseError& error) {
            // The engine itself has nothing to say against what we write for it.
            EXPECT_NE(error.kind(), ErrorKind::Other) << sql << "\n" << error.what();
        }
    }
    EXPECT_GT(ran, 100);
}

INSTANTIATE_TEST_SUITE_P(Engines, WrittenStatements,
                         ::testing::Values(TestEngine::Sqlite, TestEngine::Postgres),
                         [](const auto& instance) { return nameOf(instance.param); });

} // namespace
} // namespace kintar::companion::dialect
