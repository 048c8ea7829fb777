// Why a site could not be made or read.
#pragma once

#include <stdexcept>

namespace kintar::site {

/// Its text is complete and meant for the person at the command line.
class SiteError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace kintar::site
