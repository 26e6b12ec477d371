// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/InputRecorder.h"

#include <gtest/gtest.h>

#include <thread>

#include "base/HostClock.h"
#include "capture/ScriptedPlatform.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;

/// Two presses of the left button in quick succession, by a user who has set how far apart they may be.
class TwoClicks final : public InputEventSource {
  public:
    explicit TwoClicks(double pauseSeconds) : pauseSeconds_(pauseSeconds) {}
    void start(Handler handler) override {
        const double now = HostClock::seconds();
        handler({now, RawInput::Kind::leftButton, {}, {}});
        handler({now + pauseSeconds_, RawInput::Kind::leftButton, {}, {}});
    }
    ClickLimits clickLimits() const override { return {.longestPauseSeconds = 0.1}; }
    void stop() override {}

  private:
    double pauseSeconds_;
};

EventLog recorded(Point pointer, double pauseSeconds) {
    const test::TemporaryFolder folder;
    const auto bundle = TakeBundle::create(folder.path() / "take");
    EventLog log;
    log.captureRect = {0, 0, 100, 100, 1};
    const double origin = HostClock::seconds();
    auto cursor = std::make_unique<CursorSampler>(std::make_unique<test::StillPointer>(true, pointer), origin,
                                                  Rect{0, 0, 100, 100});
    cursor->start(100);
    auto tap = std::make_unique<InputEventTap>(std::make_unique<TwoClicks>(pauseSeconds));
    EXPECT_TRUE(tap->start());
    InputRecorder recorder(bundle, std::move(log), origin, std::move(cursor), std::move(tap),
                           [] { return FileOffsets(); });
    std::this_thread::sleep_for(100ms);
    return recorder.stop();
}

TEST(InputRecorder, KeepsThePointerInsideTheCapturedArea) {
    const EventLog log = recorded({500, 50}, 0.01);
    ASSERT_FALSE(log.cursorSamples.empty());
    for (const CursorSample& sample : log.cursorSamples) {
        EXPECT_LT(sample.x, 1);
        EXPECT_EQ(sample.y, 0.5);
    }
    ASSERT_EQ(log.events.size(), 2U);
    EXPECT_LT(log.events[0].location->x, 1);
}

TEST(InputRecorder, CountsDoubleClicksAsTheUserHasSetThem) {
    EXPECT_EQ(recorded({50, 50}, 0.05).events.at(1).type, InputEvent::EventType::doubleClick);
    EXPECT_EQ(recorded({50, 50}, 0.15).events.at(1).type, InputEvent::EventType::leftClick);
}

}  // namespace
}  // namespace tessaloom
