// Whether the folders and files of a site are what they should be.
#pragma once

#include "tools/site/Findings.h"
#include "tools/site/SiteDatabase.h"
#include "tools/site/SiteSettings.h"

#include <filesystem>

namespace kintar::site {

/// Errors, Reports, the data folder and its photo folder: there, no links, and files can be made in
/// those that the server writes to.
void checkFolders(const std::filesystem::path& site, const SiteSettings& settings,
                  Findings& findings);

/// The map of printers by location, which a site need not have. `database` may be null.
void checkPrinterMap(const SiteSettings& settings, SiteDatabase* database, Findings& findings);

/// Every row of Images leads to a plain file in the photo folder, but for those named in
/// `MissingPhotos.txt`, which are known to be missing.
void checkPhotos(const SiteSettings& settings, SiteDatabase& database, Findings& findings);

/// The report files that the server prints are there, and every report file can be read as one.
void checkReportFiles(const std::filesystem::path& site, Findings& findings);

} // namespace kintar::site
