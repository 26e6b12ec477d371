// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/RasterCache.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

/// Counts how often something had to be rastered.
class RasterCacheTest : public ::testing::Test {
  protected:
    const int* get(int key) {
        return cache_.get(std::to_string(key), [&](std::string_view) {
            ++made_;
            return std::optional(key);
        });
    }

    bool isKept(int key) {
        const int before = made_;
        get(key);
        return made_ == before;
    }

    RasterCache<int> cache_;
    int made_ = 0;
};

TEST_F(RasterCacheTest, MakesAnEntryOnce) {
    EXPECT_EQ(*get(4), 4);
    EXPECT_EQ(*get(4), 4);
    EXPECT_EQ(made_, 1);
}

TEST_F(RasterCacheTest, DropsTheOldestBeyond256) {
    for (int key = 0; key < 300; ++key)
        get(key);
    for (int key = 44; key < 300; ++key)
        EXPECT_TRUE(isKept(key)) << key;
    EXPECT_FALSE(isKept(43));
    EXPECT_FALSE(isKept(44)) << "making 43 again evicts the then-oldest";
}

TEST_F(RasterCacheTest, DoesNotKeepAnEntryLongerBecauseItWasUsed) {
    for (int key = 0; key < 256; ++key)
        get(key);
    get(0);
    get(256);
    EXPECT_FALSE(isKept(0));
}

TEST_F(RasterCacheTest, TriesAgainWhatFailed) {
    int attempts = 0;
    const auto fail = [&](std::string_view) {
        ++attempts;
        return std::optional<int>();
    };
    EXPECT_EQ(cache_.get("a", fail), nullptr);
    EXPECT_EQ(cache_.get("a", fail), nullptr);
    EXPECT_EQ(attempts, 2);
}

TEST_F(RasterCacheTest, LetsNoFailureTakeAPlace) {
    get(0);
    for (int attempt = 0; attempt < 300; ++attempt) {
        cache_.get("failing", [](std::string_view) { return std::optional<int>(); });
    }
    EXPECT_TRUE(isKept(0));
}

}  // namespace
}  // namespace tessaloom
