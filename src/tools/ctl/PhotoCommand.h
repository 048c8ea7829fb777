// `kintarctl photo`: one card event on the screen.
#pragma once

#include "tools/ctl/ServerClient.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kintar::ctl {

/// The values of a card event as the command line gives them; those left out are not set.
struct PhotoEvent {
    std::string id;
    std::vector<std::pair<std::string, std::string>> values; ///< member, value
};

/// Shows the event and holds its object for `seconds`, or until `stop`; then releases it. The exit
/// status; an end of the server meanwhile counts as a call that failed.
int showPhoto(ServerClient& client, const PhotoEvent& event, std::optional<double> seconds,
              const std::function<bool()>& stop);

} // namespace kintar::ctl
