// A clock that stands where a test puts it.
#pragma once

#include "platform/Platform.h"

namespace kintar::testing {

class FakeClock final : public platform::Clock {
public:
    FakeClock() = default;
    explicit FakeClock(DateTime value) : local(value), utc(value) {}
    [[nodiscard]] DateTime now() const override { return local; }
    [[nodiscard]] DateTime utcNow() const override { return utc; }

    DateTime local;
    DateTime utc;
};

} // namespace kintar::testing
