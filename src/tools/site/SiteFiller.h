// Fills an empty site database with invented data.
#pragma once

#include "tools/site/SiteDatabase.h"
#include "tools/site/SiteLoader.h"
#include "tools/site/SiteOptions.h"

#include <map>
#include <string>

namespace kintar::site {

/// Rows by table name.
using RowCounts = std::map<std::string, long long>;

/// Makes the tables, fills them, and makes the indexes after that, since filling an indexed table
/// of a million rows takes several times as long. The caller commits.
void fillSite(SiteLoader& loader, const SiteOptions& options);

RowCounts countRows(SiteDatabase& database);

} // namespace kintar::site
