// The tables of a site, and the functions that statements need, in a PostgreSQL database.
#pragma once

#include "companion/SiteSchema.h"

#include <string>
#include <vector>

namespace kintar::companion::postgres {

/// The types and functions of a site's schema, in order:
///
/// - `yesno`: a whole number, -1 or 0
/// - `kintar_fold(text)`: the text without its letter case, code point by code point
/// - `kintar_number(text)`: the number that it is; Null where it is none
/// - `kintar_like(text, pattern)`: the dialect's LIKE, for patterns that only the statement knows
std::vector<std::string> functionStatements();

/// A table without its indexes.
std::string createTableStatement(const TableDefinition& table);

/// Its indexes, which are faster made when the table is filled.
std::vector<std::string> createIndexStatements(const TableDefinition& table);

/// The statement that lets the keys that the engine gives go on behind those that are there; empty
/// where the table has none.
std::string continueKeysStatement(const TableDefinition& table);

/// A column type as the engine declares it.
std::string_view engineType(ColumnType type);

} // namespace kintar::companion::postgres
