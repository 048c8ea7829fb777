// What is wrong with a site's tables and values on a database server.
#pragma once

#include "tools/site/Findings.h"
#include "tools/site/SiteDatabase.h"

namespace kintar::site {

/// Whether every table and column of a site is there; what is not, or is of another type, key,
/// index or function, is a finding.
bool checkServerSchema(SiteDatabase& database, Findings& findings);

/// Values that their columns should not hold, whatever the types let through.
void checkServerValues(SiteDatabase& database, Findings& findings);

} // namespace kintar::site
