// The rows of a site's persons: names, cards, card uses, fields, skills, photos.
#pragma once

#include "tools/site/SiteLoader.h"
#include "tools/site/SiteOptions.h"

namespace kintar::site {

void fillPeople(SiteLoader& loader, const SiteOptions& options);

} // namespace kintar::site
