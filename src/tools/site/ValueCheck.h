// Whether the rows of a site hold what their columns are declared to hold.
#pragma once

#include "tools/site/Findings.h"
#include "tools/site/SiteDatabase.h"

namespace kintar::site {

/// Yes/No: -1, 0 or Null. Date-times: `YYYY-MM-DD HH:MM:SS`, a day that exists, or Null. Integers:
/// 32 bits or Null. Text: text or Null. Columns that are missing are passed over.
void checkValues(SiteDatabase& database, Findings& findings);

/// Rows that no row of another table belongs to, or that contradict one another.
void checkRelations(SiteDatabase& database, Findings& findings);

} // namespace kintar::site
