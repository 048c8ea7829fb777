// What has been made, for people and for programs.
#pragma once

#include "tools/site/SiteFiller.h"

#include <filesystem>
#include <string>

namespace kintar::site {

struct SiteSummary {
    std::filesystem::path folder;
    SiteOptions options;
    RowCounts counts;
};

/// Lines of a word, a colon, a blank and a value.
std::string summaryText(const SiteSummary& summary);

/// One JSON object on one line.
std::string summaryJson(const SiteSummary& summary);

} // namespace kintar::site
