// Whether a database has the tables, columns and indexes of a site.
#pragma once

#include "tools/site/Findings.h"
#include "tools/site/SiteDatabase.h"

namespace kintar::site {

/// Columns and indexes that a site does not know are none of its business; a table that is missing,
/// or is something else of that name, lacks a column or index, or declares a column otherwise, is a
/// finding. True where every table and column is there, whatever else is wrong.
bool checkSchema(SiteDatabase& database, Findings& findings);

/// Whether the database has this column, in a plain table.
bool hasColumn(SiteDatabase& database, const std::string& table, const std::string& column);

} // namespace kintar::site
