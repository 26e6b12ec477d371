// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <unistd.h>

#include <QByteArray>
#include <QCoreApplication>
#include <fstream>
#include <optional>
#include <thread>

#include "platform/RecordedStream.h"
#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"
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

/// A red window over the whole screen, without a compositing manager and with one.
class X11OwnWindows : public ::testing::TestWithParam<bool> {
  protected:
    X11OwnWindows() {
        qputenv("DISPLAY", desktop.displayName().c_str());
        if (!GetParam()) return;
        compositor.emplace(std::vector<std::string>{"xcompmgr", "-n"}, desktop.environment());
        const auto owns = [&] {
            const auto connection = X11Connection::open();
            const auto cookie = xcb_get_selection_owner(*connection, connection->atom("_NET_WM_CM_S0"));
            const X11Reply<xcb_get_selection_owner_reply_t> reply(
                xcb_get_selection_owner_reply(*connection, cookie, nullptr));
            return reply && reply->owner != XCB_NONE;
        };
        for (int round = 0; round < 500 && !owns(); ++round)
            std::this_thread::sleep_for(10ms);
        EXPECT_TRUE(owns()) << compositor->errors();
    }

    static StreamConfiguration screen() { return {{{}, {0, 0, 320, 240}, 1.0}, {0, 0, 320, 240}}; }

    static std::string ownName() { return QCoreApplication::applicationName().toStdString(); }
    /// Shown by the program that records.
    std::unique_ptr<TestWindow> ownWindow(test::PixelRect rect, const char* type = nullptr) const {
        auto window = std::make_unique<TestWindow>(
            connection, test::WindowDescription{
                            .rect = rect, .rgb = blue, .applicationName = ownName(), .isMapped = false});
        if (type != nullptr)
            test::setNumber(connection, window->id(), "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
                            test::atomNamed(connection, type));
        window->map();
        return window;
    }

    test::VirtualDesktop desktop{320, 240};
    test::XInjector injector{desktop.displayName()};
    xcb_connection_t* connection = injector.connection();
    std::optional<test::ChildProcess> compositor;
    TestWindow background{connection, {.rect = {0, 0, 320, 240}, .rgb = red}};
};

TEST_P(X11OwnWindows, AreLeftOutFromTheFirstFrameOn) {
    const auto own = ownWindow({100, 100, 80, 60});
    RecordedStream stream(screen());
    ASSERT_TRUE(stream.waitForFrames(1));
    EXPECT_TRUE(stream.waitForColor(10, 10, red));
    EXPECT_TRUE(stream.waitForColor(101, 101, red));
    EXPECT_TRUE(stream.waitForColor(179, 159, red));
    EXPECT_FALSE(stream.hasShown(140, 130, blue));
}

TEST_P(X11OwnWindows, DoNotHideWhatChangesBeneathThem) {
    const auto own = ownWindow({100, 100, 80, 60});
    RecordedStream stream(screen());
    ASSERT_TRUE(stream.waitForColor(140, 130, red));
    background.fill({90, 120, 100, 10}, green);
    EXPECT_TRUE(stream.waitForColor(140, 125, green));
    EXPECT_TRUE(stream.waitForColor(95, 125, green));
    EXPECT_TRUE(stream.waitForColor(140, 131, red));
}

TEST_P(X11OwnWindows, ThatComeMoveAndGoAreLeftOutThroughout) {
    RecordedStream stream(screen());
    ASSERT_TRUE(stream.waitForColor(10, 10, red));
    const auto own = ownWindow({100, 100, 80, 60});
    for (int step = 0; step < 20; ++step) {
        own->moveResize({100 - 4 * step, 100, 80, 60});
        own->fill({0, 0, 80, 60}, blue);
        std::this_thread::sleep_for(10ms);
    }
    own->unmap();
    background.fill({0, 0, 320, 240}, green);
    EXPECT_TRUE(stream.waitForColor(60, 130, green));
    EXPECT_FALSE(stream.hasShown(60, 130, blue));
}

TEST_P(X11OwnWindows, AreNoReasonForAFrame) {
    const auto own = ownWindow({100, 100, 80, 60});
    RecordedStream stream(screen());
    ASSERT_TRUE(stream.waitForColor(140, 130, red));
    std::this_thread::sleep_for(200ms);
    const auto before = stream.times().size();
    for (int step = 0; step < 20; ++step) {
        own->fill({0, 0, 80, 60}, step % 2 == 0 ? blue : green);
        std::this_thread::sleep_for(10ms);
    }
    EXPECT_EQ(stream.times().size(), before);
}

TEST_P(X11OwnWindows, ShowWindowsAboveAndBelowThemInOrder) {
    const TestWindow below(connection, {.rect = {90, 90, 60, 60}, .rgb = 0x303030});
    const auto own = ownWindow({100, 100, 80, 60});
    const TestWindow above(connection, {.rect = {120, 110, 100, 20}, .rgb = green});
    RecordedStream stream(screen());
    EXPECT_TRUE(stream.waitForColor(105, 105, 0x303030));
    EXPECT_TRUE(stream.waitForColor(130, 120, green));
    EXPECT_TRUE(stream.waitForColor(170, 150, red));
}

TEST_P(X11OwnWindows, OfTheDesktopBelongInThePicture) {
    const auto cover = ownWindow({100, 100, 80, 60}, "_NET_WM_WINDOW_TYPE_DESKTOP");
    RecordedStream stream(screen());
    EXPECT_TRUE(stream.waitForColor(140, 130, blue));
}

TEST_P(X11OwnWindows, AreLeftOutWithTheFrameThatAWindowManagerPutsAroundThem) {
    const TestWindow frame(connection, {.rect = {100, 100, 80, 60}, .rgb = green, .isMapped = false});
    xcb_delete_property(connection, frame.id(), XCB_ATOM_WM_CLASS);
    const auto own = ownWindow({0, 0, 70, 40});
    xcb_reparent_window(connection, own->id(), frame.id(), 5, 15);
    xcb_map_window(connection, frame.id());
    test::synchronize(connection);
    RecordedStream stream(screen());
    ASSERT_TRUE(stream.waitForFrames(1));
    EXPECT_EQ(stream.shownAt(140, 130), red);
    EXPECT_EQ(stream.shownAt(101, 101), red);
}

TEST_P(X11OwnWindows, AreNotThoseThatOnlyShareOurProcessNumber) {
    TestWindow other(connection, {.rect = {100, 100, 80, 60}, .rgb = green, .isMapped = false});
    test::setNumber(connection, other.id(), "_NET_WM_PID", XCB_ATOM_CARDINAL,
                    static_cast<std::uint32_t>(getpid()));
    other.map();
    RecordedStream stream(screen());
    EXPECT_TRUE(stream.waitForColor(140, 130, green));
}

/// No window but our own lies on the desktop.
class BareDesktop : public X11OwnWindows {
  protected:
    BareDesktop() { background.unmap(); }

    void setBackground(const std::vector<std::string>& arguments) const {
        std::vector<std::string> command{"xsetroot"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        test::ChildProcess xsetroot(command, desktop.environment());
        ASSERT_EQ(xsetroot.waitForExit(10s), 0) << xsetroot.errors();
    }
};

TEST_P(BareDesktop, OfOneColourGoesOnBeneathOurWindows) {
    setBackground({"-solid", "#204060"});
    const auto own = ownWindow({100, 100, 80, 60});
    RecordedStream stream(screen());
    ASSERT_TRUE(stream.waitForFrames(1));
    // A compositing manager that knows of no wallpaper shows a colour of its own.
    const std::uint32_t desktopColor = GetParam() ? stream.shownAt(10, 10) : 0x204060;
    ASSERT_NE(desktopColor, 0U);
    for (const auto& [x, y] : {std::pair{10, 10}, {99, 99}, {100, 100}, {140, 130}, {179, 159}, {180, 160}})
        EXPECT_EQ(stream.shownAt(x, y), desktopColor) << x << ' ' << y;
}

/// Here the compositing manager shows a colour of its own, always the same.
class UncompositedBareDesktop : public BareDesktop {};
TEST_P(UncompositedBareDesktop, WhoseColourChangesDoesSoBeneathOurWindowsToo) {
    setBackground({"-solid", "#204060"});
    const auto own = ownWindow({100, 100, 80, 60});
    RecordedStream stream(screen());
    ASSERT_TRUE(stream.waitForColor(140, 130, 0x204060));
    setBackground({"-solid", "#a05020"});
    EXPECT_TRUE(stream.waitForColor(10, 10, 0xA05020));
    EXPECT_TRUE(stream.waitForColor(140, 130, 0xA05020));
}

TEST_P(BareDesktop, OfTilesGoesOnBeneathOurWindows) {
    const test::TemporaryFolder folder;
    const auto file = folder.path() / "tile.xbm";
    std::ofstream(file)
        << "#define tile_width 13\n#define tile_height 7\nstatic unsigned char tile_bits[] = {\n"
           "0x01,0x00,0xff,0x03,0x0e,0x1f,0x55,0x0a,0xf0,0x00,0x81,0x11,0x3c,0x03};\n";
    setBackground({"-bitmap", file.string(), "-fg", "#c02010", "-bg", "#1040e0"});
    const auto own = ownWindow({100, 100, 80, 60});
    RecordedStream stream(screen());
    ASSERT_TRUE(stream.waitForFrames(1));
    if (!GetParam()) {
        ASSERT_EQ(stream.shownAt(0, 0), red);
    }
    for (int y = 90; y < 170; ++y) {
        for (int x = 90; x < 190; ++x)
            ASSERT_EQ(stream.shownAt(x, y), stream.shownAt(x % 13, y % 7)) << x << ' ' << y;
    }
}

TEST_P(BareDesktop, WithAWallpaperShowsItBeneathOurWindows) {
    const xcb_screen_t* root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const xcb_pixmap_t wallpaper = xcb_generate_id(connection);
    xcb_create_pixmap(connection, root->root_depth, wallpaper, root->root, 320, 240);
    const xcb_gcontext_t painting = xcb_generate_id(connection);
    xcb_create_gc(connection, painting, wallpaper, 0, nullptr);
    for (std::uint16_t column = 0; column < 320; ++column) {
        const std::uint32_t color = 0x102030 + column;
        xcb_change_gc(connection, painting, XCB_GC_FOREGROUND, &color);
        const xcb_rectangle_t line{static_cast<std::int16_t>(column), 0, 1, 240};
        xcb_poly_fill_rectangle(connection, wallpaper, painting, 1, &line);
    }
    xcb_change_window_attributes(connection, root->root, XCB_CW_BACK_PIXMAP, &wallpaper);
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, root->root,
                        test::atomNamed(connection, "_XROOTPMAP_ID"), XCB_ATOM_PIXMAP, 32, 1, &wallpaper);
    xcb_clear_area(connection, 0, root->root, 0, 0, 0, 0);
    test::synchronize(connection);
    const auto own = ownWindow({100, 100, 80, 60});
    RecordedStream stream(screen());
    EXPECT_TRUE(stream.waitForColor(10, 10, 0x102030 + 10));
    for (const int x : {100, 140, 179})
        EXPECT_TRUE(stream.waitForColor(x, 130, 0x102030 + static_cast<std::uint32_t>(x))) << x;
}

INSTANTIATE_TEST_SUITE_P(WithoutAndWithCompositing, BareDesktop, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "composited" : "plain"; });

INSTANTIATE_TEST_SUITE_P(WithoutCompositing, UncompositedBareDesktop, ::testing::Values(false));

INSTANTIATE_TEST_SUITE_P(WithoutAndWithCompositing, X11OwnWindows, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "composited" : "plain"; });

}  // namespace
}  // namespace tessaloom
