// The tables of a site's database: one description from which sites are made and statements
// checked.
#pragma once

#include "server/Recordset.h"

#include <string>
#include <string_view>
#include <vector>

namespace kintar::companion {

/// How a column takes part in its table's key.
enum class KeyKind : std::uint8_t {
    None,
    Key,      ///< the whole-number key of the table
    Assigned, ///< such a key, given by the database and never given twice
};

struct ColumnDefinition {
    std::string name;
    ColumnType type = ColumnType::Integer;
    KeyKind key = KeyKind::None;
};

struct IndexDefinition {
    std::string columns; ///< as the embedded engine takes them; of one read from it, names alone
    /// Rows of a large site that share the first column's value, the first two columns' values and
    /// so on, blanks between: what tells the engine which index leaves fewest rows.
    std::string sharing;
};

struct TableDefinition {
    std::string name;
    std::vector<ColumnDefinition> columns;
    std::vector<IndexDefinition> indexes;
    int largeSiteRows = 0; ///< rows at a large site; 0 where that is not known
};

/// Every table of a site. Built-in collations and functions only, so that any program can write.
const std::vector<TableDefinition>& siteTables();

/// A column type as a schema declares it: `INTEGER`, `REAL`, `TEXT`, `YESNO`, `DATETIME`.
std::string_view declaredType(ColumnType type);

/// The column type that a declaration means, letter case ignored; `Any` where it is none of ours.
ColumnType columnTypeOf(std::string_view declaration);

/// The statements that make one table and its indexes in the embedded database, in order. They are
/// the engine's own language, not the dialect.
std::vector<std::string> createStatements(const TableDefinition& table);

/// The statements that tell the embedded engine how a large site's rows are spread, so that its
/// plans do not depend on somebody's having analysed the database. Tables and indexes must be
/// there.
std::vector<std::string> siteStatisticsStatements();

/// The statements that make an empty site database, these last ones included, in order.
std::vector<std::string> siteSchemaStatements();

} // namespace kintar::companion
