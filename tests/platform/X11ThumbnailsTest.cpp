// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11Thumbnails.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QCoreApplication>
#include <condition_variable>
#include <cstring>
#include <map>
#include <mutex>
#include <thread>

#include "support/TestWindow.h"
#include "support/VirtualDesktop.h"
#include "support/XInjector.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;
using test::TestWindow;

constexpr std::uint32_t red = 0xC02010;
constexpr std::uint32_t blue = 0x1040E0;
constexpr std::uint32_t green = 0x20B040;

/// The last picture of each thing, as it arrives.
class LastPictures {
  public:
    explicit LastPictures(std::vector<ContentFilter> filters, QSize largest = {80, 60})
        : source_(X11Connection::open(), std::move(filters), largest) {
        source_.start([this](std::size_t index, const QImage& picture) {
            const std::lock_guard guard(lock_);
            pictures_[index] = picture;
            ++counts_[index];
            arrived_.notify_all();
        });
    }
    void stop() { source_.stop(); }

    /// True once the picture's middle is of this colour; false when ten seconds pass first.
    bool waitForMiddle(std::size_t index, std::uint32_t rgb) {
        std::unique_lock guard(lock_);
        return arrived_.wait_for(guard, 10s, [&] { return isMiddle(index, rgb); });
    }
    bool hasMiddle(std::size_t index, std::uint32_t rgb) {
        const std::lock_guard guard(lock_);
        return isMiddle(index, rgb);
    }
    /// True once there were this many pictures; false when ten seconds pass first.
    bool waitForCount(std::size_t index, int count) {
        std::unique_lock guard(lock_);
        return arrived_.wait_for(guard, 10s, [&] { return counts_[index] >= count; });
    }
    std::uint32_t colorAt(std::size_t index, const QPoint& place) {
        const std::lock_guard guard(lock_);
        return colorAt(pictures_[index], place);
    }
    QSize sizeOf(std::size_t index) {
        const std::lock_guard guard(lock_);
        return pictures_[index].size();
    }
    int count(std::size_t index) {
        const std::lock_guard guard(lock_);
        return counts_[index];
    }

  private:
    bool isMiddle(std::size_t index, std::uint32_t rgb) {
        const QImage& picture = pictures_[index];
        return !picture.isNull() && colorAt(picture, picture.rect().center()) == rgb;
    }
    static std::uint32_t colorAt(const QImage& picture, const QPoint& place) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, picture.constScanLine(place.y()) + 4 * place.x(), sizeof pixel);
        return pixel ^ 0xFF000000U;  // opaque, also in the bits that its format may leave open
    }

    std::mutex lock_;
    std::condition_variable arrived_;
    std::map<std::size_t, QImage> pictures_;
    std::map<std::size_t, int> counts_;
    X11Thumbnails source_;  ///< last, so that its thread ends before what it uses
};

class Thumbnails : public ::testing::Test {
  protected:
    Thumbnails() { qputenv("DISPLAY", desktop.displayName().c_str()); }

    static ContentFilter screen() { return {std::nullopt, {0, 0, 320, 240}, 1}; }
    static ContentFilter of(const TestWindow& window, double width, double height) {
        return {window.id(), {0, 0, width, height}, 1};
    }
    std::unique_ptr<TestWindow> ownWindow(test::PixelRect rect) const {
        return std::make_unique<TestWindow>(
            connection,
            test::WindowDescription{.rect = rect,
                                    .rgb = blue,
                                    .applicationName = QCoreApplication::applicationName().toStdString()});
    }

    test::VirtualDesktop desktop{320, 240};
    test::XInjector injector{desktop.displayName()};
    xcb_connection_t* connection = injector.connection();
    TestWindow background{connection, {.rect = {0, 0, 320, 240}, .rgb = red}};
};

TEST_F(Thumbnails, FitTheSizeInProportionAndAreNeverEnlarged) {
    const TestWindow wide(connection, {.rect = {0, 0, 300, 100}, .rgb = green});
    const TestWindow high(connection, {.rect = {0, 0, 100, 200}, .rgb = green});
    const TestWindow small(connection, {.rect = {0, 0, 60, 40}, .rgb = green});
    LastPictures pictures({screen(), of(wide, 300, 100), of(high, 100, 200), of(small, 60, 40)});
    for (const std::size_t index : {1U, 2U, 3U})
        ASSERT_TRUE(pictures.waitForMiddle(index, green));
    EXPECT_EQ(pictures.sizeOf(0), QSize(80, 60));
    EXPECT_EQ(pictures.sizeOf(1), QSize(80, 26));
    EXPECT_EQ(pictures.sizeOf(2), QSize(30, 60));
    EXPECT_EQ(pictures.sizeOf(3), QSize(60, 40));
}

TEST_F(Thumbnails, EachHoldsItsOwnPixels) {
    const TestWindow first(connection, {.rect = {0, 0, 60, 40}, .rgb = green});
    const TestWindow second(connection, {.rect = {100, 0, 60, 40}, .rgb = blue});
    LastPictures pictures({of(first, 60, 40), of(second, 60, 40)});
    ASSERT_TRUE(pictures.waitForMiddle(1, blue));
    EXPECT_TRUE(pictures.waitForMiddle(0, green));
}

TEST_F(Thumbnails, ACoveredWindowShowsWhatItHolds) {
    const TestWindow window(connection, {.rect = {20, 20, 160, 120}, .rgb = green});
    const TestWindow cover(connection, {.rect = {0, 0, 320, 240}, .rgb = red});
    LastPictures pictures({of(window, 160, 120)});
    EXPECT_TRUE(pictures.waitForMiddle(0, green));
}

TEST_F(Thumbnails, FollowAWindowThatIsDrawnTo) {
    TestWindow window(connection, {.rect = {20, 20, 160, 120}, .rgb = green});
    const TestWindow cover(connection, {.rect = {0, 0, 320, 240}, .rgb = red});
    LastPictures pictures({of(window, 160, 120)});
    ASSERT_TRUE(pictures.waitForMiddle(0, green));
    window.fill({40, 30, 80, 60}, blue);
    EXPECT_TRUE(pictures.waitForMiddle(0, blue));
    EXPECT_EQ(pictures.colorAt(0, {2, 2}), green);
}

TEST_F(Thumbnails, FollowADisplay) {
    LastPictures pictures({screen()});
    ASSERT_TRUE(pictures.waitForMiddle(0, red));
    const TestWindow window(connection, {.rect = {80, 60, 160, 120}, .rgb = green});
    EXPECT_TRUE(pictures.waitForMiddle(0, green));
    EXPECT_EQ(pictures.colorAt(0, {5, 5}), red);
}

TEST_F(Thumbnails, OfStillThingsAreMadeOnce) {
    const TestWindow window(connection, {.rect = {20, 20, 160, 120}, .rgb = green});
    LastPictures pictures({screen(), of(window, 160, 120)});
    ASSERT_TRUE(pictures.waitForMiddle(1, green));
    std::this_thread::sleep_for(700ms);
    const int before = pictures.count(0) + pictures.count(1);
    EXPECT_LE(before, 4) << "what they uncovered may have been drawn once more";
    std::this_thread::sleep_for(700ms);
    EXPECT_EQ(pictures.count(0) + pictures.count(1), before);
}

TEST_F(Thumbnails, OfABusyWindowAreMadeAFewTimesASecond) {
    TestWindow window(connection, {.rect = {20, 20, 160, 120}, .rgb = green});
    LastPictures pictures({of(window, 160, 120)});
    ASSERT_TRUE(pictures.waitForMiddle(0, green));
    const auto end = std::chrono::steady_clock::now() + 1s;
    for (int step = 0; std::chrono::steady_clock::now() < end; ++step) {
        window.fill({0, 0, 160, 120}, step % 2 == 0 ? blue : green);
        std::this_thread::sleep_for(5ms);
    }
    EXPECT_LE(pictures.count(0), 7);
}

TEST_F(Thumbnails, OfADisplayLeaveOutOurOwnWindowsAndAreNotMadeAnewForThem) {
    LastPictures pictures({screen()});
    ASSERT_TRUE(pictures.waitForMiddle(0, red));
    const auto own = ownWindow({0, 0, 320, 240});
    std::this_thread::sleep_for(600ms);
    const int before = pictures.count(0);
    for (int step = 0; step < 50; ++step) {
        own->fill({0, 0, 320, 240}, step % 2 == 0 ? green : blue);
        std::this_thread::sleep_for(10ms);
    }
    std::this_thread::sleep_for(300ms);
    EXPECT_EQ(pictures.count(0), before);
    EXPECT_TRUE(pictures.waitForMiddle(0, red));
    background.fill({0, 0, 320, 240}, green);
    EXPECT_TRUE(pictures.waitForMiddle(0, green)) << "what lies beneath is still followed";
}

/// Of a program that hangs nothing would be drawn again.
TEST_F(Thumbnails, KeepWhatWasOnTheScreenBeforeItWasCovered) {
    TestWindow window(connection, {.rect = {80, 60, 160, 120}, .rgb = green});
    window.fill({0, 0, 160, 120}, blue);  // where the server has to clear it, it is green again
    LastPictures pictures({screen()});
    ASSERT_TRUE(pictures.waitForMiddle(0, blue));
    const auto own = ownWindow({0, 0, 320, 240});
    const int before = pictures.count(0);
    ASSERT_TRUE(pictures.waitForCount(0, before + 1)) << "with our window left out";
    std::this_thread::sleep_for(300ms);
    EXPECT_TRUE(pictures.hasMiddle(0, blue));
}

TEST_F(Thumbnails, AClosedOrHiddenWindowIsPassedOver) {
    auto closed = std::make_unique<TestWindow>(
        connection, test::WindowDescription{.rect = {20, 20, 160, 120}, .rgb = green});
    TestWindow hidden(connection, {.rect = {20, 20, 160, 120}, .rgb = green});
    TestWindow shown(connection, {.rect = {20, 20, 160, 120}, .rgb = green});
    LastPictures pictures(
        {{0x7FFFFFF, {0, 0, 100, 100}, 1}, of(*closed, 160, 120), of(hidden, 160, 120), of(shown, 160, 120)});
    ASSERT_TRUE(pictures.waitForMiddle(1, green));
    closed.reset();
    hidden.unmap();
    std::this_thread::sleep_for(300ms);
    shown.fill({0, 0, 160, 120}, blue);
    EXPECT_TRUE(pictures.waitForMiddle(3, blue));
    EXPECT_EQ(pictures.count(0), 0);
}

TEST_F(Thumbnails, EndAtOnceAlsoWhenTheServerHasHung) {
    LastPictures pictures({screen()});
    ASSERT_TRUE(pictures.waitForMiddle(0, red));
    desktop.server().signal(SIGSTOP);
    pictures.stop();
    pictures.stop();
    desktop.server().signal(SIGCONT);
}

}  // namespace
}  // namespace tessaloom
