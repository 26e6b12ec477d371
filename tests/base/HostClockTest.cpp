// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/HostClock.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

constexpr double wrapSeconds = 4294967296.0 / 1000.0;

TEST(HostClock, NeverRunsBackwards) {
    const auto first = HostClock::nanoseconds();
    EXPECT_LE(first, HostClock::nanoseconds());
}

TEST(HostClock, ServerTimeInTheFirstRoundIsTakenAsItIs) {
    EXPECT_DOUBLE_EQ(HostClock::fromServerMilliseconds(12'340, 12.345), 12.340);
}

TEST(HostClock, ServerTimeIsUnwrappedAfterManyRounds) {
    const double received = 3 * wrapSeconds + 5.0;
    EXPECT_NEAR(HostClock::fromServerMilliseconds(4'990, received), 3 * wrapSeconds + 4.990, 1e-6);
}

TEST(HostClock, ServerTimeJustBeforeTheWrapReadJustAfterIt) {
    const double received = wrapSeconds + 0.002;
    EXPECT_NEAR(HostClock::fromServerMilliseconds(0xFFFFFFFFU, received), wrapSeconds - 0.001, 1e-6);
}

TEST(HostClock, ServerTimeMoreThanASecondOffIsReplacedByTheTimeOfReceipt) {
    EXPECT_EQ(HostClock::fromServerMilliseconds(10'000, 11.5), 11.5);
    EXPECT_EQ(HostClock::fromServerMilliseconds(13'000, 11.5), 11.5);
    EXPECT_DOUBLE_EQ(HostClock::fromServerMilliseconds(10'600, 11.5), 10.6);
}

}  // namespace
}  // namespace tessaloom
