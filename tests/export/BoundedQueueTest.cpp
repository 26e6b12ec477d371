// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/BoundedQueue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace tessaloom {
namespace {

TEST(BoundedQueue, KeepsTheOrderAcrossThreadsAndNeverHoldsMoreThanItsCapacity) {
    BoundedQueue<int> queue(3);
    std::atomic<int> pushed = 0;
    std::jthread producer([&] {
        for (int i = 0; i < 10'000; ++i) {
            queue.push(i);
            ++pushed;
        }
        queue.close();
    });
    int expected = 0;
    while (const auto value = queue.pop()) {
        ASSERT_EQ(*value, expected++);
        ASSERT_LE(pushed - expected, 3);
    }
    EXPECT_EQ(expected, 10'000);
}

TEST(BoundedQueue, WhatIsOnTheWayCanBeTakenOutAfterClosing) {
    BoundedQueue<int> queue(3);
    queue.push(1);
    queue.close();
    EXPECT_FALSE(queue.push(2));
    EXPECT_EQ(queue.pop(), 1);
    EXPECT_EQ(queue.pop(), std::nullopt);
}

TEST(BoundedQueue, ClosingWakesBothSides) {
    BoundedQueue<int> full(1);
    full.push(1);
    BoundedQueue<int> empty(1);
    std::jthread pusher([&] { EXPECT_FALSE(full.push(2)); });
    std::jthread popper([&] { EXPECT_EQ(empty.pop(), std::nullopt); });
    full.close();
    empty.close();
}

}  // namespace
}  // namespace tessaloom
