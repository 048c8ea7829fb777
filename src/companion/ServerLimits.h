// How long a site waits for its database server.
#pragma once

#include <chrono>

namespace kintar::companion {

/// What no window may wait longer for than this.
struct ServerLimits {
    std::chrono::seconds connect{4};
    std::chrono::seconds statement{20}; ///< 0: as long as it takes
    /// The server counts as away when it has been silent for so long.
    std::chrono::seconds answer{3};

    bool operator==(const ServerLimits&) const = default;
};

} // namespace kintar::companion
