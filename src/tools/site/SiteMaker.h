// Makes a whole site, or nothing.
#pragma once

#include "tools/site/Person.h"
#include "tools/site/SiteFiller.h"
#include "tools/site/SiteOptions.h"

#include <filesystem>
#include <functional>
#include <vector>

namespace kintar::site {

/// What a site is called inside its folder.
inline constexpr const char* settingsFile = "kintar3.ini";
inline constexpr const char* databaseFile = "site.db";
inline constexpr const char* dataFolder = "Data";
inline constexpr const char* imagesFolder = "Images";
inline constexpr const char* printerMapFile = "InRptByLoc.txt";
/// Photos known never to have been delivered, a file name a line, beside the photo folder.
inline constexpr const char* missingPhotosFile = "MissingPhotos.txt";
inline constexpr const char* reportsFolder = "Reports";
inline constexpr const char* errorsFolder = "Errors";

/// Writes the photo files of the persons below a folder.
using PhotoMaker =
    std::function<void(const std::filesystem::path& folder, const std::vector<Person>& people)>;

/// Makes the site `folder`, which must not exist or be an empty folder. It is put together under
/// another name beside that and moved there when it is complete; a failure leaves nothing, and what
/// a lost process left of the same site is removed first. Throws SiteError,
/// std::filesystem::filesystem_error or what the options' checkpoint throws.
RowCounts makeSite(const std::filesystem::path& folder, const SiteOptions& options,
                   const PhotoMaker& photos);

} // namespace kintar::site
