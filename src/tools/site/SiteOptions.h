// What a site is to be made of.
#pragma once

#include "base/DateTime.h"

#include <cstdint>
#include <functional>
#include <string>

namespace kintar::site {

inline constexpr int mostNames = 5'000'000;

struct SiteOptions {
    int names = 500;
    std::uint64_t seed = 1;
    int photos = 500;       ///< only the persons up to this ID may have a photo
    std::string database{}; ///< connection text of an empty database on a server; empty: a file
    DateTime now;           ///< the moment that recent card uses lie before
    /// Called every now and then, on any thread, while the site is made; what it throws ends that.
    std::function<void()> checkpoint = [] {};
};

} // namespace kintar::site
