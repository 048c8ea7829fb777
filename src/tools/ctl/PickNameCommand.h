// `kintarctl pick-name`: an operator picks a person.
#pragma once

#include "tools/ctl/ServerClient.h"

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>

namespace kintar::ctl {

struct PickNameRequest {
    std::int32_t locGrp = 0;
    std::string locName;
    std::int32_t oprId = 0;
    std::int16_t mode = 1; ///< below 1 browsing, 1 picking, 2 picking who owns a guard-tour card
};

/// Opens the dialog and holds its object until the dialog has been closed, for `seconds`, or until
/// `stop`; then releases it. Prints the number and the name chosen on one line, a tab between. The
/// exit status: that of a failed call where nothing was chosen.
///
/// What an earlier dialog has left is never taken for a choice: it waits for the signal that
/// follows its own setting of the group.
int pickName(ServerClient& client, const PickNameRequest& request, std::optional<double> seconds,
             const std::function<bool()>& stop, std::ostream& out);

} // namespace kintar::ctl
