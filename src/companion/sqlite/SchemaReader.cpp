#include "companion/sqlite/SchemaReader.h"

#include "companion/sqlite/SqliteHandle.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>

namespace kintar::companion::sqlite {

namespace {

std::string column(sqlite3_stmt* row, int index) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(row, index));
    return text != nullptr ? std::string(text) : std::string();
}

/// By the engine's own rule of what a declaration means to it.
ColumnType affinityOf(std::string declaration) {
    std::ranges::transform(declaration, declaration.begin(),
                           [](unsigned char c) { return std::toupper(c); });
    const auto holds = [&](std::string_view part) {
        return declaration.find(part) != std::string::npos;
    };
    if (holds("INT")) {
        return ColumnType::Integer;
    }
    if (holds("CHAR") || holds("CLOB") || holds("TEXT") || declaration.empty() || holds("BLOB")) {
        return ColumnType::Text;
    }
    return ColumnType::Real;
}

std::vector<ColumnDefinition> readColumns(sqlite3* database, const std::string& table) {
    const StatementHandle query =
        prepare(database, "SELECT name, type, pk FROM pragma_table_xinfo(?1) WHERE hidden <> 1");
    sqlite3_bind_text(query.get(), 1, table.c_str(), -1, SQLITE_STATIC);
    std::vector<ColumnDefinition> columns;
    int code = sqlite3_step(query.get());
    for (; code == SQLITE_ROW; code = sqlite3_step(query.get())) {
        const std::string declaration = column(query.get(), 1);
        const ColumnType known = columnTypeOf(declaration);
        columns.push_back({column(query.get(), 0),
                           known == ColumnType::Any ? affinityOf(declaration) : known,
                           sqlite3_column_int(query.get(), 2) != 0 ? KeyKind::Key : KeyKind::None});
    }
    if (code != SQLITE_DONE) {
        throw errorOf(database, code);
    }
    return columns;
}

/// The indexes over all rows of a table. What is no column in them has a name that no column has.
std::vector<IndexDefinition> readIndexes(sqlite3* database, const std::string& table) {
    const StatementHandle query = prepare(
        database, "SELECT list.name, coalesce(info.name, '()') FROM pragma_index_list(?1) AS "
                  "list, pragma_index_xinfo(list.name) AS info WHERE info.key AND NOT list.partial "
                  "ORDER BY list.seq, info.seqno");
    sqlite3_bind_text(query.get(), 1, table.c_str(), -1, SQLITE_STATIC);
    std::vector<IndexDefinition> indexes;
    std::string last;
    int code = sqlite3_step(query.get());
    for (; code == SQLITE_ROW; code = sqlite3_step(query.get())) {
        if (indexes.empty() || column(query.get(), 0) != last) {
            last = column(query.get(), 0);
            indexes.push_back({column(query.get(), 1), {}});
        } else {
            indexes.back().columns += "," + column(query.get(), 1);
        }
    }
    if (code != SQLITE_DONE) {
        throw errorOf(database, code);
    }
    return indexes;
}

} // namespace

std::vector<TableDefinition> readTables(sqlite3* database) {
    const StatementHandle query =
        prepare(database, "SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT LIKE "
                          "'sqlite\\_%' ESCAPE '\\'");
    std::vector<TableDefinition> tables;
    int code = sqlite3_step(query.get());
    for (; code == SQLITE_ROW; code = sqlite3_step(query.get())) {
        const std::string name = column(query.get(), 0);
        tables.push_back({name, readColumns(database, name), readIndexes(database, name), 0});
    }
    if (code != SQLITE_DONE) {
        throw errorOf(database, code);
    }
    return tables;
}

} // namespace kintar::companion::sqlite
