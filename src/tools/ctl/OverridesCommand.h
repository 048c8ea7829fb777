// `kintarctl overrides`: the editor for the scheduled overrides of a point.
#pragma once

#include "tools/ctl/ServerClient.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kintar::ctl {

/// The words for the commands that a point may accept.
std::vector<std::string> overrideCommandWords();

struct OverridesRequest {
    std::int32_t point = 0;
    std::int16_t type = 0;
    std::string pointName;
    std::string locName;
    std::string oprName;
    std::int32_t oprId = 0;
    std::vector<std::string> commands; ///< words of the above
};

/// Opens the editor and holds its object until the editor has closed, for `seconds`, or until
/// `stop`; then releases it. The exit status. Every property is set, in one go, right before the
/// point: the window is everybody's, and keeps what its last client told it.
int editOverrides(ServerClient& client, const OverridesRequest& request,
                  std::optional<double> seconds, const std::function<bool()>& stop);

} // namespace kintar::ctl
