#include "tools/site/Interruption.h"

#include <gtest/gtest.h>

#include <csignal>

namespace kintar::site {
namespace {

TEST(Interruption, NothingIsThrownWithoutASignal) {
    EXPECT_NO_THROW(throwIfInterrupted());
}

TEST(Interruption, ASignalIsToldAndThenEndsTheProcess) {
    EXPECT_EXIT(
        {
            noteInterruptions();
            std::raise(SIGTERM);
            try {
                throwIfInterrupted();
            } catch (const Interrupted& interrupted) {
                endBy(interrupted.signal());
            }
        },
        ::testing::KilledBySignal(SIGTERM), "");
}

TEST(Interruption, ASecondSignalEndsTheProcessAtOnce) {
    EXPECT_EXIT(
        {
            noteInterruptions();
            std::raise(SIGINT);
            std::raise(SIGINT);
        },
        ::testing::KilledBySignal(SIGINT), "");
}

TEST(Interruption, WhatIsToBeIgnoredStaysIgnored) {
    EXPECT_EXIT(
        {
            std::signal(SIGHUP, SIG_IGN);
            noteInterruptions();
            std::raise(SIGHUP);
            throwIfInterrupted();
            std::exit(7);
        },
        ::testing::ExitedWithCode(7), "");
}

} // namespace
} // namespace kintar::site
