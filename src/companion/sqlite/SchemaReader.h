// The tables of a SQLite database.
#pragma once

#include "companion/SiteSchema.h"

#include <sqlite3.h>
#include <vector>

namespace kintar::companion::sqlite {

/// The tables and columns of a database, views and the engine's own tables left out. A column whose
/// declared type is none of ours counts as the type whose values the engine would keep in it.
std::vector<TableDefinition> readTables(sqlite3* database);

} // namespace kintar::companion::sqlite
