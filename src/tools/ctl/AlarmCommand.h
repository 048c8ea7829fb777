// `kintarctl alarm`: an alarm above all windows.
#pragma once

#include "tools/ctl/ServerClient.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace kintar::ctl {

struct AlarmRequest {
    std::string text;
    std::string colour = "#C00000"; ///< `#RRGGBB`
    std::string locName;
    std::int32_t workstation = 0; ///< the window to switch to
};

/// `#RRGGBB` as the server takes colours, 0x00BBGGRR. Throws UsageError for anything else.
std::int32_t serverColour(const std::string& colour);

/// Announces the alarm and holds its object for `seconds`, or until `stop`; then releases it. The
/// exit status; an end of the server meanwhile counts as a call that failed.
int announceAlarm(ServerClient& client, const AlarmRequest& request, std::optional<double> seconds,
                  const std::function<bool()>& stop);

} // namespace kintar::ctl
