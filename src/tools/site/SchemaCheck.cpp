#include "tools/site/SchemaCheck.h"

#include "companion/SiteSchema.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <vector>

namespace kintar::site {

namespace {

struct ColumnShape {
    std::string declaration;
    bool isKey = false;
};

std::string lowerCase(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

/// "table", "view"; empty where there is nothing of that name.
std::string kindOf(SiteDatabase& database, const std::string& table) {
    SiteStatement query(database, "SELECT type FROM sqlite_master WHERE name = ? COLLATE NOCASE "
                                  "AND type IN ('table', 'view')");
    query.start(table);
    return query.next() ? query.text(0) : std::string();
}

std::map<std::string, ColumnShape> columnsOf(SiteDatabase& database, const std::string& table) {
    SiteStatement query(database, "SELECT name, type, pk FROM pragma_table_info(?)");
    query.start(table);
    std::map<std::string, ColumnShape> columns;
    while (query.next()) {
        columns[lowerCase(query.text(0))] = {lowerCase(query.text(1)), query.integer(2) != 0};
    }
    return columns;
}

/// The text between the first and the last bracket of a CREATE INDEX, without blanks and quotes:
/// the only place that tells the expressions of an index.
std::string indexedText(const std::string& sql) {
    const std::size_t open = sql.find('(');
    const std::size_t close = sql.rfind(')');
    if (open == std::string::npos || close == std::string::npos || close < open) {
        return {};
    }
    std::string text = lowerCase(sql.substr(open + 1, close - open - 1));
    std::erase_if(text, [](char c) { return c == ' ' || c == '"' || c == '\n'; });
    return text;
}

/// One text for each whole index of a table: `column collation,` for every column in order, so that
/// an index that begins with another one begins with its text.
std::vector<std::string> indexesOf(SiteDatabase& database, const std::string& table) {
    SiteStatement list(database, "SELECT l.name, m.sql FROM pragma_index_list(?) AS l "
                                 "JOIN sqlite_master AS m ON m.name = l.name AND m.type = 'index' "
                                 "WHERE l.partial = 0 AND m.sql IS NOT NULL");
    list.start(table);
    std::vector<std::string> indexes;
    while (list.next()) {
        SiteStatement columns(database,
                              "SELECT name, coll FROM pragma_index_xinfo(?) WHERE key = 1");
        columns.start(list.text(0));
        std::string shape;
        bool hasExpression = false;
        while (columns.next()) {
            hasExpression = hasExpression || columns.isNull(0);
            shape += lowerCase(columns.text(0)) + ' ' + lowerCase(columns.text(1)) + ',';
        }
        indexes.push_back(hasExpression ? indexedText(list.text(1)) : shape);
    }
    return indexes;
}

bool checkColumns(const companion::TableDefinition& table, SiteDatabase& database,
                  Findings& findings) {
    bool complete = true;
    const std::map<std::string, ColumnShape> columns = columnsOf(database, table.name);
    for (const companion::ColumnDefinition& expected : table.columns) {
        const std::string where = table.name + '.' + expected.name;
        const auto found = columns.find(lowerCase(expected.name));
        if (found == columns.end()) {
            findings.add(where, "the column is missing");
            complete = false;
            continue;
        }
        const std::string declared(companion::declaredType(expected.type));
        if (found->second.declaration != lowerCase(declared)) {
            findings.add(where,
                         "is declared '" + found->second.declaration + "' instead of " + declared);
        }
        if (expected.key != companion::KeyKind::None && !found->second.isKey) {
            findings.add(where, "is not the key of its table");
        }
    }
    return complete;
}

/// The text of an index as the schema defines it, found by making it.
std::string shapeOf(const companion::TableDefinition& table,
                    const companion::IndexDefinition& index) {
    SiteDatabase scratch;
    for (const std::string& statement :
         companion::createStatements({table.name, table.columns, {index}})) {
        scratch.execute(statement);
    }
    return indexesOf(scratch, table.name).at(0);
}

void checkIndexes(const companion::TableDefinition& table, SiteDatabase& database,
                  Findings& findings) {
    const std::vector<std::string> present = indexesOf(database, table.name);
    for (const companion::IndexDefinition& definition : table.indexes) {
        const std::string shape = shapeOf(table, definition);
        const bool found = std::ranges::any_of(
            present, [&](const std::string& index) { return index.starts_with(shape); });
        if (!found) {
            findings.add(table.name, "has no index on (" + definition.columns + ")");
        }
    }
}

} // namespace

bool checkSchema(SiteDatabase& database, Findings& findings) {
    bool complete = true;
    for (const companion::TableDefinition& table : companion::siteTables()) {
        const std::string kind = kindOf(database, table.name);
        if (kind.empty()) {
            findings.add(table.name, "the table is missing");
            complete = false;
        } else if (kind != "table") {
            findings.add(table.name, "is a " + kind + " and no table");
            complete = false;
        } else {
            complete = checkColumns(table, database, findings) && complete;
            checkIndexes(table, database, findings);
        }
    }
    return complete;
}

bool hasColumn(SiteDatabase& database, const std::string& table, const std::string& column) {
    if (database.server() != nullptr) {
        SiteStatement query(database, "SELECT 1 FROM pg_attribute WHERE attrelid = to_regclass(?) "
                                      "AND attname = ? AND NOT attisdropped");
        query.start("public." + table, lowerCase(column));
        return query.next();
    }
    return kindOf(database, table) == "table" &&
           columnsOf(database, table).contains(lowerCase(column));
}

} // namespace kintar::site
