// Says what is wrong with a site.
#pragma once

#include "tools/site/TextCheck.h"

#include <filesystem>
#include <string>
#include <vector>

namespace kintar::site {

/// One line for each finding; none where the site is as it should be. Reads the site only, but for
/// a file made and removed in the folders that the server writes to. Never throws because of what a
/// site holds. `knowsZone` is asked about the zones of locations; without it they are not looked
/// at.
std::vector<std::string> checkSite(const std::filesystem::path& site,
                                   const KnowsZone& knowsZone = nullptr);

} // namespace kintar::site
