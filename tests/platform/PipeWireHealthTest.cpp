// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pipewire/PipeWireHealth.h"

#include <gtest/gtest.h>

#include <vector>

namespace tessaloom {
namespace {

using namespace std::chrono_literals;

class PipeWireHealthTest : public ::testing::Test {
  protected:
    using State = PipeWireHealth::State;

    bool look(const State& state, std::chrono::milliseconds time) {
        return health.look(state, std::chrono::steady_clock::time_point(time));
    }

    State waits{.runs = false, .delivered = false, .trouble = {}};
    State runs{.runs = true, .delivered = false, .trouble = {}};
    State delivers{.runs = true, .delivered = true, .trouble = {}};
    State busy{.runs = true, .delivered = false, .trouble = "busy"};
    std::vector<std::string> reports;
    PipeWireHealth health{[this](const std::string& reason) { reports.push_back(reason); }};
};

TEST_F(PipeWireHealthTest, WhatRunsNeedNotBeWaitedFor) {
    look(runs, 0ms);
    const auto before = std::chrono::steady_clock::now();
    EXPECT_NO_THROW(health.wait(5s));
    EXPECT_LT(std::chrono::steady_clock::now() - before, 1s);
}

TEST_F(PipeWireHealthTest, WhatDoesNotRunYetIsWaitedForAsLongAsAllowed) {
    look(waits, 0ms);
    const auto before = std::chrono::steady_clock::now();
    EXPECT_NO_THROW(health.wait(50ms));
    EXPECT_GE(std::chrono::steady_clock::now() - before, 50ms);
}

TEST_F(PipeWireHealthTest, TroubleThatLastsEndsTheStream) {
    EXPECT_FALSE(look(busy, 0ms));
    EXPECT_FALSE(look(busy, 60ms));
    EXPECT_TRUE(look(busy, 120ms));
}

TEST_F(PipeWireHealthTest, TroubleOfBeforeThatPassesDoesNot) {
    EXPECT_FALSE(look(busy, 0ms));
    EXPECT_FALSE(look(runs, 60ms));
    EXPECT_FALSE(look(busy, 120ms));
    busy.delivered = true;
    EXPECT_FALSE(look(busy, 300ms));
    EXPECT_FALSE(look(busy, 500ms));
}

TEST_F(PipeWireHealthTest, AFailureIsThrownAtWhoeverWaits) {
    health.failed("busy");
    try {
        health.wait(5s);
        FAIL() << "nothing thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "busy");
    }
}

TEST_F(PipeWireHealthTest, AFailureIsReportedOnceUntilItWorksAgain) {
    health.failed("busy");
    look(runs, 0ms);
    health.failed("busy");
    health.failed("no node available");
    EXPECT_EQ(reports, std::vector<std::string>{"busy"});
    look(delivers, 10ms);
    health.failed("connection lost");
    EXPECT_EQ(reports, (std::vector<std::string>{"busy", "connection lost"}));
}

}  // namespace
}  // namespace tessaloom
