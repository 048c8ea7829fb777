// `kintarctl who-is-in` and `kintarctl status-report`: the printed reports.
#pragma once

#include "tools/ctl/ServerClient.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace kintar::ctl {

/// Prints who is in at a location's group, or without a location the status of all cards. Returns
/// when printing has ended, or at `stop`. The exit status; what was not printed is a CallError.
int printReport(ServerClient& client, std::optional<std::int32_t> loc,
                const std::function<bool()>& stop);

} // namespace kintar::ctl
