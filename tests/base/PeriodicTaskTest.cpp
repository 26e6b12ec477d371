// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/PeriodicTask.h"

#include <gtest/gtest.h>

#include <atomic>
#include <semaphore>

namespace tessaloom {
namespace {

using namespace std::chrono_literals;

TEST(PeriodicTask, RunsAgainAndAgainUntilItIsStopped) {
    std::counting_semaphore<> runs(0);
    PeriodicTask task(1ms, [&] {
        runs.release();
        return true;
    });
    for (int n = 0; n < 3; ++n)
        ASSERT_TRUE(runs.try_acquire_for(10s));
    task.stop();
    while (runs.try_acquire()) {
    }
    EXPECT_FALSE(runs.try_acquire_for(20ms));
}

TEST(PeriodicTask, EndsItselfByItsAnswer) {
    std::atomic<int> runs = 0;
    std::binary_semaphore done(0);
    PeriodicTask task(1ms, [&] {
        ++runs;
        done.release();
        return false;
    });
    ASSERT_TRUE(done.try_acquire_for(10s));
    task.stop();
    EXPECT_EQ(runs, 1);
}

TEST(PeriodicTask, StoppingDoesNotWaitForTheInterval) {
    bool ran = false;
    {
        const PeriodicTask task(1h, [&] { return ran = true; });
    }
    EXPECT_FALSE(ran);
}

}  // namespace
}  // namespace tessaloom
