#include "platform/SystemClock.h"

#include "support/Environment.h"

#include <gtest/gtest.h>

#include <ctime>

namespace kintar::platform {
namespace {

TEST(SystemClock, TellsUniversalTimeBetweenTwoLooksAtTheSystems) {
    const auto seconds = [](DateTime value) { return value.moment().time_since_epoch().count(); };
    const std::time_t before = std::time(nullptr);
    const long long told = seconds(SystemClock().utcNow());
    EXPECT_GE(told, before);
    EXPECT_LE(told, std::time(nullptr));
}

TEST(SystemClock, TellsLocalTimeOfTheZone) {
    const testing::Environment zone("TZ", "XYZ-5:30");
    ::tzset();
    const SystemClock clock;
    const DateTime before = clock.utcNow().plusMinutes(330);
    const DateTime local = clock.now();
    const DateTime after = clock.utcNow().plusMinutes(330);
    EXPECT_GE(local, before);
    EXPECT_LE(local, after);
}

} // namespace
} // namespace kintar::platform
