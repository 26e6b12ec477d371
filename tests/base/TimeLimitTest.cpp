// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/TimeLimit.h"

#include <gtest/gtest.h>

#include <future>

namespace tessaloom {
namespace {

using namespace std::chrono_literals;

TEST(TimeLimit, CallsWhenItIsOver) {
    std::promise<void> over;
    const TimeLimit limit(10ms, [&] { over.set_value(); });
    EXPECT_EQ(over.get_future().wait_for(10s), std::future_status::ready);
}

TEST(TimeLimit, ThatIsNotReachedCallsNothingAndHoldsNothingUp) {
    bool called = false;
    {
        const TimeLimit limit(1h, [&] { called = true; });
    }
    EXPECT_FALSE(called);
}

}  // namespace
}  // namespace tessaloom
