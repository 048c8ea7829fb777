// The rows that every invented site has: groups, locations, devices, operators, texts, schedules.
#pragma once

#include "tools/site/SiteDatabase.h"
#include "tools/site/SiteOptions.h"

namespace kintar::site {

void fillPlan(SiteDatabase& database, const SiteOptions& options);

} // namespace kintar::site
