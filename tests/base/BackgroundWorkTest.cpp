// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/BackgroundWork.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>

namespace tessaloom {
namespace {

using namespace std::chrono_literals;

TEST(BackgroundWork, IsDoneWhenItsOwnerGoes) {
    std::atomic<bool> done = false;
    {
        const BackgroundWork work(
            [&done] {
                std::this_thread::sleep_for(50ms);
                done = true;
            },
            10s);
        EXPECT_FALSE(work.future().isFinished());
    }
    EXPECT_TRUE(done);
}

TEST(BackgroundWork, TellsItsEnd) {
    const BackgroundWork work([] {}, 10s);
    work.future().waitForFinished();
    EXPECT_TRUE(work.future().isFinished());
}

TEST(BackgroundWork, ThatHangsIsLeftAlone) {
    const auto mayEnd = std::make_shared<std::promise<void>>();
    const auto ended = std::make_shared<std::promise<void>>();
    {
        const BackgroundWork work(
            [mayEnd, ended] {
                mayEnd->get_future().wait();
                ended->set_value();
            },
            10ms);
    }
    mayEnd->set_value();
    EXPECT_EQ(ended->get_future().wait_for(10s), std::future_status::ready);
}

}  // namespace
}  // namespace tessaloom
