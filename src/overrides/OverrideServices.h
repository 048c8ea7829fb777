// What the override record stands on.
#pragma once

#include "platform/Platform.h"
#include "platform/Zones.h"
#include "server/Recordset.h"

#include <exception>
#include <functional>
#include <string>
#include <string_view>

namespace kintar {

/// The database as overrides use it: the record helper on the data connection. All but `report` and
/// `announceFailure` throw what the companion throws.
class OverrideDatabase {
public:
    virtual ~OverrideDatabase() = default;
    virtual Recordset open(std::string_view sql) = 0;
    /// A failure is announced to the operator.
    virtual void execute(std::string_view sql) = 0;
    /// Announces a change that failed before it could be executed.
    virtual void announceFailure(const std::exception& error) = 0;
    virtual std::string SqlText(std::string_view text) = 0;
    virtual std::string SqlDate(DateTime value) = 0;
    virtual void report(const std::exception& error, std::string_view routine) = 0;
};

struct OverrideServices {
    OverrideDatabase& database;
    const platform::Clock& clock;
    platform::ZoneRegistry& zones;
    /// Painting, input and timers run inside it; whoever calls it may find its window closed.
    std::function<void()> runPendingWindowMessages;
};

} // namespace kintar
