// What a site's settings file says.
#pragma once

#include "tools/site/Findings.h"

#include <filesystem>
#include <optional>
#include <string>

namespace kintar::site {

struct SiteSettings {
    std::string database; ///< a file, or a connection text
    std::filesystem::path data;
    std::string textsTable;
};

/// A regular file's content; nothing, and a finding under `where`, where it is missing, no regular
/// file, a link, unreadable or larger than `limit` bytes. Never waits for a pipe or a device.
std::optional<std::string> readCheckedFile(const std::filesystem::path& path,
                                           const std::string& where, std::size_t limit,
                                           Findings& findings);

/// Reads `kintar3.ini` of a site as the server reads it. Nothing, with a finding, where that is
/// refused.
std::optional<SiteSettings> readSettings(const std::filesystem::path& site, Findings& findings);

} // namespace kintar::site
