// The photo files of an invented site.
#pragma once

#include "tools/site/Person.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <vector>

namespace kintar::site {

/// Draws and writes the photo of every person of `people` whose state is Present below `folder`,
/// which exists. On several threads; the files do not depend on how many. Throws SiteError where a
/// file cannot be written or the platform lacks an image format. Calls `checkpoint` before each, on
/// any thread; what it throws ends this.
void writePhotos(
    const std::filesystem::path& folder, const std::vector<Person>& people, std::uint64_t seed,
    const std::function<void()>& checkpoint = [] {});

} // namespace kintar::site
