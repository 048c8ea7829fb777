// Runs the cases of cases/*.txt: a statement, and what becomes of it.
//
//     -- a sentence that says what is shown
//     the statement, on one or more lines
//     => sqlite
//     what the engine gets
//     => postgres
//     the same for the other engine
//     => values
//     what was lifted, a value a line
//     => rows
//     a row a line, fields between bars
//     => error
//     the error's text
//
// Every part is optional, but a case shows something.
#include "companion/Explain.h"
#include "companion/OpenDatabase.h"
#include "companion/SiteFolder.h"
#include "companion/dialect/Parser.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

namespace kintar::companion {
namespace {

struct Case {
    std::string name;
    std::string title;
    std::string statement;
    std::map<std::string, std::string> parts;
};

void PrintTo(const Case& shown, std::ostream* out) {
    *out << shown.title;
}

std::string nameOf(const std::string& file, std::size_t number, const std::string& title) {
    std::string name = file + "_" + std::to_string(number) + "_";
    for (const char c : title) {
        name += std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
    }
    return name;
}

std::vector<Case> casesOf(const std::filesystem::path& file) {
    std::istringstream lines(testFile("cases/" + file.filename().string()));
    std::vector<Case> cases;
    std::string* target = nullptr;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("-- ")) {
            const std::string title = line.substr(3);
            cases.push_back({nameOf(file.stem().string(), cases.size() + 1, title), title, {}, {}});
            target = &cases.back().statement;
        } else if (line.starts_with("=> ") && !cases.empty()) {
            target = &cases.back().parts[line.substr(3)];
        } else if (target != nullptr && !line.empty()) {
            *target += (target->empty() ? "" : "\n") + line;
        }
    }
    return cases;
}

std::vector<Case> allCases() {
    std::vector<std::filesystem::path> files;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::string(KINTAR_COMPANION_TESTS) + "/cases")) {
        files.push_back(entry.path());
    }
    std::ranges::sort(files);
    std::vector<Case> cases;
    for (const auto& file : files) {
        std::ranges::move(casesOf(file), std::back_inserter(cases));
    }
    return cases;
}

std::string shown(const LiftedValue& value) {
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        return std::to_string(*whole);
    }
    if (const auto* decimal = std::get_if<DecimalNumber>(&value)) {
        return decimal->text;
    }
    if (const auto* moment = std::get_if<DateTime>(&value)) {
        return moment->iso();
    }
    return "'" + std::get<std::string>(value) + "'";
}

std::string valuesOf(const Explained& explained) {
    std::string text;
    for (const LiftedValue& value : explained.values) {
        text += (text.empty() ? "" : "\n") + shown(value);
    }
    return text;
}

std::string rowsOf(const Recordset& rows) {
    std::string text;
    for (std::size_t row = 0; row < rows.RecordCount(); ++row) {
        text += row == 0 ? "" : "\n";
        for (std::size_t field = 0; field < rows.FieldCount(); ++field) {
            const FieldValue value = rows.at(row, field);
            text += (field == 0 ? "" : "|") + (value.isNull() ? "Null" : value.text());
        }
    }
    return text;
}

class StatementCase : public ::testing::TestWithParam<std::tuple<TestEngine, Case>> {
protected:
    void SetUp() override { ASSERT_FALSE(shownCase().parts.empty()) << "shows nothing"; }

    static const Case& shownCase() { return std::get<Case>(GetParam()); }
    static TestEngine engine() { return std::get<TestEngine>(GetParam()); }
    static std::string engineName() {
        return engine() == TestEngine::Sqlite ? "sqlite" : "postgresql";
    }
    static std::string part(const std::string& name) { return shownCase().parts.at(name); }
    static bool has(const std::string& name) { return shownCase().parts.contains(name); }
    /// A site that statements which only read may share.
    static const SiteFolder& sharedSite() {
        static const SiteFolder sqlite(TestEngine::Sqlite);
        static const SiteFolder postgres(TestEngine::Postgres);
        return engine() == TestEngine::Sqlite ? sqlite : postgres;
    }
};

TEST_P(StatementCase, IsWrittenForTheEngine) {
    const std::string& sql = shownCase().statement;
    if (has("error")) {
        try {
            explainDialect(sql, engineName());
            FAIL() << "no error";
        } catch (const DatabaseError& error) {
            EXPECT_EQ(std::string(error.what()), part("error"));
        }
        return;
    }
    const Explained explained = explainDialect(sql, engineName());
    if (has(engineName())) {
        EXPECT_EQ(explained.text, part(engineName()));
    }
    if (has("values")) {
        EXPECT_EQ(valuesOf(explained), part("values"));
    }
}

TEST_P(StatementCase, GivesItsRowsOrItsErrorOnASite) {
    const std::string& sql = shownCase().statement;
    if (!has("error") && explainDialect(sql, engineName()).columns.empty()) {
        const SiteFolder site(engine());
        const auto connection = openDatabase(site.database(), DatabaseAccess::ReadWrite);
        connection->execute(sql);
        // A statement that writes shows what it wrote.
        EXPECT_TRUE(has("after"));
        const std::string after = part("after");
        const std::size_t end = after.find('\n');
        EXPECT_EQ(rowsOf(connection->open(after.substr(0, end))),
                  end == std::string::npos ? "" : after.substr(end + 1));
        return;
    }
    const auto connection = openDatabase(sharedSite().database(), DatabaseAccess::ReadOnly);
    if (has("error")) {
        EXPECT_THROW(connection->translate(sql), DatabaseError);
    } else {
        EXPECT_EQ(rowsOf(connection->open(sql)), has("rows") ? part("rows") : "");
        // The second run comes from the cache, with the same result.
        EXPECT_EQ(rowsOf(connection->open(sql)), has("rows") ? part("rows") : "");
    }
}

TEST_P(StatementCase, PrintedAndParsedAgainGivesTheSameTree) {
    if (has("error")) {
        EXPECT_THROW(explainDialect(shownCase().statement, engineName()), DatabaseError);
        return;
    }
    const std::string printed = dialect::parseStatement(shownCase().statement).print();
    EXPECT_EQ(dialect::parseStatement(printed).print(), printed);
    EXPECT_EQ(explainDialect(printed, engineName()).text,
              explainDialect(shownCase().statement, engineName()).text);
}

INSTANTIATE_TEST_SUITE_P(Dialect, StatementCase,
                         ::testing::Combine(::testing::Values(TestEngine::Sqlite,
                                                              TestEngine::Postgres),
                                            ::testing::ValuesIn(allCases())),
                         [](const auto& instance) {
                             return nameOf(std::get<0>(instance.param)) + "_" +
                                    std::get<1>(instance.param).name;
                         });

TEST(StatementCases, AreBrokenStatementsByHalf) {
    const std::vector<Case> cases = allCases();
    const auto broken =
        std::ranges::count_if(cases, [](const Case& each) { return each.parts.contains("error"); });
    EXPECT_GE(broken * 2, static_cast<std::ptrdiff_t>(cases.size())) << cases.size() << " cases";
}

} // namespace
} // namespace kintar::companion
