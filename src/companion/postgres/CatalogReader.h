// The tables of a PostgreSQL database.
#pragma once

#include "companion/SiteSchema.h"
#include "companion/postgres/PostgresHandle.h"

#include <vector>

namespace kintar::companion::postgres {

/// The tables of the site's schema with small names, in the spelling of a site where it has them.
/// A column of a type that sites do not have counts as text.
std::vector<TableDefinition> readTables(PostgresHandle& database);

} // namespace kintar::companion::postgres
