// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/CursorSampler.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "base/HostClock.h"
#include "capture/RelativeLocation.h"

namespace tessaloom {
namespace {

class FixedPointer final : public PointerSource {
  public:
    FixedPointer(std::optional<Point> place, std::atomic<int>& questions)
        : place_(place), questions_(questions) {}
    std::optional<Point> location() override {
        ++questions_;
        return place_;
    }
    void stop() override {}

  private:
    std::optional<Point> place_;
    std::atomic<int>& questions_;
};

/// Until a pointer was asked that often, for five seconds at most.
void waitForQuestions(const std::atomic<int>& questions, int count) {
    for (int tries = 0; tries < 5000 && questions < count; ++tries)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

std::vector<CursorSample> sampled(std::optional<Point> place, double origin) {
    std::atomic<int> questions = 0;
    CursorSampler sampler(std::make_unique<FixedPointer>(place, questions), origin, {100, 0, 200, 100});
    sampler.start(500);
    waitForQuestions(questions, 3);
    sampler.stop();
    return sampler.takeSamples();
}

TEST(RelativeLocation, IsAFractionOfTheArea) {
    const Rect area{100, 0, 200, 100};
    EXPECT_EQ(relativeLocation({150, 25}, area), (RelativePoint{0.25, 0.25}));
    EXPECT_EQ(relativeLocation({0, 500}, area), (RelativePoint{-0.5, 5}));
    EXPECT_FALSE(relativeLocation({0, 0}, {0, 0, 0, 100}));
}

TEST(RelativeLocation, OfASampleSticksToTheEdgeOfTheArea) {
    const auto samples = heldInside({{1, 0.25, 0.75}, {2, -0.5, 5}});
    EXPECT_EQ(samples[0], (CursorSample{1, 0.25, 0.75}));
    EXPECT_NEAR(samples[1].x, 0, 1e-8);
    EXPECT_NEAR(samples[1].y, 1, 1e-8);
    EXPECT_GT(samples[1].x, 0);
    EXPECT_LT(samples[1].y, 1);
}

TEST(CursorSampler, SamplesRunForwardFromTheOrigin) {
    const auto samples = sampled(Point{150, 25}, HostClock::seconds());
    ASSERT_GE(samples.size(), 2U);
    EXPECT_GE(samples.front().pts, 0.0);
    EXPECT_LT(samples.front().pts, samples.back().pts);
    EXPECT_EQ(samples.front().x, 0.25);
}

TEST(CursorSampler, NothingIsSampledBeforeTheOrigin) {
    EXPECT_TRUE(sampled(Point{150, 25}, HostClock::seconds() + 60).empty());
}

TEST(CursorSampler, APointerThatIsNowhereLeavesNoSample) {
    EXPECT_TRUE(sampled(std::nullopt, HostClock::seconds()).empty());
}

TEST(CursorSampler, EachSampleIsHandedOverOnce) {
    std::atomic<int> questions = 0;
    CursorSampler sampler(std::make_unique<FixedPointer>(Point{150, 25}, questions), HostClock::seconds(),
                          {0, 0, 200, 100});
    sampler.start(500);
    waitForQuestions(questions, 3);
    const auto first = sampler.takeSamples();
    sampler.stop();
    const auto rest = sampler.takeSamples();
    ASSERT_FALSE(first.empty());
    EXPECT_TRUE(rest.empty() || rest.front().pts > first.back().pts);
    EXPECT_TRUE(sampler.takeSamples().empty());
}

}  // namespace
}  // namespace tessaloom
