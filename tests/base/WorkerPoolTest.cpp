// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/WorkerPool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <vector>

namespace tessaloom {
namespace {

TEST(WorkerPoolTest, HandlesEachRowExactlyOnce) {
    for (const int participants : {0, 1, 2, 5}) {
        WorkerPool pool(participants);
        for (const int rows : {0, 1, 7, 16, 1000}) {
            for (const int bandHeight : {0, 1, 16, 5000}) {
                std::vector<std::atomic<int>> visits(static_cast<std::size_t>(rows));
                pool.forEachBand(rows, bandHeight, [&](int first, int last, int) {
                    for (int row = first; row < last; ++row)
                        ++visits[static_cast<std::size_t>(row)];
                });
                for (const auto& count : visits)
                    EXPECT_EQ(count, 1);
            }
        }
    }
}

TEST(WorkerPoolTest, NeverGivesOneParticipantTwoBandsAtOnce) {
    WorkerPool pool(4);
    ASSERT_EQ(pool.participants(), 4);
    std::vector<std::atomic<bool>> busy(4);
    std::atomic<bool> overlapped = false;
    for (int round = 0; round < 200; ++round) {
        pool.forEachBand(64, 1, [&](int, int, int participant) {
            auto& mine = busy.at(static_cast<std::size_t>(participant));
            if (mine.exchange(true)) overlapped = true;
            mine = false;
        });
    }
    EXPECT_FALSE(overlapped);
}

TEST(WorkerPoolTest, LetsHelpersWorkBesideTheCaller) {
    WorkerPool pool(2);
    std::atomic<int> inside = 0;
    // Both bands wait for each other, so this ends only when two threads take part.
    pool.forEachBand(2, 1, [&](int, int, int) {
        ++inside;
        while (inside < 2)
            std::this_thread::yield();
    });
    EXPECT_EQ(inside, 2);
}

TEST(WorkerPoolTest, IsDoneWhenTheCallReturns) {
    WorkerPool pool(3);
    for (int round = 0; round < 500; ++round) {
        int sum = 0;
        std::mutex mutex;
        pool.forEachBand(9, 1, [&](int first, int, int) {
            const std::lock_guard lock(mutex);
            sum += first;
        });
        ASSERT_EQ(sum, 36);
    }
}

}  // namespace
}  // namespace tessaloom
