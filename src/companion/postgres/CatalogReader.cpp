#include "companion/postgres/CatalogReader.h"

#include "companion/dialect/Keyword.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace kintar::companion::postgres {

namespace {

// Names with capital letters are none of a site's: statements could not tell their case.
constexpr const char* query = R"(
SELECT c.relname, a.attname, t.typname,
       EXISTS (SELECT FROM pg_index i WHERE i.indrelid = c.oid AND i.indisprimary
               AND a.attnum = ANY (i.indkey)),
       a.attidentity <> ''
FROM pg_class c
JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum > 0 AND NOT a.attisdropped
JOIN pg_type t ON t.oid = a.atttypid
WHERE c.relnamespace = 'public'::regnamespace AND c.relkind IN ('r', 'p', 'f')
  AND c.relname = lower(c.relname) AND a.attname = lower(a.attname)
ORDER BY c.relname, a.attnum)";

ColumnType typeOf(std::string_view name) {
    if (name == "yesno") {
        return ColumnType::YesNo;
    }
    if (name == "int8" || name == "int4" || name == "int2") {
        return ColumnType::Integer;
    }
    if (name == "float8" || name == "float4" || name == "numeric") {
        return ColumnType::Real;
    }
    return name == "timestamp" ? ColumnType::DateTime : ColumnType::Text;
}

const TableDefinition* knownTable(std::string_view name) {
    const auto found = std::ranges::find_if(siteTables(), [&](const TableDefinition& known) {
        return dialect::sameName(known.name, name);
    });
    return found == siteTables().end() ? nullptr : &*found;
}

std::string knownColumn(const TableDefinition* table, const std::string& name) {
    if (table != nullptr) {
        for (const ColumnDefinition& column : table->columns) {
            if (dialect::sameName(column.name, name)) {
                return column.name;
            }
        }
    }
    return name;
}

} // namespace

std::vector<TableDefinition> readTables(PostgresHandle& database) {
    const ResultHandle rows = database.run(query);
    std::vector<TableDefinition> tables;
    const TableDefinition* known = nullptr;
    std::string current;
    for (int row = 0; row < PQntuples(rows.get()); ++row) {
        const auto text = [&](int column) {
            return std::string(PQgetvalue(rows.get(), row, column));
        };
        if (tables.empty() || text(0) != current) {
            current = text(0);
            known = knownTable(current);
            tables.push_back({known != nullptr ? known->name : current, {}, {}, 0});
        }
        const KeyKind key = text(3) != "t"   ? KeyKind::None
                            : text(4) == "t" ? KeyKind::Assigned
                                             : KeyKind::Key;
        tables.back().columns.push_back({knownColumn(known, text(1)), typeOf(text(2)), key});
    }
    return tables;
}

} // namespace kintar::companion::postgres
