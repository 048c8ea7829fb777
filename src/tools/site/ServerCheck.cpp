#include "tools/site/ServerCheck.h"

#include "base/RunTimeError.h"
#include "companion/Catalog.h"
#include "companion/SiteSchema.h"
#include "companion/dialect/PostgresOutput.h"
#include "companion/postgres/CatalogReader.h"
#include "companion/postgres/PostgresSchema.h"
#include "tools/site/SiteError.h"

#include <algorithm>
#include <string>
#include <vector>

namespace kintar::site {

namespace pg = companion::postgres;

namespace {

/// What stands between the first and the last bracket, without blanks and quotes.
std::string indexedText(const std::string& statement) {
    const std::size_t open = statement.find('(');
    const std::size_t close = statement.rfind(')');
    if (open == std::string::npos || close == std::string::npos || close < open) {
        return {};
    }
    std::string text = statement.substr(open + 1, close - open - 1);
    std::erase_if(text, [](char c) { return c == ' ' || c == '"'; });
    return text;
}

std::vector<std::string> indexesOf(SiteDatabase& database, const std::string& table) {
    SiteStatement query(database, "SELECT pg_get_indexdef(indexrelid) FROM pg_index WHERE "
                                  "indrelid = to_regclass(?) AND indpred IS NULL AND indisvalid");
    query.start("public." + table);
    std::vector<std::string> texts;
    while (query.next()) {
        texts.push_back(indexedText(query.text(0)));
    }
    return texts;
}

void checkIndexes(const companion::TableDefinition& table, SiteDatabase& database,
                  Findings& findings) {
    const std::vector<std::string> present = indexesOf(database, table.name);
    const auto wanted = pg::createIndexStatements(table);
    for (std::size_t at = 0; at < wanted.size(); ++at) {
        const std::string text = indexedText(wanted[at]);
        const bool found = std::ranges::any_of(
            present, [&](const std::string& index) { return index.starts_with(text); });
        if (!found) {
            findings.add(table.name, "has no index on (" + table.indexes[at].columns + ")");
        }
    }
}

bool checkColumns(const companion::TableDefinition& table,
                  const companion::TableDefinition& present, Findings& findings) {
    bool complete = true;
    for (const companion::ColumnDefinition& expected : table.columns) {
        const std::string where = table.name + '.' + expected.name;
        const auto found = companion::findColumn(present, expected.name);
        if (!found) {
            findings.add(where, "the column is missing");
            complete = false;
            continue;
        }
        const companion::ColumnDefinition& column = present.columns[*found];
        if (column.type != expected.type) {
            findings.add(where, "is not declared " + std::string(pg::engineType(expected.type)));
        }
        if (expected.key != companion::KeyKind::None && column.key == companion::KeyKind::None) {
            findings.add(where, "is not the key of its table");
        }
        if (expected.key == companion::KeyKind::Assigned &&
            column.key != companion::KeyKind::Assigned) {
            findings.add(where, "is not given by the database");
        }
    }
    return complete;
}

/// The body between the dollar quotes of the statement that makes a function.
std::string bodyOf(const std::string& statement) {
    const std::size_t begin = statement.find("$$");
    const std::size_t end = statement.rfind("$$");
    return begin == std::string::npos ? "" : statement.substr(begin + 2, end - begin - 2);
}

void checkFunctions(SiteDatabase& database, Findings& findings) {
    for (const std::string& statement : pg::functionStatements()) {
        const std::string body = bodyOf(statement);
        if (body.empty()) {
            continue;
        }
        const std::size_t begin = statement.find("kintar_");
        const std::string name = statement.substr(begin, statement.find('(') - begin);
        SiteStatement query(database, "SELECT prosrc FROM pg_proc WHERE proname = ? AND "
                                      "pronamespace = 'public'::regnamespace");
        query.start(name);
        if (!query.next()) {
            findings.add(name, "the function is missing");
        } else if (query.text(0) != body) {
            findings.add(name, "is not the function of this version");
        }
    }
}

std::string conditionOf(ColumnType type, const std::string& column) {
    switch (type) {
    case ColumnType::YesNo:
        return column + " NOT IN (-1, 0)";
    case ColumnType::DateTime:
        return "NOT isfinite(" + column + ") OR extract(year FROM " + column +
               ") NOT BETWEEN 1 AND 9999";
    default:
        return column + " NOT BETWEEN -2147483648 AND 2147483647";
    }
}

std::string_view wordsOf(ColumnType type) {
    return type == ColumnType::YesNo      ? "neither -1 nor 0 nor Null"
           : type == ColumnType::DateTime ? "no date-time such as 2012-03-14 17:05:00"
                                          : "no whole number of 32 bits";
}

void checkColumnValues(SiteDatabase& database, const companion::TableDefinition& table,
                       const companion::ColumnDefinition& column, Findings& findings) {
    SiteStatement query(
        database,
        "SELECT count(*) FROM " + table.name + " WHERE " +
            conditionOf(column.type, companion::dialect::postgresSchemaName(column.name)));
    query.start();
    if (query.next() && query.integer(0) > 0) {
        findings.add(table.name + '.' + column.name,
                     query.text(0) + (query.integer(0) == 1 ? " row holds " : " rows hold ") +
                         std::string(wordsOf(column.type)));
    }
}

} // namespace

bool checkServerSchema(SiteDatabase& database, Findings& findings) {
    bool complete = true;
    checkFunctions(database, findings);
    try {
        const companion::Catalog catalog(pg::readTables(*database.server()));
        for (const companion::TableDefinition& table : companion::siteTables()) {
            const companion::TableDefinition* present = catalog.find(table.name);
            if (present == nullptr) {
                findings.add(table.name, "the table is missing");
                complete = false;
                continue;
            }
            complete = checkColumns(table, *present, findings) && complete;
            checkIndexes(table, database, findings);
        }
    } catch (const RunTimeError& error) {
        throw SiteError(error.what());
    }
    return complete;
}

void checkServerValues(SiteDatabase& database, Findings& findings) {
    for (const companion::TableDefinition& table : companion::siteTables()) {
        for (const companion::ColumnDefinition& column : table.columns) {
            if (column.type == ColumnType::Text) {
                continue; // any text is one, and the server keeps no others
            }
            try {
                checkColumnValues(database, table, column, findings);
            } catch (const SiteError& error) {
                findings.add(table.name + '.' + column.name, error.what());
            }
        }
    }
}

} // namespace kintar::site
