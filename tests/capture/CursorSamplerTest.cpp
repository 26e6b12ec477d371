// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/CursorSampler.h"

#include <gtest/gtest.h>

#include <thread>

#include "base/HostClock.h"
#include "capture/RelativeLocation.h"

namespace tessaloom {
namespace {

class FixedPointer final : public PointerSource {
  public:
    explicit FixedPointer(std::optional<Point> place) : place_(place) {}
    std::optional<Point> location() override { return place_; }
    void stop() override {}

  private:
    std::optional<Point> place_;
};

std::vector<CursorSample> sampled(std::optional<Point> place, double origin) {
    CursorSampler sampler(std::make_unique<FixedPointer>(place), origin, {100, 0, 200, 100});
    sampler.start(500);
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    sampler.stop();
    return sampler.takeSamples();
}

TEST(RelativeLocation, IsAFractionOfTheAreaAndSticksToItsEdge) {
    const Rect area{100, 0, 200, 100};
    EXPECT_EQ(relativeLocation({150, 25}, area), (RelativePoint{0.25, 0.25}));
    EXPECT_EQ(relativeLocation({0, 500}, area), (RelativePoint{0, 1}));
    EXPECT_FALSE(relativeLocation({0, 0}, {0, 0, 0, 100}));
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
    CursorSampler sampler(std::make_unique<FixedPointer>(Point{150, 25}), HostClock::seconds(),
                          {0, 0, 200, 100});
    sampler.start(500);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    const auto first = sampler.takeSamples();
    sampler.stop();
    const auto rest = sampler.takeSamples();
    ASSERT_FALSE(first.empty());
    EXPECT_TRUE(rest.empty() || rest.front().pts > first.back().pts);
    EXPECT_TRUE(sampler.takeSamples().empty());
}

}  // namespace
}  // namespace tessaloom
