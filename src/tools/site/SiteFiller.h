// Fills an empty site database with invented data.
#pragma once

#include "tools/site/SiteDatabase.h"
#include "tools/site/SiteOptions.h"

#include <map>
#include <string>

namespace kintar::site {

/// Rows by table name.
using RowCounts = std::map<std::string, long long>;

/// Makes the tables, fills them in one transaction, and makes the indexes after that, since filling
/// an indexed table of a million rows takes several times as long. Returns the rows of each table.
RowCounts fillSite(SiteDatabase& database, const SiteOptions& options);

} // namespace kintar::site
