// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <atomic>
#include <mutex>
#include <optional>
#include <thread>

#include "capture/CameraPreviewController.h"
#include "capture/CountdownPanel.h"
#include "capture/ScriptedDevices.h"
#include "capture/WebcamRecorder.h"
#include "platform/x11/X11CapturePlatform.h"
#include "platform/x11/X11Connection.h"
#include "support/ChildProcess.h"
#include "support/TestWindow.h"
#include "support/XInjector.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;

constexpr int width = 640;
constexpr int height = 480;
constexpr std::uint32_t desktopColor = 0x204060;
constexpr int plateX = width / 2;
constexpr int plateY = height / 2 - 70;  ///< above the number
constexpr int bubbleX = width - 24 - 90;
constexpr int bubbleY = height - 24 - 90;

/// Pixels of the whole screen as 0xRRGGBB, row by row.
using Picture = std::vector<std::uint32_t>;

Picture screenPicture(xcb_connection_t* connection) {
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const auto cookie = xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root, 0, 0, width, height, ~0U);
    const X11Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(connection, cookie, nullptr));
    Picture picture(static_cast<std::size_t>(width) * height);
    const std::uint8_t* pixel = reply ? xcb_get_image_data(reply.get()) : nullptr;
    for (std::size_t index = 0; pixel != nullptr && index < picture.size(); ++index, pixel += 4)
        picture[index] = static_cast<std::uint32_t>(pixel[2] << 16 | pixel[1] << 8 | pixel[0]);
    return picture;
}

std::uint32_t at(const Picture& picture, int x, int y) {
    return picture[static_cast<std::size_t>(y * width + x)];
}

/// Streams the whole screen and counts the pixels that differ from what they ought to be, in all frames.
class JudgedStream {
  public:
    JudgedStream(CapturePlatform& platform, Picture expected)
        : expected_(std::move(expected)),
          stream_(platform.makeScreenStream({{{}, {0, 0, width, height}, 1.0}, {0, 0, width, height}})) {
        stream_->start([this](const ScreenFrame& frame) { judge(frame); },
                       [](const std::string& reason) { ADD_FAILURE() << reason; });
    }
    void stop() { stream_->stop(); }
    int frames() const { return frames_; }
    /// How many pixels differed, and the first of them.
    std::string verdict() {
        const std::lock_guard guard(lock_);
        return differences_ == 0 ? "as expected" : std::to_string(differences_) + " pixels, " + first_;
    }

  private:
    void judge(const ScreenFrame& frame) {
        const std::lock_guard guard(lock_);
        for (const ScreenPatch& patch : frame.patches) {
            for (int y = 0; y < patch.pixels.height; ++y)
                judgeRow(patch, y);
        }
        ++frames_;
    }
    void judgeRow(const ScreenPatch& patch, int y) {
        const std::uint8_t* pixel = patch.pixels.row(y);
        for (int x = 0; x < patch.pixels.width; ++x, pixel += 4) {
            const auto color = static_cast<std::uint32_t>(pixel[2] << 16 | pixel[1] << 8 | pixel[0]);
            const std::uint32_t wanted = at(expected_, patch.x + x, patch.y + y);
            if (color == wanted || differences_++ > 0) continue;
            std::ostringstream text;
            text << "first in frame " << frames_ << " at " << patch.x + x << ',' << patch.y + y << std::hex
                 << ": " << color << " for " << wanted;
            first_ = text.str();
        }
    }

    Picture expected_;
    std::mutex lock_;
    std::int64_t differences_ = 0;
    std::string first_;
    std::atomic<int> frames_ = 0;
    std::unique_ptr<ScreenStream> stream_;  ///< last, so that its thread ends before what it uses
};

struct Surroundings {
    const char* name;
    const char* compositing = nullptr;  ///< how xcompmgr is to do it, if it runs
    bool hasWindow = false;             ///< one over the whole screen
};

std::ostream& operator<<(std::ostream& stream, const Surroundings& surroundings) {
    return stream << surroundings.name;
}

/// The countdown and the camera's bubble, on the screen at once.
class OwnWindowsOnScreen : public ::testing::TestWithParam<Surroundings> {
  protected:
    OwnWindowsOnScreen() {
        test::ChildProcess xsetroot({"xsetroot", "-solid", "#204060"}, test::currentEnvironment());
        EXPECT_EQ(xsetroot.waitForExit(5s), 0) << xsetroot.errors();
        if (GetParam().compositing != nullptr) startCompositor();
        if (GetParam().hasWindow) showPatternedWindow();
        goOn(300ms);
    }
    ~OwnWindowsOnScreen() override {
        if (webcam) QCoro::waitFor(webcam->stop());
    }

    /// It shows a colour of its own where there is no wallpaper, once it has something to show.
    void startCompositor() {
        compositor.emplace(std::vector<std::string>{"xcompmgr", GetParam().compositing},
                           test::currentEnvironment());
        const auto shows = [this] {
            const test::TestWindow passing(injector.connection(),
                                           {.rect = {0, 0, 9, 9}, .rgb = desktopColor});
            return at(picture(), 0, 20) != desktopColor;
        };
        EXPECT_TRUE(waitUntil(shows)) << compositor->errors();
    }
    /// The pattern is its background, so what shows again after it was covered is painted by the server.
    void showPatternedWindow() {
        xcb_connection_t* const connection = injector.connection();
        window.emplace(connection, test::WindowDescription{.rect = {0, 0, width, height}});
        const xcb_pixmap_t pattern = xcb_generate_id(connection);
        xcb_create_pixmap(connection, 24, pattern, window->id(), width, height);
        const xcb_gcontext_t painting = xcb_generate_id(connection);
        xcb_create_gc(connection, painting, pattern, 0, nullptr);
        for (int y = 0; y < height; y += 8) {
            const auto color = static_cast<std::uint32_t>(y * 0x01030B + 0x102030) & 0xFFFFFFU;
            const xcb_rectangle_t row{0, static_cast<std::int16_t>(y), width, 8};
            xcb_change_gc(connection, painting, XCB_GC_FOREGROUND, &color);
            xcb_poly_fill_rectangle(connection, pattern, painting, 1, &row);
        }
        xcb_change_window_attributes(connection, window->id(), XCB_CW_BACK_PIXMAP, &pattern);
        xcb_clear_area(connection, 0, window->id(), 0, 0, 0, 0);
        test::synchronize(connection);
    }
    static void goOn(std::chrono::milliseconds time) {
        QElapsedTimer passed;
        for (passed.start(); passed.elapsed() < time.count(); std::this_thread::sleep_for(2ms))
            QCoreApplication::processEvents();
    }
    static bool waitUntil(const std::function<bool()>& condition) {
        for (int round = 0; round < 200 && !condition(); ++round)
            goOn(50ms);
        return condition();
    }
    /// Returns once both are on the screen, which showed `before`.
    void show(const Picture& before) {
        if (!webcam) webcam = WebcamRecorder::start(std::make_unique<test::ScriptedCamera>(control, true));
        countdown.show(3);
        camera.show(*webcam, {});
        const auto differsAt = [&](int x, int y) { return at(picture(), x, y) != at(before, x, y); };
        EXPECT_TRUE(waitUntil([&] { return differsAt(plateX, plateY); })) << "there is no countdown";
        EXPECT_TRUE(waitUntil([&] { return differsAt(bubbleX, bubbleY); })) << "there is no bubble";
    }
    void hide(std::chrono::milliseconds wait = 300ms) {
        countdown.hide();
        camera.hide();
        goOn(wait);
    }
    Picture picture() const { return screenPicture(injector.connection()); }

    X11CapturePlatform platform;
    test::XInjector injector{qgetenv("DISPLAY").toStdString()};
    std::optional<test::ChildProcess> compositor;
    std::optional<test::TestWindow> window;
    test::SourceControl<CameraPicture> control;
    std::unique_ptr<WebcamRecorder> webcam;
    CountdownPanel countdown;
    CameraPreviewController camera;
};

TEST_P(OwnWindowsOnScreen, LeaveNoPixelInTheRecording) {
    const Picture without = picture();
    show(without);
    JudgedStream stream(platform, without);
    goOn(200ms);
    countdown.show(2);
    goOn(200ms);
    EXPECT_GE(stream.frames(), 1);
    EXPECT_EQ(stream.verdict(), "as expected");
    hide();
    EXPECT_EQ(stream.verdict(), "as expected") << "when they go";
    show(without);
    EXPECT_EQ(stream.verdict(), "as expected") << "when they come";
}

INSTANTIATE_TEST_SUITE_P(Screens, OwnWindowsOnScreen,
                         ::testing::Values(Surroundings{"bareDesktop", nullptr, false},
                                           Surroundings{"window", nullptr, true},
                                           Surroundings{"bareDesktopComposited", "-n", false},
                                           Surroundings{"windowComposited", "-n", true},
                                           Surroundings{"windowAmongShadows", "-c", true}),
                         [](const auto& info) { return info.param.name; });

/// Windows come and go slowly, over a third of a second.
class FadingWindows : public OwnWindowsOnScreen {
  protected:
    FadingWindows() { goOn(fading); }

    static constexpr auto fading = 600ms;
};

TEST_P(FadingWindows, LeaveNoPixelInARecordingThatBeginsMeanwhile) {
    const Picture without = picture();
    show(without);
    goOn(fading);
    hide(120ms);
    EXPECT_NE(at(picture(), plateX, plateY), at(without, plateX, plateY)) << "nothing fades";
    JudgedStream stream(platform, without);
    goOn(fading);
    EXPECT_GE(stream.frames(), 1);
    EXPECT_EQ(stream.verdict(), "as expected");
}

INSTANTIATE_TEST_SUITE_P(Screens, FadingWindows,
                         ::testing::Values(Surroundings{"bareDesktop", "-cf", false},
                                           Surroundings{"window", "-cf", true}),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace tessaloom
