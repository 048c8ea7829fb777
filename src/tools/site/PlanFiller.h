// The rows that every invented site has: groups, locations, devices, operators, texts, schedules.
#pragma once

#include "tools/site/SiteLoader.h"
#include "tools/site/SiteOptions.h"

namespace kintar::site {

void fillPlan(SiteLoader& loader, const SiteOptions& options);

} // namespace kintar::site
