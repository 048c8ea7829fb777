// What a site's settings file says.
#pragma once

#include "tools/site/Findings.h"

#include <filesystem>
#include <optional>
#include <string>

namespace kintar::site {

struct SiteSettings {
    std::filesystem::path database;
    std::filesystem::path data;
};

/// A regular file's content; nothing, and a finding under `where`, where it is missing, no regular
/// file, a link, unreadable or larger than `limit` bytes. Never waits for a pipe or a device.
std::optional<std::string> readCheckedFile(const std::filesystem::path& path,
                                           const std::string& where, std::size_t limit,
                                           Findings& findings);

/// Reads `kintar3.ini` of a site. Paths are relative to the site's folder or absolute; both kinds
/// of separator are read. Nothing, with findings, where it does not name database and data folder.
std::optional<SiteSettings> readSettings(const std::filesystem::path& site, Findings& findings);

} // namespace kintar::site
