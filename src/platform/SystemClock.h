// The workstation's clock.
#pragma once

#include "platform/Platform.h"

namespace kintar::platform {

/// The system's time, cut to whole seconds. Local time follows `TZ` or the system's zone.
class SystemClock final : public Clock {
public:
    [[nodiscard]] DateTime now() const override;
    [[nodiscard]] DateTime utcNow() const override;
};

} // namespace kintar::platform
