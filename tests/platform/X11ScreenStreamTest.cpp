// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11ScreenStream.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <array>
#include <cmath>
#include <condition_variable>
#include <csignal>
#include <mutex>
#include <thread>

#include "base/HostClock.h"
#include "platform/RecordedStream.h"
#include "support/TestWindow.h"
#include "support/VirtualDesktop.h"
#include "support/XInjector.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;
using test::RecordedStream;
using test::TestWindow;

constexpr std::uint32_t red = 0xC02010;
constexpr std::uint32_t blue = 0x1040E0;
constexpr std::uint32_t green = 0x20B040;
constexpr std::size_t bytesPerScreen = 320UL * 240 * 4;

class X11Stream : public ::testing::Test {
  protected:
    explicit X11Stream(test::WindowManager manager = test::WindowManager::None) : desktop(320, 240, manager) {
        qputenv("DISPLAY", desktop.displayName().c_str());
    }

    static StreamConfiguration screen() { return {{{}, {0, 0, 320, 240}, 1.0}, {0, 0, 320, 240}}; }
    static StreamConfiguration of(const TestWindow& window, int width, int height) {
        return {{window.id(), {0, 0, 1.0 * width, 1.0 * height}, 1.0}, {0, 0, width, height}};
    }

    test::VirtualDesktop desktop;
    test::XInjector injector{desktop.displayName()};
    xcb_connection_t* connection = injector.connection();
};

TEST_F(X11Stream, AStillScreenGivesOneWholeFrame) {
    const TestWindow window(connection, {{10, 20, 100, 50}, red});
    RecordedStream stream(screen());
    ASSERT_TRUE(stream.waitForColor(10, 20, red));
    std::this_thread::sleep_for(200ms);
    EXPECT_EQ(stream.times().size(), 1U);
    EXPECT_EQ(stream.pixelsOfLastFrame(), 320U * 240U);
}

TEST_F(X11Stream, AChangeIsReadAlone) {
    TestWindow window(connection, {{10, 20, 100, 50}, red});
    RecordedStream stream(screen());
    ASSERT_TRUE(stream.waitForFrames(1));
    window.fill({3, 4, 7, 8}, blue);
    ASSERT_TRUE(stream.waitForColor(13, 24, blue));
    EXPECT_EQ(stream.pixelsOfLastFrame(), 8U * 8U);
}

TEST_F(X11Stream, SteadyChangesGiveFramesOnOneGridOfSixtyASecond) {
    TestWindow window(connection, {{10, 20, 100, 50}, red});
    RecordedStream stream(screen());
    ASSERT_TRUE(stream.waitForFrames(1));
    for (int step = 0; step < 250; ++step) {
        window.fill({0, 0, 10, 10}, step % 2 == 0 ? blue : green);
        std::this_thread::sleep_for(2ms);
    }
    stream.stop();
    const auto times = stream.times();
    ASSERT_GT(times.size(), 5U);
    for (std::size_t i = 1; i < times.size(); ++i) {
        const double steps = (times[i] - times[i - 1]) * 60.0;
        EXPECT_NEAR(steps, std::round(steps), 0.02) << "the grid moves no faster";
        EXPECT_GT(steps, 0.9);
    }
    EXPECT_LE(static_cast<double>(times.size()), (times.back() - times.front()) * 60.0 + 1.1);
}

TEST_F(X11Stream, NoChangeIsForgottenWhileWindowsComeAndGo) {
    TestWindow window(connection, {{0, 0, 100, 50}, red});
    RecordedStream stream(screen());
    ASSERT_TRUE(stream.waitForFrames(1));
    for (std::uint32_t round = 1; round <= 200; ++round) {
        // The stream asks the server about the other window, and the change comes just then.
        const TestWindow other(connection, {{200, 100, 20, 20}, blue});
        std::this_thread::sleep_for(std::chrono::microseconds(round * 10));
        window.fill({0, 0, 100, 50}, round << 16U);
        ASSERT_TRUE(stream.waitForColor(50, 25, round << 16U)) << round;
    }
}

/// A recorder that takes the first frame and doesn't return before it is let go.
class StalledRecorder {
  public:
    explicit StalledRecorder(const StreamConfiguration& configuration)
        : stream_(X11Connection::open(), configuration) {
        stream_.start([this](const ScreenFrame& frame) { receive(frame); }, [](const std::string&) {});
        std::unique_lock guard(lock_);
        changed_.wait_for(guard, 10s, [this] { return !colors_.empty(); });
    }
    ~StalledRecorder() {
        letGo();
        stream_.stop();
    }
    StalledRecorder(const StalledRecorder&) = delete;
    StalledRecorder& operator=(const StalledRecorder&) = delete;

    void letGo() {
        const std::lock_guard guard(lock_);
        stalled_ = false;
        changed_.notify_all();
    }
    void stop() { stream_.stop(); }
    /// Of each frame's first new pixel, as 0xRRGGBB.
    std::vector<std::uint32_t> colors() {
        const std::lock_guard guard(lock_);
        return colors_;
    }

  private:
    void receive(const ScreenFrame& frame) {
        std::unique_lock guard(lock_);
        const std::uint8_t* pixel = frame.patches.front().pixels.row(0);
        colors_.push_back(static_cast<std::uint32_t>(pixel[2] << 16 | pixel[1] << 8 | pixel[0]));
        changed_.notify_all();
        changed_.wait(guard, [this] { return !stalled_; });
    }

    std::mutex lock_;
    std::condition_variable changed_;
    bool stalled_ = true;
    std::vector<std::uint32_t> colors_;
    X11ScreenStream stream_;
};

constexpr auto severalFrames = 100ms;

TEST_F(X11Stream, WhatChangesWhileTheRecorderStallsIsKeptForIt) {
    TestWindow window(connection, {{0, 0, 320, 240}, red});
    StalledRecorder recorder(screen());
    const std::vector<std::uint32_t> shown{0x100000, 0x200000, 0x300000, 0x400000, 0x500000};
    for (const std::uint32_t color : shown) {
        window.fill({0, 0, 320, 240}, color);
        std::this_thread::sleep_for(severalFrames);
    }
    recorder.letGo();
    recorder.stop();
    std::vector<std::uint32_t> expected{red};
    expected.insert(expected.end(), shown.begin(), shown.end());
    EXPECT_EQ(recorder.colors(), expected);
}

TEST_F(X11Stream, AfterALongStallThePictureIsTheLatest) {
    TestWindow window(connection, {{0, 0, 320, 240}, red});
    StalledRecorder recorder(screen());
    const std::size_t waiting = X11FrameDelivery::depth(bytesPerScreen) - 1;
    const auto last = static_cast<std::uint32_t>(waiting) + 4;
    for (std::uint32_t step = 1; step <= last; ++step) {
        window.fill({0, 0, 320, 240}, step << 16U);
        std::this_thread::sleep_for(severalFrames);
    }
    recorder.letGo();
    std::this_thread::sleep_for(severalFrames);
    recorder.stop();
    const auto colors = recorder.colors();
    EXPECT_EQ(colors.back(), last << 16U);
    EXPECT_EQ(colors.size(), 1 + waiting + 1) << "the first, those that waited, and the last";
}

TEST(X11FrameDelivery, HoldsAQuarterOfASecondOf1080pAndAtLeastSixFrames) {
    constexpr std::size_t bytesPerPixel = 4;
    EXPECT_EQ(X11FrameDelivery::depth(bytesPerScreen), 15U);
    EXPECT_EQ(X11FrameDelivery::depth(1920 * 1080 * bytesPerPixel), 15U);
    EXPECT_EQ(X11FrameDelivery::depth(2560 * 1440 * bytesPerPixel), 8U);
    EXPECT_EQ(X11FrameDelivery::depth(7680 * 4320 * bytesPerPixel), 6U);
}

TEST_F(X11Stream, AWindowIsSeenThroughWhatCoversIt) {
    TestWindow window(connection, {{10, 20, 100, 50}, red});
    const TestWindow cover(connection, {{0, 0, 320, 240}, blue});
    RecordedStream stream(of(window, 100, 50));
    ASSERT_TRUE(stream.waitForColor(50, 25, red));
    window.fill({40, 20, 20, 20}, green);
    EXPECT_TRUE(stream.waitForColor(50, 25, green));
}

TEST_F(X11Stream, AWindowThatShrinksLeavesBlackAndGrowsBack) {
    TestWindow window(connection, {{10, 20, 100, 50}, red});
    RecordedStream stream(of(window, 100, 50));
    ASSERT_TRUE(stream.waitForColor(90, 40, red));
    window.moveResize({10, 20, 61, 31});
    EXPECT_TRUE(stream.waitForColor(90, 40, 0));
    EXPECT_TRUE(stream.waitForColor(60, 30, red));
    window.moveResize({10, 20, 100, 50});
    EXPECT_TRUE(stream.waitForColor(90, 40, red));
}

TEST_F(X11Stream, AWindowResizedWhileItsLastSizeIsReadIsNotLost) {
    TestWindow window(connection, {{10, 20, 100, 50}, red});
    RecordedStream stream(of(window, 100, 50));
    for (int round = 0; round < 150; ++round) {
        const std::array<std::uint32_t, 2> small{40, 20};
        xcb_configure_window(connection, window.id(), XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                             small.data());
        xcb_flush(connection);
        // The two resizes meet the stream at a different step of its answer to the first in each round.
        std::this_thread::sleep_for(std::chrono::microseconds(round * 2));
        window.moveResize({10, 20, 100, 50});
        const std::uint32_t color = round % 2 == 0 ? blue : green;
        window.fill({0, 0, 100, 50}, color);
        ASSERT_TRUE(stream.waitForColor(99, 49, color)) << round;
    }
}

TEST_F(X11Stream, AHiddenWindowGoesOnWhenItIsShownAgain) {
    TestWindow window(connection, {{10, 20, 100, 50}, red});
    RecordedStream stream(of(window, 100, 50));
    ASSERT_TRUE(stream.waitForColor(50, 25, red));
    window.unmap();
    std::this_thread::sleep_for(50ms);
    window.map();
    window.fill({40, 20, 20, 20}, green);
    EXPECT_TRUE(stream.waitForColor(50, 25, green));
}

TEST_F(X11Stream, AClosedWindowEndsTheStream) {
    std::optional<TestWindow> window;
    window.emplace(connection, test::WindowDescription{{10, 20, 100, 50}, red});
    RecordedStream stream(of(*window, 100, 50));
    ASSERT_TRUE(stream.waitForFrames(1));
    window.reset();
    EXPECT_TRUE(stream.waitForEnd());
    EXPECT_EQ(stream.endReason(), "The recorded window was closed.");
}

TEST_F(X11Stream, AWindowThatIsGoneAlreadyCannotBeStreamed) {
    std::optional<TestWindow> window;
    window.emplace(connection, test::WindowDescription{{10, 20, 100, 50}, red});
    const auto configuration = of(*window, 100, 50);
    window.reset();
    EXPECT_THROW(RecordedStream{configuration}, std::runtime_error);
}

TEST_F(X11Stream, ALostServerEndsTheStream) {
    RecordedStream stream(screen());
    ASSERT_TRUE(stream.waitForFrames(1));
    desktop.server().signal(SIGKILL);
    EXPECT_TRUE(stream.waitForEnd());
    EXPECT_EQ(stream.endReason(), "The connection to the X server was lost.");
}

TEST_F(X11Stream, AStopIsNoEndByItself) {
    RecordedStream stream(screen());
    ASSERT_TRUE(stream.waitForFrames(1));
    stream.stop();
    EXPECT_EQ(stream.endReason(), "");
}

TEST_F(X11Stream, AHungServerCannotHoldUpTheStop) {
    TestWindow window(connection, {{10, 20, 100, 50}, red});
    RecordedStream stream(screen());
    ASSERT_TRUE(stream.waitForFrames(1));
    window.fill({0, 0, 100, 50}, blue);
    desktop.server().signal(SIGSTOP);
    std::this_thread::sleep_for(50ms);
    const double before = HostClock::seconds();
    stream.stop();
    EXPECT_LT(HostClock::seconds() - before, 5);
    desktop.server().signal(SIGCONT);
}

class X11StreamUnderOpenbox : public X11Stream {
  protected:
    X11StreamUnderOpenbox() : X11Stream(test::WindowManager::Openbox) {}
};

TEST_F(X11StreamUnderOpenbox, AWindowInItsFrameIsSeenWithoutTheFrame) {
    TestWindow window(connection, {{40, 50, 100, 60}, red, test::WindowKind::Managed, "a window"});
    const TestWindow cover(connection, {{0, 0, 320, 240}, blue});
    RecordedStream stream(of(window, 100, 60));
    ASSERT_TRUE(stream.waitForColor(0, 0, red));
    EXPECT_TRUE(stream.waitForColor(99, 59, red));
    window.fill({0, 0, 4, 4}, green);
    EXPECT_TRUE(stream.waitForColor(0, 0, green));
}

}  // namespace
}  // namespace tessaloom
