// Texts of a site's database that no program can show as they stand.
#pragma once

#include "tools/site/Findings.h"
#include "tools/site/SiteDatabase.h"

#include <functional>
#include <string>

namespace kintar::site {

/// A text column holds UTF-8. Throws SiteError where the column cannot be read.
void checkUtf8(SiteDatabase& database, const std::string& table, const std::string& column,
               Findings& findings);

/// Whether a time zone of this name can be used.
using KnowsZone = std::function<bool(const std::string& zone)>;

/// Every location names a zone that is known, or none.
void checkZoneNames(SiteDatabase& database, const KnowsZone& knowsZone, Findings& findings);

} // namespace kintar::site
